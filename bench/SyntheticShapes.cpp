#include "SyntheticShapes.h"

#include <algorithm>
#include <array>

namespace tallowmere::bench {

namespace {

constexpr std::int64_t kibibyte = 1024;
constexpr std::int64_t mebibyte = 1024 * kibibyte;
constexpr std::int64_t gibibyte = 1024 * mebibyte;

constexpr std::array<std::string_view, 3> modelCategories = {"Models", "Models & cache",
                                                             "ML cache"};
constexpr std::array<std::string_view, 10> busyCategories = {
    "History & projects", "Sessions",        "Archived sessions",   "Task history",
    "Local file history", "Workspace state", "Shared editor state", "Extensions",
    "Worktrees",          "Checkpoints"};
constexpr std::array<std::string_view, 4> settingsCategories = {"Settings & state", "Plugins",
                                                                "Visualizations", "Backups"};

// Cache entries, sessions, logs and editor state; a few names with non-ASCII letters, a line
// break or a byte that is not UTF-8, which a scan must carry through untouched.
constexpr std::array generalNames = std::to_array<NamePattern>({
    {150, "f_", ""},
    {150, "", ".json"},
    {100, "session-", ".jsonl"},
    {90, "server-", ".log"},
    {50, "app.log.", ""},
    {100, "blob-", ".bin"},
    {60, "state-", ".vscdb"},
    {60, "notes-", ".txt"},
    {50, "chunk-", ".js"},
    {40, "thumb-", ".png"},
    {30, "résumé-", ".md"},
    {30, "会话-", ".json"},
    {20, "Ünïcødé ", ".txt"},
    {15, "😀 emoji ", ".txt"},
    {3, "line\nbreak-", ".log"},
    {2, "bad\xff", ".bin"},
});

constexpr std::array logNames = std::to_array<NamePattern>({
    {450, "server-", ".log"},
    {300, "app.log.", ""},
    {100, "renderer-", ".log"},
    {100, "", ".json"},
    {40, "crash-", ".txt"},
    {7, "journal-é-", ".log"},
    {2, "line\nbreak-", ".log"},
    {1, "bad\xff", ".log"},
});

constexpr std::array modelNames = std::to_array<NamePattern>({
    {300, "model-", ".safetensors"},
    {200, "weights-", ".gguf"},
    {200, "blob-sha256-", ""},
    {200, "config-", ".json"},
    {80, "tokenizer-", ".bin"},
    {20, "modèle-", ".pt"},
});

constexpr std::array everydaySizes = std::to_array<SizeBand>({
    {40, 0, 0},
    {300, 1, kibibyte},
    {400, kibibyte + 1, 8 * kibibyte},
    {180, 8 * kibibyte + 1, 16 * kibibyte},
    {60, 16 * kibibyte + 1, 256 * kibibyte},
    {18, 256 * kibibyte + 1, 4 * mebibyte},
    {2, 4 * mebibyte + 1, 32 * mebibyte},
});

constexpr std::array modelSizes = std::to_array<SizeBand>({
    {20, 0, 0},
    {250, 1, kibibyte},
    {300, kibibyte + 1, 8 * kibibyte},
    {150, 8 * kibibyte + 1, 16 * kibibyte},
    {130, 16 * kibibyte + 1, mebibyte},
    {120, mebibyte + 1, 64 * mebibyte},
    {25, 64 * mebibyte + 1, gibibyte},
    {5, gibibyte + 1, 4 * gibibyte},
});

constexpr std::array folderWordRows = std::to_array<FolderWord>({
    {100, "session"},
    {100, "project"},
    {80, "workspace"},
    {80, "snapshot"},
    {80, "blobs"},
    {80, "chunks"},
    {80, "objects"},
    {80, "data"},
    {60, "tmp"},
    {60, "shard"},
    {40, "Entwürfe"},
    {40, "プロジェクト"},
    {20, "with space"},
});

constexpr std::array folderFillRows = std::to_array<FolderFill>({
    {30, 4},
    {30, 10},
    {25, 25},
    {15, 60},
});

bool isAmong(const auto& list, const std::string& category) {
    return std::ranges::find(list, category) != list.end();
}

}  // namespace

LocationKind kindOf(const std::string& category) {
    if (category == "Logs") {
        return LocationKind::logs;
    }
    return isAmong(modelCategories, category) ? LocationKind::models : LocationKind::general;
}

std::uint64_t categoryWeight(const std::string& category) {
    if (isAmong(modelCategories, category) || category == "Cache") {
        return 6;
    }
    if (isAmong(busyCategories, category)) {
        return 4;
    }
    return isAmong(settingsCategories, category) ? 1 : 2;
}

std::span<const NamePattern> namesFor(LocationKind kind) {
    switch (kind) {
        case LocationKind::logs:
            return logNames;
        case LocationKind::models:
            return modelNames;
        case LocationKind::general:
            break;
    }
    return generalNames;
}

std::span<const SizeBand> sizesFor(LocationKind kind) {
    return kind == LocationKind::models ? std::span<const SizeBand>(modelSizes) : everydaySizes;
}

std::span<const FolderWord> folderWords() {
    return folderWordRows;
}

std::span<const FolderFill> folderFills() {
    return folderFillRows;
}

}  // namespace tallowmere::bench
