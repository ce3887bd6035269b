#include "processing/discharge_data.h"

#include <cmath>

namespace rm {

namespace {
constexpr double kAbsentAngle = 32767.0;

// The value of larger magnitude; on a tie the new one.
float LargerMagnitude(float old, double value) {
    return std::fabs(value) >= std::fabs(static_cast<double>(old)) ? static_cast<float>(value) : old;
}
}  // namespace

void CDischargeData::Reset() {
    startTime = ProfileHeader{};
    endTime = ProfileHeader{};
    ProfileCount = 0;
    MaxBoatSpeed = MaxDepth = MaxMeanSpeed = 0.0f;
    MaxPitch = MaxRoll = 0.0f;
    BottomDischarge = TopDischarge = LeftDischarge = RightDischarge = 0.0f;
    MiddleDischarge = TotalDischarge = 0.0f;
    TotalWidth = LeftDistance = MadeGood = RightDistance = 0.0f;
    MeanBoatEast = MeanBoatNorth = 0.0;
    LeftEdgeArea = RightEdgeArea = Area = 0.0;
    MeanVelocity = 0.0;
    MeanCorrelation = MeanStandardDeviation = 0.0;
    TrackLength = 0.0;
    MadeGoodSpeed = 0.0;
    PitchSum = RollSum = 0.0;
    PitchRollCount = 0;
}

void CDischargeData::AddPitchRoll(double pitch, double roll) {
    if (pitch == kAbsentAngle || roll == kAbsentAngle) return;
    ++PitchRollCount;
    PitchSum += pitch;
    RollSum += roll;
    MaxPitch = LargerMagnitude(MaxPitch, pitch);
    MaxRoll = LargerMagnitude(MaxRoll, roll);
}

double CDischargeData::MeanPitch() const { return PitchRollCount < 1 ? 0.0 : PitchSum / PitchRollCount; }

double CDischargeData::MeanRoll() const { return PitchRollCount < 1 ? 0.0 : RollSum / PitchRollCount; }

}  // namespace rm
