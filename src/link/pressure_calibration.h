#pragma once
// The pressure and depth calibrations: the instrument prints its live sensor values ("sensor
// cont") for a while, the program takes the mean of the pressure in dbar, and then either sends
// it to the instrument as its pressure offset or keeps it as the transducer's mounting depth.
// The whole dialogue goes to a ".pressure" or ".depth" log.

#include "data/node_tree.h"
#include "link/prompt_dialogue.h"
#include "link/raw_log.h"

#include <cstdint>
#include <memory>
#include <string>

namespace rm {

enum class SensorCalibrationKind { Pressure, Depth };

constexpr const char* kInterfacingWithSystemText = "Interfacing with System";
constexpr const char* kNoPressureDataText = "No Pressure Calibration Data collected";
constexpr const char* kNoDepthDataText = "No Depth Data collected";
constexpr const char* kTransducerDepthSetTitle = "Transducer Depth Set";
constexpr const char* kSensorWakeErrorTitle = "Communication Error";
constexpr const char* kSensorWakeErrorText = "Unable to wake up system";
constexpr const char* kSensorCommandErrorText = "Unable to start the sensor output";
constexpr const char* kPressureOffsetErrorText = "Unable to set the pressure offset";
constexpr double kPsiPerDbar = 1.450377;
constexpr double kFeetPerMetre = 3.28084;
// The text the ticks work through never holds more than this.
constexpr size_t kSensorTextBufferSize = 8192;

// The labels of the current value and the mean, by kind and unit system (1 metric).
std::string CurrentValueLabel(SensorCalibrationKind kind, int unitSystem);
std::string MeanValueLabel(SensorCalibrationKind kind, int unitSystem);
// A value in dbar (pressure) or metres (depth) shown in the unit system: "%7.3f" in dbar or
// psi, "%7.2f" in metres or feet.
std::string FormatSensorValue(SensorCalibrationKind kind, int unitSystem, double value);

// Takes the newest sample from the sensor text: the number between the last "Pressure =" and
// the first "Battery" after it. The text is shortened to what follows that "Battery" (or, with
// no "Battery" after the last "Pressure =", to the text from that "Pressure =" on), so no sample
// is taken twice and an unfinished line waits for its end. True with `value` when a number
// stood there.
bool TakeSensorSample(std::string& text, double& value);

// "pressoffset set" and the mean as "%s %7.3f".
std::string PressureOffsetCommand(double meanDbar);
// "Transducer depth set to %.2f (m)." or "... (ft).".
std::string TransducerDepthText(double metres, int unitSystem);

class SensorCalibration {
public:
    SensorCalibration(SensorCalibrationKind kind, PromptDialogue& dialogue);
    ~SensorCalibration();
    SensorCalibration(const SensorCalibration&) = delete;
    SensorCalibration& operator=(const SensorCalibration&) = delete;

    // Asks for the log, wakes the instrument and starts its sensor output. 1 running; 0 the
    // person cancelled; -1 the log could not be made; -2 no instrument woke; -3 the command was
    // not taken. Every failure but the cancel has shown its box.
    int Start();
    // One timer tick: reads what arrived (copied to the log) and takes a sample when a whole one
    // is there. True when a sample was taken.
    bool Tick(int rounds = 250);

    int Count() const { return count_; }
    double Current() const { return current_; }
    // The mean of the samples; 0 without any.
    double Mean() const { return count_ > 0 ? static_cast<double>(sum_ / static_cast<float>(count_)) : 0.0; }
    bool Running() const { return running_; }

    // Pressure: wakes the instrument and sends the mean as its pressure offset. 1 sent; 0 no
    // sample ("No Pressure Calibration Data collected", nothing sent); -1 failed (after a box).
    int FinishPressure();
    // Depth: stores the mean as `AutoMountingDepthInCm` (centimetres) under `system`'s `Other`
    // and shows it in the unit system of `Other/UnitSystem`. 1 stored; 0 no sample ("No Depth
    // Data collected", nothing stored).
    int FinishDepth(const NodeRef& system);
    // Ends the instrument's sensor output with a wake-up, when it is running.
    void Close();

private:
    SensorCalibrationKind kind_;
    PromptDialogue& dialogue_;
    std::unique_ptr<RawLog> log_;
    bool running_ = false;
    std::string text_;
    float sum_ = 0.0f;
    int count_ = 0;
    double current_ = 0.0;
};

}  // namespace rm
