// The JSON presentation of one profile.

#include "cli/profile_view.h"

namespace rm::cli {

namespace {

nlohmann::json GpsJson(const GpsBlock& g) {
    return {{"start_time", g.startTime}, {"start_latitude", g.startLatitude}, {"start_longitude", g.startLongitude},
            {"end_time", g.endTime},     {"end_latitude", g.endLatitude},     {"end_longitude", g.endLongitude}};
}

nlohmann::json BottomTrackJson(const BottomTrackView& bt) {
    return {{"flag", bt.flag}, {"ranges_cm", bt.rangesCm}, {"velocities", bt.velocities}};
}

nlohmann::json CtdJson(const CtdValues& ctd) {
    return {{"temperature_degc", ctd.temperature},
            {"conductivity_ms_cm", ctd.conductivity},
            {"pressure_dbar", ctd.pressure},
            {"salinity_ppt", ctd.salinity}};
}

nlohmann::json ShallowWaterJson(const ShallowWaterView& sw) {
    return {{"words", sw.words},
            {"reference_start_cm", sw.referenceStartCm},
            {"reference_length_cm", sw.referenceLengthCm},
            {"references", sw.references},
            {"counts", sw.counts}};
}

template <class T, class Convert>
nlohmann::json OptionalJson(const std::optional<T>& value, Convert convert) {
    return value ? convert(*value) : nlohmann::json(nullptr);
}

nlohmann::json ScaledVelocities(const std::vector<std::vector<std::optional<double>>>& beams) {
    nlohmann::json out = nlohmann::json::array();
    for (const auto& cells : beams) {
        nlohmann::json beam = nlohmann::json::array();
        for (const auto& v : cells) beam.push_back(v ? nlohmann::json(*v) : nlohmann::json(nullptr));
        out.push_back(std::move(beam));
    }
    return out;
}

}  // namespace

nlohmann::json ProfileJson(const ProfileView& v) {
    nlohmann::json j;
    j["number"] = v.number;
    j["read_result"] = v.readResult;
    j["type"] = v.type;
    j["flags"] = v.flags;
    j["size"] = v.size;
    j["profile_number"] = v.profileNumber;
    j["time"] = v.time;
    j["hundredths"] = v.hundredths;
    j["ping_count"] = v.pingCount;
    j["word38"] = v.word38;
    j["heading_deg"] = v.headingDeg;
    j["pitch_deg"] = v.pitchDeg;
    j["roll_deg"] = v.rollDeg;
    j["sd_heading_deg"] = v.sdHeadingDeg;
    j["sd_pitch_deg"] = v.sdPitchDeg;
    j["sd_roll_deg"] = v.sdRollDeg;
    j["sd_fourth"] = v.sdFourth;
    j["temperature_degc"] = v.temperatureDegC;
    j["pressure_counts"] = v.pressureCounts;
    j["pressure_high_byte"] = v.pressureHighByte;
    j["pressure_dbar"] = v.pressureDbar;
    j["pressure2_counts"] = v.pressure2Counts;
    j["word56"] = v.word56;
    j["input_voltage_v"] = v.inputVoltage;

    j["gps"] = OptionalJson(v.gps, GpsJson);
    j["bottom_track"] = OptionalJson(v.bottomTrack, BottomTrackJson);
    j["ctd"] = OptionalJson(v.ctd, CtdJson);
    j["external_sensor"] = OptionalJson(v.extSensor, [](const auto& words) { return nlohmann::json(words); });
    j["shallow_water"] = OptionalJson(v.shallowWater, ShallowWaterJson);

    j["cells"] = v.cells;
    j["beams"] = v.beams;
    j["velocity_scale"] = v.velocityScale;
    j["velocity_raw"] = v.velocityRaw;
    j["velocity_cm_s"] = ScaledVelocities(v.velocityCmPerS);
    j["std_error"] = v.stdError;
    j["amplitude"] = v.amplitude;
    return j;
}

}  // namespace rm::cli
