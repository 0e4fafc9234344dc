#include "catalog/EditorBreakdown.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "catalog/ToolCatalog.h"

namespace tallowmere::AIStorageScanner {
namespace {

using ::testing::_;
using ::testing::ElementsAre;
using ::testing::FieldsAre;
using ::testing::Optional;

const std::string cursorStorage = "/Users/a/Library/Application Support/Cursor/User/globalStorage";

TEST(EditorBreakdownTest, BreakdownRowsComeInBlockOrder) {
    const auto& rows = breakdownLocations();
    ASSERT_EQ(rows.size(), 55u);
    EXPECT_THAT(rows[0], FieldsAre("Cursor", "Shared editor state",
                                   "Library/Application Support/Cursor/User/globalStorage", _));
    EXPECT_THAT(rows[20],
                FieldsAre("Antigravity", "Shared editor state",
                          "Library/Application Support/Antigravity IDE/User/globalStorage", _));
    EXPECT_THAT(rows[34],
                FieldsAre("IBM Bob", "Logs", "Library/Application Support/IBM Bob - Insiders/logs",
                          "Editor and extension diagnostics. Quit the editor before "
                          "reviewing old logs."));
    EXPECT_THAT(rows[35], FieldsAre("Cursor", "Extensions", ".cursor/extensions",
                                    "Installed editor add-ons. Remove unused extensions through "
                                    "the editor for precise control."));
    EXPECT_THAT(rows[40], FieldsAre("OpenCode", "Checkpoints", ".local/share/opencode/snapshot",
                                    "Snapshots used for file rollback."));
    EXPECT_THAT(rows[52], FieldsAre("GitHub Copilot", "Sessions", ".copilot/session-state", _));
    EXPECT_THAT(rows[54], FieldsAre("IBM Bob", "Logs", ".bobide-insiders/logs",
                                    "Bob editor and CLI diagnostics. Quit Bob before removal."));

    // Windsurf's application data is split, but it has no extension root.
    const auto windsurfRows = [&](const std::string& category) {
        return std::count_if(rows.begin(), rows.end(), [&](const StorageLocation& l) {
            return l.owner == "Windsurf" && l.category == category;
        });
    };
    EXPECT_EQ(windsurfRows("Workspace state"), 1);
    EXPECT_EQ(windsurfRows("Extensions"), 0);
}

TEST(EditorBreakdownTest, ExtensionTablesHoldLowerCaseIdsAndTheBreakdownOwners) {
    std::set<std::string> ids;
    for (const EditorExtension& extension : editorExtensions()) {
        EXPECT_TRUE(std::none_of(extension.id.begin(), extension.id.end(), [](char c) {
            return c >= 'A' && c <= 'Z';
        })) << extension.id;
        ids.insert(extension.id);
    }
    EXPECT_EQ(ids.size(), 9u);
    EXPECT_THAT(extensionBreakdownOwners(),
                ElementsAre("Cline", "Roo Code", "Kilo Code", "IBM Bob"));
}

TEST(EditorBreakdownTest, EditorFormAttributesKnownFoldersWithTheirEditorAndProfile) {
    EXPECT_THAT(
        attributeEditorExtension(cursorStorage + "/saoudrizwan.claude-dev", "Cursor", std::nullopt),
        Optional(FieldsAre("Cline", "IDE extension data", cursorStorage + "/saoudrizwan.claude-dev",
                           "Cursor. Task history, checkpoints, indexes and settings "
                           "belong to this extension. Manage them through Cline.")));

    // Folder names match ignoring ASCII case; the path keeps its own spelling.
    const std::string profileFolder =
        "/p/User/profiles/1a2b/globalStorage/RooVeterinaryInc.Roo-Cline";
    EXPECT_THAT(attributeEditorExtension(profileFolder, "Code", "1a2b"),
                Optional(FieldsAre("Roo Code", "IDE extension data", profileFolder,
                                   "Code · profile 1a2b. Task history, checkpoints, indexes and "
                                   "settings belong to this extension. Manage them through Roo "
                                   "Code.")));

    const auto copilotChat =
        attributeEditorExtension(cursorStorage + "/github.copilot-chat", "Cursor", std::nullopt);
    const auto copilot =
        attributeEditorExtension(cursorStorage + "/github.copilot", "Cursor", std::nullopt);
    ASSERT_TRUE(copilotChat && copilot);
    EXPECT_EQ(copilotChat->owner, "GitHub Copilot");
    EXPECT_EQ(copilot->owner, "GitHub Copilot");
    EXPECT_NE(copilotChat->id(), copilot->id());

    const auto amp =
        attributeEditorExtension(cursorStorage + "/sourcegraph.amp", "Cursor", std::nullopt);
    ASSERT_TRUE(amp);
    EXPECT_EQ(amp->owner, locations()[48].owner);  // the "Amp" catalog rows' owner

    EXPECT_EQ(attributeEditorExtension(cursorStorage + "/ms-python.python", "Cursor", "p"),
              std::nullopt);
    EXPECT_EQ(attributeEditorExtension(cursorStorage + "/github.copilot-chat.bak", "Cursor",
                                       std::nullopt),
              std::nullopt);
    // Names are bytes: the Kelvin sign, which Unicode lower-cases to "k", is not folded.
    EXPECT_EQ(attributeEditorExtension(cursorStorage + "/\xE2\x84\xAAilocode.kilo-code", "Cursor",
                                       std::nullopt),
              std::nullopt);
}

TEST(EditorBreakdownTest, ServerFormNamesTheServerFolder) {
    const std::string folder = "/Users/a/.vscode-server/data/User/globalStorage/Continue.Continue";
    EXPECT_THAT(attributeServerExtension(folder, ".vscode-server"),
                Optional(FieldsAre("Continue", "IDE extension data", folder,
                                   "Local .vscode-server extension data. Remote hosts and "
                                   "containers must be measured separately.")));
    EXPECT_EQ(attributeServerExtension("/Users/a/.vscode-server/data/User/globalStorage/other",
                                       ".vscode-server"),
              std::nullopt);
}

TEST(EditorBreakdownTest, ExtensionBreakdownCoversOnlyTheFourOwnersInInputOrder) {
    std::vector<StorageLocation> input;
    for (const std::string name :
         {"continue.continue", "kilocode.kilo-code", "github.copilot", "ibm.bob-code"}) {
        input.push_back(*attributeEditorExtension(cursorStorage + "/" + name, "Cursor", "p"));
    }
    // Right owner, wrong category: not an extension folder.
    input.push_back({"Cline", "Agent data", ".cline", "CLI"});

    const auto parts = extensionBreakdown(input);
    ASSERT_EQ(parts.size(), 4u);
    EXPECT_THAT(parts[0],
                FieldsAre("Kilo Code", "Task history", cursorStorage + "/kilocode.kilo-code/tasks",
                          "Saved tasks and their conversation context. Remove individual "
                          "tasks through Kilo Code to retain the ones you need."));
    EXPECT_THAT(parts[1], FieldsAre("Kilo Code", "Checkpoints",
                                    cursorStorage + "/kilocode.kilo-code/checkpoints",
                                    "Task rollback checkpoints. Removing these loses the "
                                    "corresponding recovery history."));
    EXPECT_THAT(parts[2],
                FieldsAre("IBM Bob", "Task history", cursorStorage + "/ibm.bob-code/tasks", _));
    EXPECT_THAT(parts[3], FieldsAre("IBM Bob", "Checkpoints",
                                    cursorStorage + "/ibm.bob-code/checkpoints", _));
    EXPECT_TRUE(extensionBreakdown(breakdownLocations()).empty());
}

}  // namespace
}  // namespace tallowmere::AIStorageScanner
