#pragma once

#include <string>

#include "Options.h"

namespace tallowmere::cli {

// True when a permanent deletion may go ahead: --yes was given, or `question` was asked on the
// terminal and answered "yes". Says on standard error why nothing was deleted otherwise.
bool permanentDeletionConfirmed(const Options& options, const std::string& question);

}  // namespace tallowmere::cli
