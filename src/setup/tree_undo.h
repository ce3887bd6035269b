#pragma once
// Remembers items of a tree before they change, and puts them back: value, child, and whether
// the item was there at all.

#include <string>
#include <vector>

#include "data/node_tree.h"

namespace rm {

class TreeUndo {
public:
    // Call before `parent`'s item `name` is set or created.
    void Remember(const NodeRef& parent, const std::string& name);
    // Puts every remembered item back, the last remembered first.
    void Restore();

private:
    struct Saved {
        NodeRef parent;
        std::string name;
        bool existed;
        Variant value;
        NodeRef child;
    };
    std::vector<Saved> saved_;
};

}  // namespace rm
