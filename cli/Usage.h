#pragma once

#include <stdexcept>
#include <string>

namespace tallowmere::cli {

// Exit codes that scripts rely on.
enum ExitCode : int { success = 0, failed = 1, usageError = 2, interrupted = 130 };

// A command line that cannot be understood; main prints it with a hint and exits 2.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

extern const char* const overviewHelp;
extern const char* const catalogHelp;
extern const char* const locationsHelp;
extern const char* const scanHelp;
extern const char* const summaryHelp;
extern const char* const reviewHelp;
extern const char* const removeHelp;
extern const char* const restoreHelp;
extern const char* const emptyTrashHelp;

}  // namespace tallowmere::cli
