#pragma once
// The velocity chain of one profile: raw beam values are scaled and corrected for sound speed,
// taken through the coordinate step, rotated by the stored declination when recorded and
// delivered in ENU, and referenced to the bed (bottom track) or to the ground (GPS).
//
// Two deliberate rules of the system's results: the scale s and the sound speed factor f reach
// only data that no matrix transforms (a transformed value is sum of raw x M x 0.1); and in the
// files of reduced velocity unit a raw 32767 passes the scaling step, while 9999 is caught in
// the ENU rotation.

#include <array>
#include <cstdint>

#include "processing/coordinate_step.h"
#include "processing/processing_context.h"

namespace rm {

using VelocityVector = std::array<float, kMaxRows>;

class VelocityChain {
public:
    // The chain of the profile in `slot` toward `coordinateSystem` (0 beam, 1 XYZ, 2 ENU) and
    // `reference` (0 instrument, 1 bottom track, 2 GPS).
    VelocityChain(const ProcessingContext& ctx, int slot, int coordinateSystem, int reference);

    // Rows that carry values: the number of beams.
    int Rows() const { return rows_; }
    // One cell in cm/s; missing rows, and rows beyond the beams, are MissingValueF.
    VelocityVector Cell(int cell) const;
    // The shallow-water ping's vector in cm/s; all missing when the file has no such block.
    VelocityVector Shallow() const;

private:
    VelocityVector Transform(const std::array<int16_t, kMaxRows>& raw, bool shallow) const;
    void RotateEnu(VelocityVector& v, const std::array<int16_t, kMaxRows>& raw, bool shallow) const;
    void ApplyReference(VelocityVector& v) const;

    const ProcessingContext& ctx_;
    const ProfileRecord& record_;
    int slot_ = 0;
    int rows_ = 0;
    int reference_ = 0;
    double scale_ = 1.0;
    double soundSpeedFactor_ = 1.0;
    bool highResolution_ = false;
    bool rotateEnu_ = false;
    double declination_ = 0.0;
    CoordinateMatrix matrix_;
    VelocityVector bottomTrack_{};  // m/s per axis, for the bottom-track reference
    float gpsEast_ = MissingValueF, gpsNorth_ = MissingValueF;  // mm/s, for the GPS reference
};

}  // namespace rm
