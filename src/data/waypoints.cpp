#include "data/waypoints.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <locale>
#include <sstream>

namespace rm {

namespace {
constexpr const char* kLabelPrefix = "WP ";

// The n of a label "WP n" (n a positive decimal number and nothing after it), else 0.
int LabelNumber(const std::string& label) {
    const std::string prefix = kLabelPrefix;
    if (label.compare(0, prefix.size(), prefix) != 0 || label.size() == prefix.size()) return 0;
    long n = 0;
    for (size_t i = prefix.size(); i < label.size(); ++i) {
        const char c = label[i];
        if (c < '0' || c > '9') return 0;
        n = n * 10 + (c - '0');
        if (n > 1000000000L) return 0;
    }
    return static_cast<int>(n);
}
}  // namespace

const char* WaypointTypeName(WaypointType type) {
    switch (type) {
        case WaypointType::Waypoint: return "Waypoint";
        case WaypointType::Hazard: return "Hazard";
        case WaypointType::Marker: return "Marker";
    }
    return "Waypoint";
}

bool IsWaypointTypeCode(int32_t code) { return code >= 0 && code < kWaypointTypeCount; }

bool Waypoint::operator==(const Waypoint& other) const {
    return type == other.type && x == other.x && y == other.y && label == other.label && comments == other.comments;
}

std::string WaypointList::NextLabel() const {
    int highest = 0;
    for (const Waypoint& w : items_) highest = std::max(highest, LabelNumber(w.label));
    char text[32];
    std::snprintf(text, sizeof text, "WP %d", highest + 1);
    return text;
}

Waypoint& WaypointList::Add(WaypointType type, double x, double y) {
    Waypoint w;
    w.type = type;
    w.x = x;
    w.y = y;
    w.label = NextLabel();
    items_.push_back(std::move(w));
    return items_.back();
}

void WaypointList::Remove(int index) {
    if (index < 0 || index >= Count()) return;
    items_.erase(items_.begin() + index);
}

std::string WaypointPositionText(double degrees) {
    char text[64];
    std::snprintf(text, sizeof text, "%.8f", degrees);
    return text;
}

std::string WaypointEditText(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%lg", value);
    return text;
}

bool ParseWaypointNumber(const std::string& text, double& value) {
    std::istringstream in(text);
    in.imbue(std::locale::classic());
    double parsed = 0.0;
    in >> parsed;
    if (in.fail() || !std::isfinite(parsed)) return false;
    in >> std::ws;
    if (!in.eof()) return false;
    value = parsed;
    return true;
}

}  // namespace rm
