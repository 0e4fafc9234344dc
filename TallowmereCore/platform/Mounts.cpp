#include "platform/Mounts.h"

#include <fcntl.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <charconv>
#include <optional>
#include <string_view>

#include "platform/FileDescriptor.h"

namespace tallowmere {

namespace {

// The table writes a space, tab, line break or backslash in a path as "\\" and three octal digits.
std::string unescaped(std::string_view field) {
    std::string text;
    while (!field.empty()) {
        unsigned value = 0;
        const char* digitsEnd = field.data() + 4;
        if (field.size() >= 4 && field[0] == '\\' &&
            std::from_chars(field.data() + 1, digitsEnd, value, 8).ptr == digitsEnd) {
            text += static_cast<char>(value);
            field.remove_prefix(4);
        } else {
            text += field.front();
            field.remove_prefix(1);
        }
    }
    return text;
}

std::uint64_t number(std::string_view text) {
    std::uint64_t value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

// A line of the table: "id parent major:minor root mount-point options…".
std::optional<MountRecord> recordOf(std::string_view line) {
    std::string_view fields[5];
    for (auto& field : fields) {
        const auto end = line.find(' ');
        if (end == std::string_view::npos) {
            return std::nullopt;
        }
        field = line.substr(0, end);
        line.remove_prefix(end + 1);
    }
    const auto colon = fields[2].find(':');
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    const auto device =
        makedev(number(fields[2].substr(0, colon)), number(fields[2].substr(colon + 1)));
    return MountRecord{number(fields[0]), device, unescaped(fields[3]), unescaped(fields[4])};
}

std::string contentsOf(const char* file) {
    std::string text;
    FileDescriptor fd(::open(file, O_RDONLY | O_CLOEXEC));
    if (!fd.valid()) {
        return text;
    }
    char buffer[16384];
    ssize_t count;
    while ((count = ::read(fd.get(), buffer, sizeof buffer)) > 0) {
        text.append(buffer, static_cast<std::size_t>(count));
    }
    return count == 0 ? text : std::string();
}

}  // namespace

bool sameMount(const EntryStatus& first, const EntryStatus& second) {
    if (first.mountId != 0 && second.mountId != 0) {
        return first.mountId == second.mountId;
    }
    return first.identity.device == second.identity.device;
}

std::filesystem::path mountPointOf(const std::filesystem::path& folder,
                                   const EntryStatus& folderStatus) {
    auto top = folder;
    EntryStatus above;
    while (top.has_relative_path() && readEntryStatus(AT_FDCWD, top.parent_path().c_str(), above) &&
           sameMount(above, folderStatus)) {
        top = top.parent_path();
    }
    return top;
}

std::vector<MountRecord> readMountTable() {
    std::vector<MountRecord> mounts;
    const std::string table = contentsOf("/proc/self/mountinfo");
    std::string_view rest = table;
    while (!rest.empty()) {
        const auto end = rest.find('\n');
        if (auto record = recordOf(rest.substr(0, end))) {
            mounts.push_back(std::move(*record));
        }
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
    return mounts;
}

}  // namespace tallowmere
