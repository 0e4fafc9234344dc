#pragma once

#include <string>
#include <vector>

namespace tallowmere::cli {

// Each runs one subcommand with the arguments after its name and returns the exit code;
// usage problems are thrown as UsageError.
int runCatalog(const std::vector<std::string>& arguments);
int runLocations(const std::vector<std::string>& arguments);
int runScan(const std::vector<std::string>& arguments);
int runSummary(const std::vector<std::string>& arguments);
int runReview(const std::vector<std::string>& arguments);
int runRemove(const std::vector<std::string>& arguments);
int runRestore(const std::vector<std::string>& arguments);
int runEmptyTrash(const std::vector<std::string>& arguments);

}  // namespace tallowmere::cli
