#pragma once
// CDischargeData: one discharge measurement — its settings node, the sums of the computation and
// the parameters kept with it. A finished measurement is kept by the summary list as well, so the
// object is shared (std::shared_ptr) rather than owned by one document.

#include <cstdint>
#include <string>

#include "data/node_tree.h"
#include "data/profile_record.h"

namespace rm {

class CDischargeData {
public:
    NodeRef settings;  // children `Discharge` (with `ProfileExtrapolation`, `ShallowWater`)
    std::string fileName;
    ProfileHeader startTime;  // header of the first profile of the range (its time stamp)
    ProfileHeader endTime;    // header of the last profile processed
    int32_t TrackReference = 1;
    int32_t VelocityReference = 1;
    int32_t DepthReference = 0;  // 0 bottom track, other echo sounder
    int32_t Active = 0;
    int32_t ProfileCount = 0;
    float MaxBoatSpeed = 0, MaxDepth = 0, MaxMeanSpeed = 0;
    float MaxPitch = 0, MaxRoll = 0;
    float BottomDischarge = 0, TopDischarge = 0, LeftDischarge = 0, RightDischarge = 0;
    float MiddleDischarge = 0, TotalDischarge = 0;
    float TotalWidth = 0, LeftDistance = 0, MadeGood = 0, RightDistance = 0;
    double MeanBoatEast = 0, MeanBoatNorth = 0;
    double LeftEdgeArea = 0, RightEdgeArea = 0, Area = 0;
    double MeanVelocity = 0;
    double MeanCorrelation = 0, MeanStandardDeviation = 0;
    double TrackLength = 0;
    double MadeGoodSpeed = 0;
    std::string SystemName, SystemType, SoftwareVersion;
    double Interval = 0;  // the setup's averaging interval, s
    double TransducerDepth = 0, Blanking = 0;
    int32_t NumberOfCells = 0;
    double CellSize = 0;
    double PitchSum = 0, RollSum = 0;
    int32_t PitchRollCount = 0;
    // Shallow-water ping in use for this measurement (the setup's bottom-track mode 2).
    int32_t ShallowWaterPing = 0;
    // Left out of the discharge summary's statistics when non-zero; 0 when a record is made.
    int32_t ExcludeFromStatistics = 0;

    // Clears the sums, the maxima and the pitch and roll statistics; references survive.
    void Reset();
    // Folds one profile's pitch and roll (degrees) into the maxima and sums; 32767 is skipped.
    void AddPitchRoll(double pitch, double roll);
    double MeanPitch() const;
    double MeanRoll() const;
};

}  // namespace rm
