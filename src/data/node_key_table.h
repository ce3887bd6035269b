#pragma once
// Tables of settings keys bound to the members of a struct, so that a node's keys are read and
// written by one loop instead of one line per key. A row names the key and the member; the
// member's type is the key's type in the tree, except bool, which is kept as a u8 flag 0/1 as
// every flag of the settings files is.

#include <cstdint>
#include <type_traits>
#include <variant>

#include "data/node_tree.h"

namespace rm {

template <class Owner, class... Types>
struct NodeKey {
    const char* name;
    std::variant<Types Owner::*...> member;
};

namespace node_key_detail {

template <class T>
T ReadValue(const NodeRef& node, const char* name, const T& def) {
    if constexpr (std::is_same_v<T, bool>) {
        return node.GetTyped<uint8_t>(name, static_cast<uint8_t>(def ? 1 : 0)) != 0;
    } else {
        return node.GetTyped<T>(name, def);
    }
}

template <class T>
Variant StoredValue(const T& value) {
    if constexpr (std::is_same_v<T, bool>) {
        return Variant(static_cast<uint8_t>(value ? 1 : 0));
    } else {
        return Variant(value);
    }
}

}  // namespace node_key_detail

// Reads the keys in table order into `target`. A missing key is appended with the value that
// `defaults` holds for it; `defaults` may be `target` itself. A value that does not convert
// throws VariantConversionError, as every settings read does.
template <class Table, class Owner>
void ReadKeys(const NodeRef& node, const Table& keys, Owner& target, const Owner& defaults) {
    for (const auto& key : keys) {
        std::visit([&](auto member) { target.*member = node_key_detail::ReadValue(node, key.name, defaults.*member); },
                   key.member);
    }
}

template <class Table, class Owner>
void ReadKeys(const NodeRef& node, const Table& keys, Owner& target) {
    ReadKeys(node, keys, target, target);
}

// Sets every key of the table, in table order, to the member's value in `source`.
template <class Table, class Owner>
void WriteKeys(const NodeRef& node, const Table& keys, const Owner& source) {
    for (const auto& key : keys) {
        std::visit([&](auto member) { node.SetValue(key.name, node_key_detail::StoredValue(source.*member)); },
                   key.member);
    }
}

}  // namespace rm
