// Opening, re-opening and closing the instrument's port record, the baud rate table and the
// scan of the numbered ports, against the scripted factory.

#include "link/port_record.h"
#include "link/scripted_port.h"
#include "link_test_support.h"

#include <gtest/gtest.h>

namespace rm {
namespace {

TEST(BaudTable, IndexAndRateBothWays) {
    const int rates[] = {300, 600, 1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200};
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(BaudFromIndex(i), rates[i]);
        EXPECT_EQ(IndexFromBaud(rates[i]), i);
    }
    EXPECT_EQ(BaudFromIndex(-1), 9600);
    EXPECT_EQ(BaudFromIndex(10), 9600);
    EXPECT_EQ(IndexFromBaud(230400), 5);
    EXPECT_EQ(IndexFromBaud(0), 5);
}

TEST(PortRecord, OpenHandsTheSettingsToTheSerialLayer) {
    ScriptedPortFactory factory;
    factory.SetOpenStatus("/dev/ttyUSB1", kSerialOk);
    std::unique_ptr<SerialPort> slot;
    EXPECT_EQ(OpenPortRecord(factory, slot, "/dev/ttyUSB1", 38400, 2, 3, 1, 0x2000), 1);
    ASSERT_NE(slot, nullptr);
    EXPECT_TRUE(slot->IsOpen());
    ASSERT_EQ(factory.Opens().size(), 1u);
    EXPECT_EQ(test::OpenText(factory.Opens()[0]), "/dev/ttyUSB1 38400 O 8 2 8192 8192");
}

TEST(PortRecord, OpenTellsAMissingPortFromOneThatCannotBeHad) {
    ScriptedPortFactory factory;
    factory.SetOpenStatus("/dev/busy", kSerialCannotOpen);
    factory.SetOpenStatus("/dev/odd", kSerialBadSetting);
    for (const auto& [path, result] : {std::pair{"/dev/none", 0}, {"/dev/busy", -1}, {"/dev/odd", -1}}) {
        std::unique_ptr<SerialPort> slot;
        EXPECT_EQ(OpenPortRecord(factory, slot, path, 9600, 0, 3, 0, 8192), result) << path;
        EXPECT_EQ(slot, nullptr);
    }
}

TEST(PortRecord, ReopenUsesTheRecordWithoutParity) {
    ScriptedPortFactory factory;
    factory.SetOpenStatus("/dev/ttyUSB2", kSerialOk);
    SerialPortRecord record;
    record.PortIndex = 2;
    record.BaudRate = 57600;
    record.Parity = 'E';
    record.StopBitsIndex = 1;
    EXPECT_EQ(ReopenPortRecord(factory, record), 1);
    ASSERT_EQ(factory.Opens().size(), 1u);
    EXPECT_EQ(test::OpenText(factory.Opens()[0]).substr(0, 25), "/dev/ttyUSB2 57600 N 8 2 ");
    EXPECT_NE(record.Port, nullptr);
    EXPECT_EQ(ClosePortRecord(record), 1);
    EXPECT_EQ(record.Port, nullptr);
}

TEST(ScanSerialPorts, StatesOfTheEightNumberedPorts) {
    ScriptedPortFactory factory;
    factory.SetOpenStatus("/dev/ttyUSB0", kSerialOk);
    factory.SetOpenStatus("/dev/ttyUSB1", kSerialCannotOpen);
    factory.SetOpenStatus("/dev/ttyUSB5", kSerialOk);
    std::array<int, 8> states;
    states.fill(-7);
    ScanSerialPorts(factory, false, 0, states);
    EXPECT_EQ(states, (std::array<int, 8>{2, 0, 3, 3, 3, 2, 3, 3}));
    ASSERT_EQ(factory.Opens().size(), 8u);
    for (const auto& o : factory.Opens()) EXPECT_EQ(test::OpenText(o), o.path + " 9600 N 8 1 8192 8192");
}

TEST(ScanSerialPorts, ThePortInUseCountsUsableWithoutBeingTouched) {
    ScriptedPortFactory factory;
    factory.SetOpenStatus("/dev/ttyUSB3", kSerialCannotOpen);  // held by the system itself
    std::array<int, 8> states{};
    ScanSerialPorts(factory, true, 3, states);
    EXPECT_EQ(states[3], kPortUsable);
    for (const auto& o : factory.Opens()) EXPECT_NE(o.path, "/dev/ttyUSB3");
    ScanSerialPorts(factory, false, 3, states);
    EXPECT_EQ(states[3], kPortBusy);
}

}  // namespace
}  // namespace rm
