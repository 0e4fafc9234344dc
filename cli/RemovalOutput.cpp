#include "RemovalOutput.h"

#include <iostream>

#include "RecordJson.h"
#include "text/JsonWriter.h"
#include "text/SizeText.h"
#include "text/TerminalText.h"

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

// The bytes the items held where they were: a file's size, a folder's size on disk.
std::int64_t heldBytes(const std::vector<TrashedStorageFile>& items) {
    std::int64_t bytes = 0;
    for (const auto& item : items) {
        bytes +=
            item.locationSnapshot ? item.locationSnapshot->allocatedBytes : item.original.bytes;
    }
    return bytes;
}

}  // namespace

std::vector<std::string> escapedTexts(std::vector<std::string> texts) {
    for (auto& text : texts) {
        text = TerminalText::escaped(text);
    }
    return texts;
}

std::string shellWord(const std::string& path) {
    const bool plain = !path.empty() && path.find_first_not_of(
                                            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                            "0123456789_-.,/:@%+=") == std::string::npos;
    if (plain) {
        return path;
    }
    std::string word = "'";
    for (const char byte : path) {
        word += byte == '\'' ? std::string("'\\''") : std::string(1, byte);
    }
    word += "'";
    // A name that could drive the terminal is shown escaped, and is then no longer a word to
    // paste. Escaping only doubles a backslash otherwise; that one stays as it is.
    std::string backslashesDoubled;
    for (const char byte : word) {
        backslashesDoubled += byte == '\\' ? std::string(2, byte) : std::string(1, byte);
    }
    const std::string escaped = TerminalText::escaped(word);
    return escaped == backslashesDoubled ? word : escaped;
}

std::string afterTrashing(const std::vector<TrashedStorageFile>& items,
                          const std::filesystem::path& undoFile) {
    const std::string word = shellWord(undoFile.native());
    return (items.size() == 1 ? "It holds " : "They hold ") + SizeText::bytes(heldBytes(items)) +
           ", which stays in use until the Trash is emptied.\n"
           "Undo file: " +
           TerminalText::escaped(undoFile.native()) +
           "\n"
           "Put back:        tallowmere-cli restore " +
           word +
           "\n"
           "Free the space:  tallowmere-cli empty-trash " +
           word + "\n";
}

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
    if (outcome.bytesFreed) {
        writer.key("bytesFreed");
        writer.integer(*outcome.bytesFreed);
    }
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
