#pragma once
// The waypoints a person places on the track map: a type, a position (x longitude, y latitude,
// degrees), a label and comments. The list belongs to the track window; the .way file
// (way_file.h) saves and loads it.

#include <cstdint>
#include <string>
#include <vector>

namespace rm {

// The type as the .way file stores it (32-bit).
enum class WaypointType : int32_t { Waypoint = 0, Hazard = 1, Marker = 2 };

// "Waypoint", "Hazard" or "Marker"; the names the type list of the dialog shows, in order.
const char* WaypointTypeName(WaypointType type);
constexpr int kWaypointTypeCount = 3;
// True for the codes 0, 1 and 2.
bool IsWaypointTypeCode(int32_t code);

struct Waypoint {
    WaypointType type = WaypointType::Waypoint;
    double x = 0.0;  // longitude, degrees, negative west
    double y = 0.0;  // latitude, degrees, negative south
    std::string label;
    std::string comments;

    bool operator==(const Waypoint& other) const;
};

class WaypointList {
public:
    const std::vector<Waypoint>& Items() const { return items_; }
    int Count() const { return static_cast<int>(items_.size()); }
    bool Empty() const { return items_.empty(); }

    // Appends a waypoint labelled "WP %d" with the next number: one more than the highest
    // number of a "WP n" label in the list, so that a label is never given twice, even after
    // a deletion. Returns the new waypoint.
    Waypoint& Add(WaypointType type, double x, double y);
    // The row at `index` for editing in place; the index must be in range.
    Waypoint& At(int index) { return items_.at(static_cast<size_t>(index)); }
    const Waypoint& At(int index) const { return items_.at(static_cast<size_t>(index)); }
    // Deletes the row; an index out of range does nothing.
    void Remove(int index);
    // Replaces the whole list (a load).
    void Replace(std::vector<Waypoint> items) { items_ = std::move(items); }
    void Clear() { items_.clear(); }

    // The label the next Add gives.
    std::string NextLabel() const;

private:
    std::vector<Waypoint> items_;
};

// A position as the list shows it: "%.8f".
std::string WaypointPositionText(double degrees);
// A number as a cell being edited shows it: "%lg".
std::string WaypointEditText(double value);
// Reads an edited number back: the whole text must be a finite number (blanks around it
// allowed, C locale). False leaves `value` unchanged.
bool ParseWaypointNumber(const std::string& text, double& value);

}  // namespace rm
