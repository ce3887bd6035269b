// Values derived from the decoded records: pressure calibration, transformation matrix,
// declination, shallow-water factors, cell positions and pressure from counts.

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "data/instrument_records.h"

namespace rm {

namespace {

// The calibration in use: versions 0 and 1 carry none and get the fixed offset of those
// instruments; without a pressure sensor everything is zero; an external sensor replaces the
// internal calibration by a plain millibar-per-count scale.
void DerivePressure(const InstrumentConf& conf, DerivedValues& d) {
    if (conf.version < 2) {
        d.pressureOffset = 1000000.0;
        d.pressureScale = 0.0;
        d.pressureScale2 = 0.0;
    } else if (conf.PressureInstalled == 0) {
        d.pressureOffset = 0.0;
        d.pressureScale = 0.0;
        d.pressureScale2 = 0.0;
    } else {
        d.pressureOffset = conf.PressureOffset * 1e-5;
        d.pressureScale = conf.PressureScale * 1e-8;
        d.pressureScale2 = conf.PressureScale2 * 1e-12;
    }
    if (conf.ExtPressureSensorInstalled >= 1) {
        d.pressureOffset = 0.0;
        d.pressureScale = 0.001;
        d.pressureScale2 = 0.0;
    }
    const uint8_t kind = conf.ExtPressureSensorInstalled;
    d.pressureRangeCounts = (kind == 2 || kind == 3) ? conf.PressureRange * 1000000u : 0u;
}

// Nbeams x Nbeams entries of the stored matrix, scaled to floats. Entries beyond the 16 stored
// ones (a five-beam system) are zero. A down-looking head with three or more beams has the
// signs of its second and third rows turned.
void DeriveMatrix(const InstrumentConf& conf, DerivedValues& d) {
    const int n = std::min<int>(conf.Nbeams, kMaxBeams);
    d.matrixSize = n;
    d.matrix.fill(0.0f);
    for (int i = 0; i < n * n; ++i) {
        const int16_t entry = i < kConfMatrixEntries ? conf.TransformationMatrix[i] : 0;
        d.matrix[i] = static_cast<float>(entry / 1024.0);
    }
    if (conf.SensorOrientation == 0 && n >= 3) {
        for (int row = 1; row <= 2; ++row) {
            for (int col = 0; col < n; ++col) d.matrix[row * n + col] = -d.matrix[row * n + col];
        }
    }
}

}  // namespace

long RoundHalfAwayClamped(double x, long lo, long hi) {
    if (std::isnan(x)) return 0;
    if (x <= static_cast<double>(lo)) return lo;
    if (x >= static_cast<double>(hi)) return hi;
    return std::lround(x);
}

double DeclinationDegrees(int16_t raw) { return raw * 0.02; }

int16_t DeclinationToRaw(double degrees) {
    return static_cast<int16_t>(RoundHalfAwayClamped(degrees * 50.0, INT16_MIN, INT16_MAX));
}

bool OperDisablesBottomTrack(const InstrumentConf& conf, const OperationRecord& oper, const UserSetup& user) {
    return oper.bottomTrackDisable != 0 && conf.CPUSoftwareVerNum == 56 && conf.DSPSoftwareVerNum == 50 &&
           user.PCMode == 0;
}

void ApplyOperationLimits(const InstrumentConf& conf, const OperationRecord& oper, UserSetup& user) {
    if (OperDisablesBottomTrack(conf, oper, user)) user.BottomTrack = 0;
}

double IntervalUnitSeconds(const UserSetup& user) { return user.PCMode != 0 && user.BottomTrack != 2 ? 0.1 : 1.0; }

DerivedValues DeriveValues(const InstrumentConf& conf, const OperationRecord& oper, const UserSetup& user) {
    DerivedValues d;
    DerivePressure(conf, d);
    DeriveMatrix(conf, d);
    d.magneticDeclination = DeclinationDegrees(user.MagneticDeclinationRaw);
    d.pcMode = user.PCMode != 0;
    d.bottomTrackMode = OperDisablesBottomTrack(conf, oper, user) ? 0 : user.BottomTrack;
    d.hasShallowWaterBlock = d.pcMode || d.bottomTrackMode == 2;
    d.intervalUnitSeconds = IntervalUnitSeconds(user);
    const bool newFirmware = conf.CPUSoftwareVerNum >= 165;
    d.shallowWaterVelocityFactor = (d.pcMode && newFirmware) ? 0.1 : 1.0;
    d.documentShallowWaterVelocityFactor = (d.hasShallowWaterBlock && newFirmware) ? 0.1 : 1.0;
    if (d.hasShallowWaterBlock) {
        d.shallowWaterFactorA = 0.72;
        d.shallowWaterFactorB = 1.0;
    }
    return d;
}

double CellPosition(const UserSetup& user, int cell) {
    const double size = user.CellSizeCm;
    return (user.SensorDepth + user.BlankDistance + size + cell * size) * 0.01;
}

double PressureFromCounts(const InstrumentConf& conf, const UserSetup& user, const DerivedValues& derived,
                          uint16_t counts, uint8_t highByte, int16_t temperatureHundredths) {
    // The temperature feeds the table evaluation of the table-driven sensors, which is not
    // carried out (see the header); it is accepted so that callers need not change when it is.
    (void)temperatureHundredths;
    const double c = counts;
    if (conf.PressureInstalled == 1) {
        return derived.pressureOffset + c * derived.pressureScale + c * c * derived.pressureScale2;
    }
    const uint8_t kind = conf.ExtPressureSensorInstalled;
    if (kind == 1) return c * 0.001;
    if (kind == 2 || kind == 3) {
        const double range = derived.pressureRangeCounts;
        const double high = highByte * 65536.0;
        if (user.PCMode == 0) return (high + range + c) * 1e-6;
        if (counts < 1) return 0.0;
        return ((range + c) + high) * 1e-6;
    }
    return 0.0;
}

}  // namespace rm
