#pragma once
// The mirror of the instrument's records in the `System` settings node and back. The `System`
// node has the children `Conf`, `Options`, `Setup`, `Other` and `Oper`; its keys are the ones the
// setup dialogs, the rule checker and the side files use.

#include <cstdint>

#include "data/instrument_records.h"
#include "data/node_tree.h"

namespace rm {

// The values of the `System` node that do not live in the instrument's records: the document's
// own fields and what was learned from the instrument by asking.
struct SystemDocumentFields {
    int16_t MountingMethod = 0;
    int16_t AutoMountingDepthInCm = 0;
    int16_t AutoFileName = 1;
    uint8_t BottomTrackInstalled = 0;      // firmware option flag
    uint8_t MinBlankLengthInCm = 0;        // limits told by the instrument
    uint8_t OperatingRangeInMeters = 0;
};

// Section accessors: each brings its node into being when it is missing.
NodeRef SystemConfNode(const NodeRef& system);
NodeRef SystemOptionsNode(const NodeRef& system);
NodeRef SystemSetupNode(const NodeRef& system);
NodeRef SystemOtherNode(const NodeRef& system);
NodeRef SystemOperNode(const NodeRef& system);

// Writes the decoded records and the document's fields into the children of `system`, each key
// with its own type (u8, i16, double or text), then adds the keys that have no record behind
// them with their defaults when they are missing.
void FillTree(const NodeRef& system, const InstrumentConf& conf, const UserSetup& user,
              const SystemDocumentFields& fields);

// The inverse of FillTree for every key that has a source. A missing key is added with its
// default (0 or empty, `AutoFileName` 1) and that default is taken. Numbers are limited to the
// range of their record field. The cell size is changed only when the tree's whole centimetres
// differ from the record's rounded value, so tenths of a centimetre in pulse-coherent mode
// survive a round trip. A value that cannot be converted
// throws VariantConversionError, as every settings read does.
void ReadTree(const NodeRef& system, InstrumentConf& conf, UserSetup& user, SystemDocumentFields& fields);

// Adds the `System` keys that no record fills with their defaults, leaving present ones alone:
// `Other`: `UnitSystem` 1, `MinCellSizeInCm` and `MaxCellSizeInCm` -1.0.
void EnsureSystemTreeDefaults(const NodeRef& system);

}  // namespace rm
