#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tallowmere::testing {

struct CliRun {
    int exitCode = -1;
    std::string out;
    std::string err;
};

// Runs the built tallowmere-cli with `arguments`, HOME set to `home`, no XDG variables, no
// input and, if given, in the folder `workingFolder`; collects its exit code and both output
// streams.
CliRun runCli(const std::vector<std::string>& arguments, const std::filesystem::path& home,
              const std::filesystem::path& workingFolder = {});

}  // namespace tallowmere::testing
