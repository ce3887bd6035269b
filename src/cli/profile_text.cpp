// The text presentation of one profile: labelled header fields, the blocks the file holds,
// and a table per beam.

#include <cstdarg>
#include <cstdio>

#include "cli/profile_view.h"

namespace rm::cli {

namespace {

class Text {
public:
    void operator()(const char* format, ...) __attribute__((format(printf, 2, 3))) {
        va_list args;
        va_start(args, format);
        char line[512];
        std::vsnprintf(line, sizeof line, format, args);
        va_end(args);
        text_ += line;
    }
    const std::string& str() const { return text_; }

private:
    std::string text_;
};

const char* ReadResultText(int result) {
    switch (result) {
        case 0: return "read";
        case 1: return "read error";
        case 2: return "bad checksum";
        default: return "not read";
    }
}

void Header(Text& t, const ProfileView& v) {
    t("Profile %d\n", v.number);
    t("%-24s%d (%s)\n", "Read result:", v.readResult, ReadResultText(v.readResult));
    t("%-24s%u\n", "Profile number:", static_cast<unsigned>(v.profileNumber));
    t("%-24s%s.%02d\n", "Time:", v.time.c_str(), v.hundredths);
    t("%-24s%u / %u / %u\n", "Type / flags / size:", v.type, v.flags, v.size);
    t("%-24s%u\n", "Ping count:", static_cast<unsigned>(v.pingCount));
    t("%-24s%.1f deg (sd %.1f)\n", "Heading:", v.headingDeg, v.sdHeadingDeg);
    t("%-24s%.1f deg (sd %.1f)\n", "Pitch:", v.pitchDeg, v.sdPitchDeg);
    t("%-24s%.1f deg (sd %.1f)\n", "Roll:", v.rollDeg, v.sdRollDeg);
    t("%-24s%.1f\n", "Fourth sensor sd:", v.sdFourth);
    t("%-24s%.2f degC\n", "Temperature:", v.temperatureDegC);
    t("%-24s%u counts (high byte %u), %.3f dbar\n", "Pressure:", v.pressureCounts, v.pressureHighByte, v.pressureDbar);
    t("%-24s%u counts\n", "Second pressure:", v.pressure2Counts);
    t("%-24s%u\n", "Word 38:", v.word38);
    t("%-24s%.1f\n", "Word 56:", v.word56);
    t("%-24s%.1f V\n", "Input voltage:", v.inputVoltage);
}

void Blocks(Text& t, const ProfileView& v) {
    if (v.gps) {
        const GpsBlock& g = *v.gps;
        t("GPS first fix:          %.3f  %.8f  %.8f\n", g.startTime, g.startLatitude, g.startLongitude);
        t("GPS last fix:           %.3f  %.8f  %.8f\n", g.endTime, g.endLatitude, g.endLongitude);
    }
    if (v.bottomTrack) {
        const BottomTrackView& bt = *v.bottomTrack;
        t("Bottom track flag:      %u\n", bt.flag);
        t("Bottom track ranges cm: %u %u %u %u\n", bt.rangesCm[0], bt.rangesCm[1], bt.rangesCm[2], bt.rangesCm[3]);
        t("Bottom track velocity:  %d %d %d %d\n", bt.velocities[0], bt.velocities[1], bt.velocities[2],
          bt.velocities[3]);
    }
    if (v.ctd) {
        t("CTD:                    %.3f degC  %.3f mS/cm  %.3f dbar  %.3f ppt\n", v.ctd->temperature,
          v.ctd->conductivity, v.ctd->pressure, v.ctd->salinity);
    }
    if (v.extSensor) {
        const auto& w = *v.extSensor;
        t("External sensor:        %u %u %u %u\n", w[0], w[1], w[2], w[3]);
    }
    if (v.shallowWater) {
        const ShallowWaterView& sw = *v.shallowWater;
        t("Shallow water words:   ");
        for (uint16_t w : sw.words) t(" %u", w);
        t("\nShallow water range:    from %.1f cm, %.1f cm long\n", sw.referenceStartCm, sw.referenceLengthCm);
        t("Shallow water refs:     %d %d %d %d (counts %u %u %u %u)\n", sw.references[0], sw.references[1],
          sw.references[2], sw.references[3], sw.counts[0], sw.counts[1], sw.counts[2], sw.counts[3]);
    }
}

void Arrays(Text& t, const ProfileView& v) {
    for (int b = 0; b < v.beams; ++b) {
        t("\nBeam %d\n  Cell  Velocity      cm/s  StdErr  Amplitude\n", b + 1);
        for (int c = 0; c < v.cells; ++c) {
            const auto& scaled = v.velocityCmPerS[b][c];
            char cmPerS[32];
            if (scaled) {
                std::snprintf(cmPerS, sizeof cmPerS, "%8.2f", *scaled);
            } else {
                std::snprintf(cmPerS, sizeof cmPerS, "%8s", "--");
            }
            t("  %4d  %8d  %s  %6d  %9d\n", c + 1, v.velocityRaw[b][c], cmPerS, v.stdError[b][c], v.amplitude[b][c]);
        }
    }
}

}  // namespace

std::string FormatProfileText(const ProfileView& view) {
    Text t;
    Header(t, view);
    Blocks(t, view);
    Arrays(t, view);
    return t.str();
}

}  // namespace rm::cli
