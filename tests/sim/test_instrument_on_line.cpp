// The simulated instrument on a pseudo-terminal, driven by the project's link code as the
// application drives a real one.

#include <cstdio>
#include <fstream>

#include <nlohmann/json.hpp>

#include "link/collection_start.h"
#include "link/logged_reads.h"
#include "link/prepare_collection.h"
#include "link/record_transfer.h"
#include "link/user_setup_retrieval.h"
#include "link/wake_up.h"
#include "live_device_fixture.h"
#include "sim/device_server.h"
#include "sim/live_transect.h"
#include "sim/river_scenario.h"

namespace rm::simtest {
namespace {

using Args = std::vector<std::string>;

// The default instrument: 20 cells x 4 beams x 4 bytes + 80 header + 18 bottom track + 2 checksum.
constexpr size_t kDefaultFrameSize = 4 * 20 * 4 + 82 + 18;
// The end of the start answer's last line stands before the first frame.
constexpr size_t kStartAnswerTail = 2;

class InstrumentOnLine : public LiveDevice {
protected:
    // Starts collecting with `extra` options and reads `count` frames.
    std::vector<Frame> CollectFrames(const Args& extra, int count) {
        Args args{"instrument", "--interval", "0.1"};
        args.insert(args.end(), extra.begin(), extra.end());
        Launch(args);
        std::vector<Frame> frames;
        if (HasFatalFailure()) return frames;
        EXPECT_EQ(StartCollection(*dialogue, false), 1);
        for (int i = 0; i < count; ++i) {
            Frame f;
            if (!ReadFrame(*port, kDefaultFrameSize, f)) break;
            frames.push_back(f);
        }
        return frames;
    }
};

TEST_F(InstrumentOnLine, WakeUpTellsEachFamily) {
    const std::pair<const char*, int> cases[] = {{"kvr", kWakeKvr}, {"skiffjack", kWakeSkiffjack}, {"zsn", kWakeZsn}};
    for (const auto& [family, expected] : cases) {
        Launch({"instrument", "--family", family});
        ASSERT_FALSE(HasFatalFailure());
        EXPECT_EQ(WakeInstrument(*dialogue, 0, nullptr, nullptr), expected) << family;
        TearDown();
    }
}

TEST_F(InstrumentOnLine, VersionCarriesTheFirmwareByte) {
    Launch({"instrument", "--cpu-version", "120"});
    ASSERT_FALSE(HasFatalFailure());
    uint8_t cpu = 0;
    EXPECT_EQ(ReadInstrumentVersion(*dialogue, cpu), 1);
    EXPECT_EQ(cpu, 120);
}

TEST_F(InstrumentOnLine, UserSetupRetrievalReadsRecordsAndLimits) {
    Launch({"instrument", "--cells", "24", "--serial", "R2D2"});
    ASSERT_FALSE(HasFatalFailure());
    CKvrData kvr;
    InstrumentLinkState state;
    ASSERT_EQ(RetrieveUserSetup(*dialogue, kvr, state), kRetrievalDone) << ::testing::PrintToString(prompt.messages);
    EXPECT_EQ(kvr.conf.SerialNumber, "R2D2");
    EXPECT_EQ(kvr.user.NumberOfCells, 24);
    EXPECT_EQ(state.BottomTrackMode, 1);
    EXPECT_DOUBLE_EQ(state.MinCellSize, 5.0);
    EXPECT_DOUBLE_EQ(state.MaxCellSize, 400.0);
    EXPECT_EQ(state.MaxNumberOfCells, 100);
    EXPECT_EQ(state.BottomTrackAvailable, 1);
}

TEST_F(InstrumentOnLine, UpLookingSystemIsRefusedAtTheConfiguration) {
    Launch({"instrument", "--orientation", "up"});
    ASSERT_FALSE(HasFatalFailure());
    CKvrData kvr;
    InstrumentLinkState state;
    EXPECT_EQ(RetrieveUserSetup(*dialogue, kvr, state), -kStepConfiguration);
    ASSERT_FALSE(prompt.messages.empty());
    EXPECT_NE(prompt.messages.back().find(" will only operate with DOWN looking systems"), std::string::npos);
}

TEST_F(InstrumentOnLine, TransmittedUserSetupShapesTheFrames) {
    Launch({"instrument", "--interval", "0.1", "--max-profiles", "2"});
    ASSERT_FALSE(HasFatalFailure());
    CKvrData kvr;
    InstrumentLinkState state;
    const sim::InstrumentRecords records = sim::BuildInstrumentRecords(sim::RiverScenario{});
    kvr.conf = records.conf;
    kvr.oper = records.oper;
    kvr.user = records.user;
    kvr.user.NumberOfCells = 12;
    ASSERT_EQ(TransmitUserSettings(*dialogue, kvr), 1) << ::testing::PrintToString(prompt.messages);
    kvr.user.NumberOfCells = 0;
    ASSERT_EQ(GetUserRecord(*dialogue, kvr, state), 1);
    EXPECT_EQ(kvr.user.NumberOfCells, 12);
    ASSERT_EQ(StartCollection(*dialogue, false), 1);
    Frame f;
    // 12 cells x 4 beams x 4 bytes + 80 header + 18 bottom track + 2 checksum.
    ASSERT_TRUE(ReadFrame(*port, 4 * 12 * 4 + 100, f));
    EXPECT_TRUE(f.checksumGood);
}

TEST_F(InstrumentOnLine, PreparedCollectionSendsCheckedFramesUntilABreak) {
    const std::string truthPath = scratch.File("truth.json");
    Launch({"instrument", "--interval", "0.1", "--max-profiles", "3", "--truth", truthPath}, false);
    ASSERT_FALSE(HasFatalFailure());
    PosixSerialPortFactory factory;
    SerialPortRecord record;
    record.PortPath = process.DevicePath();
    CKvrData kvr;
    InstrumentLinkState state;
    ASSERT_EQ(PrepareCollection(factory, record, prompt, kvr, state, ""), kPrepareStarted)
        << ::testing::PrintToString(prompt.messages);
    ASSERT_EQ(state.Sizes.ProfileSize, 4 * 20 * 4 + 82 + 18);
    for (uint32_t n = 1; n <= 3; ++n) {
        Frame f;
        ASSERT_TRUE(ReadFrame(*record.Port, static_cast<size_t>(state.Sizes.ProfileSize), f));
        EXPECT_EQ(f.skipped, n == 1 ? kStartAnswerTail : 0u);
        EXPECT_TRUE(f.checksumGood);
        EXPECT_EQ(f.Number(), n);
    }
    // The break ends the collection: the instrument is at its prompt again and tells its truth.
    PromptDialogue again(*record.Port, prompt, "");
    EXPECT_EQ(WakeInstrument(again, 0, nullptr, nullptr), kWakeKvr);
    std::ifstream in(truthPath);
    ASSERT_TRUE(in.good());
    const nlohmann::json truth = nlohmann::json::parse(in);
    EXPECT_EQ(truth["profiles"].get<int>(), 3);
    EXPECT_GT(truth["discharge"].get<double>(), 0.0);
}

TEST_F(InstrumentOnLine, NoiseBeforeFramesIsSkippedByTheSyncSearch) {
    const std::vector<Frame> frames = CollectFrames({"--noise-before-frames", "--max-profiles", "2"}, 2);
    ASSERT_EQ(frames.size(), 2u);
    EXPECT_EQ(frames[0].skipped, kStartAnswerTail + sim::FrameNoise().size());
    EXPECT_EQ(frames[1].skipped, sim::FrameNoise().size());
    for (const Frame& f : frames) EXPECT_TRUE(f.checksumGood);
}

TEST_F(InstrumentOnLine, EverySecondFrameHasABadChecksum) {
    const std::vector<Frame> frames = CollectFrames({"--bad-checksum-every", "2", "--max-profiles", "3"}, 3);
    ASSERT_EQ(frames.size(), 3u);
    EXPECT_TRUE(frames[0].checksumGood);
    EXPECT_FALSE(frames[1].checksumGood);
    EXPECT_TRUE(frames[2].checksumGood);
}

TEST_F(InstrumentOnLine, LostFrameLeavesAGapInTheNumbers) {
    const std::vector<Frame> frames = CollectFrames({"--lose-frame", "2", "--max-profiles", "3"}, 2);
    ASSERT_EQ(frames.size(), 2u);
    EXPECT_EQ(frames[0].Number(), 1u);
    EXPECT_EQ(frames[1].Number(), 3u);
}

TEST_F(InstrumentOnLine, RestartedNumberingCountsFromOneAgain) {
    const std::vector<Frame> frames = CollectFrames({"--restart-numbering-at", "3", "--max-profiles", "4"}, 4);
    ASSERT_EQ(frames.size(), 4u);
    const uint32_t expected[] = {1, 2, 1, 2};
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(frames[i].Number(), expected[i]);
        EXPECT_TRUE(frames[i].checksumGood);
    }
}

TEST_F(InstrumentOnLine, SilentAndEchoLessInstrumentsFailTheDialogue) {
    Launch({"instrument", "--silent"});
    ASSERT_FALSE(HasFatalFailure());
    port->WriteStringTimed(" ", kLineEnd, 100);
    std::string banner;
    EXPECT_EQ(ReadUntilPattern(*port, banner, 512, ">", 300, nullptr, nullptr), 0);
    EXPECT_TRUE(banner.empty());
    TearDown();

    Launch({"instrument", "--no-echo"});
    ASSERT_FALSE(HasFatalFailure());
    char echo = 0;
    EXPECT_FALSE(SendCharEchoed(*port, 'V', echo, nullptr));
}

TEST_F(InstrumentOnLine, EndsWhenTheOtherSideCloses) {
    Launch({"instrument"});
    ASSERT_FALSE(HasFatalFailure());
    port->WriteStringTimed(" ", kLineEnd, 100);
    std::string answer;
    ASSERT_EQ(ReadUntilPattern(*port, answer, 64, ">", 2000, nullptr, nullptr), 1);
    port.reset();
    dialogue.reset();
    EXPECT_EQ(process.WaitForExit(static_cast<int>(sim::kPeerGoneGraceS * 1000) + 3000), 0);
}

}  // namespace
}  // namespace rm::simtest
