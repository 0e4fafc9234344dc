#include "persistence/StoreSettings.h"

#include <fcntl.h>

#include <cerrno>
#include <optional>
#include <system_error>

#include "platform/AtomicFile.h"
#include "platform/EntryStatus.h"
#include "platform/Renaming.h"
#include "platform/UserFolders.h"
#include "text/JsonDocument.h"
#include "text/JsonWriter.h"

namespace tallowmere::StoreSettingsFile {

namespace {

constexpr std::size_t largestSettingsFile = 16 * 1024 * 1024;

// Sets `into` from the member `key` when `read` finds a value of the right type there; a
// present value of another type marks the reading damaged and leaves the default.
template <typename Value, typename Read>
void take(const JsonValue& root, std::string_view key, Read read, Value& into,
          SettingsReading& reading) {
    const JsonValue value = root.member(key);
    if (auto found = read(value)) {
        into = std::move(*found);
    } else if (value.isPresent()) {
        reading.damaged = true;
    }
}

bool fileIsMissing(const std::filesystem::path& file) {
    EntryStatus status;
    return !readEntryStatus(AT_FDCWD, file.c_str(), status) && errno == ENOENT;
}

}  // namespace

std::filesystem::path location() {
    return UserFolders::configFolder() / "Tallowmere" / "settings.json";
}

SettingsReading decode(std::string_view json) {
    SettingsReading reading;
    const auto document = JsonDocument::parse(json);
    if (!document || !document->root().isObject()) {
        reading.damaged = true;
        return reading;
    }
    const JsonValue root = document->root();
    StoreSettings& settings = reading.settings;
    take(
        root, "aiMonitoring", [](const JsonValue& value) { return value.boolean(); },
        settings.aiMonitoring, reading);
    take(
        root, "aiLowSpaceGB", [](const JsonValue& value) { return value.integer(); },
        settings.lowSpaceGB, reading);
    take(
        root, "aiCustomPaths", [](const JsonValue& value) { return value.strings(); },
        settings.customPaths, reading);
    return reading;
}

std::string encode(const StoreSettings& settings) {
    JsonWriter writer;
    writer.beginObject();
    writer.key("aiMonitoring");
    writer.boolean(settings.aiMonitoring);
    writer.key("aiLowSpaceGB");
    writer.integer(settings.lowSpaceGB);
    writer.key("aiCustomPaths");
    writer.beginArray();
    for (const auto& path : settings.customPaths) {
        writer.string(path);
    }
    writer.endArray();
    writer.endObject();
    return writer.text();
}

SettingsReading read(const std::filesystem::path& file) {
    if (fileIsMissing(file)) {
        return {};
    }
    const auto json = AtomicFile::readWholeFile(file, largestSettingsFile);
    if (!json) {
        return {{}, true};
    }
    return decode(*json);
}

void keepAside(const std::filesystem::path& file) {
    for (int attempt = 1;; ++attempt) {
        std::string aside = file.native() + ".damaged";
        if (attempt > 1) {
            aside += "-" + std::to_string(attempt);
        }
        if (Renaming::moveWithoutReplacing(AT_FDCWD, file.c_str(), AT_FDCWD, aside.c_str())) {
            return;
        }
        const int code = errno;
        if (code == ENOENT) {
            return;
        }
        if (code != EEXIST) {
            throw std::system_error(
                code, std::generic_category(),
                "Couldn’t keep the damaged settings file " + file.native() + " aside as " + aside);
        }
    }
}

void write(const StoreSettings& settings, const std::filesystem::path& file) {
    AtomicFile::write(file, encode(settings));
}

}  // namespace tallowmere::StoreSettingsFile
