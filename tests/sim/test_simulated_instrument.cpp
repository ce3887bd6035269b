// The simulated instrument's command line and collection, driven byte by byte without a line.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "data/byte_io.h"
#include "data/instrument_records.h"
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

TEST_F(InstrumentAtPrompt, FailureModesChangeWhatComesBack) {
    InstrumentBehaviour silent;
    silent.silent = true;
    Make(silent);
    EXPECT_EQ(Send(" Ver\r\x00"), "");
    InstrumentBehaviour mute;
    mute.echo = false;
    Make(mute);
    EXPECT_EQ(Send(" "), "\r\n>");  // a fresh prompt, but no echo of the blank
    InstrumentBehaviour asleep;
    asleep.startAsleep = true;
    Make(asleep);
    EXPECT_EQ(Send("Ver\r"), "");
    EXPECT_NE(Send(std::string(1, '\0')).find("Command mode\r\n>"), std::string::npos);
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

TEST_F(InstrumentAtPrompt, StopCommandEndsCollectionAndAnswersWithThePrompt) {
    Send("Start\r", 0.0);
    EXPECT_EQ(instrument->CurrentMode(), SimulatedInstrument::Mode::Collecting);
    const std::string out = Send("stop\r", 0.2);
    EXPECT_NE(out.find("OK"), std::string::npos);
    EXPECT_EQ(out.back(), '>');
    EXPECT_EQ(instrument->CurrentMode(), SimulatedInstrument::Mode::Prompt);
}

TEST_F(InstrumentAtPrompt, SiblingFamiliesNameThemselves) {
    InstrumentBehaviour b;
    b.family = InstrumentFamily::Skiffjack;
    Make(b);
    EXPECT_NE(Send("Ver\r").find("TLM"), std::string::npos);
    EXPECT_EQ(Send("systemtype\r").find("ZSN"), std::string::npos);
    b.family = InstrumentFamily::Zsn;
    Make(b);
    const std::string out = Send("Ver\r");
    EXPECT_NE(out.find("ZSN"), std::string::npos);
    EXPECT_EQ(out.find("KVR"), std::string::npos);
}

}  // namespace
}  // namespace rm::sim
