#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <cerrno>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <limits>
#include <numeric>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

#include "SyntheticHome.h"
#include "catalog/ToolCatalog.h"
#include "measurement/AIStorageScanner.h"

namespace tallowmere::bench {

namespace {

constexpr std::int64_t defaultFiles = 20000;
constexpr std::uint64_t seed = 1;

struct ScanVariant {
    const char* name;
    bool pauses;
    // 0 for one walking thread per core, 1 for the calling thread alone.
    std::size_t threads;
    // Front ends take progress snapshots, each a copy of the findings so far.
    bool progress;
};

constexpr ScanVariant variants[] = {
    {"scan/no_pauses", false, 0, false},
    {"scan/no_pauses/one_thread", false, 1, false},
    {"scan/pauses", true, 0, false},
    {"scan/progress", false, 0, true},
};

std::int64_t filesFromEnvironment() {
    const char* text = std::getenv("TALLOWMERE_BENCH_FILES");
    if (text == nullptr || *text == '\0') {
        return defaultFiles;
    }
    const std::string_view digits = text;
    std::int64_t files = -1;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), files);
    if (error != std::errc{} || end != digits.data() + digits.size() || files < 0) {
        throw std::invalid_argument("TALLOWMERE_BENCH_FILES needs a whole number, not '" +
                                    std::string(digits) + "'");
    }
    return files;
}

// A fresh folder under the system's temporary folder, removed with all it holds on destruction.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "tallowmere-bench-XXXXXX").native();
        if (::mkdtemp(pattern.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), "cannot make " + pattern);
        }
        // Resolved, as the scanner wants its home folder.
        m_path = std::filesystem::canonical(pattern);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

std::int64_t filesCounted(const StorageScan& scan) {
    return std::accumulate(
        scan.findings.begin(), scan.findings.end(), std::int64_t{0},
        [](std::int64_t sum, const StorageFinding& finding) { return sum + finding.fileCount; });
}

void scanHome(benchmark::State& state, const std::filesystem::path& home,
              const SyntheticHomeSummary& made, const ScanVariant& variant) {
    ScanOptions options;
    options.pauses = variant.pauses;
    options.threads = variant.threads;
    const AIStorageScanner::ProgressHandler onProgress =
        variant.progress ? [](const StorageScan&) {} : AIStorageScanner::ProgressHandler();
    std::int64_t counted = 0;
    for ([[maybe_unused]] auto iteration : state) {
        const StorageScan scan =
            AIStorageScanner::scan(home, AIStorageScanner::locations(),
                                   std::numeric_limits<std::int64_t>::max(), onProgress, options);
        counted = filesCounted(scan);
    }
    // A scan that missed files would be fast for the wrong reason.
    if (counted != made.files) {
        const std::string message = "the scan counted " + std::to_string(counted) + " files of " +
                                    std::to_string(made.files);
        state.SkipWithError(message.c_str());
        return;
    }
    state.counters["entries/s"] = benchmark::Counter(static_cast<double>(made.entries()),
                                                     benchmark::Counter::kIsIterationInvariantRate);
}

std::string describe(const SyntheticHomeSummary& made) {
    return std::to_string(made.files) + " files, " + std::to_string(made.folders) + " folders, " +
           std::to_string(made.hardLinks) + " hard links, " + std::to_string(made.symbolicLinks) +
           " symbolic links, " + std::to_string(made.bytes) + " bytes";
}

int runBenchmarks() {
    const TemporaryFolder home;
    const SyntheticHomeSummary made = makeSyntheticHome(home.path(), filesFromEnvironment(), seed);
    benchmark::AddCustomContext("synthetic_home", describe(made));
    for (const ScanVariant& variant : variants) {
        benchmark::RegisterBenchmark(variant.name,
                                     [&home, &made, &variant](benchmark::State& state) {
                                         scanHome(state, home.path(), made, variant);
                                     })
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

}  // namespace

}  // namespace tallowmere::bench

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    try {
        return tallowmere::bench::runBenchmarks();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "scan_benchmark: %s\n", error.what());
        return 1;
    }
}
