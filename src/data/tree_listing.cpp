#include "data/tree_listing.h"

#include <cctype>
#include <cstdio>

namespace rm {

namespace {

bool HasPmkExtension(const std::string& path) {
    if (path.size() < 4) return false;
    std::string ext = path.substr(path.size() - 4);
    for (char& c : ext) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return ext == ".pmk";
}

bool AtEndOfFile(std::FILE* file) {
    const int c = std::fgetc(file);
    if (c == EOF) return true;
    std::ungetc(c, file);
    return false;
}

// Printable text: bytes outside printable ASCII and the quote and backslash are escaped,
// so a damaged file cannot disturb the terminal.
std::string Escaped(const std::string& text) {
    std::string out;
    for (unsigned char c : text) {
        if (c == '\\' || c == '"') {
            out.push_back('\\');
            out.push_back(static_cast<char>(c));
        } else if (c >= 0x20 && c < 0x7F) {
            out.push_back(static_cast<char>(c));
        } else {
            char hex[8];
            std::snprintf(hex, sizeof hex, "\\x%02X", c);
            out += hex;
        }
    }
    return out;
}

std::string NameText(const std::string& name) {
    if (name.empty()) return "\"\"";
    std::string escaped = Escaped(name);
    return escaped == name ? name : "\"" + escaped + "\"";
}

std::string ValueText(const Variant& value) {
    switch (value.type()) {
        case VarType::Empty: return {};
        case VarType::Null: return " = null";
        case VarType::Text: return " = \"" + Escaped(value.ToText()) + "\"";
        default: return " = " + value.ToText();
    }
}

void AppendItems(const NodeRef& node, int indent, std::string& out) {
    for (int i = 0; i < node.ItemCount(); ++i) {
        const Variant& value = node.ItemValue(i);
        out.append(static_cast<size_t>(indent), ' ');
        out += NameText(node.ItemName(i));
        out += " [" + std::to_string(static_cast<int>(value.type())) + " " + VarTypeName(value.type()) + "]";
        out += ValueText(value);
        out += '\n';
        const NodeRef child = node.ItemChild(i);
        if (!child.IsNull()) AppendItems(child, indent + 2, out);
    }
}

}  // namespace


TreeFileContents ReadConsecutiveTrees(std::FILE* file, bool pmkNames) {
    TreeFileContents contents;
    while (!AtEndOfFile(file)) {
        const long start = std::ftell(file);
        const size_t number = contents.trees.size() + 1;
        ListedTree tree;
        if (pmkNames) {
            tree.name = number == 1 ? "Settings" : "Prf" + std::to_string(number - 1);
        } else {
            tree.name = number == 1 ? "Root" : "Tree " + std::to_string(number);
        }
        tree.root = NodeRef::MakeNew();
        tree.complete = tree.root.Load(file);
        contents.trees.push_back(tree);
        if (!tree.complete) {
            if (pmkNames && number > 1) break;  // a recording that ended inside a profile
            contents.problem = "the tree starting at byte " + std::to_string(start) + " is damaged or cut short";
            return contents;
        }
    }
    if (contents.trees.empty()) {
        contents.problem = "the file holds no tree";
        return contents;
    }
    contents.readable = true;
    return contents;
}

TreeFileContents ReadTreeFileForListing(const std::string& path) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) {
        TreeFileContents contents;
        contents.problem = "cannot open the file";
        return contents;
    }
    TreeFileContents contents = ReadConsecutiveTrees(file, HasPmkExtension(path));
    std::fclose(file);
    return contents;
}

std::string FormatTreeItems(const NodeRef& root, int indent) {
    std::string out;
    AppendItems(root, indent, out);
    return out;
}

std::string FormatTreeListing(const TreeFileContents& contents) {
    std::string out;
    for (const ListedTree& tree : contents.trees) {
        out += "[" + tree.name + "]";
        if (!tree.complete) out += " (incomplete: the file ends inside this tree)";
        out += '\n';
        if (tree.root.ItemCount() == 0) {
            out += "  (no items)\n";
        } else {
            out += FormatTreeItems(tree.root, 2);
        }
    }
    return out;
}

}  // namespace rm
