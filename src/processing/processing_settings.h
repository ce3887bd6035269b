#pragma once
// A snapshot of every setting the processing chain reads, taken from the settings trees once
// per pass (a pass never changes a setting midway). Reading goes through GetTyped, so a missing
// key is written into the tree with its default, as every other reader of the tree does.

#include "data/node_tree.h"

namespace rm {

struct ProcessingSettings {
    // Document `Display` node and document fields.
    int CoordinateSystem = 2;   // 0 beam, 1 XYZ, 2 ENU
    int VelocityReference = 1;  // 0 instrument, 1 bottom track, 2 GPS
    int TrackReference = 1;     // 1 bottom track, 2 GPS
    bool UserRotationActive = false;
    double UserRotationAngle = 0.0;  // degrees, clockwise
    int DepthType = 0;                // transducer depth: 0 from the setup, 1 user value, else 0
    double UserTransducerDepth = 0.0; // m, for depth type 1
    // Instrument data: bottom-track ensembles slower than the threshold (m/s) are multiplied by
    // the factor.
    double BottomTrackThreshold = 0.0;
    double BottomTrackFactor = 1.0;

    // Application `General`.
    int UnitSystem = 1;  // 1 metric
    bool SwapDepthReference = true;

    // `Discharge`.
    int NumBadBeams = 0;
    int UseShallowWaterPing = 1;
    int LeftProfile = 1, RightProfile = 0;
    int LeftBankMethod = 2, RightBankMethod = 2;
    int LeftNumProfiles = 1, RightNumProfiles = 1;
    double LeftBankSlope = 0.707, RightBankSlope = 0.707;
    double LeftUserEstimate = 0.0, RightUserEstimate = 0.0;
    double MeasuredLeftDistance = 0.0, CorrectedLeftDistance = 0.0;
    double MeasuredRightDistance = 0.0, CorrectedRightDistance = 0.0;
    int MeasuredStartBankSide = 0, CorrectedStartBankSide = 0;
    int AreaComputation = 0;
    int AreaAngle = 0;

    // `Discharge/ProfileExtrapolation`.
    int SameTopBottom = 0;
    int NumTopCells = 1, NumBottomCells = 1;
    int TopFitType = 1, BottomFitType = 1;
    int TopEntireProfile = 0, BottEntireProfile = 0;
    int DiscardType = 1, DiscardCells = 1, DiscardPercent = 10;
    double TopExponent = 1.0 / 6.0, BottomExponent = 1.0 / 6.0;

    // `Discharge/ShallowWater`.
    double SnrThreshold = 3.0;
    double MaxSwVelocity = 1.0;
    bool UseWaterCells = true;
    int MaxWaterCells = 3;
    bool UseFirstCellFactor = true;
    double FirstCellFactor = 0.85;
    bool UseBoatSpeedFactor = true;
    double BoatSpeedFactor = 0.85;
    bool UseCorrelationMin = true;
    double CorrelationMin = 10.0;

    // Document `EchoSounder`.
    int UseEchoSounderForDepth = 0;
    double EchoOffset = 0.0, EchoScale = 1.0, EchoTransducerDepth = 0.0;
    bool CorrectForSpeedOfSound = false;

    // Document `Processing/SoundSpeed`.
    int TemperatureCorrectionType = 0, SalinityCorrectionType = 0;
    double CorrectedSalinityInPpt = 0.0, CorrectedTemperatureInDegC = 0.0;
};

}  // namespace rm
