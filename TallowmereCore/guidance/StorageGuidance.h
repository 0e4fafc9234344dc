#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace tallowmere {

// What removing a location would cost, judged from its category label alone.
struct StorageGuidance {
    // The class of a category; the tool detail shows one section per group, in this order.
    enum class Group { rebuildable, savedWork, settings, mixed };

    Group group = Group::mixed;
    std::string advice;
    std::string consequence;
    std::string category;

    // The guidance for `category`, matched by exact, case-sensitive text; every text yields
    // one, unknown labels the cautious "Inspect before removing".
    static StorageGuidance forCategory(const std::string& category);

    // One line for `category`, its parts joined by " · ".
    std::string summary() const;
};

namespace StorageGuidanceGroup {

// Every group, in the order the tool detail shows them.
inline constexpr std::array allCases{
    StorageGuidance::Group::rebuildable,
    StorageGuidance::Group::savedWork,
    StorageGuidance::Group::settings,
    StorageGuidance::Group::mixed,
};

// The group's stable name ("rebuildable", "savedWork", "settings", "mixed"), also its id.
std::string_view rawValue(StorageGuidance::Group group);

// The group named exactly `rawValue`, or none for any other text.
std::optional<StorageGuidance::Group> fromRawValue(std::string_view rawValue);

// The heading of the group's section.
std::string_view title(StorageGuidance::Group group);

// What the group's locations hold and how to treat them, in one or two sentences.
std::string_view explanation(StorageGuidance::Group group);

}  // namespace StorageGuidanceGroup

}  // namespace tallowmere
