#include "text/JsonWriter.h"

#include <charconv>

#include "text/JsonText.h"

namespace tallowmere {

void JsonWriter::beginObject() {
    beforeValue();
    buffer += '{';
    needsComma = false;
}

void JsonWriter::endObject() {
    buffer += '}';
    needsComma = true;
}

void JsonWriter::beginArray() {
    beforeValue();
    buffer += '[';
    needsComma = false;
}

void JsonWriter::endArray() {
    buffer += ']';
    needsComma = true;
}

void JsonWriter::key(std::string_view name) {
    beforeValue();
    JsonText::appendQuoted(buffer, name);
    buffer += ':';
    // The member's value follows the colon directly.
    needsComma = false;
}

void JsonWriter::string(std::string_view bytes) {
    beforeValue();
    JsonText::appendQuoted(buffer, bytes);
}

void JsonWriter::integer(std::int64_t value) {
    beforeValue();
    char digits[24];
    const auto result = std::to_chars(digits, digits + sizeof digits, value);
    buffer.append(digits, result.ptr);
}

void JsonWriter::boolean(bool value) {
    beforeValue();
    buffer += value ? "true" : "false";
}

void JsonWriter::null() {
    beforeValue();
    buffer += "null";
}

void JsonWriter::date(double seconds) {
    beforeValue();
    buffer += JsonText::shortestNumber(seconds);
}

// Every value and key passes here: it separates it from the previous sibling, and marks that
// the next sibling needs a separator.
void JsonWriter::beforeValue() {
    if (needsComma) {
        buffer += ',';
    }
    needsComma = true;
}

void JsonWriter::flushTo(std::ostream& out) {
    out << buffer;
    buffer.clear();
}

}  // namespace tallowmere
