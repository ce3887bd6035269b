// The connection checks of the four devices: each outcome with its exact words, against a
// scripted instrument, GPS receiver and echo sounder.

#include "link/connection_check.h"
#include "transfer_test_support.h"

#include <gtest/gtest.h>

namespace rm {
namespace {

using test::GetReply;

const char* const kPleaseCheck = "\r\nPlease check your cable and connection settings.";
const std::string kGoodGga = "$GPGGA,123519.00,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n";
const std::string kEmptyGga = "$GPGGA,123519,,,,,0,00,,,M,,M,,*66\r\n";
const std::string kGpsEmptyTail =
    ") is being received by Ripplemark,\r\nhowever the string is either incomplete or contains no data.\r\n\r\n"
    "Possible reasons for this are:\r\n    a) The GPS receiver may not have a clear unobstructed view of the "
    "sky.\r\n    b) MultiPath errors caused by reflects from walls, tree, canyons, etc.";

std::string ConfWithReceiver(bool receiver) {
    std::string conf = test::ConfImage({});
    conf[86] = receiver ? 1 : 0;  // InternalGpsAvailable
    return conf;
}

std::string UserWithGpsSwitch(bool on) {
    std::string user = test::UserImage({});
    user[255] = on ? 1 : 0;  // EnableInternalGps, in the tail the type 16 configuration makes valid
    return user;
}

class KvrCheckTest : public test::TransferTest {
protected:
    KvrCheckFacts facts;
};

TEST_F(KvrCheckTest, NoPortASilentLineOrASiblingInstrumentIsNotFound) {
    CheckOutcome out = CheckKvr(nullptr, facts);
    EXPECT_EQ(out.result, kCheckNoPort);
    EXPECT_EQ(out.state, ConnectionState::Invalid);
    EXPECT_EQ(out.text,
              "No communications port has been selected for the KVR.\r\nPlease select a COM port and Baud Rate for "
              "your connection.");

    out = CheckKvr(&dialogue, facts);  // nothing on the line
    EXPECT_EQ(out.state, ConnectionState::Invalid);
    EXPECT_EQ(out.text, std::string("The KVR could not be found.") + kPleaseCheck);

    ScriptedPort zsnPort;
    test::ScriptAwakeInstrument(zsnPort, "\r\nZSN 1.0\r\n>");
    PromptDialogue zsn{zsnPort, prompt, ""};
    out = CheckKvr(&zsn, facts);
    EXPECT_EQ(out.text, std::string("The KVR could not be found.") + kPleaseCheck);
    EXPECT_FALSE(facts.checked);
}

TEST_F(KvrCheckTest, ARecordThatDoesNotComeNamesWhichOneWithTheStrayPoint) {
    std::string badFrame = GetReply(ConfWithReceiver(true));
    badFrame.back() ^= 0x01;  // checksum off by one
    Answer("Get CONF", badFrame);
    Ready();
    CheckOutcome out = CheckKvr(&dialogue, facts);
    EXPECT_EQ(out.text,
              "Unable to retrieve system configuration\r\n.Please check your cable and connection settings.");

    ScriptedPort port2;
    port2.OnWrite("Get CONF\r", GetReply(ConfWithReceiver(true)));
    port2.OnWrite("Get USER\r", "\r\nERROR\r\n>");
    test::ScriptAwakeInstrument(port2, test::kKvrVerReply);
    PromptDialogue second{port2, prompt, ""};
    out = CheckKvr(&second, facts);
    EXPECT_EQ(out.state, ConnectionState::Invalid);
    EXPECT_EQ(out.text, "Unable to retrieve user settings\r\n.Please check your cable and connection settings.");
    EXPECT_FALSE(facts.checked);
}

TEST_F(KvrCheckTest, AWorkingInstrumentIsFoundAndTellsItsReceiver) {
    Answer("Get CONF", GetReply(ConfWithReceiver(true)));
    Answer("Get USER", GetReply(UserWithGpsSwitch(true)));
    Ready();
    const CheckOutcome out = CheckKvr(&dialogue, facts);
    EXPECT_EQ(out.result, kCheckFound);
    EXPECT_EQ(out.state, ConnectionState::Found);
    EXPECT_EQ(out.text, "The KVR is operating correctly.");
    EXPECT_TRUE(facts.checked);
    EXPECT_TRUE(facts.gpsInstalled);
    EXPECT_TRUE(facts.internalGpsEnabled);
}

// What a listening check says when `heard` arrives 100 ms into its wait.
CheckOutcome GpsHearing(const std::string& heard) {
    ScriptedPort port;
    port.ArriveAt(100, heard);
    return CheckExternalGps(&port, nullptr);
}
CheckOutcome SounderHearing(const std::string& heard) {
    ScriptedPort port;
    port.ArriveAt(100, heard);
    return CheckEchoSounder(&port, EchoSounderSettings{}, nullptr);
}

TEST(ListeningCheckTest, ExternalGpsGivesEachOfItsOutcomes) {
    EXPECT_EQ(CheckExternalGps(nullptr, nullptr).result, kCheckNoPort);
    EXPECT_EQ(CheckExternalGps(nullptr, nullptr).text,
              "No communications port has been selected for the External GPS.\r\nPlease select a COM port and Baud "
              "Rate for your connection.");

    ScriptedPort silent;
    RecordingPrompt prompt;
    EXPECT_EQ(CheckExternalGps(&silent, &prompt).text,
              std::string("No data is being received from the GPS.") + kPleaseCheck);
    EXPECT_GE(silent.NowMs(), 5000u);  // it listened for the whole time

    EXPECT_EQ(GpsHearing(kEmptyGga).state, ConnectionState::Invalid);
    EXPECT_EQ(GpsHearing(kEmptyGga).text, "A valid GPS string (GGA" + kGpsEmptyTail);
    EXPECT_EQ(GpsHearing("$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n")
                  .text.rfind("Data is being received on this port, however Ripplemark requires\r\neither the GGA or "
                              "GXP output strings",
                              0),
              0u);

    ScriptedPort good;
    good.ArriveAt(100, kGoodGga);
    const CheckOutcome found = CheckExternalGps(&good, nullptr);
    EXPECT_EQ(found.result, kCheckFound);
    EXPECT_EQ(found.text, "The GPS system is operating correctly.");
    EXPECT_LT(good.NowMs(), 1000u);  // a fix ends the wait at once
}

TEST(ListeningCheckTest, EchoSounderGivesEachOfItsOutcomes) {
    ScriptedPort silent;
    EXPECT_EQ(CheckEchoSounder(nullptr, EchoSounderSettings{}, nullptr).text,
              "No communications port has been selected for the Echo Sounder.\r\nPlease select a COM port and Baud "
              "Rate for your connection.");
    EXPECT_EQ(CheckEchoSounder(&silent, EchoSounderSettings{}, nullptr).text,
              std::string("No data is being received from the EchoSounder.") + kPleaseCheck);

    const std::string noDepth = SounderHearing("$SDDPT,,0.5\r\n").text;
    EXPECT_EQ(noDepth.rfind("A valid Echo Sounder string (DPT) is being received by Ripplemark,\r\n", 0), 0u);
    const std::string tail = "to be in the wwater for correct ";
    ASSERT_GT(noDepth.size(), tail.size());
    EXPECT_EQ(noDepth.substr(noDepth.size() - tail.size()), tail);
    // A GPS talker on the sounder's port is not a sounder.
    EXPECT_EQ(SounderHearing(kGoodGga).text.rfind(
                  "Data is being received on this port, however Ripplemark requires\r\neither the DPT or BPT output "
                  "strings",
                  0),
              0u);
    const CheckOutcome found = SounderHearing("$SDDPT,3.4,0.5\r\n");
    EXPECT_EQ(found.state, ConnectionState::Found);
    EXPECT_EQ(found.text, "The Echo Sounder is operating correctly.");
}

class InternalGpsCheckTest : public test::TransferTest {
protected:
    KvrCheckFacts ready{true, true, true};
};

TEST_F(InternalGpsCheckTest, ItNeedsACheckedInstrumentWithItsReceiverOn) {
    EXPECT_EQ(CheckInternalGps(nullptr, ready, nullptr).result, kCheckNoPort);
    Ready();
    EXPECT_EQ(CheckInternalGps(&dialogue, {false, true, true}, nullptr).text,
              "The KVR must be checked (connected to)\r\nbefore Internal GPS settings can be set.");
    EXPECT_EQ(CheckInternalGps(&dialogue, {true, false, true}, nullptr).text,
              "Internal GPS is not available on this KVR.");
    EXPECT_EQ(CheckInternalGps(&dialogue, {true, true, false}, nullptr).text,
              "Internal GPS has been disabled.\r\nTo enable Internal GPS, click the Internal GPS check box\r\nand "
              "press OK.");
    EXPECT_TRUE(port.Written().empty());  // none of these talks to the instrument
}

TEST_F(InternalGpsCheckTest, TheInstrumentRepeatsItsReceiversFix) {
    port.OnWrite("echo 1\r", kGoodGga, 500);  // after the drain that opens the listening
    Ready();
    const CheckOutcome out = CheckInternalGps(&dialogue, ready, nullptr);
    EXPECT_EQ(out.text, "The GPS system is operating correctly.");
    EXPECT_NE(port.Written().find("echo 1\r"), std::string::npos);
}

TEST_F(InternalGpsCheckTest, EachFailingStepHasItsOwnText) {
    EXPECT_EQ(CheckInternalGps(&dialogue, ready, nullptr).text,
              "Unable to connect to the KVR on this port.\r\nPlease check your cables and try again.");

    ScriptedPort garbled;
    test::ScriptAwakeInstrument(garbled, test::kKvrVerReply);
    garbled.SetEchoFilter([](uint8_t b) { return b == '1' ? int{'2'} : int{b}; });  // "echo 1" never echoes right
    PromptDialogue second{garbled, prompt, ""};
    EXPECT_EQ(CheckInternalGps(&second, ready, nullptr).text,
              "Unable to open connection to the Internal GPS.\r\nPlease check your cables and try again.");

    ScriptedPort quiet;
    test::ScriptAwakeInstrument(quiet, test::kKvrVerReply);
    PromptDialogue third{quiet, prompt, ""};
    EXPECT_EQ(CheckInternalGps(&third, ready, nullptr).text,
              "No data is being received from the Internal GPS.\r\nPlease check the cable to the GPS receiver.");
}

TEST(ConnectionRowsTest, TroubleShootingBoxesNameTheDevice) {
    EXPECT_EQ(TroubleShootingTitle(kDeviceEchoSounder), "Echo Sounder TroubleShooting");
    EXPECT_EQ(RetryQuestion(kDeviceKvr), "Do you want to try connecting to the KVR again?");
    EXPECT_EQ(RetryQuestion(kDeviceExternalGps), "Do you want to try connecting to the External GPS again?");
    EXPECT_TRUE(GpsChoiceConflicts(true, true));
    EXPECT_FALSE(GpsChoiceConflicts(true, false));
}

}  // namespace
}  // namespace rm
