#include "Usage.h"

namespace tallowmere::cli {

const char* const overviewHelp =
    R"(Usage: tallowmere-cli COMMAND [OPTIONS]

Finds and measures the storage that AI tools keep in your home folder: command-line
agents, AI code editors and their extensions, local model stores. Nothing is changed.

Commands:
  catalog    List every storage location Tallowmere knows.
  scan       Measure the known locations in your home folder.

Run 'tallowmere-cli COMMAND --help' for a command's options.

Exit codes: 0 success (a partial scan is a success), 1 the operation failed,
2 usage error, 130 interrupted.
)";

const char* const catalogHelp =
    R"(Usage: tallowmere-cli catalog [--json]

Lists the built-in storage locations in catalog order: owner, category and path
relative to the home folder.

Options:
  --json     Print one JSON object:
             {"locations":[{"owner","category","relativePath","detail"}...],
              "supportedOwners":[...]}
  --help     Show this help.
)";

const char* const scanHelp =
    R"(Usage: tallowmere-cli scan [--json] [--track PATH]... [--max-entries N] [--no-pause]

Measures every catalog location in your home folder, then each tracked folder.
Files are only measured, never opened; symbolic links are never followed.

Options:
  --json           Print one JSON object instead of the readable report:
                   {"home","completedAt","absentLocations","unreadableLocations",
                    "incomplete","allocatedBytes","findings":[...]}
                   Times are seconds since 2001-01-01 00:00:00 UTC; bytes of a name
                   that are not valid UTF-8 are written as \udcXX.
  --track PATH     Also measure PATH (relative to the current folder) as a custom
                   folder. Repeat for more folders.
  --max-entries N  Walk at most N entries of each folder (default 100000); a folder
                   with more is measured partly and reported as limited.
  --no-pause       Do not pause 2 ms after every 256 entries (faster, busier disk).
  --help           Show this help.

Progress goes to standard error when it is a terminal. Ctrl-C stops the scan
(exit code 130).
)";

}  // namespace tallowmere::cli
