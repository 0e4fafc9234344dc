#include "catalog/EditorBreakdown.h"

#include <algorithm>

#include "catalog/ToolCatalog.h"
#include "platform/PathRules.h"
#include "text/TextRules.h"

namespace tallowmere::AIStorageScanner {

namespace {

// Plain character constants: the tables below may be built during another file's static
// initialisation.
constexpr char extensionCategory[] = "IDE extension data";
constexpr char extensionsDetail[] =
    "Installed editor add-ons. Remove unused extensions through the editor for precise control.";
constexpr char bobLogsDetail[] = "Bob editor and CLI diagnostics. Quit Bob before removal.";

// A folder inside a parent folder, with what it holds.
struct SubFolder {
    std::string path;
    std::string category;
    std::string detail;
};

struct ExtensionRoot {
    std::string owner;
    std::string folder;
};

struct AgentFolders {
    std::string owner;
    std::string base;
    std::vector<SubFolder> parts;
};

const std::vector<SubFolder>& editorStateFolders() {
    static const std::vector<SubFolder> rows = {
        {"User/globalStorage", "Shared editor state",
         "Shared editor and extension databases. "
         "This is not a folder of disposable cache or only login files."},
        {"User/workspaceStorage", "Workspace state",
         "Per-workspace databases and extension state. Can contain resumable work."},
        {"User/History", "Local file history",
         "Local file revisions used to recover earlier edits."},
        {"Backups", "Backups", "Recovery copies that may include unsaved editor changes."},
        {"logs", "Logs",
         "Editor and extension diagnostics. Quit the editor before reviewing old logs."},
    };
    return rows;
}

const std::vector<ExtensionRoot>& editorExtensionRoots() {
    static const std::vector<ExtensionRoot> rows = {
        {"Cursor", ".cursor"},
        {"Kiro", ".kiro"},
        {"Antigravity", ".antigravity-ide"},
        {"IBM Bob", ".bobide"},
        {"IBM Bob", ".bobide-insiders"},
    };
    return rows;
}

const std::vector<AgentFolders>& agentSubfolders() {
    static const std::vector<AgentFolders> groups = {
        {"OpenCode",
         ".local/share/opencode",
         {{"snapshot", "Checkpoints", "Snapshots used for file rollback."},
          {"storage", "Task history",
           "Legacy file-based session and message storage; "
           "newer database storage remains in mixed app data."},
          {"tool-output", "Generated outputs",
           "Saved tool results referenced by sessions. "
           "Removing them can break access to those results."}}},
        {"Codex",
         ".codex",
         {{"sessions", "Sessions", "Saved agent conversations and task context."},
          {"archived_sessions", "Archived sessions",
           "Archived conversations; these remain saved work."},
          {"worktrees", "Worktrees",
           "Separate working copies that may contain uncommitted changes."},
          {"plugins", "Plugins",
           "Installed plugins and associated assets; custom changes may be present."},
          {"generated_images", "Generated images",
           "Generated artwork; these may be the only copies."},
          {"visualizations", "Visualizations",
           "Generated interactive artifacts and their supporting files."}}},
        {"Cline",
         ".cline",
         {{"tasks", "Task history", "Saved CLI task history and related artifacts."}}},
        {"Continue", ".continue", {{"sessions", "Sessions", "Saved local conversation sessions."}}},
        {"Pi", ".pi/agent", {{"sessions", "Sessions", "Saved agent conversations."}}},
        {"GitHub Copilot",
         ".copilot",
         {{"session-state", "Sessions", "Saved CLI session state and context."}}},
    };
    return groups;
}

void appendEditorState(std::vector<StorageLocation>& list) {
    for (const StorageEditor& editor : storageEditors()) {
        for (const SubFolder& state : editorStateFolders()) {
            list.push_back({editor.owner, state.category,
                            "Library/Application Support/" + editor.folder + "/" + state.path,
                            state.detail});
        }
    }
}

void appendExtensionRoots(std::vector<StorageLocation>& list) {
    for (const ExtensionRoot& root : editorExtensionRoots()) {
        list.push_back({root.owner, "Extensions", root.folder + "/extensions", extensionsDetail});
    }
}

void appendAgentSubfolders(std::vector<StorageLocation>& list) {
    for (const AgentFolders& agent : agentSubfolders()) {
        for (const SubFolder& part : agent.parts) {
            list.push_back({agent.owner, part.category, agent.base + "/" + part.path, part.detail});
        }
    }
}

void appendBobLogs(std::vector<StorageLocation>& list) {
    for (const std::string folder : {".bobide", ".bobide-insiders"}) {
        list.push_back({"IBM Bob", "Logs", folder + "/logs", bobLogsDetail});
    }
}

const EditorExtension* recognisedExtension(const std::filesystem::path& folder) {
    // Folder names are bytes, so only ASCII letters are lower-cased.
    const std::string name =
        TextRules::asciiLowercased(PathRules::lastComponent(PathRules::standardized(folder)));
    const auto& rows = editorExtensions();
    const auto found = std::find_if(rows.begin(), rows.end(),
                                    [&](const EditorExtension& row) { return row.id == name; });
    return found == rows.end() ? nullptr : &*found;
}

}  // namespace

const std::vector<StorageLocation>& breakdownLocations() {
    static const std::vector<StorageLocation> rows = [] {
        std::vector<StorageLocation> list;
        appendEditorState(list);
        appendExtensionRoots(list);
        appendAgentSubfolders(list);
        appendBobLogs(list);
        return list;
    }();
    return rows;
}

const std::vector<EditorExtension>& editorExtensions() {
    static const std::vector<EditorExtension> rows = {
        {"ibm.bob-code", "IBM Bob"},
        {"saoudrizwan.claude-dev", "Cline"},
        {"rooveterinaryinc.roo-cline", "Roo Code"},
        {"kilocode.kilo-code", "Kilo Code"},
        {"continue.continue", "Continue"},
        {"github.copilot-chat", "GitHub Copilot"},
        {"github.copilot", "GitHub Copilot"},
        {"sourcegraph.cody-ai", "Cody"},
        {"sourcegraph.amp", "Amp"},
    };
    return rows;
}

const std::vector<std::string>& extensionBreakdownOwners() {
    static const std::vector<std::string> owners = {"Cline", "Roo Code", "Kilo Code", "IBM Bob"};
    return owners;
}

std::optional<StorageLocation> attributeEditorExtension(const std::filesystem::path& folder,
                                                        const std::string& editorFolder,
                                                        const std::optional<std::string>& profile) {
    const EditorExtension* extension = recognisedExtension(folder);
    if (extension == nullptr) {
        return std::nullopt;
    }
    std::string detail = editorFolder;
    if (profile) {
        detail += " · profile " + *profile;
    }
    detail +=
        ". Task history, checkpoints, indexes and settings belong to this extension. "
        "Manage them through " +
        extension->owner + ".";
    return StorageLocation{extension->owner, extensionCategory, folder.native(), detail};
}

std::optional<StorageLocation> attributeServerExtension(const std::filesystem::path& folder,
                                                        const std::string& serverFolder) {
    const EditorExtension* extension = recognisedExtension(folder);
    if (extension == nullptr) {
        return std::nullopt;
    }
    return StorageLocation{extension->owner, extensionCategory, folder.native(),
                           "Local " + serverFolder +
                               " extension data. Remote hosts and containers must be measured "
                               "separately."};
}

std::vector<StorageLocation> extensionBreakdown(const std::vector<StorageLocation>& discovered) {
    const auto& owners = extensionBreakdownOwners();
    std::vector<StorageLocation> parts;
    for (const StorageLocation& location : discovered) {
        if (location.category != extensionCategory ||
            std::find(owners.begin(), owners.end(), location.owner) == owners.end()) {
            continue;
        }
        parts.push_back({location.owner, "Task history", location.relativePath + "/tasks",
                         "Saved tasks and their conversation context. Remove individual tasks "
                         "through " +
                             location.owner + " to retain the ones you need."});
        parts.push_back({location.owner, "Checkpoints", location.relativePath + "/checkpoints",
                         "Task rollback checkpoints. Removing these loses the corresponding "
                         "recovery history."});
    }
    return parts;
}

}  // namespace tallowmere::AIStorageScanner
