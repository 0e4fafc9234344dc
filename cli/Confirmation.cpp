#include "Confirmation.h"

#include <unistd.h>

#include <iostream>

namespace tallowmere::cli {

bool permanentDeletionConfirmed(const Options& options, const std::string& question) {
    if (options.has("yes")) {
        return true;
    }
    if (!::isatty(STDIN_FILENO)) {
        std::cerr << "Permanent deletion needs --yes when standard input is not a terminal. "
                     "Nothing was removed.\n";
        return false;
    }
    std::cerr << question << "\nType “yes” to delete permanently: " << std::flush;
    std::string answer;
    if (std::getline(std::cin, answer) && (answer == "yes" || answer == "y")) {
        return true;
    }
    std::cerr << "Nothing was removed.\n";
    return false;
}

}  // namespace tallowmere::cli
