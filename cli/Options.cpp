#include "Options.h"

#include <algorithm>

#include "Usage.h"

namespace tallowmere::cli {

namespace {

const OptionSpec& specFor(const std::string& name, const std::vector<OptionSpec>& specs) {
    const auto found =
        std::ranges::find_if(specs, [&](const OptionSpec& spec) { return name == spec.name; });
    if (found == specs.end()) {
        throw UsageError("unknown option '--" + name + "'");
    }
    return *found;
}

}  // namespace

std::vector<std::string> Options::all(const std::string& name) const {
    const auto found = values.find(name);
    return found == values.end() ? std::vector<std::string>{} : found->second;
}

bool pausesFrom(const Options& options) {
    if (options.has("gentle") && options.has("no-pause")) {
        throw UsageError("--gentle and --no-pause contradict each other; give one");
    }
    return options.has("gentle");
}

Options parseOptions(const std::vector<std::string>& arguments,
                     const std::vector<OptionSpec>& specs, std::size_t operandsAllowed) {
    Options options;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        // "-h" is the one short option every command takes.
        const std::string& argument = arguments[index] == "-h" ? "--help" : arguments[index];
        if (!argument.starts_with("--") || argument == "--") {
            if (argument == "--" || options.operands.size() == operandsAllowed) {
                throw UsageError("unexpected argument '" + argument + "'");
            }
            options.operands.push_back(argument);
            continue;
        }
        const auto equals = argument.find('=');
        const std::string name =
            argument.substr(2, equals == std::string::npos ? std::string::npos : equals - 2);
        const OptionSpec& spec = specFor(name, specs);
        if (!spec.takesValue) {
            if (equals != std::string::npos) {
                throw UsageError("option '--" + name + "' takes no value");
            }
            options.values[name].emplace_back();
        } else if (equals != std::string::npos) {
            options.values[name].push_back(argument.substr(equals + 1));
        } else if (index + 1 < arguments.size()) {
            options.values[name].push_back(arguments[++index]);
        } else {
            throw UsageError("option '--" + name + "' needs a value");
        }
    }
    return options;
}

}  // namespace tallowmere::cli
