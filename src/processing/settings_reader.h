#pragma once
// Fills the ProcessingSettings snapshot of a pass from the trees and fields of a data set, and
// registers the default keys of a discharge measurement. Every tree value is read through
// GetTyped, so a missing key is written with its default and appears in the next saved .cfg.
//
// Where the settings live:
//   document root  Discharge            the measurement's keys (edges, range, bad beams, area)
//                  Discharge/ProfileExtrapolation, Discharge/ShallowWater
//                  EchoSounder          UseEchoSounderForDepth, Offset, Scale, TransducerDepth,
//                                       CorrectForSpeedOfSound
//   application    General              "Unit System", SwapDepthReference
//   document       fields               coordinate system, references, user rotation, transducer
//                                       depth source, sound speed correction

#include "data/cfg_file.h"
#include "data/node_tree.h"
#include "processing/power_fit.h"
#include "processing/processing_settings.h"

namespace rm {

// What the document keeps as fields rather than as tree keys.
struct DocumentProcessingFields {
    int CoordinateSystem = 2;   // 0 beam, 1 XYZ, 2 ENU
    int VelocityReference = 1;  // 0 instrument, 1 bottom track, 2 GPS
    int TrackReference = 1;     // 1 bottom track, 2 GPS
    bool UserRotationActive = false;
    double UserRotationAngle = 0.0;
    int DepthType = 0;
    double UserTransducerDepth = 0.0;
    double BottomTrackThreshold = 0.0;
    double BottomTrackFactor = 1.0;
    SoundSpeedSettings soundSpeed;
};

// Node names below the document root.
constexpr const char* kDischargeNode = "Discharge";
constexpr const char* kExtrapolationNode = "ProfileExtrapolation";
constexpr const char* kShallowWaterNode = "ShallowWater";
constexpr const char* kEchoSounderNode = "EchoSounder";

// The `Discharge` node of a document root, made when missing.
NodeRef DischargeNode(const NodeRef& documentRoot);

// Creates the keys of a discharge measurement that are missing, in their order of creation:
// the ProfileExtrapolation child with its keys, then the edge, range, bad-beam, shallow-water
// and area keys. Present keys keep their values.
void CreateDischargeDefaults(const NodeRef& discharge);
// CreateDischargeDefaults for a new measurement: UseShallowWaterPing is then set to 1 once more
// at the end, whatever it held.
void RegisterDischargeDefaults(const NodeRef& discharge);

// The extrapolation of a measurement's `Discharge` node, as a pass reads it.
ExtrapolationChoice ReadExtrapolation(const NodeRef& discharge);

// The snapshot of one pass. `appGeneral` is the application's General node.
ProcessingSettings ReadProcessingSettings(const NodeRef& documentRoot, const NodeRef& appGeneral,
                                          const DocumentProcessingFields& fields);

}  // namespace rm
