#include "RemovalOutput.h"

#include <iostream>

#include "RecordJson.h"
#include "text/JsonWriter.h"

namespace tallowmere::cli {

namespace {

void writeOptionalText(JsonWriter& json, const char* key, const std::optional<std::string>& text) {
    json.key(key);
    if (text) {
        json.string(*text);
    } else {
        json.null();
    }
}

}  // namespace

void reportOutcome(const Outcome& outcome, bool json) {
    if (!json) {
        if (outcome.notice) {
            std::cout << *outcome.notice << '\n';
        }
        if (outcome.error) {
            std::cerr << *outcome.error << '\n';
        }
        return;
    }
    JsonWriter writer;
    writer.beginObject();
    writer.key(outcome.countKey);
    writer.integer(outcome.count);
    writer.key(outcome.itemsKey);
    writer.beginArray();
    for (const auto& item : outcome.items) {
        writeTrashedItem(writer, item);
    }
    writer.endArray();
    writer.key("errors");
    writer.beginArray();
    for (const auto& text : outcome.errors) {
        writer.string(text);
    }
    writer.endArray();
    writeOptionalText(writer, "notice", outcome.notice);
    writeOptionalText(writer, "error", outcome.error);
    writer.endObject();
    std::cout << writer.text() << '\n';
}

}  // namespace tallowmere::cli
