#pragma once
// The steps of the per-profile processing chain. ProcessProfile runs them in this order for the
// slot of one profile: bottom track, depth, GPS track, water cells, discharge, pitch and roll,
// distances. Each step reads what it needs through the ProcessingContext.

#include <array>

#include "processing/processing_context.h"

namespace rm {

// --- velocities, bottom track, GPS, depth, sound speed ---
void BottomTrackStep(ProcessingContext& ctx, int slot);
void UpdateDepth(ProcessingContext& ctx, int slot, bool swap);
// mode 0 mean depth, 1 minimum depth below the transducer, 2 the smaller of that and the echo
// sounder's depth below its transducer.
double GetDepth(const ProcessingContext& ctx, int slot, int mode);
double GetTransducerDepth(const ProcessingContext& ctx);
void GpsTrackStep(ProcessingContext& ctx, int slot);
// Number of usable cells; `shallowCells` receives 0 or 1.
int CountWaterCells(ProcessingContext& ctx, int slot, bool useShallow, int& shallowCells);
void DistanceStep(ProcessingContext& ctx, int slot);
// The side-lobe limit of the profile in `slot`, metres below the surface: the depth down to
// which the discard rule keeps cells (a percentage of the water below the transducer, or the
// lower edge of the last cell kept when whole cells are discarded). MissingValue without a depth.
double SideLobeCutOffDepth(const ProcessingContext& ctx, int slot);
// Water velocity per axis and cell in the current coordinate system and reference, cm/s.
void GetVelocities(const ProcessingContext& ctx, int slot, VelocityArrays& out);
// The shallow-water cell's vector through the same chain; false when it is missing.
bool GetShallowVelocity(const ProcessingContext& ctx, int slot, std::array<float, 4>& out);
double SoundSpeedFactor(const ProcessingContext& ctx, int slot);
// The one accessor of displays and exports, in display units.
double GetProfileValue(const ProcessingContext& ctx, int code, int component, int coordinateSystem,
                       int reference, int slot, int cell);
struct BoatCourse {
    double course = 0.0;    // degrees
    double distance = 0.0;  // m over the interval
};
BoatCourse ComputeBoatCourse(const ProcessingContext& ctx, int slot);

// --- discharge, edges, track and area, quality ---
void ComputeProfileDischarge(ProcessingContext& ctx, int slot);
void UpdateEdgesAtEnd(ProcessingContext& ctx, bool endOfTransect);
void UpdateMaxima(ProcessingContext& ctx, int slot);
void ComputeQualityIndex(ProcessingContext& ctx, int slot);

// --- the pass ---
// Full processing of profile `profileNumber` (from 1), whose raw record is in its slot; the
// profile is already taken in (`state.count` counts it; recompute_pass.h does both).
void ProcessProfile(ProcessingContext& ctx, int profileNumber);
// Reruns the bottom-track, depth and water-cell steps over the profiles of the window without
// touching the discharge sums or the track.
void ReprocessRing(ProcessingContext& ctx);

}  // namespace rm
