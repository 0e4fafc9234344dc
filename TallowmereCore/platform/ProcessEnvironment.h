#pragma once

#include <map>
#include <string>

namespace tallowmere {

// Every variable of this process's environment, by name.
std::map<std::string, std::string> processEnvironment();

}  // namespace tallowmere
