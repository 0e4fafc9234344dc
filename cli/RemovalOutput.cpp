#include "RemovalOutput.h"

#include <iostream>

#include "platform/Deletion.h"
#include "platform/UserFolders.h"

namespace tallowmere::cli {

void forgetSummary() {
    try {
        Deletion::removeFile(UserFolders::summaryFile());
    } catch (const std::exception&) {
    }
}

void printOutcome(const std::optional<std::string>& notice,
                  const std::optional<std::string>& error) {
    if (notice) {
        std::cout << *notice << '\n';
    }
    if (error) {
        std::cerr << *error << '\n';
    }
}

void writeOptionalText(JsonWriter& json, const char* key, const std::optional<std::string>& text) {
    json.key(key);
    if (text) {
        json.string(*text);
    } else {
        json.null();
    }
}

void writeTexts(JsonWriter& json, const char* key, const std::vector<std::string>& texts) {
    json.key(key);
    json.beginArray();
    for (const auto& text : texts) {
        json.string(text);
    }
    json.endArray();
}

}  // namespace tallowmere::cli
