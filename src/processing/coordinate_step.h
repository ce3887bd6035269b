#pragma once
// The coordinate step of the velocity chain: which matrix turns the raw values of the recorded
// coordinate system into the requested one, and the rotation of ENU data by the declination
// stored with the deployment.
//
//   recorded  requested  matrix
//   beam      XYZ        BeamToXyz
//   beam      ENU        R x BeamToXyz
//   XYZ       ENU        R
//   XYZ       beam       inverse of BeamToXyz
//   ENU       beam       inverse of R x BeamToXyz
//   ENU       XYZ        inverse of R
//   other                none, or the user rotation matrix while the user rotation is active
//
// R is the orientation matrix of the profile, whose heading gains the user rotation angle
// while the rotation is active.

#include "processing/orientation_matrix.h"
#include "processing/processing_context.h"

namespace rm {

struct CoordinateMatrix {
    bool apply = false;   // a matrix is applied to the raw values
    bool usable = true;   // false when the step needs a beam-to-XYZ matrix the instrument lacks
    FloatMatrix m;
};

// The matrix for one profile. `identityOtherwise` gives the identity instead of no matrix in the
// last row of the table (the bottom-track step's rule).
CoordinateMatrix SelectCoordinateMatrix(const ProcessingContext& ctx, const ProfileHeader& header, int requested,
                                        bool identityOtherwise);

// The same from explicit inputs: heading, pitch and roll in degrees (the heading without the
// user rotation angle).
CoordinateMatrix SelectCoordinateMatrix(const FloatMatrix& beamToXyz, int recorded, int requested, double headingDeg,
                                        double pitchDeg, double rollDeg, bool userRotationActive,
                                        double userRotationAngle, bool identityOtherwise);

// E' = E cos D + N sin D, N' = N cos D - E sin D, for D in degrees.
void RotateByDeclination(float& east, float& north, double declinationDeg);

// True when the chain turns East and North by the stored declination: data recorded in ENU and
// delivered in ENU.
bool RotatesByDeclination(int recorded, int requested);

}  // namespace rm
