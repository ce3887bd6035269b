#pragma once
// The .fpx flow data exchange file ("Flow Data Exchange (.fpx)|*.fpx|"): the content of a .fdx
// measurement as a settings tree, written in the binary tree format. Unlike the .fdx, the
// duration is in seconds and values named "Spare" keep their real value. An entry without value
// and without sub-node (a missing tree of the record) is counted in its node but not written.

#include <cstdio>
#include <string>

#include "data/node_tree.h"
#include "data/user_prompt.h"
#include "output/flow_data_sample.h"

namespace rm {

constexpr const char* kFpxFilter = "Flow Data Exchange (.fpx)|*.fpx|";
constexpr const char* kFpxExtension = "fpx";
constexpr const char* kUnableToCreateFile = "Unable to create file: ";

// The tree: FpxVersion, then Measurements with one unnamed measurement holding the file and
// instrument texts, Collection (the record's settings and system trees, shared, not copied) and
// SampleTable (SampleCount, SampleStructure, Samples).
NodeRef BuildFpxTree(const FlowMeasurement& measurement);

// Writes the tree at the file's position; false when a write failed.
bool WriteFpx(std::FILE* file, const FlowMeasurement& measurement);

// Creates `path` anew (replacing any file there) and writes the measurement. A file that cannot
// be created shows "Unable to create file: " and the path.
bool WriteFpxFile(const std::string& path, const FlowMeasurement& measurement, UserPrompt& prompt);

}  // namespace rm
