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

// Where a run's output goes, when not to the collected files.
struct CliSetup {
    std::filesystem::path workingFolder;
    // A file standard output is written to instead (such as /dev/full); `out` stays empty.
    std::filesystem::path standardOutput;
    // Standard output or standard error on a pseudo-terminal of this many columns, as a person
    // at a terminal sees it; what it shows is collected as `out` or `err`.
    enum class Terminal { none, standardOutput, standardError } terminal = Terminal::none;
    unsigned short columns = 80;
};

// The setups the tests use: run in a folder, write standard output to a file, or show one
// stream on a terminal of `columns` columns.
CliSetup inFolder(std::filesystem::path folder);
CliSetup writingTo(std::filesystem::path file);
CliSetup onTerminal(CliSetup::Terminal terminal, unsigned short columns = 80);

// Runs the built tallowmere-cli with `arguments`, HOME set to `home`, no XDG variables and no
// input; collects its exit code and both output streams.
CliRun runCli(const std::vector<std::string>& arguments, const std::filesystem::path& home,
              const CliSetup& setup = {});

}  // namespace tallowmere::testing
