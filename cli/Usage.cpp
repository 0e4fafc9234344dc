#include "Usage.h"

namespace tallowmere::cli {

const char* const overviewHelp =
    R"(Usage: tallowmere-cli COMMAND [OPTIONS]

Finds and measures the storage that AI tools keep in your home folder: command-line
agents, AI code editors and their extensions, local model stores. Only 'remove',
'restore' and 'empty-trash' change anything: what a review or an undo file names.

Commands:
  catalog    List every storage location Tallowmere knows.
  locations  List the folders a scan would measure for you.
  scan       Measure those folders.
  summary    Show a saved summary of an earlier scan.
  review     Prepare the removal of one tool's folders or cache and log files.
  remove     Carry out a prepared review: to the Trash, or permanently.
  restore    Put back what a removal moved to the Trash.
  empty-trash
             Delete for good what a removal moved to the Trash, freeing the space.

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

const char* const locationsHelp =
    R"(Usage: tallowmere-cli locations [--json] [--layout macos|linux]

Lists the folders a scan measures for you, in scan order: the catalog placed for the
layout and moved by XDG_DATA_HOME, XDG_CACHE_HOME, XDG_CONFIG_HOME and XDG_STATE_HOME,
then the AI extension folders found in your editors, their profiles and editor
servers. Folders that do not exist are listed too; a scan counts them as absent.

Options:
  --json            Print one JSON object:
                    {"home","locations":[{"owner","category","relativePath","detail","path"}...]}
  --layout LAYOUT   Where editors keep their data: "macos" (Library/Application Support)
                    or "linux" (~/.config). Defaults to this system's layout.
  --help            Show this help.
)";

const char* const scanHelp =
    R"(Usage: tallowmere-cli scan [--json] [--track PATH]... [--max-entries N] [--gentle]
                          [--layout macos|linux] [--save-summary FILE]

Measures the folders 'tallowmere-cli locations' lists, then each tracked folder.
Files are only measured, never opened; symbolic links are never followed.

Options:
  --json               Print one JSON object instead of the readable report:
                       {"home","completedAt","absentLocations","unreadableLocations",
                        "incomplete","allocatedBytes","findings":[...],"tools":[...],
                        "unreadableFolders":[{"path","reason"}...]}
                       Times are seconds since 2001-01-01 00:00:00 UTC; bytes of a name
                       that are not valid UTF-8 are written as \udcXX.
  --track PATH         Also measure PATH (relative to the current folder) as a custom
                       folder. Repeat for more folders.
  --max-entries N      Walk at most N entries of each folder (default 100000); a folder
                       with more is measured partly and reported as limited.
  --gentle             Pause 2 ms after every 256 entries, leaving the disk to others
                       (for runs in the background). Without it the walk runs at full
                       speed; --no-pause, once needed for that, is still accepted.
  --layout LAYOUT      "macos" or "linux"; see 'tallowmere-cli locations --help'.
  --save-summary FILE  Save a summary of the finished scan to FILE, for 'summary'.
  --help               Show this help.

Progress goes to standard error when it is a terminal. Ctrl-C stops the scan
(exit code 130).
)";

const char* const summaryHelp =
    R"(Usage: tallowmere-cli summary FILE [--track PATH]... [--json]

Shows the summary saved by 'scan --save-summary FILE' when it still applies: made for
your home folder and exactly the given tracked folders, at most 7 days ago. The sizes
are shown without file lists. Otherwise prints "No usable summary." and exits 1.

Options:
  --track PATH   A folder the summarised scan tracked. Repeat for more folders.
  --json         Print the summarised scan as 'scan --json' does.
  --help         Show this help.
)";

const char* const reviewHelp =
    R"(Usage: tallowmere-cli review --tool OWNER (--select PATH... | --all) --out FILE
                            [--include-recent] [--track PATH]... [--layout macos|linux]
                            [--gentle] [--json]

Scans, then prepares the removal of some of one tool's storage and writes it to FILE.
Nothing is removed: 'tallowmere-cli remove FILE' does that, after checking that every
folder and file is still exactly as reviewed.

Folders of "Cache" and "Logs" locations are reviewed file by file (at most 500 eligible
files per review); every other folder is removed whole. Each whole folder is
fingerprinted now, so a folder that changes before the removal is left in place.

