#pragma once
// The length of the profile frames the instrument will send for the current setup. Nothing in
// a frame says how long it is, so acquisition reads exactly this many bytes after the sync.

#include "data/instrument_records.h"
#include "link/link_state.h"

namespace rm {

// Bytes of one sample of a wave frame; the frame is the 80-byte header, the samples and the
// checksum.
constexpr int kWaveSampleSize = 3;

// From the number of cells and beams and the blocks the setup switches on: the shallow-water
// block in pulse-coherent mode or with Bottom Track 2, the bottom track block with any bottom
// track, the CTD and external sensor blocks when installed, the GPS block with the internal
// receiver in use. Wave sizes are 0 unless waves are enabled.
ProfileSizes ComputeProfileSizes(const InstrumentConf& conf, const UserSetup& user, const InstrumentLinkState& state);

}  // namespace rm
