// Pressure and depth calibration: taking samples from the sensor text, the mean over a run
// against a scripted instrument, and what each finish sends or stores.

#include "link/pressure_calibration.h"
#include "data/system_tree.h"
#include "transfer_test_support.h"

#include <gtest/gtest.h>

namespace rm {
namespace {

TEST(SensorSampleTest, TheLastPressureBeforeItsBatteryIsTakenOnce) {
    std::string text = "Pressure = 9.000 dbar\r\nBattery = 12.1 V\r\nPressure = 10.250 dbar\r\nBattery = 12.0 V\r\n";
    double value = 0.0;
    ASSERT_TRUE(TakeSensorSample(text, value));
    EXPECT_DOUBLE_EQ(value, 10.25);
    EXPECT_EQ(text, " = 12.0 V\r\n");
    EXPECT_FALSE(TakeSensorSample(text, value));  // the same sample is not taken again
}

TEST(SensorSampleTest, AnUnfinishedLineWaitsAndNoNumberOrNoBatteryGivesNoSample) {
    std::string text = "Temp = 11.0\r\nPressure = 3.5";
    double value = -1.0;
    EXPECT_FALSE(TakeSensorSample(text, value));
    EXPECT_EQ(text, "Pressure = 3.5");
    text += "00 dbar\r\nBattery = 12.0 V";
    ASSERT_TRUE(TakeSensorSample(text, value));
    EXPECT_DOUBLE_EQ(value, 3.5);

    for (std::string other :
         {"Pressure = ---- dbar\r\nBattery = 12.0 V", "Pressure = 4.0 dbar\r\nTemperature = 11.0\r\n"}) {
        EXPECT_FALSE(TakeSensorSample(other, value)) << other;
        EXPECT_DOUBLE_EQ(value, 3.5);
    }
}

TEST(SensorTextTest, ValuesShowInTheChosenUnits) {
    EXPECT_EQ(FormatSensorValue(SensorCalibrationKind::Pressure, 1, 10.0), " 10.000");
    EXPECT_EQ(FormatSensorValue(SensorCalibrationKind::Pressure, 0, 10.0), " 14.504");  // 14.50377 psi
    EXPECT_EQ(FormatSensorValue(SensorCalibrationKind::Depth, 0, 2.0), "   6.56");       // 6.56168 ft
    EXPECT_EQ(MeanValueLabel(SensorCalibrationKind::Pressure, 0), "Calculated Mean Pressure (psi)");
    EXPECT_EQ(CurrentValueLabel(SensorCalibrationKind::Depth, 1), "Current Measured Depth (m)");
    EXPECT_EQ(PressureOffsetCommand(10.5), "pressoffset set  10.500");
    EXPECT_EQ(TransducerDepthText(1.25, 0), "Transducer depth set to 4.10 (ft).");  // 4.101 ft
}

class SensorRunTest : public test::TransferTest {
protected:
    void ScriptSensorOutput() {
        port.OnWrite("sensor cont\r",
                     "\r\nPressure = 10.000 dbar\r\nBattery = 12.0 V\r\n"
                     "Pressure = 10.500 dbar\r\nBattery = 12.0 V\r\n"
                     "Pressure = 11.000 dbar\r\nBattery = 12.0 V\r\n",
                     100);
    }
    void RunThreeSamples(SensorCalibration& calibration) {
        ASSERT_EQ(calibration.Start(), 1);
        port.SleepMs(200);
        for (int i = 0; i < 3; ++i) EXPECT_TRUE(calibration.Tick());
        EXPECT_FALSE(calibration.Tick());  // nothing more came
        EXPECT_EQ(calibration.Count(), 3);
        EXPECT_DOUBLE_EQ(calibration.Current(), 11.0);
        EXPECT_DOUBLE_EQ(calibration.Mean(), 10.5);
    }
};

TEST_F(SensorRunTest, ThePressureMeanIsSentAsTheOffset) {
    prompt.savePath = dir.File("cal.pressure");
    ScriptSensorOutput();
    port.OnWrite("pressoffset set  10.500\r", "\r\nOK\r\n>");
    Ready();
    SensorCalibration calibration(SensorCalibrationKind::Pressure, dialogue);
    RunThreeSamples(calibration);
    EXPECT_EQ(calibration.FinishPressure(), 1);
    EXPECT_TRUE(prompt.messages.empty());
    EXPECT_EQ(prompt.progressTexts.front(), "Retrieving KVR Settings");
    EXPECT_EQ(prompt.progressTexts[1], "Interfacing with KVR");
    EXPECT_EQ(prompt.progressTexts.back(), "Interfacing with System");
    const std::string log = test::ReadWholeFile(dir.File("cal.pressure"));
    EXPECT_EQ(log.rfind("Pressure Calibration File\r\n", 0), 0u);
    EXPECT_NE(log.find("Pressure = 11.000 dbar"), std::string::npos);
}

TEST_F(SensorRunTest, StoppingBeforeASampleSendsNothing) {
    prompt.savePath = dir.File("cal.pressure");
    Ready();
    SensorCalibration calibration(SensorCalibrationKind::Pressure, dialogue);
    ASSERT_EQ(calibration.Start(), 1);
    EXPECT_FALSE(calibration.Tick());
    const size_t written = port.Written().size();
    EXPECT_EQ(calibration.FinishPressure(), 0);
    EXPECT_EQ(prompt.messages, std::vector<std::string>{"No Pressure Calibration Data collected"});
    EXPECT_EQ(port.Written().size(), written);

    SensorCalibration depth(SensorCalibrationKind::Depth, dialogue);
    NodeRef system = NodeRef::MakeNew();
    EXPECT_EQ(depth.FinishDepth(system), 0);
    EXPECT_EQ(prompt.messages.back(), "No Depth Data collected");
    EXPECT_LT(SystemOtherNode(system).FindIndex("AutoMountingDepthInCm"), 0);
}

TEST_F(SensorRunTest, TheDepthMeanBecomesTheTransducerDepth) {
    prompt.savePath = dir.File("cal.depth");
    ScriptSensorOutput();
    Ready();
    SensorCalibration calibration(SensorCalibrationKind::Depth, dialogue);
    RunThreeSamples(calibration);
    NodeRef system = NodeRef::MakeNew();
    SystemOtherNode(system).SetValue("UnitSystem", Variant(int16_t{1}));
    EXPECT_EQ(calibration.FinishDepth(system), 1);
    EXPECT_EQ(SystemOtherNode(system).GetTyped<int16_t>("AutoMountingDepthInCm", int16_t{0}), 1050);
    EXPECT_EQ(prompt.titles, std::vector<std::string>{"Transducer Depth Set"});
    EXPECT_EQ(prompt.messages, std::vector<std::string>{"Transducer depth set to 10.50 (m)."});
    EXPECT_EQ(test::ReadWholeFile(dir.File("cal.depth")).rfind("Depth Calibration File\r\n", 0), 0u);

    const size_t breaks = port.Breaks().size();
    calibration.Close();  // the sensor output is ended by a wake-up from a break
    EXPECT_EQ(port.Breaks().size(), breaks + 1);
}

}  // namespace
}  // namespace rm
