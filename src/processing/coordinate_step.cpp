#include "processing/coordinate_step.h"

#include <cmath>

#include "processing/processing_inputs.h"

namespace rm {

namespace {
constexpr double kRadiansPerDegree = 0.0174532925199433;

FloatMatrix Inverse(const FloatMatrix& m) {
    FloatMatrix inverse;
    Invert(m, inverse);  // a singular matrix leaves zeros, and the data are multiplied by them
    return inverse;
}
}  // namespace

CoordinateMatrix SelectCoordinateMatrix(const FloatMatrix& beamToXyz, int recorded, int requested, double headingDeg,
                                        double pitchDeg, double rollDeg, bool userRotationActive,
                                        double userRotationAngle, bool identityOtherwise) {
    CoordinateMatrix out;
    const int n = beamToXyz.n;
    const bool transforms = recorded != requested && recorded >= kCoordBeam && recorded <= kCoordEnu &&
                            requested >= kCoordBeam && requested <= kCoordEnu;
    if (!transforms) {
        if (userRotationActive) {
            out.apply = true;
            out.m = UserRotationMatrix(userRotationAngle, n);
            out.usable = n >= 3;
        } else if (identityOtherwise) {
            out.apply = true;
            out.m = FloatMatrix::Identity(n);
        }
        return out;
    }
    out.apply = true;
    if (n != 3 && n != 4) {
        out.usable = false;
        out.m = FloatMatrix::Zero(n);
        return out;
    }
    const double heading = headingDeg + (userRotationActive ? userRotationAngle : 0.0);
    const bool needsR = recorded == kCoordEnu || requested == kCoordEnu;
    const FloatMatrix r = needsR ? OrientationMatrix(heading, pitchDeg, rollDeg) : FloatMatrix::Identity(3);
    if (recorded == kCoordBeam && requested == kCoordXyz) out.m = beamToXyz;
    if (recorded == kCoordBeam && requested == kCoordEnu) out.m = RotateBeamToXyz(r, beamToXyz);
    if (recorded == kCoordXyz && requested == kCoordEnu) out.m = EmbedRotation(r, n);
    if (recorded == kCoordXyz && requested == kCoordBeam) out.m = Inverse(beamToXyz);
    if (recorded == kCoordEnu && requested == kCoordBeam) out.m = Inverse(RotateBeamToXyz(r, beamToXyz));
    if (recorded == kCoordEnu && requested == kCoordXyz) out.m = Inverse(EmbedRotation(r, n));
    return out;
}

CoordinateMatrix SelectCoordinateMatrix(const ProcessingContext& ctx, const ProfileHeader& header, int requested,
                                        bool identityOtherwise) {
    const ProcessingSettings& s = ctx.settings;
    return SelectCoordinateMatrix(BeamToXyzOf(ctx.data.derived), ctx.data.user.CoordinateSystem, requested,
                                  header.heading * 0.1, header.pitch * 0.1, header.roll * 0.1, s.UserRotationActive,
                                  s.UserRotationAngle, identityOtherwise);
}

void RotateByDeclination(float& east, float& north, double declinationDeg) {
    const float d = static_cast<float>(declinationDeg);
    const double c = std::cos(d * kRadiansPerDegree), s = std::sin(d * kRadiansPerDegree);
    const double e = east, n = north;
    east = static_cast<float>(e * c + n * s);
    north = static_cast<float>(n * c - e * s);
}

bool RotatesByDeclination(int recorded, int requested) { return recorded == kCoordEnu && requested == kCoordEnu; }

}  // namespace rm
