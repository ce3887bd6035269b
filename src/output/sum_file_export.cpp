#include "output/sum_file_export.h"

#include "app/dis_export.h"
#include "output/discharge_calculation.h"
#include "processing/measurement_start.h"
#include "processing/processing_inputs.h"

namespace rm {

namespace {
constexpr int kTemperatureModeMeasured = 1;
constexpr int kDepthTypeFixed = 0;
constexpr int kDepthTypeSensor = 1;
}  // namespace

SumFileInputs SumFileInputsOf(const CSurveyKVRDoc& document, const AppSettings& app) {
    const CKvrData& data = document.Data();
    const UserSetup& user = data.user;
    SumFileInputs in;
    in.measurement = &document.Measurement();
    in.discharge = MeasurementDischargeNode(document.Measurement());
    in.unitSystem = app.Get(app_keys::UnitSystem);
    in.significantDigits = app.Get(app_keys::SignificantDigits);
    in.dataFileStem = document.Stem();
    in.frequencyCode = data.conf.KvrType;
    in.serialNumber = data.conf.SerialNumber;
    in.firmware = data.conf.CPUSoftwareVerNum;
    in.numberOfCells = user.NumberOfCells;
    in.cellSizeCm = user.CellSizeCm;
    in.blanking = user.BlankDistance * 0.01;
    const ProcessingSettings& settings = document.Settings();
    // Depth type 1 is the mounting depth that the depth sensor measured ("Depth Calibration"):
    // the file names the sensor rather than a number. Type 0 is the setup's fixed depth, any
    // other type none.
    in.transducerDepthFromSensor = settings.DepthType == kDepthTypeSensor;
    in.transducerDepth = settings.DepthType == kDepthTypeFixed ? user.SensorDepth * 0.01 : 0.0;
    // The profiled range runs from the start of the first cell to the end of the last; with the
    // shallow-water ping in use the range changes from profile to profile, so both ends are shown.
    in.variableRange = document.Measurement().ShallowWaterPing != 0 && settings.UseShallowWaterPing != 0;
    in.rangeStart = in.blanking;
    in.rangeEnd = in.blanking + user.NumberOfCells * user.CellSizeCm * 0.01;
    in.averagingInterval = AveragingIntervalSeconds(data);
    in.coordinateSystem = user.CoordinateSystem;
    in.bottomTrack = data.derived.bottomTrackMode != 0;
    in.magneticDeclination = document.MagneticDeclination();
    if (data.conf.CtdSensorInstalled != 0) {
        in.temperature = TemperatureSource::Ctd;
    } else if (user.TemperatureMode == kTemperatureModeMeasured) {
        in.temperature = TemperatureSource::Measured;
    } else {
        in.temperature = TemperatureSource::User;
    }
    in.userTemperatureTenths = user.DefaultTemperature;
    in.salinity = user.DefaultSalinity * 0.1;
    in.speedOfSound = user.DefaultSpeedOfSound * 0.1;
    // The CTD extremes of the last pass over the measurement's range; none when no profile of
    // the range carried a CTD block.
    const RunningState& running = document.Running();
    in.ctdPresent = data.conf.CtdSensorInstalled != 0 && running.ctdMinTemperature <= running.ctdMaxTemperature;
    in.ctdTemperatureMin = running.ctdMinTemperature;
    in.ctdTemperatureMax = running.ctdMaxTemperature;
    in.ctdSalinityMin = running.ctdMinSalinity;
    in.ctdSalinityMax = running.ctdMaxSalinity;
    return in;
}

bool ExportSumFile(CSurveyKVRDoc& document, AppSettings& app, UserPrompt& prompt, const std::string& path) {
    const NodeRef discharge = MeasurementDischargeNode(document.Measurement());
    const DialogCheck check = CheckDischargeCalculation(DischargeCalculationFieldsOf(discharge), document.ProfileCount());
    if (!check.ok) {
        prompt.Message(check.message);
        return false;
    }
    if (!document.Recompute()) return false;
    if (!WriteSumFile(path, SumFileInputsOf(document, app))) {
        prompt.Message(kWriteFileError);
        return false;
    }
    return true;
}

}  // namespace rm
