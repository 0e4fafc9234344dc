#include "platform/ProcessEnvironment.h"

#include <unistd.h>

#include <string_view>

namespace tallowmere {

std::map<std::string, std::string> processEnvironment() {
    std::map<std::string, std::string> variables;
    for (char** entry = environ; entry && *entry; ++entry) {
        const std::string_view text(*entry);
        const auto equals = text.find('=');
        if (equals != std::string_view::npos) {
            variables.emplace(text.substr(0, equals), text.substr(equals + 1));
        }
    }
    return variables;
}

}  // namespace tallowmere
