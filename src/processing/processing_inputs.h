#pragma once
// What the steps of the chain ask of a data set beyond the raw numbers: the velocity format of
// the file, whether it carries bottom track or GPS, the ring neighbours of a slot and the
// instrument's beam-to-XYZ matrix. Kept in one place so that every step answers these
// questions the same way.

#include <array>
#include <cstdint>

#include "data/kvr_data.h"
#include "processing/orientation_matrix.h"
#include "processing/processing_context.h"

namespace rm {

// The scale s of raw velocities: 0.1 for files whose velocities come in tenths of the normal
// unit (a shallow-water or pulse-coherent system from firmware 16.5 on), else 1.0.
double VelocityScale(const CKvrData& data);
// True for the files of reduced velocity unit. In these 32767 is not caught by the first
// scaling step, and 9999 is the bad marker tested in the ENU rotation.
bool HighResolutionFormat(const CKvrData& data);
// The setup's averaging interval in seconds (the instrument may store it in tenths).
double AveragingIntervalSeconds(const CKvrData& data);
// The time one profile of the data set stands for, in seconds: the averaging interval, times N
// when the load kept every N-th profile or the mean of N profiles, so that a thinned load
// measures the same river. The discharge, the track, the distance made good and its speed, the
// area and the boat speed all take their time step from here.
double ProfileTimeStep(const CKvrData& data);
// The file's records carry bottom track (after the operation record's limit).
bool FileHasBottomTrack(const CKvrData& data);
// Beams of a raw profile that the chain can handle (the arrays hold at most four).
int BeamCount(const ProfileRecord& record);

// Number of slots in the ring, at least 1.
int RingSize(const ProcessingContext& ctx);
// The slot of the profile before `slot` in the ring (the last slot before slot 0).
int PreviousSlot(const ProcessingContext& ctx, int slot);
// The slot index reduced into the ring.
int NormalSlot(const ProcessingContext& ctx, int slot);
// True while the profile under computation is the first one taken in.
bool IsFirstProfile(const ProcessingContext& ctx);
// The slot has a GPS block.
bool SlotHasGps(const ProcessingContext& ctx, int slot);

// The instrument's beam-to-XYZ matrix (scale and mounting signs applied).
FloatMatrix BeamToXyzOf(const DerivedValues& derived);

// The four raw 16-bit values of one cell, beams beyond the record's count as 0.
std::array<int16_t, 4> RawCell(const ProfileRecord& record, int cell);

}  // namespace rm
