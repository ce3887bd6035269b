#include "link/pressure_calibration.h"

#include "data/system_tree.h"
#include "data/variant.h"
#include "link/calibration_log.h"
#include "link/logged_reads.h"
#include "link/user_setup_retrieval.h"
#include "link/wake_up.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace rm {

namespace {

constexpr const char* kPressureMark = "Pressure =";
constexpr const char* kBatteryMark = "Battery";
constexpr uint32_t kPressureOffsetLimitMs = 3000;

bool Metric(int unitSystem) { return unitSystem == 1; }

std::string Printf(const char* format, double value) {
    char text[96];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

// The unit system of the setup's messages; a value that does not read counts as metric.
int UnitSystemOf(const NodeRef& system) {
    try {
        return SystemOtherNode(system).GetTyped<int16_t>("UnitSystem", int16_t{1});
    } catch (const VariantConversionError&) {
        return 1;
    }
}

}  // namespace

std::string CurrentValueLabel(SensorCalibrationKind kind, int unitSystem) {
    if (kind == SensorCalibrationKind::Pressure) {
        return Metric(unitSystem) ? "Current Measured Pressure (dbar)" : "Current Measured Pressure (psi)";
    }
    return Metric(unitSystem) ? "Current Measured Depth (m)" : "Current Measured Depth (ft)";
}

std::string MeanValueLabel(SensorCalibrationKind kind, int unitSystem) {
    if (kind == SensorCalibrationKind::Pressure) {
        return Metric(unitSystem) ? "Calculated Mean Pressure (dbar)" : "Calculated Mean Pressure (psi)";
    }
    return Metric(unitSystem) ? "Calculated Mean Depth (m)" : "Calculated Mean Depth (ft)";
}

std::string FormatSensorValue(SensorCalibrationKind kind, int unitSystem, double value) {
    if (kind == SensorCalibrationKind::Pressure) {
        return Printf("%7.3f", Metric(unitSystem) ? value : value * kPsiPerDbar);
    }
    return Printf("%7.2f", Metric(unitSystem) ? value : value * kFeetPerMetre);
}

bool TakeSensorSample(std::string& text, double& value) {
    const size_t pressure = text.rfind(kPressureMark);
    if (pressure == std::string::npos) {
        // Nothing to wait for: only the end of the text can start the next sample's mark.
        const size_t keep = std::string(kPressureMark).size();
        if (text.size() > keep) text.erase(0, text.size() - keep);
        return false;
    }
    const size_t numberAt = pressure + std::string(kPressureMark).size();
    const size_t battery = text.find(kBatteryMark, numberAt);
    if (battery == std::string::npos) {
        text.erase(0, pressure);
        return false;
    }
    const std::string between = text.substr(numberAt, battery - numberAt);
    text.erase(0, battery + std::string(kBatteryMark).size());
    char* end = nullptr;
    const double parsed = std::strtod(between.c_str(), &end);
    if (end == between.c_str() || !std::isfinite(parsed)) return false;
    value = parsed;
    return true;
}

std::string PressureOffsetCommand(double meanDbar) {
    char command[96];
    std::snprintf(command, sizeof command, "%s %7.3f", "pressoffset set", meanDbar);
    return command;
}

std::string TransducerDepthText(double metres, int unitSystem) {
    return Metric(unitSystem) ? Printf("Transducer depth set to %.2f (m).", metres)
                              : Printf("Transducer depth set to %.2f (ft).", metres * kFeetPerMetre);
}

SensorCalibration::SensorCalibration(SensorCalibrationKind kind, PromptDialogue& dialogue)
    : kind_(kind), dialogue_(dialogue) {}

SensorCalibration::~SensorCalibration() = default;

int SensorCalibration::Start() {
    if (running_) return 1;
    UserPrompt& prompt = dialogue_.Prompt();
    prompt.Progress(0, 1, kRetrievingSettingsTitle);
    prompt.Progress(0, 1, kInterfacingText);
    const bool pressure = kind_ == SensorCalibrationKind::Pressure;
    std::unique_ptr<RawLog> log;
    const int opened = OpenCalibrationLog(prompt, pressure ? "pressure" : "depth",
                                          pressure ? "Pressure Calibration File" : "Depth Calibration File", log);
    if (opened != 1) return opened;
    if (!WakeResultIsKvr(RenewedWakeUp(dialogue_, log.get()))) {
        prompt.TitledMessage(kSensorWakeErrorTitle, kSensorWakeErrorText);
        return -2;
    }
    if (dialogue_.SendCommandNoWait("sensor cont", log.get()) != 1) {
        prompt.TitledMessage(kSensorWakeErrorTitle, kSensorCommandErrorText);
        return -3;
    }
    log_ = std::move(log);
    running_ = true;
    text_.clear();
    sum_ = 0.0f;
    count_ = 0;
    current_ = 0.0;
    return 1;
}

bool SensorCalibration::Tick(int rounds) {
    if (!running_) return false;
    ReadUntilPattern(dialogue_.Port(), text_, kSensorTextBufferSize, kBatteryMark, rounds, nullptr, log_.get());
    log_->Flush();  // the log is whole on disk whatever happens to the program later
    double value = 0.0;
    const bool full = text_.size() >= kSensorTextBufferSize;
    const bool taken = TakeSensorSample(text_, value);
    // A text that filled the buffer without a whole sample holds no sample that will ever end.
    if (!taken && full && text_.size() >= kSensorTextBufferSize) text_.clear();
    if (!taken) return false;
    current_ = value;
    sum_ += static_cast<float>(value);
    ++count_;
    return true;
}

int SensorCalibration::FinishPressure() {
    UserPrompt& prompt = dialogue_.Prompt();
    if (count_ == 0) {
        prompt.Message(kNoPressureDataText);
        return 0;
    }
    prompt.Progress(0, 1, kRetrievingSettingsTitle);
    prompt.Progress(0, 1, kInterfacingWithSystemText);
    const bool woke = WakeResultIsKvr(RenewedWakeUp(dialogue_, log_.get()));
    running_ = false;
    const bool sent =
        woke && dialogue_.SendCommandWaitOk(PressureOffsetCommand(Mean()), kPressureOffsetLimitMs, log_.get()) == 1;
    log_.reset();
    if (!sent) {
        prompt.TitledMessage(kSensorWakeErrorTitle, woke ? kPressureOffsetErrorText : kSensorWakeErrorText);
        return -1;
    }
    return 1;
}

int SensorCalibration::FinishDepth(const NodeRef& system) {
    UserPrompt& prompt = dialogue_.Prompt();
    if (count_ == 0) {
        prompt.Message(kNoDepthDataText);
        return 0;
    }
    const double centimetres = std::round(Mean() * 100.0);
    if (!(centimetres >= -32768.0 && centimetres <= 32767.0)) {
        prompt.Message("The mean depth " + Printf("%.2f", Mean()) + " m cannot be kept as the transducer depth.");
        return -1;
    }
    SystemOtherNode(system).SetValue("AutoMountingDepthInCm", Variant(static_cast<int16_t>(centimetres)));
    prompt.TitledMessage(kTransducerDepthSetTitle, TransducerDepthText(Mean(), UnitSystemOf(system)));
    return 1;
}

void SensorCalibration::Close() {
    if (!running_) return;
    running_ = false;
    RenewedWakeUp(dialogue_, log_.get());
    log_.reset();
}

}  // namespace rm
