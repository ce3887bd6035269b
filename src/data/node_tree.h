#pragma once
// The reference-counted tree of named values that holds every setting of the system:
// the application's settings, a recording's side files and saved instrument setups.
//
// Items keep insertion order. Names match case-insensitively (bytewise ASCII), first match
// wins. Reading a missing key appends it with its default, so the defaults end up in the
// next saved file.

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "data/variant.h"

namespace rm {

class Node;

// Deepest nesting of child nodes that Load accepts and Save writes.
constexpr int kMaxTreeDepth = 256;

// Handle to a Node. Copying adds a reference, dropping one releases it; the Node deletes
// itself when the last reference goes. A null NodeRef is legal: every operation on it is a
// no-op that returns the neutral result (-1, 0, null, or the default passed in).
class NodeRef {
public:
    NodeRef() = default;
    static NodeRef MakeNew();  // a new, empty Node
    NodeRef(const NodeRef& other);
    NodeRef(NodeRef&& other) noexcept;
    NodeRef& operator=(const NodeRef& other);
    NodeRef& operator=(NodeRef&& other) noexcept;
    ~NodeRef();

    bool IsNull() const { return node_ == nullptr; }
    explicit operator bool() const { return node_ != nullptr; }
    bool SameNode(const NodeRef& other) const { return node_ == other.node_; }
    uint32_t RefCount() const;

    int FindIndex(const std::string& name) const;
    NodeRef GetChildByName(const std::string& name) const;
    NodeRef GetChildByIndex(int index) const;
    NodeRef GetOrCreateChild(const std::string& name) const;

    // The stored value of `name`; a missing key is appended with `def`, a branch item turns
    // into a leaf holding `def`. On a null NodeRef returns a reference to a scratch value.
    Variant& GetValue(const std::string& name, const Variant& def) const;

    // GetValue, then conversion to T; throws VariantConversionError when it cannot convert.
    template <class T>
    T GetTyped(const std::string& name, const T& def) const {
        return GetValue(name, Variant(def)).template As<T>();
    }

    void SetAt(int index, const Variant& value) const;
    void SetValue(const std::string& name, const Variant& value) const;
    void SetChild(int index, const NodeRef& child) const;

    int ItemCount() const;
    void Clear() const;

    // Item access for listings and for the loader.
    const std::string& ItemName(int index) const;
    const Variant& ItemValue(int index) const;
    NodeRef ItemChild(int index) const;  // null when the item has no child; emits no debug text
    void Append(const std::string& name, const Variant& value) const;
    void Append(const std::string& name, const Variant& value, const NodeRef& child) const;
    // Removes the item at `index` with its child reference; out of range does nothing.
    void RemoveAt(int index) const;

    // Binary tree file format. Save writes at the file's position and stops at the first
    // failed write. Load clears the node and reads one tree at the file's position, leaving
    // the position behind the last byte it took; items read before a failure stay.
    // Load refuses (returns false) a negative length, an unknown type code, a value text
    // that does not convert to its type, and nesting deeper than kMaxTreeDepth; lengths and
    // counts never allocate more than the bytes that actually arrive.
    bool Save(std::FILE* file) const;
    bool Load(std::FILE* file) const;

private:
    explicit NodeRef(Node* node) : node_(node) {}
    Node* node_ = nullptr;
};

// Where the debug text of a failed lookup ("\npData=NULL") goes. The default writes nothing
// unless the environment variable RM_DEBUG_TREE is set, then to stderr.
void SetTreeDebugSink(std::function<void(const char*)> sink);

// Whole-file helpers: Save with create-always, Load of the first tree of a file.
bool SaveTreeFile(const NodeRef& root, const std::string& path);
bool LoadTreeFile(const NodeRef& root, const std::string& path);

}  // namespace rm
