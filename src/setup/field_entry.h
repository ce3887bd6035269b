#pragma once
// What a value must be before it is stored at all, as the setup dialog's fields hold it: the
// field limits of the averaging interval and the salinity, the value sets of switches and
// enumerations, and finite numbers. The rules of CheckParameter come after.

#include <string>

#include "data/node_tree.h"
#include "data/variant.h"
#include "setup/setup_keys.h"

namespace rm {

// Empty when `value` (already of the key's type) may be stored; else the message to show.
// The averaging interval's lower limit 5 is waived in pulse-coherent mode (`Setup/PCMode`), where
// the interval counts tenths of seconds.
std::string CheckFieldEntry(const SetupKey& key, const Variant& value, const NodeRef& system);

}  // namespace rm
