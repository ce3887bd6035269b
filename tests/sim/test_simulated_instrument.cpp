// The simulated instrument's command line and collection, driven byte by byte without a line.
// How each family names itself, and the silent, echo-less and sleeping instruments, are tried
// against the link over a pseudo-terminal (test_instrument_on_line.cpp and the command-line
// tool's wake tests).

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "data/byte_io.h"
#include "data/instrument_records.h"
#include "sim/live_transect.h"
#include "sim/simulated_instrument.h"

namespace rm::sim {
namespace {

class InstrumentAtPrompt : public ::testing::Test {
protected:
    void Make(const InstrumentBehaviour& behaviour = {}) { instrument = std::make_unique<SimulatedInstrument>(scenario, behaviour); }
    std::string Send(const std::string& bytes, double nowS = 0.0) {
        if (!instrument) Make();
        instrument->Receive(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size(), nowS);
        return instrument->TakeOutput();
    }
    RiverScenario scenario;
    std::unique_ptr<SimulatedInstrument> instrument;
};

TEST_F(InstrumentAtPrompt, EchoesTheCommandAndAnswersWithMarkedVersionLine) {
    const std::string out = Send("Ver\r");
    // Echo, the reply marker, then the lines and the prompt.
    ASSERT_EQ(out.substr(0, 5), std::string("Ver\r\xE8", 5));
    const std::string answer = out.substr(7);  // past "\r\n"
    EXPECT_EQ(answer.compare(0, 4, "KVR "), 0);
    // The fifth character is the firmware byte of the configuration (100 by default).
    EXPECT_EQ(static_cast<uint8_t>(answer[4]), 100);
    EXPECT_EQ(out.back(), '>');
}

TEST_F(InstrumentAtPrompt, LimitErrorsHaveNineWordsAndInRangeValuesChangeTheSetup) {
    EXPECT_NE(Send("cs 9999\r").find("\r\nCell Size out of range: 5.00 to 400.00 cm\r\n>"), std::string::npos);
    EXPECT_NE(Send("nc 99999\r").find("\r\nNumber of Cells out of range: 1 to 100\r\n>"), std::string::npos);
    EXPECT_NE(Send("nc 12\r").find("OK"), std::string::npos);
    EXPECT_EQ(instrument->Records().user.NumberOfCells, 12);
    // 100 cells of 4 beams with bottom track make a 1700-byte frame, within what a reader takes.
    EXPECT_NE(Send("nc 100\r").find("OK"), std::string::npos);
    EXPECT_NE(Send("nc 2.5\r").find("ERROR"), std::string::npos);
}

TEST_F(InstrumentAtPrompt, UserRecordLoadIsCheckedAndKept) {
    UserSetup user = BuildInstrumentRecords(scenario).user;
    user.NumberOfCells = 15;
    const auto image = EncodeUser(user, BuildInstrumentRecords(scenario).conf);
    std::string frame(2, '\0');
    frame[0] = static_cast<char>((image.size() + 4) & 0xFF);
    frame[1] = static_cast<char>((image.size() + 4) >> 8);
    frame.append(image.begin(), image.end());
    const uint16_t sum = RecordChecksum(image.data(), image.size());
    std::string bad = frame + std::string{static_cast<char>((sum + 1) & 0xFF), static_cast<char>((sum + 1) >> 8)};
    std::string good = frame + std::string{static_cast<char>(sum & 0xFF), static_cast<char>(sum >> 8)};

    EXPECT_NE(Send("Load USER\r").find("\r\nOK\r\n"), std::string::npos);
    EXPECT_NE(Send(bad).find("ERROR: bad checksum"), std::string::npos);
    EXPECT_EQ(instrument->Records().user.NumberOfCells, 20);

    Send("Load USER\r");
    EXPECT_NE(Send(good).find("OK"), std::string::npos);
    EXPECT_EQ(instrument->Records().user.NumberOfCells, 15);

    // A load whose bytes never come ends after its time limit with the prompt back.
    Send("Load USER\r", 10.0);
    instrument->Advance(10.0 + kLoadTimeoutS);
    EXPECT_NE(instrument->TakeOutput().find("ERROR"), std::string::npos);
    EXPECT_EQ(instrument->CurrentMode(), SimulatedInstrument::Mode::Prompt);
}

TEST_F(InstrumentAtPrompt, ClockRunsFromTheScenarioStartAndCanBeSet) {
    scenario.crossing.start = {2024, 12, 31, 23, 59, 50};
    EXPECT_NE(Send("Date\r", 0.0).find("Current date is 2024/12/31"), std::string::npos);
    // Fifteen seconds later the clock has passed midnight into the new year.
    EXPECT_NE(Send("Time\r", 15.0).find("Current time is 00:00:05"), std::string::npos);
    EXPECT_NE(Send("Date\r", 15.0).find("Current date is 2025/01/01"), std::string::npos);
    EXPECT_NE(Send("Date 2023/03/09\r", 20.0).find("OK"), std::string::npos);
    EXPECT_NE(Send("Time 07:05:01\r", 20.0).find("OK"), std::string::npos);
    EXPECT_NE(Send("Time\r", 22.0).find("Current time is 07:05:03"), std::string::npos);
    EXPECT_NE(Send("Date\r", 22.0).find("Current date is 2023/03/09"), std::string::npos);
    EXPECT_NE(Send("Date 2023/02/30\r", 22.0).find("ERROR"), std::string::npos);
}

TEST_F(InstrumentAtPrompt, CollectionSendsOneFramePerIntervalUntilABreak) {
    InstrumentBehaviour b;
    b.frameIntervalS = 0.5;
    b.maxProfiles = 3;
    Make(b);
    RiverScenario ended;
    RecordingResult truth;
    int ends = 0;
    instrument->OnCollectionEnd([&](const RiverScenario& s, const RecordingResult& r) {
        ended = s;
        truth = r;
        ++ends;
    });
    EXPECT_NE(Send("Start\r", 1.0).find("OK\r\n"), std::string::npos);
    instrument->Advance(1.49);
    EXPECT_EQ(instrument->TakeOutput(), "");
    // 20 cells x 4 beams x 4 bytes + 80 header + 18 bottom track + 2 checksum.
    const size_t frameSize = 4 * 20 * 4 + 80 + 18 + 2;
    instrument->Advance(1.5);
    EXPECT_EQ(instrument->TakeOutput().size(), frameSize);
    instrument->Advance(10.0);  // two more, then the plan is used up
    EXPECT_EQ(instrument->TakeOutput().size(), 2 * frameSize);
    EXPECT_EQ(instrument->FramesSent(), 3);
    // Bytes other than a break or "Stop" are ignored while collecting.
    EXPECT_EQ(Send("Ver\r", 10.0), "");
    EXPECT_NE(Send(std::string(1, '\0'), 10.0).find(">"), std::string::npos);
    ASSERT_EQ(ends, 1);
    ASSERT_TRUE(truth.ok);
    EXPECT_EQ(truth.plan.profiles.size(), 3u);
    // Three profiles of 1 s at 0.5 m/s from the centred start of a 100-profile crossing of the
    // 60 m river: the span begins 5 m from the left bank and ends 1.5 m further.
    EXPECT_NEAR(truth.plan.startY, 5.0, 1e-9);
    EXPECT_NEAR(truth.plan.endY, 6.5, 1e-9);
    EXPECT_EQ(ended.crossing.intervalS, 1);
}

TEST_F(InstrumentAtPrompt, PulseCoherentModeKeepsIntervalsInTenthsAndAddsTheShallowWaterBlock) {
    EXPECT_NE(Send("pm yes\r").find("OK PCMode set to YES"), std::string::npos);
    EXPECT_EQ(instrument->Records().user.PCMode, 1);
    EXPECT_EQ(instrument->Records().user.AveragingInterval, 10);  // 1 s in tenths
    EXPECT_EQ(instrument->Records().user.ProfileInterval, 10);
    // The banner's 'U' comes before the acknowledgement, where the link looks for it.
    const std::string setup = Send("Setup\r");
    EXPECT_LT(setup.find('U'), setup.find("OK"));
    Send("Start\r", 0.0);
    instrument->Advance(1.0);
    // 20 cells x 4 beams x 4 bytes + 80 header + 36 shallow water + 18 bottom track + 2.
    const std::string frame = instrument->TakeOutput();
    ASSERT_EQ(frame.size(), 4 * 20 * 4 + 136u);
    // The block follows the header, filled as a ping that found no usable shallow cell (one
    // ping, its velocities bad) but measured the reference velocities that unwrap the profile.
    const ByteReader block(reinterpret_cast<const uint8_t*>(frame.data()) + 80, 36);
    EXPECT_EQ(block.u32(0), 1u);
    EXPECT_GT(block.u16(10), 0u);  // half the ambiguity velocity
    for (size_t beam = 0; beam < 4; ++beam) {
        EXPECT_EQ(block.i16(12 + 2 * beam), 32767);
        EXPECT_NE(block.i16(24 + 2 * beam), 32767);
        EXPECT_GT(block.u8(32 + beam), 10);
    }
    Send(std::string(1, '\0'), 1.5);
    Send("pm no\r", 2.0);
    EXPECT_EQ(instrument->Records().user.AveragingInterval, 1);
}

// Each fault of the line changes only what it names: against the frames of a clean line.
TEST(LiveTransectTest, FaultsChangeOnlyTheFramesTheyName) {
    RiverScenario scenario;
    scenario.outputPath = "live.kvr";
    const InstrumentRecords records = BuildInstrumentRecords(scenario);
    auto frames = [&](const FrameFaults& faults) {
        LiveTransect transect(ScenarioForRecords(scenario, records), records, faults, 4);
        std::vector<std::string> out;
        for (std::string bytes; transect.Next(bytes);) out.push_back(bytes);
        return out;
    };
    auto number = [](const std::string& f) {
        return ByteReader(reinterpret_cast<const uint8_t*>(f.data()), f.size()).u32(14);
    };
    auto checksumGood = [](const std::string& f) {
        const auto* b = reinterpret_cast<const uint8_t*>(f.data());
        return RecordChecksum(b, f.size() - 2) == ByteReader(b, f.size()).u16(f.size() - 2);
    };
    const std::vector<std::string> clean = frames({});
    ASSERT_EQ(clean.size(), 4u);
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(clean[i].size(), 4 * 20 * 4 + 100u);
        EXPECT_EQ(number(clean[i]), i + 1);
        EXPECT_TRUE(checksumGood(clean[i]));
    }
    FrameFaults noise, badSum, lost, renumbered;
    noise.noiseBeforeFrames = true;
    badSum.badChecksumEvery = 2;
    lost.loseFrame = 2;
    renumbered.restartNumberingAt = 3;
    const auto noisy = frames(noise), bad = frames(badSum), gap = frames(lost), again = frames(renumbered);
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(noisy[i], FrameNoise() + clean[i]);
        EXPECT_EQ(bad[i].substr(0, bad[i].size() - 2), clean[i].substr(0, clean[i].size() - 2));
        EXPECT_EQ(checksumGood(bad[i]), i % 2 == 0) << i;
        EXPECT_EQ(gap[i], i == 1 ? std::string() : clean[i]);
        EXPECT_EQ(number(again[i]), i < 2 ? i + 1 : i - 1);
        EXPECT_TRUE(checksumGood(again[i]));
    }
    EXPECT_EQ(FrameNoise().find('\xA5'), std::string::npos);
}

TEST_F(InstrumentAtPrompt, StopCommandEndsCollectionAndAnswersWithThePrompt) {
    Send("Start\r", 0.0);
    EXPECT_EQ(instrument->CurrentMode(), SimulatedInstrument::Mode::Collecting);
    const std::string out = Send("stop\r", 0.2);
    EXPECT_NE(out.find("OK"), std::string::npos);
    EXPECT_EQ(out.back(), '>');
    EXPECT_EQ(instrument->CurrentMode(), SimulatedInstrument::Mode::Prompt);
}

}  // namespace
}  // namespace rm::sim
