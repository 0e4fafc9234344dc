#include "catalog/ToolCatalog.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "catalog/EditorBreakdown.h"
#include "text/NaturalOrder.h"

namespace tallowmere::AIStorageScanner {

namespace {

constexpr std::array<std::string_view, 5> editorCacheFolders = {
    "Cache", "Code Cache", "GPUCache", "CachedData", "CachedExtensionVSIXs"};

void append(std::vector<StorageLocation>& list, const std::vector<StorageLocation>& block) {
    list.insert(list.end(), block.begin(), block.end());
}

}  // namespace

const std::vector<StorageLocation>& originalLocations() {
    static const std::vector<StorageLocation> rows = {
        {"Hermes Agent", "Logs", ".hermes/logs",
         "Runtime diagnostics. Review old logs after stopping the agent."},
        {"Hermes Agent", "Agent data", ".hermes",
         "Session databases, profiles, memory, skills and other agent files. "
         "Manage history through Hermes; do not delete state.db or its companion files."},
        {"Claude Code", "Logs", ".claude/debug",
         "Debug output. Review old files after stopping Claude Code."},
        {"Claude Code", "History & projects", ".claude/projects",
         "Conversations, subagent output and project memory. "
         "Use Claude Code’s retention settings to manage this history."},
        {"Claude Code", "Agent data", ".claude",
         "Other settings, plugins, snapshots and caches. Some files are needed to restore work."},
        {"Codex", "Logs", ".codex/log",
         "CLI diagnostics. Quit the agent before reviewing old logs."},
        {"Codex", "Agent data", ".codex",
         "Local sessions, worktrees, plugins and settings. "
         "Active work and conversation history are kept out of log cleanup."},
        {"OpenClaw", "Logs", ".openclaw/logs",
         "Default service logs. Custom or temporary log directories need to be added separately."},
        {"OpenClaw", "Agent data", ".openclaw",
         "Agent databases, memory, workspaces and configuration. "
         "Manage sessions with OpenClaw’s own tools."},
        {"Ollama", "Models", ".ollama/models",
         "Downloaded model weights. "
         "Remove unneeded models using Ollama so shared layers remain consistent."},
        {"Ollama", "Logs", ".ollama/logs",
         "Local runtime diagnostics. Review old files after stopping Ollama."},
        {"Hugging Face", "Models & cache", ".cache/huggingface",
         "Shared downloads used by multiple ML tools. "
         "Manage unused revisions with Hugging Face’s cache tools."},
        {"LM Studio", "Models", ".lmstudio/models",
         "Downloaded model weights. Manage models through LM Studio."},
        {"LM Studio", "Models", ".cache/lm-studio/models", "Older default model location."},
        {"PyTorch", "ML cache", ".cache/torch",
         "Shared ML assets. Removing these can require downloading them again."},
        {"Whisper", "Models", ".cache/whisper",
         "Speech model downloads. Removing these requires downloading them again."},
    };
    return rows;
}

const std::vector<StorageLocation>& additionalLocations() {
    static const std::vector<StorageLocation> rows = {
        {"IBM Bob", "Agent data", ".bob",
         "Bob Shell database, settings, skills and agent state. "
         "The database can contain saved work; removing it can reset Bob Shell."},
        {"IBM Bob", "Logs", ".bob/logs",
         "Bob Shell diagnostic logs. Quit Bob Shell before removing troubleshooting records."},
        {"IBM Bob", "Settings & state", ".bob/settings",
         "Bob Shell settings and authentication secrets. "
         "Removing these can reset preferences and sign-in."},
        {"IBM Bob", "Editor data", ".bobide",
         "Stable Bob editor add-ons, CLI assets and configuration."},
        {"IBM Bob", "Editor data", ".bobide-insiders",
         "Bob Insiders add-ons, CLI assets and configuration."},
        {"IBM Bob", "Agent data", ".bobide-insiders-shared",
         "Shared Bob Insiders state. Removal may reset shared configuration or saved work."},
        {"IBM Bob", "Editor data", "Library/Application Support/IBM Bob",
         "Stable Bob editor application data, including non-AI editor overhead. "
         "Recognized caches and saved work are listed separately."},
        {"IBM Bob", "Editor data", "Library/Application Support/IBM Bob - Insiders",
         "Bob Insiders application data, including non-AI editor overhead. "
         "Recognized extension storage is attributed to its owning tool."},
        {"OpenCode", "Logs", ".local/share/opencode/log",
         "Default runtime logs. Session databases and snapshots are tracked separately."},
        {"OpenCode", "Agent data", ".local/share/opencode",
         "Sessions, snapshots, plugins and authentication data. Manage sessions inside OpenCode."},
        {"OpenCode", "Cache", ".cache/opencode",
         "Downloaded dependencies and tool assets. "
         "Review in Finder; OpenCode may need to download them again."},
        {"OpenCode", "Settings & state", ".config/opencode",
         "User settings and plugins. Not disposable cache."},
        {"OpenCode", "Settings & state", ".local/state/opencode",
         "Local application state. "
         "Custom XDG paths are supported when available in Tallowmere’s environment."},
        {"Cline", "Agent data", ".cline",
         "CLI and shared Cline sessions, schedules, plugins and settings. "
         "IDE extension data is also detected separately."},
        {"Cline", "App data", "Library/Application Support/Cline",
         "Desktop application state and caches. This folder may contain active tasks and history."},
        {"Gemini CLI", "History & projects", ".gemini/tmp",
         "Project chats, checkpoints and generated files. Despite its name, this folder contains "
         "resumable work; do not treat it as disposable temp data."},
        {"Gemini CLI", "Agent data", ".gemini",
         "Settings, extensions, credentials and other Gemini data. "
         "Antigravity folders are measured separately when present."},
        {"Antigravity", "Agent data", ".gemini/antigravity",
         "Agent workspace and generated artifacts. May contain work you want to keep."},
        {"Antigravity", "Editor data", ".antigravity-ide",
         "Editor assets and extensions. "
         "Includes application overhead, not just AI conversation data."},
        {"Antigravity", "Editor data", "Library/Application Support/Antigravity IDE",
         "Editor state and caches. Recognized AI extension folders are measured separately."},
        {"Antigravity", "Editor data", "Library/Application Support/Antigravity",
         "Alternative editor data location. Includes settings and non-AI editor overhead."},
        {"Cursor", "Editor data", ".cursor",
         "Extensions, configuration and agent files. Includes non-AI editor assets too."},
        {"Cursor", "Editor data", "Library/Application Support/Cursor",
         "Editor databases, chat history and caches. "
         "Extension-owned folders are counted under their own tools."},
        {"Windsurf", "Agent data", ".codeium/windsurf",
         "Cascade state, indexes and agent files. Manage history through Windsurf."},
        {"Windsurf", "Editor data", "Library/Application Support/Windsurf",
         "Editor settings, databases and caches. Includes non-AI editor overhead."},
        {"Kiro", "Agent data", ".kiro",
         "Agent settings, assets and local state. Review through Kiro before removing files."},
        {"Kiro", "Agent data", ".kiro-shared",
         "Shared Kiro state. May be used by multiple Kiro surfaces."},
        {"Kiro", "Editor data", "Library/Application Support/Kiro",
         "Editor state and caches, including non-AI application overhead."},
        {"Continue", "Agent data", ".continue",
         "CLI and IDE sessions, indexes, configuration and downloads. "
         "Saved conversations are not log cleanup candidates."},
        {"Goose", "Agent data", ".local/share/goose",
         "Agent sessions and local data used by some installations."},
        {"Goose", "Settings & state", ".config/goose",
         "Goose configuration, extensions and credentials. Not disposable cache."},
        {"Goose", "Agent data", "Library/Application Support/Block/goose",
         "Native macOS Goose data and configuration. "
         "Custom GOOSE_PATH_ROOT locations can be added manually."},
        {"Amp", "Agent data", ".local/share/amp",
         "Local threads and authentication state. Manage through Amp before removing data."},
        {"Amp", "Settings & state", ".config/amp",
         "Amp configuration. Contents are measured without opening credentials."},
        {"GitHub Copilot", "Agent data", ".copilot",
         "CLI sessions, logs, settings and local assets. "
         "Editor extension data is detected separately."},
        {"Qwen Code", "Agent data", ".qwen",
         "Project memory, conversations, extensions and settings. "
         "Keep resumable history and agent memory."},
        {"Pi", "Agent data", ".pi/agent",
         "Local sessions, packages and configuration. "
         "A custom agent directory can be added manually."},
        {"Kilo Code", "Agent data", ".kilocode",
         "CLI configuration and agent state. IDE extension storage is also detected separately."},
    };
    return rows;
}

const std::vector<StorageEditor>& storageEditors() {
    static const std::vector<StorageEditor> rows = {
        {"Cursor", "Cursor"},
        {"Windsurf", "Windsurf"},
        {"Kiro", "Kiro"},
        {"Antigravity", "Antigravity"},
        {"Antigravity IDE", "Antigravity"},
        {"IBM Bob", "IBM Bob"},
        {"IBM Bob - Insiders", "IBM Bob"},
    };
    return rows;
}

const std::vector<StorageLocation>& editorCaches() {
    static const std::vector<StorageLocation> rows = [] {
        std::vector<StorageLocation> list;
        for (const StorageEditor& editor : storageEditors()) {
            // The detail names the folder, not the owner, so two folders of one tool differ.
            const std::string detail = "Generated " + editor.folder +
                                       " cache. Quit the editor before removing files; it may "
                                       "rebuild or download them again.";
            for (const std::string_view cache : editorCacheFolders) {
                list.push_back(
                    {editor.owner, "Cache",
                     "Library/Application Support/" + editor.folder + "/" + std::string(cache),
                     detail});
            }
        }
        return list;
    }();
    return rows;
}

const std::vector<StorageLocation>& locations() {
    static const std::vector<StorageLocation> rows = [] {
        std::vector<StorageLocation> list;
        append(list, originalLocations());
        append(list, additionalLocations());
        append(list, editorCaches());
        append(list, breakdownLocations());
        return list;
    }();
    return rows;
}

std::vector<std::string> supportedOwners() {
    std::vector<std::string> owners;
    for (const StorageLocation& location : locations()) {
        owners.push_back(location.owner);
    }
    for (const EditorExtension& extension : editorExtensions()) {
        owners.push_back(extension.owner);
    }
    // The order is total, so equal names end up adjacent.
    std::sort(owners.begin(), owners.end(), NaturalOrder::less);
    owners.erase(std::unique(owners.begin(), owners.end()), owners.end());
    return owners;
}

}  // namespace tallowmere::AIStorageScanner
