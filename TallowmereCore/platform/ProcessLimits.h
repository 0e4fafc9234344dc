#pragma once

namespace tallowmere::ProcessLimits {

// Lets the process open as many files as its hard limit allows: a walk keeps one folder open
// per level of depth, and deep trees would otherwise run out at the usual soft limit of 1024.
// Failing to raise it is harmless; folders that cannot be opened are counted as skipped.
void raiseOpenFileLimit();

}  // namespace tallowmere::ProcessLimits
