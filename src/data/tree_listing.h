#pragma once
// Reads every tree stored one after another in a tree file and prints them as an indented
// listing: one line per item with its name, type code and value text.

#include <cstdio>
#include <string>
#include <vector>

#include "data/node_tree.h"

namespace rm {

struct ListedTree {
    std::string name;  // "Settings", "Prf1", ... in a .pmk; "Root", "Tree 2", ... elsewhere
    NodeRef root;
    bool complete = true;  // false when the file ended or broke inside this tree
};

struct TreeFileContents {
    std::vector<ListedTree> trees;
    bool readable = false;
    std::string problem;  // why the file is not readable; empty when it is
};

// Reads the trees from the file's position to its end. With `pmkNames` the trees are named
// as a .pmk reader names them, and a last tree cut short is accepted (a recording that ended
// abruptly); otherwise every tree must be whole. A file without any tree is not readable.
TreeFileContents ReadConsecutiveTrees(std::FILE* file, bool pmkNames);

// Opens `path` and reads it as above; .pmk naming is chosen by the extension (any case).
TreeFileContents ReadTreeFileForListing(const std::string& path);

// The indented listing of one tree's items, `indent` spaces before the first level.
std::string FormatTreeItems(const NodeRef& root, int indent);

// The whole listing: each tree under a "[Name]" line.
std::string FormatTreeListing(const TreeFileContents& contents);

}  // namespace rm
