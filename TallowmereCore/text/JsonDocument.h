#pragma once

#include <cstdint>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallowmere {

namespace detail {
struct JsonTree;
}

// One value inside a JsonDocument, or a missing value; valid while its document lives. Every
// accessor answers nothing when the value is missing or of another type.
class JsonValue {
public:
    // The member named `key` (any bytes) of this object, the last one when the name repeats;
    // a missing value when this is not an object or has no such member.
    JsonValue member(std::string_view key) const;

    // The bytes of this string, with \udc80-\udcff turned back into single bytes.
    std::optional<std::string> string() const;

    // This number when it is written as an integer (no fraction, no exponent) that fits in
    // signed 64 bits.
    std::optional<std::int64_t> integer() const;

    // This number, integer or not.
    std::optional<double> number() const;

    // This boolean.
    std::optional<bool> boolean() const;
    // True when this value is present and null.
    bool isNull() const;
    // True when this value is present, whatever its type.
    bool isPresent() const { return m_node != nullptr; }
    // True when this value is an object.
    bool isObject() const;

    // The elements of this array, in order.
    std::optional<std::vector<JsonValue>> elements() const;

    // The bytes of each element of this array, when every element is a string.
    std::optional<std::vector<std::string>> strings() const;

private:
    friend class JsonDocument;
    JsonValue(const detail::JsonTree* tree, const nlohmann::json* node)
        : m_tree(tree), m_node(node) {}

    const detail::JsonTree* m_tree;
    const nlohmann::json* m_node;
};

// A parsed JSON text (RFC 8259) whose strings may carry any bytes, as JsonText writes them;
// copies share the parsed tree.
class JsonDocument {
public:
    // The document `text` holds; nothing when it is not one JSON value, a string in it is
    // malformed (see JsonText::unquotedContent), or it nests deeper than 512 levels. Throws only
    // std::bad_alloc.
    static std::optional<JsonDocument> parse(std::string_view text);

    // The top-level value.
    JsonValue root() const;

private:
    explicit JsonDocument(std::shared_ptr<const detail::JsonTree> tree) : m_tree(std::move(tree)) {}

    std::shared_ptr<const detail::JsonTree> m_tree;
};

}  // namespace tallowmere
