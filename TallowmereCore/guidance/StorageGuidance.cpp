#include "guidance/StorageGuidance.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace tallowmere {
namespace {

using Group = StorageGuidance::Group;

struct GroupTexts {
    std::string_view rawValue;
    std::string_view title;
    std::string_view explanation;
};

// Indexed by the group's position in `allCases`.
constexpr std::array<GroupTexts, StorageGuidanceGroup::allCases.size()> groupTexts{{
    {"rebuildable", "Caches & diagnostics",
     "Start here. Caches can be recreated; logs hold troubleshooting details. Quit the tool "
     "before removal."},
    {"savedWork", "Saved work & downloads",
     "Remove only what you no longer need. This can lose conversations, rollback history, "
     "generated files or downloaded assets."},
    {"settings", "Settings & sign-in",
     "Usually keep these. Removing them can reset preferences, disable integrations or require "
     "signing in again."},
    {"mixed", "Mixed app data",
     "These locations combine several purposes. Review their contents; removing a whole folder "
     "can reset the tool and erase saved work."},
}};

const GroupTexts& textsOf(Group group) {
    return groupTexts[static_cast<std::size_t>(group)];
}

// The labels one row matches and what it says about them.
struct Rule {
    std::vector<std::string_view> labels;
    Group group;
    std::string_view advice;
    std::string_view consequence;
    std::string_view summary;
};

constexpr std::string_view mixedSummary = "Mixed data · Removal may reset the tool or erase work";

// First match wins, so the order is part of the meaning.
const std::vector<Rule>& rules() {
    static const std::vector<Rule> table{
        {{"Cache"},
         Group::rebuildable,
         "Can rebuild",
         "Temporary assets may rebuild or download again; the next launch may be slower. "
         "Recognized databases and credentials are excluded from cache-file review.",
         "Can rebuild · May download again"},
        {{"Logs"},
         Group::rebuildable,
         "Remove if not troubleshooting",
         "Removes diagnostic records, including recent logs. Keep these while troubleshooting; "
         "quit the tool before removal.",
         "Optional · Removes troubleshooting records"},
        {{"Models", "Models & cache", "ML cache"},
         Group::savedWork,
         "Remove unused downloads",
         "Models or shared ML assets will be unavailable until downloaded again. Prefer the "
         "tool’s model manager to preserve shared files.",
         "Remove unused models · Download again to reuse"},
        {{"Extensions", "Plugins"},
         Group::savedWork,
         "Remove unused add-ons",
         "These add-ons will stop working until reinstalled. Custom or locally modified plugins "
         "may not be recoverable by downloading.",
         "Remove unused add-ons · Reinstall to reuse"},
        {{"Dependencies"},
         Group::savedWork,
         "May need reinstalling",
         "Tools or packages in this folder may stop working until reinstalled. This is not a "
         "sign-in storage classification.",
         "May need reinstalling"},
        {{"History & projects", "Task history", "Sessions", "Archived sessions"},
         Group::savedWork,
         "Remove unwanted history",
         "Loses saved conversations, task records and resumable context. Keep sessions you may "
         "want to resume; use the owning tool to remove individual tasks.",
         "Removes saved conversations and context"},
        {{"Checkpoints", "Backups", "Local file history"},
         Group::savedWork,
         "Remove if rollback is no longer needed",
         "Loses recovery copies or rollback points. Back up unfinished work before removing "
         "this folder.",
         "Removes recovery and rollback copies"},
        {{"Generated outputs", "Generated images", "Visualizations"},
         Group::savedWork,
         "Remove outputs you have saved elsewhere",
         "Deletes generated results. They may be the only local copy, and links from saved "
         "conversations may stop opening.",
         "Removes generated files · Save a copy first"},
        {{"Worktrees"},
         Group::savedWork,
         "Check for unfinished changes",
         "Can lose uncommitted code and separate working copies. Finish or back up work before "
         "removing.",
         "May contain uncommitted work"},
        {{"Settings & sign-in", "Settings & state"},
         Group::settings,
         "Keep while using the tool",
         "May reset preferences, connection settings or credentials. Removing this is a reset, "
         "not routine cleanup.",
         "Keep · Removal may reset settings or sign-in"},
        // Their advice names the owning tool, but their summary is the general mixed one.
        {{"Shared editor state", "Workspace state", "IDE extension data"},
         Group::mixed,
         "Review in the owning tool",
         "Can mix conversation history, workspace state, preferences and extension data. Cannot "
         "guarantee that sign-in or saved work is preserved by deleting the folder.",
         mixedSummary},
    };
    return table;
}

const Rule& unknownCategoryRule() {
    static const Rule rule{
        {},
        Group::mixed,
        "Inspect before removing",
        "The remaining files have mixed or unrecognized purposes. Age and size do not establish "
        "that they are disposable; whole-folder removal may reset the tool.",
        mixedSummary};
    return rule;
}

const Rule& ruleFor(const std::string& category) {
    const auto& table = rules();
    const auto match = std::ranges::find_if(
        table, [&](const Rule& rule) { return std::ranges::count(rule.labels, category) > 0; });
    return match == table.end() ? unknownCategoryRule() : *match;
}

}  // namespace

StorageGuidance StorageGuidance::forCategory(const std::string& category) {
    const auto& rule = ruleFor(category);
    return StorageGuidance{rule.group, std::string(rule.advice), std::string(rule.consequence),
                           category};
}

std::string StorageGuidance::summary() const {
    return std::string(ruleFor(category).summary);
}

namespace StorageGuidanceGroup {

std::string_view rawValue(Group group) {
    return textsOf(group).rawValue;
}

std::optional<Group> fromRawValue(std::string_view rawValue) {
    const auto match = std::ranges::find_if(
        allCases, [&](Group group) { return textsOf(group).rawValue == rawValue; });
    return match == allCases.end() ? std::nullopt : std::optional(*match);
}

std::string_view title(Group group) {
    return textsOf(group).title;
}

std::string_view explanation(Group group) {
    return textsOf(group).explanation;
}

}  // namespace StorageGuidanceGroup

}  // namespace tallowmere
