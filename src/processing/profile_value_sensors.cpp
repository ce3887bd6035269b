// Sensor codes of GetProfileValue: the profile header's temperature, pressure, attitude,
// battery and their deviations (5 to 15), bottom track (16 to 19), GPS (20 to 23), the CTD
// (30 to 33) and the extra sensors (34, 35, 37, 38).

#include "data/instrument_records.h"
#include "processing/gps_track.h"
#include "processing/processing_inputs.h"
#include "processing/profile_value_parts.h"

namespace rm {

namespace {
constexpr double kTenths = 0.1;
constexpr double kVoltsPerCount = 0.2;
constexpr double kExtSensorScale = 0.001;
constexpr double kExternalDbarPerCount = 0.001;

DisplayValue Plain(double v) { return {v, Quantity::None}; }

// Bottom-track depth per beam, 4 the mean of the beams holding a depth. In the files of reduced
// velocity unit the depth is shown a tenth as large, as those files store it.
DisplayValue BottomTrackDepth(const ProcessingContext& ctx, int slot, int component) {
    const BottomTrackResult& bt = ctx.slots[static_cast<size_t>(slot)].bottomTrack;
    const double scale = VelocityScale(ctx.data);
    std::array<double, 4> depths;
    for (size_t b = 0; b < depths.size(); ++b) {
        const float d = bt.Depth[b];
        depths[b] = (d < MissingValueF && d > 0.0f) ? d * scale : MissingValue;
    }
    return {RowComponent(depths, BeamCount(ctx.Raw(slot)), component), Quantity::Length};
}

// Bottom-track velocity (m/s) in cm/s.
DisplayValue BottomTrackVelocity(const ProcessingContext& ctx, int slot, size_t axis) {
    const float v = ctx.slots[static_cast<size_t>(slot)].bottomTrack.Velocity[axis];
    return {v < MissingValueF ? v * 100.0 : MissingValue, Quantity::Velocity};
}

DisplayValue GpsMean(const ProcessingContext& ctx, int slot, bool latitude) {
    if (!SlotHasGps(ctx, slot)) return {};
    const GpsBlock& g = ctx.slots[static_cast<size_t>(slot)].gps;
    return Plain(latitude ? (g.startLatitude + g.endLatitude) / 2.0 : (g.startLongitude + g.endLongitude) / 2.0);
}

// GPS velocity (mm/s) in cm/s.
DisplayValue GpsVelocityValue(const ProcessingContext& ctx, int slot, bool east) {
    const GpsVelocity v = SlotGpsVelocity(ctx, slot);
    const float value = east ? v.east : v.north;
    return {value < MissingValueF ? value * kTenths : MissingValue, Quantity::Velocity};
}

DisplayValue ExtSensor(const ProfileRecord& record, size_t index) {
    if (!record.hasExtSensor) return {};
    return Plain(record.extSensor[index] * kExtSensorScale);
}

DisplayValue Ctd(const ProfileRecord& record, int code) {
    if (!record.hasCtd) return {};
    switch (code) {
        case 30: return Plain(record.ctd.salinity);
        case 31: return {record.ctd.temperature, Quantity::Temperature};
        case 32: return Plain(record.ctd.conductivity);
        default: return {record.ctd.pressure, Quantity::Pressure};
    }
}
}  // namespace

std::optional<DisplayValue> SensorCodeValue(const ProcessingContext& ctx, int code, int component, int slot) {
    const ProfileRecord& record = ctx.Raw(slot);
    const ProfileHeader& h = record.header;
    const CKvrData& data = ctx.data;
    const bool bottomTrackCode = code >= 16 && code <= 19;
    if (bottomTrackCode && !FileHasBottomTrack(data)) return DisplayValue{};
    switch (code) {
        case 5: return DisplayValue{h.temperature * 0.01, Quantity::Temperature};
        case 6:
            return DisplayValue{PressureFromCounts(data.conf, data.user, data.derived, h.pressureCounts,
                                                   h.pressureHighByte, h.temperature),
                                Quantity::Pressure};
        case 7: return Plain(h.heading * kTenths);
        case 8: return Plain(h.pitch * kTenths);
        case 9: return Plain(h.roll * kTenths);
        case 10: return Plain(h.inputVoltage * kVoltsPerCount);
        case 11: return DisplayValue{h.sdFourth * kTenths, Quantity::Pressure};
        case 12:
            if (data.conf.ExtPressureSensorInstalled == 0) return DisplayValue{};
            return DisplayValue{h.pressure2Counts * kExternalDbarPerCount, Quantity::Pressure};
        case 13: return Plain(h.sdHeading * kTenths);
        case 14: return Plain(h.sdPitch * kTenths);
        case 15: return Plain(h.sdRoll * kTenths);
        case 16: return BottomTrackDepth(ctx, slot, component);
        case 17: return BottomTrackVelocity(ctx, slot, 0);
        case 18: return BottomTrackVelocity(ctx, slot, 1);
        case 19: return Plain(ctx.slots[static_cast<size_t>(slot)].bottomTrack.flag);
        case 20: return GpsMean(ctx, slot, true);
        case 21: return GpsMean(ctx, slot, false);
        case 22: return GpsVelocityValue(ctx, slot, true);
        case 23: return GpsVelocityValue(ctx, slot, false);
        case 30:
        case 31:
        case 32:
        case 33: return Ctd(record, code);
        case 34: return ExtSensor(record, 0);
        case 35: return ExtSensor(record, 1);
        case 37: return ExtSensor(record, 2);
        case 38: return ExtSensor(record, 3);
        default: return std::nullopt;
    }
}

}  // namespace rm
