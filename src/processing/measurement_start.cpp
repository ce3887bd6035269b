#include "processing/measurement_start.h"

#include <cstdio>

#include "processing/processing_inputs.h"
#include "processing/settings_reader.h"

namespace rm {

namespace {

NodeRef SettingsWithDischarge(const NodeRef& discharge) {
    NodeRef settings = NodeRef::MakeNew();
    settings.Append(kDischargeNode, Variant(), discharge.IsNull() ? NodeRef::MakeNew() : discharge);
    return settings;
}

void FillSystemText(CDischargeData& m, const CKvrData& data) {
    m.SystemName = data.conf.SerialNumber;
    m.SystemType = FrequencyName(data.conf.KvrType);
    char version[32];
    std::snprintf(version, sizeof version, "%.1f", data.conf.CPUSoftwareVerNum * 0.1);
    m.SoftwareVersion = version;
    m.Interval = AveragingIntervalSeconds(data);
    m.Blanking = data.user.BlankDistance * 0.01;
    m.NumberOfCells = data.user.NumberOfCells;
    m.CellSize = data.user.CellSizeCm * 0.01;
}

}  // namespace

NodeRef MeasurementDischargeNode(const CDischargeData& measurement) {
    const int index = measurement.settings.FindIndex(kDischargeNode);
    return index < 0 ? NodeRef() : measurement.settings.ItemChild(index);
}

namespace {

enum class Defaults { Register, CreateMissing };

std::shared_ptr<CDischargeData> MakeMeasurement(std::shared_ptr<CDischargeData>& current,
                                                const MeasurementSource& source, bool inherited,
                                                const CKvrData& data, Defaults defaults) {
    const std::shared_ptr<CDischargeData> old = current;
    auto m = std::make_shared<CDischargeData>();
    m->fileName = source.fileName;
    if (inherited && old) {
        m->TrackReference = old->TrackReference;
        m->VelocityReference = old->VelocityReference;
        m->DepthReference = old->DepthReference;
        m->settings = old->settings;
    } else {
        m->TrackReference = source.trackReference;
        m->VelocityReference = source.velocityReference;
        m->DepthReference = source.depthReference;
        m->settings = SettingsWithDischarge(source.discharge);
    }
    FillSystemText(*m, data);
    m->TransducerDepth = source.transducerDepth;
    m->Active = 1;
    m->ShallowWaterPing = data.user.BottomTrack == 2 ? 1 : 0;

    NodeRef discharge = MeasurementDischargeNode(*m);
    if (discharge.IsNull()) {
        m->settings = SettingsWithDischarge(source.discharge);
        discharge = MeasurementDischargeNode(*m);
    }
    if (defaults == Defaults::Register) {
        RegisterDischargeDefaults(discharge);
    } else {
        CreateDischargeDefaults(discharge);
    }
    const auto put = [&](const char* key, double value) {
        if (defaults == Defaults::Register) {
            discharge.SetValue(key, Variant(value));
        } else {
            discharge.GetTyped<double>(key, value);
        }
    };
    put("StartMeanHW", source.startMeanHW);
    put("StartMeanTW", source.startMeanTW);
    put("EndMeanHW", source.endMeanHW);
    put("EndMeanTW", source.endMeanTW);
    put("MagneticDeclination", source.magneticDeclination);
    current = m;
    return m;
}

}  // namespace

std::shared_ptr<CDischargeData> StartMeasurement(std::shared_ptr<CDischargeData>& current,
                                                 const MeasurementSource& source, bool inherited,
                                                 const CKvrData& data) {
    return MakeMeasurement(current, source, inherited, data, Defaults::Register);
}

std::shared_ptr<CDischargeData> OpenMeasurement(std::shared_ptr<CDischargeData>& current,
                                                const MeasurementSource& source, const CKvrData& data) {
    return MakeMeasurement(current, source, false, data, Defaults::CreateMissing);
}

}  // namespace rm
