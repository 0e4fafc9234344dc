#include "ReviewReach.h"

#include "removal/StorageRemovalPlan.h"
#include "text/CountText.h"
#include "text/SizeText.h"

namespace tallowmere::cli {

std::string ReviewReach::partText() const {
    return CountText::grouped(takenFiles) + " of " + CountText::grouped(eligibleFiles) +
           " eligible files (" + SizeText::bytes(takenBytes) + " of " +
           SizeText::bytes(eligibleBytes) + "); review again for more";
}

ReviewReach reachOf(const std::vector<StorageFinding>& findings,
                    const std::vector<StorageCleanupFile>& taken, bool includeRecent) {
    ReviewReach reach;
    for (const auto& file : taken) {
        ++reach.takenFiles;
        reach.takenBytes += file.allocatedBytes;
    }
    for (const auto& finding : findings) {
        if (StorageRemovalPlan::usesEligibleFiles(finding)) {
            reach.eligibleFiles +=
                includeRecent ? finding.recentCleanupFileCount : finding.cleanupFileCount;
            reach.eligibleBytes +=
                includeRecent ? finding.recentCleanupBytes : finding.cleanupBytes;
        }
    }
    return reach;
}

}  // namespace tallowmere::cli
