#include "output/sum_file_export.h"

#include "app/dis_export.h"
#include "output/discharge_calculation.h"
#include "processing/measurement_start.h"

namespace rm {

namespace {
constexpr int kTemperatureModeMeasured = 1;
}

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
    in.transducerDepth = user.SensorDepth * 0.01;
    in.rangeStart = in.blanking;
    in.rangeEnd = in.blanking + user.NumberOfCells * user.CellSizeCm * 0.01;
    in.averagingInterval = user.AveragingInterval;
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
