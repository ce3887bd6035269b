#pragma once
// The keys of the `System` node that the user setup reads and writes: in which child node each
// lives, the type it is stored with, and whether the user sets it or the instrument tells it.
// And a reader that looks at these values without adding missing keys to the tree, so that a
// check leaves the tree exactly as it found it.

#include <string>
#include <vector>

#include "data/node_tree.h"
#include "data/variant.h"

namespace rm {

namespace setup_nodes {
inline constexpr const char* kSetup = "Setup";
inline constexpr const char* kOther = "Other";
inline constexpr const char* kOptions = "Options";
inline constexpr const char* kOper = "Oper";
inline constexpr const char* kConf = "Conf";
}  // namespace setup_nodes

struct SetupKey {
    const char* node;  // child of the `System` node
    const char* name;
    VarType type;
    bool userSets;  // false: told by the instrument or by another command
};

// All keys, Setup first, then Other, Options, Oper and Conf.
const std::vector<SetupKey>& SetupKeys();

// The key of that name (matched without regard to case), or null.
const SetupKey* FindSetupKey(const std::string& name);

// Reads the values of a `System` node. A missing node, key or empty value gives the default;
// nothing is written. A stored value that does not convert throws VariantConversionError.
class SetupTreeReader {
public:
    explicit SetupTreeReader(NodeRef system) : system_(std::move(system)) {}

    double Number(const char* node, const char* key, double def = 0.0) const;
    std::string Text(const char* node, const char* key) const;
    bool Has(const char* node, const char* key) const;

    // `Other/UnitSystem`, 1 (metric) when missing.
    int UnitSystem() const;
    bool Metric() const;

private:
    const Variant* Find(const char* node, const char* key) const;
    NodeRef system_;
};

}  // namespace rm
