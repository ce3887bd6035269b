#include "link/profile_sizes.h"

#include "data/profile_record.h"

namespace rm {

ProfileSizes ComputeProfileSizes(const InstrumentConf& conf, const UserSetup& user, const InstrumentLinkState& state) {
    // Velocity (2 bytes), standard error and amplitude (1 byte each) for every cell and beam.
    const int arrayBytes = 4 * static_cast<int>(user.NumberOfCells) * static_cast<int>(conf.Nbeams);
    constexpr int kFrameHeaderSize = static_cast<int>(kProfileHeaderSize);
    constexpr int kFrameChecksumSize = static_cast<int>(kChecksumSize);
    ProfileSizes sizes;
    sizes.HeaderSize = kFrameHeaderSize;
    sizes.ProfileSize = kFrameHeaderSize + arrayBytes + kFrameChecksumSize;
    if (state.PCMode != 0 || state.BottomTrackMode == 2) sizes.ProfileSize += static_cast<int>(kShallowWaterBlockSize);
    if (state.BottomTrackMode != 0) sizes.ProfileSize += static_cast<int>(kBottomTrackBlockSize);
    if (conf.CtdSensorInstalled != 0) sizes.ProfileSize += static_cast<int>(kCtdBlockSize);
    if (state.GpsOn && state.GpsSource == kGpsSourceInternal) sizes.ProfileSize += static_cast<int>(kGpsBlockSize);
    if (conf.ExtSensorInstalled != 0) sizes.ProfileSize += static_cast<int>(kExtSensorBlockSize);
    if (state.WavesEnabled != 0) {
        sizes.WaveSamples = user.PseriesLength;
        sizes.WaveFrameSize = kWaveSampleSize * sizes.WaveSamples + kFrameHeaderSize + kFrameChecksumSize;
    }
    return sizes;
}

}  // namespace rm
