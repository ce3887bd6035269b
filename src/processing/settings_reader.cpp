#include "processing/settings_reader.h"

#include <cstdint>

namespace rm {

namespace {

int32_t I32(const NodeRef& node, const char* key, int32_t def) { return node.GetTyped<int32_t>(key, def); }
double F64(const NodeRef& node, const char* key, double def) { return node.GetTyped<double>(key, def); }
bool Flag(const NodeRef& node, const char* key, bool def) {
    return node.GetTyped<uint8_t>(key, static_cast<uint8_t>(def ? 1 : 0)) != 0;
}

void ReadExtrapolation(const NodeRef& x, ProcessingSettings& s) {
    s.SameTopBottom = I32(x, "SameTopBottom", s.SameTopBottom);
    s.NumTopCells = I32(x, "NumTopCells", s.NumTopCells);
    s.NumBottomCells = I32(x, "NumBottomCells", s.NumBottomCells);
    s.TopFitType = I32(x, "TopFitType", s.TopFitType);
    s.BottomFitType = I32(x, "BottomFitType", s.BottomFitType);
    s.TopEntireProfile = I32(x, "TopEntireProfile", s.TopEntireProfile);
    s.BottEntireProfile = I32(x, "BottEntireProfile", s.BottEntireProfile);
    s.DiscardType = I32(x, "DiscardType", s.DiscardType);
    s.DiscardCells = I32(x, "DiscardCells", s.DiscardCells);
    s.DiscardPercent = I32(x, "DiscardPercent", s.DiscardPercent);
    s.TopExponent = F64(x, "TopExponent", s.TopExponent);
    s.BottomExponent = F64(x, "BottomExponent", s.BottomExponent);
}

void ReadDischarge(const NodeRef& d, ProcessingSettings& s) {
    s.LeftProfile = I32(d, "LeftProfile", s.LeftProfile);
    s.RightProfile = I32(d, "RightProfile", s.RightProfile);
    s.LeftBankMethod = I32(d, "LeftBankMethod", s.LeftBankMethod);
    s.RightBankMethod = I32(d, "RightBankMethod", s.RightBankMethod);
    s.LeftNumProfiles = I32(d, "LeftNumProfiles", s.LeftNumProfiles);
    s.RightNumProfiles = I32(d, "RightNumProfiles", s.RightNumProfiles);
    s.LeftBankSlope = F64(d, "LeftBankSlope", s.LeftBankSlope);
    s.RightBankSlope = F64(d, "RightBankSlope", s.RightBankSlope);
    s.LeftUserEstimate = F64(d, "LeftUserEstimate", s.LeftUserEstimate);
    s.RightUserEstimate = F64(d, "RightUserEstimate", s.RightUserEstimate);
    s.MeasuredLeftDistance = F64(d, "MeasuredLeftDistance", s.MeasuredLeftDistance);
    s.CorrectedLeftDistance = F64(d, "CorrectedLeftDistance", s.CorrectedLeftDistance);
    s.MeasuredRightDistance = F64(d, "MeasuredRightDistance", s.MeasuredRightDistance);
    s.CorrectedRightDistance = F64(d, "CorrectedRightDistance", s.CorrectedRightDistance);
    s.NumBadBeams = I32(d, "NumBadBeams", s.NumBadBeams);
    s.UseShallowWaterPing = I32(d, "UseShallowWaterPing", s.UseShallowWaterPing);
    s.AreaComputation = I32(d, "AreaComputation", s.AreaComputation);
    s.AreaAngle = I32(d, "AreaAngle", s.AreaAngle);
    s.MeasuredStartBankSide = I32(d, "MeasuredStartBankSide", s.MeasuredStartBankSide);
    s.CorrectedStartBankSide = I32(d, "CorrectedStartBankSide", s.CorrectedStartBankSide);
}

void ReadShallowWater(const NodeRef& w, ProcessingSettings& s) {
    s.SnrThreshold = F64(w, "SnrThreshold", s.SnrThreshold);
    s.MaxSwVelocity = F64(w, "MaxSwVelocity", s.MaxSwVelocity);
    s.UseWaterCells = Flag(w, "UseWaterCells", s.UseWaterCells);
    s.MaxWaterCells = I32(w, "MaxWaterCells", s.MaxWaterCells);
    s.UseFirstCellFactor = Flag(w, "UseFirstCellFactor", s.UseFirstCellFactor);
    s.FirstCellFactor = F64(w, "FirstCellFactor", s.FirstCellFactor);
    s.UseBoatSpeedFactor = Flag(w, "UseBoatSpeedFactor", s.UseBoatSpeedFactor);
    s.BoatSpeedFactor = F64(w, "BoatSpeedFactor", s.BoatSpeedFactor);
    s.UseCorrelationMin = Flag(w, "UseCorrelationMin", s.UseCorrelationMin);
    s.CorrelationMin = F64(w, "CorrelationMin", s.CorrelationMin);
}

void ReadEchoSounder(const NodeRef& e, ProcessingSettings& s) {
    s.UseEchoSounderForDepth = I32(e, "UseEchoSounderForDepth", s.UseEchoSounderForDepth);
    s.EchoOffset = F64(e, "Offset", s.EchoOffset);
    s.EchoScale = F64(e, "Scale", s.EchoScale);
    s.EchoTransducerDepth = F64(e, "TransducerDepth", s.EchoTransducerDepth);
    s.CorrectForSpeedOfSound = Flag(e, "CorrectForSpeedOfSound", s.CorrectForSpeedOfSound);
}

}  // namespace

NodeRef DischargeNode(const NodeRef& documentRoot) { return documentRoot.GetOrCreateChild(kDischargeNode); }

void CreateDischargeDefaults(const NodeRef& discharge) {
    const NodeRef x = discharge.GetOrCreateChild(kExtrapolationNode);
    I32(x, "SameTopBottom", 0);
    I32(x, "NumTopCells", 1);
    I32(x, "NumBottomCells", 1);
    I32(x, "TopFitType", 1);
    I32(x, "BottomFitType", 1);
    I32(x, "TopEntireProfile", 0);
    I32(x, "BottEntireProfile", 0);
    I32(x, "DiscardType", 1);
    I32(x, "DiscardCells", 1);
    I32(x, "DiscardPercent", 10);
    F64(x, "TopExponent", 1.0 / 6.0);
    F64(x, "BottomExponent", 1.0 / 6.0);

    const NodeRef& d = discharge;
    I32(d, "LeftProfile", 1);
    I32(d, "RightProfile", 0);
    I32(d, "LeftBankMethod", 2);
    I32(d, "RightBankMethod", 2);
    I32(d, "LeftNumProfiles", 1);
    I32(d, "RightNumProfiles", 1);
    F64(d, "LeftBankSlope", 0.707);
    F64(d, "RightBankSlope", 0.707);
    F64(d, "LeftUserEstimate", 0.0);
    F64(d, "RightUserEstimate", 0.0);
    F64(d, "MeasuredLeftDistance", 0.0);
    F64(d, "CorrectedLeftDistance", 0.0);
    F64(d, "MeasuredRightDistance", 0.0);
    F64(d, "CorrectedRightDistance", 0.0);
    I32(d, "NumBadBeams", 0);
    I32(d, "UseShallowWaterPing", 1);
    I32(d, "AreaComputation", 0);
    I32(d, "AreaAngle", 0);
    I32(d, "MeasuredStartBankSide", 0);
    I32(d, "CorrectedStartBankSide", 0);
}

void RegisterDischargeDefaults(const NodeRef& discharge) {
    CreateDischargeDefaults(discharge);
    discharge.SetValue("UseShallowWaterPing", Variant(int32_t{1}));
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
    s.SwapDepthReference = Flag(appGeneral, "SwapDepthReference", s.SwapDepthReference);

    const NodeRef discharge = DischargeNode(documentRoot);
    ReadExtrapolation(discharge.GetOrCreateChild(kExtrapolationNode), s);
    ReadDischarge(discharge, s);
    ReadShallowWater(discharge.GetOrCreateChild(kShallowWaterNode), s);
    ReadEchoSounder(documentRoot.GetOrCreateChild(kEchoSounderNode), s);
    return s;
}

}  // namespace rm
