// The simulated instrument on a pseudo-terminal, driven by the project's link code as the
// application drives a real one.

#include <cstdio>
#include <fstream>

#include <nlohmann/json.hpp>

#include "link/collection_start.h"
#include "link/logged_reads.h"
#include "link/nmea_port_reader.h"
#include "link/prepare_collection.h"
#include "link/profile_sizes.h"
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

// The end of the start answer's last line stands before the first frame.
constexpr size_t kStartAnswerTail = 2;

using InstrumentOnLine = LiveDevice;

TEST_F(InstrumentOnLine, UserSetupRetrievalReadsRecordsAndLimits) {
    Launch({"instrument", "--cells", "24", "--serial", "R2D2", "--cpu-version", "120"});
    ASSERT_FALSE(HasFatalFailure());
    CKvrData kvr;
    InstrumentLinkState state;
    ASSERT_EQ(RetrieveUserSetup(*dialogue, kvr, state), kRetrievalDone) << ::testing::PrintToString(prompt.messages);
    uint8_t cpu = 0;  // the firmware byte is the fifth character of the "Ver" line
    EXPECT_EQ(ReadInstrumentVersion(*dialogue, cpu), 1);
    EXPECT_EQ(cpu, 120);
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

// The setup sent shapes the frames; in pulse-coherent mode the start goes by the mode's own
// dialogue and the frames carry the 36-byte shallow-water block.
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
    kvr.user.PCMode = 1;
    kvr.user.AveragingInterval = kvr.user.ProfileInterval = 10;  // tenths of a second in this mode
    ASSERT_EQ(TransmitUserSettings(*dialogue, kvr), 1) << ::testing::PrintToString(prompt.messages);
    kvr.user.NumberOfCells = 0;
    ASSERT_EQ(GetUserRecord(*dialogue, kvr, state), 1);
    EXPECT_EQ(kvr.user.NumberOfCells, 12);
    ASSERT_EQ(state.PCMode, 1);
    state.Sizes = ComputeProfileSizes(kvr.conf, kvr.user, state);
    // 12 cells x 4 beams x 4 bytes + 80 header + 36 shallow water + 18 bottom track + 2 checksum.
    ASSERT_EQ(state.Sizes.ProfileSize, 4 * 12 * 4 + 136);
    ASSERT_EQ(SetBinaryOutput(*dialogue, true), 1) << ::testing::PrintToString(prompt.messages);
    ASSERT_EQ(StartCollection(*dialogue, true), 1) << ::testing::PrintToString(prompt.messages);
    for (uint32_t n = 1; n <= 2; ++n) {
        Frame f;
        ASSERT_TRUE(ReadFrame(*port, static_cast<size_t>(state.Sizes.ProfileSize), f));
        EXPECT_TRUE(f.checksumGood);
        EXPECT_EQ(f.Number(), n);
    }
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

TEST_F(InstrumentOnLine, AnEchoLessInstrumentFailsTheCharacterDialogue) {
    Launch({"instrument", "--no-echo"});
    ASSERT_FALSE(HasFatalFailure());
    char echo = 0;
    EXPECT_FALSE(SendCharEchoed(*port, 'V', echo, nullptr));
}

TEST_F(InstrumentOnLine, DevicesServeProgramAfterProgramUntilStoppedAndWithOnceOnlyTheFirst) {
    // The instrument and a GPS receiver, each closed by the program that used it: well after the
    // grace period both still serve the next program.
    Launch({"instrument"});
    ASSERT_FALSE(HasFatalFailure());
    sim::SimDeviceProcess gpsProcess;
    ASSERT_TRUE(gpsProcess.Start(sim::KvrSimProgram(), {"gps", "--rate", "5"}, scratch.File("gps.err")))
        << gpsProcess.Error();
    auto promptComes = [&] {
        port->WriteStringTimed(" ", kLineEnd, 100);
        std::string answer;
        return ReadUntilPattern(*port, answer, 64, ">", 2000, nullptr, nullptr) == 1;
    };
    auto fixComes = [&] {
        PosixSerialPort gpsPort(gpsProcess.DevicePath(), 4800, 'N', 8, 1, 8192);
        NmeaPortReader gps = MakeGpsPortReader();
        int bytes = 0;
        return gpsPort.Status() == kSerialOk && WaitForFix(gps, &gpsPort, 3000, nullptr, bytes, nullptr) == 1;
    };
    ASSERT_TRUE(promptComes());
    ASSERT_TRUE(fixComes());
    dialogue.reset();
    port.reset();
    const int wellPastGraceMs = static_cast<int>(sim::kPeerGoneGraceS * 1000) + 1500;
    EXPECT_EQ(process.WaitForExit(wellPastGraceMs), -1);
    EXPECT_EQ(gpsProcess.WaitForExit(0), -1);
    port = std::make_unique<PosixSerialPort>(process.DevicePath(), 9600, 'N', 8, 1, 8192);
    EXPECT_TRUE(promptComes());
    EXPECT_TRUE(fixComes());
    EXPECT_EQ(gpsProcess.Stop(), 0);
    port.reset();
    EXPECT_EQ(process.Stop(), 0);

    // With --once the device ends once its first program has closed it.
    Launch({"instrument", "--once"});
    ASSERT_FALSE(HasFatalFailure());
    ASSERT_TRUE(promptComes());
    port.reset();
    dialogue.reset();
    EXPECT_EQ(process.WaitForExit(static_cast<int>(sim::kPeerGoneGraceS * 1000) + 3000), 0);
}

}  // namespace
}  // namespace rm::simtest
