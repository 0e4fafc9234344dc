#pragma once

#include <optional>
#include <string>
#include <vector>

#include "text/JsonWriter.h"

namespace tallowmere::cli {

// Deletes the scan summary before anything is removed or restored, so the next start never
// shows sizes from before the change; a failure is of no consequence.
void forgetSummary();

// The notice on standard output and the error text on standard error, each if present.
void printOutcome(const std::optional<std::string>& notice,
                  const std::optional<std::string>& error);

// `key` with the text, or null.
void writeOptionalText(JsonWriter& json, const char* key, const std::optional<std::string>& text);
// `key` with an array of the texts.
void writeTexts(JsonWriter& json, const char* key, const std::vector<std::string>& texts);

}  // namespace tallowmere::cli
