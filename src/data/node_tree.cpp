#include "data/node_tree.h"

#include <cstdlib>
#include <utility>

namespace rm {

struct NodeItem {
    std::string name;
    Variant value;
    NodeRef child;
};

// The shared container behind NodeRef. The count is a plain integer: one thread uses trees.
class Node {
public:
    virtual ~Node() = default;
    uint32_t refs = 1;
    std::vector<NodeItem> items;
};

namespace {

std::function<void(const char*)>& DebugSink() {
    static std::function<void(const char*)> sink;
    return sink;
}

void EmitNullDebug() {
    const char* text = "\npData=NULL";
    if (DebugSink()) {
        DebugSink()(text);
    } else if (std::getenv("RM_DEBUG_TREE") != nullptr) {
        std::fputs(text, stderr);
    }
}

char LowerAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

bool SameNameNoCase(const std::string& a, const std::string& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (LowerAscii(a[i]) != LowerAscii(b[i])) return false;
    }
    return true;
}

const std::string& EmptyName() {
    static const std::string empty;
    return empty;
}

const Variant& EmptyValue() {
    static const Variant empty;
    return empty;
}

}  // namespace

NodeRef NodeRef::MakeNew() { return NodeRef(new Node()); }

NodeRef::NodeRef(const NodeRef& other) : node_(other.node_) {
    if (node_) ++node_->refs;
}

NodeRef::NodeRef(NodeRef&& other) noexcept : node_(other.node_) { other.node_ = nullptr; }

NodeRef& NodeRef::operator=(const NodeRef& other) {
    if (other.node_) ++other.node_->refs;  // first, so that self-assignment is safe
    Node* old = node_;
    node_ = other.node_;
    if (old && --old->refs == 0) delete old;
    return *this;
}

NodeRef& NodeRef::operator=(NodeRef&& other) noexcept {
    if (this != &other) {
        Node* old = node_;
        node_ = other.node_;
        other.node_ = nullptr;
        if (old && --old->refs == 0) delete old;
    }
    return *this;
}

NodeRef::~NodeRef() {
    if (node_ && --node_->refs == 0) delete node_;
}

uint32_t NodeRef::RefCount() const { return node_ ? node_->refs : 0; }

int NodeRef::FindIndex(const std::string& name) const {
    if (!node_ || name.empty()) return -1;
    const auto& items = node_->items;
    for (size_t i = 0; i < items.size(); ++i) {
        if (SameNameNoCase(items[i].name, name)) return static_cast<int>(i);
    }
    return -1;
}

NodeRef NodeRef::GetChildByName(const std::string& name) const {
    int index = FindIndex(name);
    if (index < 0) {
        EmitNullDebug();
        return NodeRef();
    }
    return GetChildByIndex(index);
}

NodeRef NodeRef::GetChildByIndex(int index) const {
    if (!node_ || index < 0 || index >= ItemCount() || node_->items[index].child.IsNull()) {
        EmitNullDebug();
        return NodeRef();
    }
    return node_->items[index].child;
}

NodeRef NodeRef::GetOrCreateChild(const std::string& name) const {
    if (!node_) return NodeRef();
    int index = FindIndex(name);
    if (index < 0) {
        NodeRef child = MakeNew();
        node_->items.push_back(NodeItem{name, Variant(), child});
        return child;
    }
    NodeItem& item = node_->items[index];
    if (item.child.IsNull()) item.child = MakeNew();
    return item.child;
}

Variant& NodeRef::GetValue(const std::string& name, const Variant& def) const {
    if (!node_) {
        // One per thread: documents on separate threads each read through null references.
        thread_local Variant scratch;
        scratch = def;
        return scratch;
    }
    int index = FindIndex(name);
    if (index < 0) {
        node_->items.push_back(NodeItem{name, def, NodeRef()});
        return node_->items.back().value;
    }
    NodeItem& item = node_->items[index];
    if (!item.child.IsNull()) {
        // A branch asked for a value becomes a leaf holding the default.
        item.child = NodeRef();
        item.value = def;
    }
    return item.value;
}

void NodeRef::SetAt(int index, const Variant& value) const {
    if (!node_ || index < 0 || index > ItemCount()) return;
    if (index == ItemCount()) {
        node_->items.push_back(NodeItem{std::string(), value, NodeRef()});
        return;
    }
    NodeItem& item = node_->items[index];
    item.value = value;
    item.child = NodeRef();
}

void NodeRef::SetValue(const std::string& name, const Variant& value) const {
    if (!node_) return;
    int index = FindIndex(name);
    if (index < 0) {
        node_->items.push_back(NodeItem{name, value, NodeRef()});
    } else {
        SetAt(index, value);
    }
}

void NodeRef::SetChild(int index, const NodeRef& child) const {
    if (!node_ || index < 0 || index >= ItemCount()) return;
    node_->items[index].child = child;
}

int NodeRef::ItemCount() const { return node_ ? static_cast<int>(node_->items.size()) : 0; }

void NodeRef::Clear() const {
    if (!node_) return;
    // Move the items out first: releasing children may run destructors that must not see a
    // half-cleared vector.
    std::vector<NodeItem> old;
    old.swap(node_->items);
}

const std::string& NodeRef::ItemName(int index) const {
    if (!node_ || index < 0 || index >= ItemCount()) return EmptyName();
    return node_->items[index].name;
}

const Variant& NodeRef::ItemValue(int index) const {
    if (!node_ || index < 0 || index >= ItemCount()) return EmptyValue();
    return node_->items[index].value;
}

NodeRef NodeRef::ItemChild(int index) const {
    if (!node_ || index < 0 || index >= ItemCount()) return NodeRef();
    return node_->items[index].child;
}

void NodeRef::Append(const std::string& name, const Variant& value) const { Append(name, value, NodeRef()); }

void NodeRef::Append(const std::string& name, const Variant& value, const NodeRef& child) const {
    if (!node_) return;
    node_->items.push_back(NodeItem{name, value, child});
}

void NodeRef::RemoveAt(int index) const {
    if (!node_ || index < 0 || index >= ItemCount()) return;
    NodeItem removed = std::move(node_->items[index]);
    node_->items.erase(node_->items.begin() + index);
}

void SetTreeDebugSink(std::function<void(const char*)> sink) { DebugSink() = std::move(sink); }

}  // namespace rm
