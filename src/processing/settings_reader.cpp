#include "processing/settings_reader.h"

#include <cstdint>

#include "data/node_key_table.h"

namespace rm {

namespace {

// Integers are i32 keys, reals doubles and flags u8 0/1, the types the settings files hold.
using SettingKey = NodeKey<ProcessingSettings, int, double, bool>;
using S = ProcessingSettings;

const SettingKey kExtrapolationKeys[] = {
    {"SameTopBottom", &S::SameTopBottom},       {"NumTopCells", &S::NumTopCells},
    {"NumBottomCells", &S::NumBottomCells},     {"TopFitType", &S::TopFitType},
    {"BottomFitType", &S::BottomFitType},       {"TopEntireProfile", &S::TopEntireProfile},
    {"BottEntireProfile", &S::BottEntireProfile}, {"DiscardType", &S::DiscardType},
    {"DiscardCells", &S::DiscardCells},         {"DiscardPercent", &S::DiscardPercent},
    {"TopExponent", &S::TopExponent},           {"BottomExponent", &S::BottomExponent},
};

const SettingKey kDischargeKeys[] = {
    {"LeftProfile", &S::LeftProfile}, {"RightProfile", &S::RightProfile},
    {"LeftBankMethod", &S::LeftBankMethod}, {"RightBankMethod", &S::RightBankMethod},
    {"LeftNumProfiles", &S::LeftNumProfiles}, {"RightNumProfiles", &S::RightNumProfiles},
    {"LeftBankSlope", &S::LeftBankSlope}, {"RightBankSlope", &S::RightBankSlope},
    {"LeftUserEstimate", &S::LeftUserEstimate}, {"RightUserEstimate", &S::RightUserEstimate},
    {"MeasuredLeftDistance", &S::MeasuredLeftDistance}, {"CorrectedLeftDistance", &S::CorrectedLeftDistance},
    {"MeasuredRightDistance", &S::MeasuredRightDistance}, {"CorrectedRightDistance", &S::CorrectedRightDistance},
    {"NumBadBeams", &S::NumBadBeams}, {"UseShallowWaterPing", &S::UseShallowWaterPing},
    {"AreaComputation", &S::AreaComputation}, {"AreaAngle", &S::AreaAngle},
    {"MeasuredStartBankSide", &S::MeasuredStartBankSide}, {"CorrectedStartBankSide", &S::CorrectedStartBankSide},
};

const SettingKey kShallowWaterKeys[] = {
    {"SnrThreshold", &S::SnrThreshold},           {"MaxSwVelocity", &S::MaxSwVelocity},
    {"UseWaterCells", &S::UseWaterCells},         {"MaxWaterCells", &S::MaxWaterCells},
    {"UseFirstCellFactor", &S::UseFirstCellFactor}, {"FirstCellFactor", &S::FirstCellFactor},
    {"UseBoatSpeedFactor", &S::UseBoatSpeedFactor}, {"BoatSpeedFactor", &S::BoatSpeedFactor},
    {"UseCorrelationMin", &S::UseCorrelationMin}, {"CorrelationMin", &S::CorrelationMin},
};

const SettingKey kEchoSounderKeys[] = {
    {"UseEchoSounderForDepth", &S::UseEchoSounderForDepth},
    {"Offset", &S::EchoOffset},
    {"Scale", &S::EchoScale},
    {"TransducerDepth", &S::EchoTransducerDepth},
    {"CorrectForSpeedOfSound", &S::CorrectForSpeedOfSound},
};

}  // namespace

NodeRef DischargeNode(const NodeRef& documentRoot) { return documentRoot.GetOrCreateChild(kDischargeNode); }

void CreateDischargeDefaults(const NodeRef& discharge) {
    // Reading into a default snapshot appends each missing key with its default and leaves
    // present keys alone.
    ProcessingSettings defaults;
    ReadKeys(discharge.GetOrCreateChild(kExtrapolationNode), kExtrapolationKeys, defaults);
    ReadKeys(discharge, kDischargeKeys, defaults);
}

void RegisterDischargeDefaults(const NodeRef& discharge) {
    CreateDischargeDefaults(discharge);
    discharge.SetValue("UseShallowWaterPing", Variant(int32_t{1}));
}

ExtrapolationChoice ReadExtrapolation(const NodeRef& discharge) {
    ProcessingSettings s;
    ReadKeys(discharge.GetOrCreateChild(kExtrapolationNode), kExtrapolationKeys, s);
    return ExtrapolationOf(s);
}

ProcessingSettings ReadProcessingSettings(const NodeRef& documentRoot, const NodeRef& appGeneral,
                                          const DocumentProcessingFields& fields) {
    ProcessingSettings s;
    s.CoordinateSystem = fields.CoordinateSystem;
    s.VelocityReference = fields.VelocityReference;
    s.TrackReference = fields.TrackReference;
    s.UserRotationActive = fields.UserRotationActive;
    s.UserRotationAngle = fields.UserRotationAngle;
    s.DepthType = fields.DepthType;
    s.UserTransducerDepth = fields.UserTransducerDepth;
    s.BottomTrackThreshold = fields.BottomTrackThreshold;
    s.BottomTrackFactor = fields.BottomTrackFactor;
    s.TemperatureCorrectionType = fields.soundSpeed.temperatureCorrectionType;
    s.SalinityCorrectionType = fields.soundSpeed.salinityCorrectionType;
    s.CorrectedSalinityInPpt = fields.soundSpeed.correctedSalinityInPpt;
    s.CorrectedTemperatureInDegC = fields.soundSpeed.correctedTemperatureInDegC;

    s.UnitSystem = appGeneral.GetTyped<int16_t>("Unit System", static_cast<int16_t>(s.UnitSystem));
    s.SwapDepthReference = appGeneral.GetTyped<uint8_t>("SwapDepthReference", static_cast<uint8_t>(s.SwapDepthReference ? 1 : 0)) != 0;

    const NodeRef discharge = DischargeNode(documentRoot);
    ReadKeys(discharge.GetOrCreateChild(kExtrapolationNode), kExtrapolationKeys, s);
    ReadKeys(discharge, kDischargeKeys, s);
    ReadKeys(discharge.GetOrCreateChild(kShallowWaterNode), kShallowWaterKeys, s);
    ReadKeys(documentRoot.GetOrCreateChild(kEchoSounderNode), kEchoSounderKeys, s);
    return s;
}

}  // namespace rm
