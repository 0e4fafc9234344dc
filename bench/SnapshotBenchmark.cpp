#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <cerrno>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <string>
#include <system_error>

#include "HomeWriter.h"
#include "removal/StorageLocationTrash.h"

namespace tallowmere::bench {

namespace {

// 1,000 folders of 99 small files: 100,000 items, the most any review verifies.
constexpr int folders = 1000;
constexpr int filesPerFolder = 99;
constexpr std::int64_t items = folders * (filesPerFolder + 1);

// A tool's storage folder of `items` items under the system's temporary folder, made once for
// the whole run and removed at exit.
class SnapshotTree {
public:
    SnapshotTree() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "tallowmere-snapshot-XXXXXX").native();
        if (::mkdtemp(pattern.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), "cannot make " + pattern);
        }
        // Resolved: a snapshot refuses a folder reached through a link.
        m_root = std::filesystem::canonical(pattern);
        std::filesystem::create_directory(folder());
        const HomeWriter writer(folder());
        const timespec modified{1'700'000'000, 0};
        for (int index = 0; index < folders; ++index) {
            const std::string name = "folder-" + std::to_string(index);
            writer.folder(name);
            for (int file = 0; file < filesPerFolder; ++file) {
                writer.file(name + "/cache-" + std::to_string(file) + ".bin", 128, modified);
            }
        }
    }
    SnapshotTree(const SnapshotTree&) = delete;
    SnapshotTree& operator=(const SnapshotTree&) = delete;
    ~SnapshotTree() {
        std::error_code ignored;
        std::filesystem::remove_all(m_root, ignored);
    }

    std::filesystem::path folder() const { return m_root / "storage"; }

private:
    std::filesystem::path m_root;
};

void snapshotOf100000Items(benchmark::State& state) {
    static const SnapshotTree tree;
    for (auto _ : state) {
        auto snapshot = StorageLocationTrash::snapshot(tree.folder(), "Agent data", "", items,
                                                       {.stopToken = {}, .pauses = false});
        benchmark::DoNotOptimize(snapshot);
    }
    state.SetItemsProcessed(state.iterations() * items);
}

BENCHMARK(snapshotOf100000Items)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

}  // namespace tallowmere::bench
