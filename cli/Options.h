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

    bool has(const std::string& name) const { return values.contains(name); }
    // All values of an option that may repeat.
    std::vector<std::string> all(const std::string& name) const;
};

// Reads `arguments` (those after the command name) against `specs`; throws UsageError for an
// unknown option, a missing value or an operand, naming it.
Options parseOptions(const std::vector<std::string>& arguments,
                     const std::vector<OptionSpec>& specs);

}  // namespace tallowmere::cli