Options:
  --tool OWNER       The tool, named exactly as the scan names it (e.g. "Claude Code").
  --select PATH      A folder of that tool to review, as the scan lists it. Repeatable.
  --all              Every folder of the tool that has something to review.
  --include-recent   Also take cache and log files younger than their age limits.
  --out FILE         Where to write the review (an earlier review there is replaced).
  --track PATH       A custom folder to scan too, as in 'scan'. Repeatable.
  --layout LAYOUT    "macos" or "linux", as in 'scan'.
  --gentle           Pause 2 ms after every 256 entries while walking.
  --json             Print the review as JSON, with "selectionSummary" and "allocatedBytes".
  --help             Show this help.

Exit codes: 0 the review was written; 1 unknown tool, nothing to review, or a folder
that cannot be reviewed; 2 usage error; 130 interrupted.
)";

const char* const removeHelp =
    R"(Usage: tallowmere-cli remove FILE [--permanent] [--yes] [--undo UNDOFILE]
                            [--track PATH]... [--gentle] [--json]

Carries out the review in FILE. Each item is first moved out of its place (into the Trash,
or aside in its own folder) and then checked: a whole folder must still match its
fingerprint, a file must still be the one scanned. An item that does not goes back, and
is reported; a permanent removal deletes only what the check recorded. The saved scan
summary is deleted first.

The review only selects: what it may remove is derived again from the tool's locations
(for the review's layout, with the folders given by --track) and anything else is refused.

By default items go to the Trash, where the desktop's Trash shows them, and the undo
records are written to UNDOFILE (default: FILE.undo.json) for 'tallowmere-cli restore'.
The undo file is written before anything moves; a later removal adds to it; a file that
is not an undo file is never replaced; two commands never use one undo file at once.

Options:
  --permanent      Delete instead of moving to the Trash. There is no undo. Asks for
                   confirmation on a terminal; refused without --yes otherwise.
  --yes            Confirm a permanent deletion without asking.
  --undo UNDOFILE  Where to keep the undo records.
  --track PATH     A tracked folder the review covers, as given to 'review'. Repeatable.
  --gentle         Pause 2 ms after every 256 entries while checking.
  --json           Print {"moved","items","errors","notice","error"}.
  --help           Show this help.

Exit codes: 0 everything was removed; 1 some items were not (they are listed), or the
review or undo file cannot be used; 2 usage error; 130 interrupted (Ctrl-C stops between
items; what was moved is recorded).
)";

const char* const restoreHelp =
    R"(Usage: tallowmere-cli restore UNDOFILE [--gentle] [--json]

Moves the items in UNDOFILE back from the Trash to where they were. Nothing that exists
at an original place is ever replaced; an item whose former folder is gone, or that
changed in the Trash, stays there. UNDOFILE is rewritten with the items that remain.
Only items that lie in one of your trash folders, whose trash record names the place
they go back to, are restored.

Options:
  --gentle       Pause 2 ms after every 256 entries while checking folders.
  --json         Print {"restored","remaining","errors","notice","error"}.
  --help         Show this help.

Exit codes: 0 everything was restored; 1 some items were not, or UNDOFILE cannot be
used; 2 usage error; 130 interrupted (the items not yet restored stay listed).
)";

const char* const emptyTrashHelp =
    R"(Usage: tallowmere-cli empty-trash UNDOFILE [--yes] [--gentle] [--json]

Deletes for good the items that the removal which wrote UNDOFILE moved to the Trash, and
frees the space they take. Each is deleted only when it still lies in one of your trash
folders whose record names where it came from, and is the item that was moved: a file
the same file, a folder exactly as reviewed. Anything else in the Trash is never
touched. An item that changed stays in the Trash and in UNDOFILE, which is rewritten
with the items that remain; one the Trash no longer holds is dropped from it.

Options:
  --yes          Delete without asking. Needed when standard input is not a terminal;
                 otherwise you are asked to type "yes".
  --gentle       Pause 2 ms after every 256 entries while checking folders.
  --json         Print {"deleted","bytesFreed","remaining","errors","notice","error"}.
  --help         Show this help.

Exit codes: 0 everything was deleted; 1 some items were not, nothing was confirmed, or
UNDOFILE cannot be used; 2 usage error; 130 interrupted (Ctrl-C stops between items).
)";

}  // namespace tallowmere::cli
