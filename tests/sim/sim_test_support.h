#pragma once
// Helpers of the simulator tests: a scratch folder, reading a recording back, and a small
// reference of the processing chain written from its formulas (velocity scaling, beam/XYZ/ENU
// steps with heading, pitch and roll, bottom track, water cells, power-law top and bottom and
// the cross-product discharge with default settings), so that recordings can be checked
// against the truth they claim without the processing library.

#include <array>
#include <string>
#include <vector>

#include "data/kvr_data.h"
#include "data/profile_record.h"

namespace rm::simtest {

class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    std::string File(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

std::vector<uint8_t> FileBytes(const std::string& path);

// Opens a recording and reads all its profiles; fails the calling test on a read error.
struct Recording {
    CKvrData data;
    std::vector<ProfileRecord> profiles;
};
void ReadRecording(const std::string& path, Recording& out);

// 3 x 3 orientation matrix (XYZ to ENU) from heading, pitch and roll in degrees.
std::array<std::array<double, 3>, 3> ReferenceOrientation(double heading, double pitch, double roll);

// East, North, Up (cm/s) of every cell, in the instrument's frame of reference (water minus
// boat); `valid` false where a beam is bad.
struct EnuCell {
    double east = 0.0, north = 0.0, up = 0.0;
    bool valid = false;
};
std::vector<EnuCell> ReferenceEnuVelocities(const ProfileRecord& profile, const DerivedValues& derived,
                                            int coordinateSystem);

// The bed's velocity relative to the instrument, East and North in m/s, from bottom track.
std::array<double, 2> ReferenceBottomTrack(const ProfileRecord& profile, const DerivedValues& derived,
                                           int coordinateSystem);

// Discharge of a whole recording by layers with the default processing settings (bottom track
// reference, 10 % discard, power law 1/6 over the entire profile), m3/s, sign flipped for a
// start from the right bank.
struct ReferenceDischarge {
    double top = 0.0, middle = 0.0, bottom = 0.0;
    double Total() const { return top + middle + bottom; }
};
ReferenceDischarge ComputeReferenceDischarge(const Recording& recording, bool startedRight);

}  // namespace rm::simtest
