// Each record fetched from the scripted instrument and decoded into the document, what the
// document learns from it, and sending the user setup back.

#include "link/record_transfer.h"
#include "link/variable_structure.h"
#include "transfer_test_support.h"

#include <gtest/gtest.h>

namespace rm {
namespace {

using test::GetReply;

class RecordTransferTest : public test::TransferTest {};

TEST_F(RecordTransferTest, TheConfigurationIsDecodedAndChoosesTheSources) {
    test::ConfSpec fields;
    fields.beams = 4;
    fields.ctd = 1;
    fields.extSensor = 1;
    Answer("Get CONF", GetReply(test::ConfImage(fields)));
    Answer("Get CONF", GetReply(test::ConfImage({})), true);
    Ready();
    ASSERT_EQ(GetConfRecord(dialogue, kvr, state), 1);
    EXPECT_EQ(kvr.conf.Nbeams, 4);
    EXPECT_EQ(kvr.conf.SerialNumber, "SN4711");
    EXPECT_EQ(state.CtdDataPresent, 1);
    EXPECT_EQ(state.ExtSensorDataPresent, 1);
    EXPECT_EQ(state.TemperatureSource, kSourceCtd);
    EXPECT_EQ(state.SalinitySource, kSourceCtd);

    // Without a CTD the user's values serve, but only where nothing was chosen yet.
    ASSERT_EQ(GetConfRecord(dialogue, kvr, state), 1);
    EXPECT_EQ(state.CtdDataPresent, 0);
    EXPECT_EQ(state.TemperatureSource, kSourceCtd);
    state = InstrumentLinkState();
    ASSERT_EQ(GetConfRecord(dialogue, kvr, state), 1);
    EXPECT_EQ(state.TemperatureSource, kSourceUser);
    EXPECT_EQ(state.SalinitySource, kSourceUser);
}

TEST_F(RecordTransferTest, AConfigurationWithABadChecksumIsNotTaken) {
    std::string reply = GetReply(test::ConfImage({}));
    reply.back() ^= 0x40;
    Answer("Get CONF", reply);
    Ready();
    kvr.conf.Nbeams = 2;
    EXPECT_EQ(GetConfRecord(dialogue, kvr, state), 0);
    EXPECT_EQ(kvr.conf.Nbeams, 2);
    EXPECT_EQ(prompt.messages, (std::vector<std::string>{" Bad CheckSum getting System Variable Structure: ",
                                                         "Failed to get the Kvr Sensor Configuration"}));
}

TEST_F(RecordTransferTest, TheUserSetupSetsTheCollectionModes) {
    test::UserSpec fields;
    fields.cells = 33;
    fields.bottomTrack = 2;
    fields.waveInterval = 5;
    fields.pseriesLength = 512;
    Answer("Get CONF", GetReply(test::ConfImage({})));
    Answer("Get USER", GetReply(test::UserImage(fields)));
    Ready();
    ASSERT_EQ(GetConfRecord(dialogue, kvr, state), 1);
    ASSERT_EQ(GetUserRecord(dialogue, kvr, state), 1);
    EXPECT_EQ(kvr.user.NumberOfCells, 33);
    EXPECT_EQ(kvr.user.DeploymentName, "RIVER");
    EXPECT_EQ(state.BottomTrackMode, 2);
    EXPECT_EQ(state.PCMode, 1);  // the shallow-water ping runs in pulse-coherent mode
    EXPECT_EQ(state.WavesEnabled, 5);
    EXPECT_EQ(state.Waves.length, 512);
}

TEST_F(RecordTransferTest, EachRecordFailsWithItsOwnWords) {
    Answer("Get USER", "\r\nERROR\r\n>");
    Answer("Get OPER", "\r\nERROR\r\n>");
    Ready();
    EXPECT_EQ(GetUserRecord(dialogue, kvr, state), 0);
    EXPECT_EQ(GetOperRecord(dialogue, kvr), 0);
    EXPECT_EQ(prompt.messages,
              (std::vector<std::string>{kGetStructureErrorText, "Failed to get the Kvr User Setup Configuration",
                                        kGetStructureErrorText, "Failed to get the Kvr Operation Configuration"}));
}

TEST_F(RecordTransferTest, TransmittingTheSetupWritesTheEncodedImage) {
    ASSERT_EQ(DecodeConf(reinterpret_cast<const uint8_t*>(test::ConfImage({}).data()), 96, kvr.conf),
              RecordStatus::Ok);
    const std::string held = test::UserImage({});
    ASSERT_EQ(DecodeUser(reinterpret_cast<const uint8_t*>(held.data()), 256, kvr.conf, kvr.user), RecordStatus::Ok);
    Answer("Get USER", GetReply(held));
    Ready();
    EXPECT_EQ(TransmitUserSettings(dialogue, kvr), 1);
    EXPECT_EQ(prompt.progressTexts, std::vector<std::string>{"Transferring User Parameters"});
    // The decoded setup re-encodes to what the instrument holds, so nothing is loaded.
    EXPECT_EQ(Commands(), (std::vector<std::string>{"Ver", "Get USER"}));
}

}  // namespace
}  // namespace rm
