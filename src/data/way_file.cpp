#include "data/way_file.h"

namespace rm {

namespace {
constexpr const char* kRootKey = "Waypoints";

// The value of a key that must be there, converted; throws VariantConversionError.
template <class T>
bool Required(const NodeRef& entry, const char* key, T& out) {
    const int index = entry.FindIndex(key);
    if (index < 0 || !entry.ItemChild(index).IsNull()) return false;
    out = entry.ItemValue(index).template As<T>();
    return true;
}

std::string Optional(const NodeRef& entry, const char* key) {
    const int index = entry.FindIndex(key);
    if (index < 0 || entry.ItemValue(index).IsEmptyOrNull()) return std::string();
    return entry.ItemValue(index).As<std::string>();
}
}  // namespace

NodeRef WaypointTree(const WaypointList& list) {
    NodeRef root = NodeRef::MakeNew();
    const NodeRef waypoints = root.GetOrCreateChild(kRootKey);
    for (const Waypoint& w : list.Items()) {
        // An empty name never matches, so each call appends a new entry.
        const NodeRef entry = waypoints.GetOrCreateChild("");
        entry.SetValue("Type", Variant(static_cast<int32_t>(w.type)));
        entry.SetValue("x", Variant(w.x));
        entry.SetValue("y", Variant(w.y));
        entry.SetValue("Label", Variant(w.label));
        entry.SetValue("Comments", Variant(w.comments));
    }
    return root;
}

WayTreeResult WaypointsOfTree(const NodeRef& root, std::vector<Waypoint>& items) {
    const int rootIndex = root.FindIndex(kRootKey);
    const NodeRef waypoints = rootIndex < 0 ? NodeRef() : root.ItemChild(rootIndex);
    if (waypoints.IsNull() || waypoints.ItemCount() == 0) return WayTreeResult::NoWaypoints;
    std::vector<Waypoint> read;
    try {
        for (int i = 0; i < waypoints.ItemCount(); ++i) {
            const NodeRef entry = waypoints.ItemChild(i);
            if (entry.IsNull()) return WayTreeResult::Malformed;
            Waypoint w;
            int32_t type = 0;
            if (!Required(entry, "Type", type) || !IsWaypointTypeCode(type)) return WayTreeResult::Malformed;
            w.type = static_cast<WaypointType>(type);
            if (!Required(entry, "x", w.x) || !Required(entry, "y", w.y)) return WayTreeResult::Malformed;
            w.label = Optional(entry, "Label");
            w.comments = Optional(entry, "Comments");
            read.push_back(std::move(w));
        }
    } catch (const VariantConversionError&) {
        return WayTreeResult::Malformed;
    }
    items = std::move(read);
    return WayTreeResult::Ok;
}

WayFileResult SaveWayFile(const WaypointList& list, const std::string& path, UserPrompt& prompt) {
    if (list.Empty()) {
        prompt.Message(kNoWaypointsToSave);
        return WayFileResult::NothingToSave;
    }
    if (!SaveTreeFile(WaypointTree(list), path)) {
        prompt.Message(kWayFileNotWritten);
        return WayFileResult::WriteFailed;
    }
    return WayFileResult::Ok;
}

WayFileResult LoadWayFile(const std::string& path, WaypointList& list, UserPrompt& prompt) {
    const NodeRef root = NodeRef::MakeNew();
    std::vector<Waypoint> items;
    WayTreeResult result = WayTreeResult::Malformed;
    if (LoadTreeFile(root, path)) result = WaypointsOfTree(root, items);
    switch (result) {
        case WayTreeResult::Ok: list.Replace(std::move(items)); return WayFileResult::Ok;
        case WayTreeResult::NoWaypoints: prompt.Message(kNoWaypointsFound); return WayFileResult::NoWaypoints;
        case WayTreeResult::Malformed: break;
    }
    prompt.Message(kWayFileUnreadable);
    return WayFileResult::Unreadable;
}

}  // namespace rm
