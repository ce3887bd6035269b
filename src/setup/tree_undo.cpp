#include "setup/tree_undo.h"

namespace rm {

void TreeUndo::Remember(const NodeRef& parent, const std::string& name) {
    const int index = parent.FindIndex(name);
    saved_.push_back({parent, name, index >= 0, parent.ItemValue(index), parent.ItemChild(index)});
}

void TreeUndo::Restore() {
    for (auto it = saved_.rbegin(); it != saved_.rend(); ++it) {
        const int index = it->parent.FindIndex(it->name);
        if (!it->existed) {
            it->parent.RemoveAt(index);
            continue;
        }
        it->parent.SetAt(index, it->value);
        if (it->child) it->parent.SetChild(index, it->child);
    }
    saved_.clear();
}

}  // namespace rm
