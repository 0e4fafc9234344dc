#pragma once

#include <map>
#include <string>
#include <vector>

namespace tallowmere::cli {

struct OptionSpec {
    const char* name;  // without the leading "--"
    bool takesValue;
};

// The options given after a command name: each name with one value per occurrence ("" for
// a flag), in the order given.
struct Options {
    std::map<std::string, std::vector<std::string>> values;
    std::vector<std::string> operands;  // arguments that are not options, in order

    bool has(const std::string& name) const { return values.contains(name); }
    // All values of an option that may repeat.
    std::vector<std::string> all(const std::string& name) const;
};

// Reads `arguments` (those after the command name) against `specs`, taking at most
// `operandsAllowed` operands; throws UsageError for an unknown option, a missing value or an
// operand too many, naming it.
Options parseOptions(const std::vector<std::string>& arguments,
                     const std::vector<OptionSpec>& specs, std::size_t operandsAllowed = 0);

// Whether walks pause 2 ms after every 256 entries: only with --gentle, for runs in the
// background; --no-pause, now the default, is still accepted. Throws UsageError for both.
bool pausesFrom(const Options& options);

}  // namespace tallowmere::cli
