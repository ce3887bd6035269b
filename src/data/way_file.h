#pragma once
// The .way file of the track window's waypoints: a settings tree whose root holds the key
// "Waypoints"; below it one entry per waypoint under an empty key, holding in order "Type"
// (32-bit), "x", "y" (doubles, longitude and latitude), "Label" and "Comments" (text).
//
// Save and load tell the person what went wrong through the UserPrompt, with the window's own
// words; a load that fails for any reason leaves the list as it was.

#include <string>

#include "data/node_tree.h"
#include "data/user_prompt.h"
#include "data/waypoints.h"

namespace rm {

constexpr const char* kWayFileFilter = "WayPoint files (.way)|*.way|";
constexpr const char* kWayFileExtension = "way";
constexpr const char* kNoWaypointsToSave = "No waypoints to save.Unable to save file";
constexpr const char* kWayFileUnreadable = "Error reading file";
constexpr const char* kNoWaypointsFound = "No waypoints found";
constexpr const char* kWayFileNotWritten = "Unable to save file";

// The tree of a list, and the list of a tree.
NodeRef WaypointTree(const WaypointList& list);
enum class WayTreeResult { Ok, Malformed, NoWaypoints };
// Reads the waypoints of `root` into `items`. Malformed: an entry without its sub-tree, a
// missing "Type", "x" or "y", a value that does not convert, or a type code other than 0, 1, 2.
// NoWaypoints: no "Waypoints" key, or no entry below it.
WayTreeResult WaypointsOfTree(const NodeRef& root, std::vector<Waypoint>& items);

enum class WayFileResult { Ok, NothingToSave, WriteFailed, Unreadable, NoWaypoints };

// Writes the list to `path` (through a temporary name, so a failed save keeps an older file).
// An empty list: kNoWaypointsToSave and nothing is written; a write failure: kWayFileNotWritten.
WayFileResult SaveWayFile(const WaypointList& list, const std::string& path, UserPrompt& prompt);

// Replaces the list by the file's waypoints. A file that cannot be opened or is no settings
// tree, or a tree whose waypoints are malformed: kWayFileUnreadable; a tree without waypoints:
// kNoWaypointsFound. In both cases the list is left as it was.
WayFileResult LoadWayFile(const std::string& path, WaypointList& list, UserPrompt& prompt);

}  // namespace rm
