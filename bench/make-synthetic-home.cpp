#include <charconv>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "ScaleShapes.h"
#include "SyntheticHome.h"

namespace {

constexpr std::string_view usage =
    "usage: make-synthetic-home --files N [--seed S] [--shape mixed|linked|wide|deep] "
    "DIRECTORY\n"
    "  mixed   files spread over the catalog's locations (the default)\n"
    "  linked  the same, each file with a second name beside it\n"
    "  wide    one cache folder of N files\n"
    "  deep    a chain N folders deep, one file in each\n";

struct Request {
    std::int64_t files = -1;
    std::uint64_t seed = 1;
    std::string shape = "mixed";
    std::string directory;
};

template <typename Number>
Number numberFrom(std::string_view option, std::string_view text) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || value < 0) {
        throw std::invalid_argument(std::string(option) + " needs a whole number, not '" +
                                    std::string(text) + "'");
    }
    return value;
}

Request requestFrom(int argc, char** argv) {
    Request request;
    for (int index = 1; index < argc; ++index) {
        const std::string_view argument = argv[index];
        const bool hasValue = index + 1 < argc;
        if (argument == "--files" && hasValue) {
            request.files = numberFrom<std::int64_t>(argument, argv[++index]);
        } else if (argument == "--seed" && hasValue) {
            request.seed = numberFrom<std::uint64_t>(argument, argv[++index]);
        } else if (argument == "--shape" && hasValue) {
            request.shape = argv[++index];
            if (request.shape != "mixed" && request.shape != "linked" && request.shape != "wide" &&
                request.shape != "deep") {
                throw std::invalid_argument("unknown shape '" + request.shape + "'");
            }
        } else if (!argument.starts_with("--") && request.directory.empty()) {
            request.directory = argument;
        } else {
            throw std::invalid_argument("unexpected argument '" + std::string(argument) + "'");
        }
    }
    if (request.files < 0 || request.directory.empty()) {
        throw std::invalid_argument("--files and a directory are needed");
    }
    return request;
}

}  // namespace

int main(int argc, char** argv) {
    std::optional<Request> request;
    try {
        request = requestFrom(argc, argv);
    } catch (const std::invalid_argument& error) {
        std::fprintf(stderr, "make-synthetic-home: %s\n%s", error.what(), usage.data());
        return 2;
    }
    try {
        using namespace tallowmere::bench;
        const auto& [files, seed, shape, directory] = *request;
        const auto made = shape == "linked" ? makeLinkedHome(directory, files, seed)
                          : shape == "wide" ? makeWideHome(directory, files)
                          : shape == "deep" ? makeDeepHome(directory, files)
                                            : makeSyntheticHome(directory, files, seed);
        std::printf(
            "%s: %lld files, %lld folders, %lld hard links, %lld symbolic links, %lld bytes\n",
            request->directory.c_str(), static_cast<long long>(made.files),
            static_cast<long long>(made.folders), static_cast<long long>(made.hardLinks),
            static_cast<long long>(made.symbolicLinks), static_cast<long long>(made.bytes));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "make-synthetic-home: %s\n", error.what());
        return 1;
    }
}
