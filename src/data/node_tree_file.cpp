// The binary file form of a settings tree.
//
// A node is a u32 item count followed by its items; an item is
//   u32 nameLength (with the NUL), name + NUL, u8 hasChild, [child node],
//   u16 type code, u32 valueLength (with the NUL), value text + NUL.
// Items without a child whose value is empty or null are left out but still counted, so a
// node holding one loads as a short read. Every number is little-endian.

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "data/byte_io.h"
#include "data/node_tree.h"

namespace rm {

namespace {

// Bytes are read in pieces of this size, so that a length field claiming gigabytes only
// costs memory for the bytes that are really in the file.
constexpr size_t kReadChunk = 64 * 1024;

void PutU32(std::string& out, uint32_t v) {
    uint8_t b[4];
    ByteWriter(b, sizeof b).u32(0, v);
    out.append(reinterpret_cast<const char*>(b), sizeof b);
}

void PutU16(std::string& out, uint16_t v) {
    uint8_t b[2];
    ByteWriter(b, sizeof b).u16(0, v);
    out.append(reinterpret_cast<const char*>(b), sizeof b);
}

void PutText(std::string& out, const std::string& text) {
    PutU32(out, static_cast<uint32_t>(text.size() + 1));
    out.append(text);
    out.push_back('\0');
}

bool IsValueless(const Variant& v) { return v.type() == VarType::Empty || v.type() == VarType::Null; }

bool Serialize(const NodeRef& node, std::string& out, int depth) {
    if (depth > kMaxTreeDepth) return false;
    const int count = node.ItemCount();
    PutU32(out, static_cast<uint32_t>(count));
    for (int i = 0; i < count; ++i) {
        const Variant& value = node.ItemValue(i);
        NodeRef child = node.ItemChild(i);
        if (child.IsNull() && IsValueless(value)) continue;  // counted above, not written
        PutText(out, node.ItemName(i));
        out.push_back(child.IsNull() ? '\0' : '\1');
        if (!child.IsNull() && !Serialize(child, out, depth + 1)) return false;
        PutU16(out, static_cast<uint16_t>(value.type()));
        PutText(out, IsValueless(value) ? std::string() : value.ToText());
    }
    return true;
}

bool ReadBytes(std::FILE* file, uint8_t* into, size_t size) {
    return std::fread(into, 1, size, file) == size;
}

bool ReadU32(std::FILE* file, uint32_t& v) {
    uint8_t b[4];
    if (!ReadBytes(file, b, sizeof b)) return false;
    v = ByteReader(b, sizeof b).u32(0);
    return true;
}

// A length-prefixed text field. A negative length is refused. The text ends at its first NUL,
// and the last byte of the field counts as the terminator whatever it holds.
bool ReadTextField(std::FILE* file, std::string& text) {
    uint32_t length = 0;
    if (!ReadU32(file, length)) return false;
    if (static_cast<int32_t>(length) < 0) return false;
    std::string bytes;
    size_t remaining = length;
    while (remaining > 0) {
        const size_t piece = std::min(remaining, kReadChunk);
        const size_t had = bytes.size();
        bytes.resize(had + piece);
        const size_t got = std::fread(&bytes[had], 1, piece, file);
        if (got != piece) return false;
        remaining -= piece;
    }
    if (!bytes.empty()) bytes.pop_back();
    text.assign(bytes.c_str());
    return true;
}

bool ReadValue(std::FILE* file, Variant& value) {
    uint8_t typeBytes[2];
    if (!ReadBytes(file, typeBytes, sizeof typeBytes)) return false;
    const uint16_t code = ByteReader(typeBytes, sizeof typeBytes).u16(0);
    std::string text;
    if (!ReadTextField(file, text)) return false;
    if (!IsKnownVarType(code)) return false;
    const VarType type = static_cast<VarType>(code);
    if (type == VarType::Empty) {
        value = Variant();
    } else if (type == VarType::Null) {
        value = Variant::MakeNull();
    } else {
        try {
            value = Variant::FromText(type, text);
        } catch (const VariantConversionError&) {
            return false;  // a damaged or foreign file: the caller sees a failed load
        }
    }
    return true;
}

bool Deserialize(const NodeRef& node, std::FILE* file, int depth) {
    node.Clear();
    uint32_t count = 0;
    if (!ReadU32(file, count)) return false;
    // No reservation by `count`: a hostile count only costs the items that really follow.
    for (uint32_t k = 0; k < count; ++k) {
        std::string name;
        if (!ReadTextField(file, name)) return false;
        uint8_t hasChild = 0;
        if (!ReadBytes(file, &hasChild, 1)) return false;
        node.Append(name, Variant());
        const int index = node.ItemCount() - 1;
        NodeRef child;
        if (hasChild != 0) {
            if (depth + 1 > kMaxTreeDepth) return false;
            child = NodeRef::MakeNew();
            if (!Deserialize(child, file, depth + 1)) return false;
            node.SetChild(index, child);
        }
        Variant value;
        if (!ReadValue(file, value)) return false;
        // Replace the item so that the value goes in without dropping the child.
        node.RemoveAt(index);
        node.Append(name, value, child);
    }
    return true;
}

}  // namespace

bool NodeRef::Save(std::FILE* file) const {
    if (IsNull() || file == nullptr) return false;
    std::string bytes;
    if (!Serialize(*this, bytes, 0)) return false;
    return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
}

bool NodeRef::Load(std::FILE* file) const {
    if (IsNull() || file == nullptr) return false;
    return Deserialize(*this, file, 0);
}

bool SaveTreeFile(const NodeRef& root, const std::string& path) {
    // Written beside the target and renamed over it, so that a failed save never leaves
    // the previous file truncated.
    const std::string temporary = path + ".saving";
    std::FILE* file = std::fopen(temporary.c_str(), "wb");
    if (file == nullptr) return false;
    bool ok = root.Save(file);
    ok = (std::fflush(file) == 0) && ok;
    ok = (std::fclose(file) == 0) && ok;
    std::error_code error;
    if (ok) {
        std::filesystem::rename(temporary, path, error);
        ok = !error;
    }
    if (!ok) std::filesystem::remove(temporary, error);
    return ok;
}

bool LoadTreeFile(const NodeRef& root, const std::string& path) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) return false;
    const bool ok = root.Load(file);
    std::fclose(file);
    return ok;
}

}  // namespace rm
