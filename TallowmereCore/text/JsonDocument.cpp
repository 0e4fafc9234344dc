#include "text/JsonDocument.h"

#include <charconv>
#include <limits>
#include <nlohmann/json.hpp>
#include <unordered_map>

#include "text/JsonText.h"

namespace tallowmere {

// nlohmann reads the structure and the numbers, but refuses the lone surrogates that carry bytes
// outside UTF-8. So every string literal reaches it as a placeholder literal holding an index
// into `strings`, decoded by JsonText beforehand. Equal strings share an index, so a repeated
// member name still collapses into one member, the last, as nlohmann does for any name.
struct detail::JsonTree {
    nlohmann::json root;
    std::unordered_map<std::string, std::size_t> indexOf;
    std::vector<const std::string*> strings;  // keys of indexOf, by index
};

namespace {

// Deep enough for any document we read; it bounds the memory a hostile file can claim.
constexpr int maxDepth = 512;

// The position of the quote that closes the string literal whose content starts at `at`.
std::optional<std::size_t> closingQuote(std::string_view text, std::size_t at) {
    for (at = text.find_first_of("\"\\", at); at != std::string_view::npos;
         at = text.find_first_of("\"\\", at + 2)) {
        if (text[at] == '"') {
            return at;
        }
    }
    return std::nullopt;
}

std::size_t intern(detail::JsonTree& tree, std::string bytes) {
    const auto [entry, added] = tree.indexOf.try_emplace(std::move(bytes), tree.strings.size());
    if (added) {
        tree.strings.push_back(&entry->first);
    }
    return entry->second;
}

// `text` with each string literal replaced by its placeholder; nothing when a literal is
// malformed or the nesting is too deep.
std::optional<std::string> replaceStrings(std::string_view text, detail::JsonTree& tree) {
    std::string replaced;
    replaced.reserve(text.size());
    int depth = 0;
    for (std::size_t at = 0; at < text.size();) {
        const char c = text[at];
        if (c == '"') {
            const auto end = closingQuote(text, at + 1);
            auto bytes =
                end ? JsonText::unquotedContent(text.substr(at + 1, *end - at - 1)) : std::nullopt;
            if (!bytes) {
                return std::nullopt;
            }
            replaced += '"' + std::to_string(intern(tree, std::move(*bytes))) + '"';
            at = *end + 1;
            continue;
        }
        depth += (c == '[' || c == '{') - (c == ']' || c == '}');
        if (depth > maxDepth) {
            return std::nullopt;
        }
        replaced += c;
        ++at;
    }
    return replaced;
}

}  // namespace

std::optional<JsonDocument> JsonDocument::parse(std::string_view text) {
    auto tree = std::make_shared<detail::JsonTree>();
    const auto replaced = replaceStrings(text, *tree);
    if (!replaced) {
        return std::nullopt;
    }
    try {
        tree->root = nlohmann::json::parse(*replaced, nullptr, /*allow_exceptions=*/false);
    } catch (const nlohmann::json::exception&) {
        return std::nullopt;
    }
    if (tree->root.is_discarded()) {
        return std::nullopt;
    }
    return JsonDocument(std::move(tree));
}

JsonValue JsonDocument::root() const {
    return JsonValue(m_tree.get(), &m_tree->root);
}

JsonValue JsonValue::member(std::string_view key) const {
    if (!m_node || !m_node->is_object()) {
        return JsonValue(m_tree, nullptr);
    }
    const auto index = m_tree->indexOf.find(std::string(key));
    if (index == m_tree->indexOf.end()) {
        return JsonValue(m_tree, nullptr);
    }
    const auto found = m_node->find(std::to_string(index->second));
    return JsonValue(m_tree, found == m_node->end() ? nullptr : &*found);
}

std::optional<std::string> JsonValue::string() const {
    if (!m_node || !m_node->is_string()) {
        return std::nullopt;
    }
    const auto& placeholder = m_node->get_ref<const std::string&>();
    std::size_t index = 0;
    std::from_chars(placeholder.data(), placeholder.data() + placeholder.size(), index);
    return *m_tree->strings[index];
}

std::optional<std::int64_t> JsonValue::integer() const {
    if (!m_node || !m_node->is_number_integer()) {
        return std::nullopt;
    }
    if (m_node->is_number_unsigned() &&
        m_node->get<std::uint64_t>() > std::numeric_limits<std::int64_t>::max()) {
        return std::nullopt;
    }
    return m_node->get<std::int64_t>();
}

std::optional<double> JsonValue::number() const {
    if (!m_node || !m_node->is_number()) {
        return std::nullopt;
    }
    return m_node->get<double>();
}

bool JsonValue::isNull() const {
    return m_node && m_node->is_null();
}

bool JsonValue::isObject() const {
    return m_node && m_node->is_object();
}

std::optional<bool> JsonValue::boolean() const {
    if (!m_node || !m_node->is_boolean()) {
        return std::nullopt;
    }
    return m_node->get<bool>();
}

std::optional<std::vector<JsonValue>> JsonValue::elements() const {
    if (!m_node || !m_node->is_array()) {
        return std::nullopt;
    }
    std::vector<JsonValue> values;
    values.reserve(m_node->size());
    for (const auto& element : *m_node) {
        values.push_back(JsonValue(m_tree, &element));
    }
    return values;
}

std::optional<std::vector<std::string>> JsonValue::strings() const {
    const auto values = elements();
    if (!values) {
        return std::nullopt;
    }
    std::vector<std::string> texts;
    for (const auto& value : *values) {
        auto text = value.string();
        if (!text) {
            return std::nullopt;
        }
        texts.push_back(std::move(*text));
    }
    return texts;
}

}  // namespace tallowmere
