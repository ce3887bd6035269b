#pragma once
// The .fdx flow data exchange file: an XML-like text with a fixed layout that other programs
// read, written piecewise: the head, one `Measurement` block per data file, the tail. Lines end
// in CR LF and are indented by one tab per level; nothing is escaped, so a value holding a
// quote or an angle bracket goes out as it is. Every number is metric.

#include <cstdio>
#include <string>

#include "data/node_tree.h"
#include "output/flow_data_sample.h"

namespace rm {

// The texts of the four parts, in the order the file holds them.
std::string FdxHeadText();
std::string FdxMeasurementText(const FlowMeasurement& measurement);
std::string FdxTailText();

// The entries of `node` as elements at `depth` tabs, recursively: a sub-node as an element with
// Node="TRUE" holding its entries one level deeper, a value as an element with Value="text".
// An empty key is named "i" and its index; a key containing "Spare" has the value "0".
void AppendFdxNode(std::string& out, const NodeRef& node, int depth);

// The same parts written to an open file; false when the bytes could not all be written.
bool WriteFdxHead(std::FILE* file);
bool WriteFdxMeasurement(std::FILE* file, const FlowMeasurement& measurement);
bool WriteFdxTail(std::FILE* file);
// Writes text as it is (the batch assembles measurement blocks made elsewhere).
bool WriteFdxText(std::FILE* file, const std::string& text);

}  // namespace rm
