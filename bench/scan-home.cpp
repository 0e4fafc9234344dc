// scan-home: the core scan alone on one home, without a front end's output, so its time,
// memory and instructions can be set beside the bare walk's.
// Usage: scan-home [--threads N] [--max-entries N] HOME
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include "catalog/LocationDiscovery.h"
#include "measurement/AIStorageScanner.h"
#include "platform/ProcessEnvironment.h"

namespace {

bool parseNumber(std::string_view text, auto& value) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

}  // namespace

int main(int argc, char** argv) {
    using namespace tallowmere;
    std::size_t threads = 0;
    std::int64_t maxEntries = 100000;
    int next = 1;
    for (; next + 1 < argc; next += 2) {
        const std::string_view option = argv[next];
        const bool parsed = option == "--threads"       ? parseNumber(argv[next + 1], threads)
                            : option == "--max-entries" ? parseNumber(argv[next + 1], maxEntries)
                                                        : false;
        if (!parsed) {
            break;
        }
    }
    if (next + 1 != argc) {
        std::fputs("usage: scan-home [--threads N] [--max-entries N] HOME\n", stderr);
        return 2;
    }
    const std::filesystem::path home = argv[next];
    const auto locations =
        AIStorageScanner::measuredLocations(home, processEnvironment(), StorageLayout::macos, {});
    ScanOptions options;
    options.pauses = false;
    options.threads = threads;
    const auto started = std::chrono::steady_clock::now();
    const StorageScan scan = AIStorageScanner::scan(home, locations, maxEntries, {}, options);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - started;
    std::int64_t files = 0;
    std::int64_t bytes = 0;
    int limited = 0;
    for (const auto& finding : scan.findings) {
        files += finding.fileCount;
        bytes += finding.allocatedBytes;
        limited += finding.limited ? 1 : 0;
    }
    std::printf("files %lld, bytes %lld, locations %zu, limited %d, %.3f s\n",
                static_cast<long long>(files), static_cast<long long>(bytes), scan.findings.size(),
                limited, took.count());
}
