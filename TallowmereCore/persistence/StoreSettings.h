#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tallowmere {

// The user's three settings of the application, kept in a small JSON file.
struct StoreSettings {
    bool aiMonitoring = true;
    std::int64_t lowSpaceGB = 20;
    std::vector<std::string> customPaths;  // absolute paths of the tracked folders, any bytes

    bool operator==(const StoreSettings&) const = default;
};

// What a settings file held. `damaged` is set when the file exists but is not a JSON object, or
// one of the three keys holds a value of another type: writing over it would lose what it
// holds, so the file is kept aside first.
struct SettingsReading {
    StoreSettings settings;
    bool damaged = false;
};

}  // namespace tallowmere

// The settings file: one JSON object with the keys "aiMonitoring" (boolean), "aiLowSpaceGB"
// (integer) and "aiCustomPaths" (array of strings); a missing key, or one of another type, has
// its default. Strings carry any bytes as JsonText writes them.
namespace tallowmere::StoreSettingsFile {

// $XDG_CONFIG_HOME/Tallowmere/settings.json, else ~/.config/Tallowmere/settings.json. Throws
// as UserFolders::configFolder() does.
std::filesystem::path location();

// The settings that `json` holds; never throws but std::bad_alloc.
SettingsReading decode(std::string_view json);

// The compact JSON of `settings`, keys in the order above.
std::string encode(const StoreSettings& settings);

// The settings in `file`: the defaults, not damaged, when there is no file; damaged defaults
// when it cannot be read or is larger than 16 MiB.
SettingsReading read(const std::filesystem::path& file);

// Renames `file` to "<name>.damaged" (or "<name>.damaged-2" and so on, never replacing one),
// so that a damaged file is kept for the user. Nothing to do when there is no file. Throws
// std::system_error naming the file when it cannot.
void keepAside(const std::filesystem::path& file);

// Replaces `file` atomically with `settings`, creating its folder. Throws std::system_error
// naming the path and the failed step; the old file then stays as it was.
void write(const StoreSettings& settings, const std::filesystem::path& file);

}  // namespace tallowmere::StoreSettingsFile
