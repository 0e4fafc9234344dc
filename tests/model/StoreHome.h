#pragma once

#include <QTest>
#include <deque>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "FolderChooser.h"
#include "ScopedVariable.h"
#include "TemporaryTree.h"

namespace tallowmere::testing {

// A user of their own for one store: a home folder and XDG folders (settings, summary, Trash)
// in a temporary tree, put in place through the environment for the life of the value.
class StoreHome {
public:
    StoreHome()
        : m_home("HOME", m_tree.folder("home").native()),
          m_config("XDG_CONFIG_HOME", m_tree.folder("config").native()),
          m_cache("XDG_CACHE_HOME", m_tree.folder("cache").native()),
          m_data("XDG_DATA_HOME", m_tree.folder("home/.local/share").native()),
          m_state("XDG_STATE_HOME", m_tree.folder("state").native()) {}

    std::filesystem::path home() const { return m_tree / "home"; }
    std::filesystem::path settingsFile() const {
        return m_tree / "config/Tallowmere/settings.json";
    }
    std::filesystem::path summaryFile() const {
        return m_tree / "cache/Tallowmere/storage-summary.json";
    }
    // Writes a file of `bytes` under the home folder; returns its path.
    std::filesystem::path file(const std::string& relative, std::int64_t bytes = 4096,
                               Date modified = 0) const {
        return m_tree.file("home/" + relative, bytes, modified);
    }
    std::filesystem::path folder(const std::string& relative) const {
        return m_tree.folder("home/" + relative);
    }

private:
    TemporaryTree m_tree;
    ScopedVariable m_home;
    ScopedVariable m_config;
    ScopedVariable m_cache;
    ScopedVariable m_data;
    ScopedVariable m_state;
};

// What the folder chooser of a test answers, in order (nothing once they run out), and how
// often it was asked.
struct ChooserScript {
    std::deque<std::optional<std::string>> answers;
    int asked = 0;
};

class ScriptedChooser : public FolderChooser {
public:
    explicit ScriptedChooser(ChooserScript& script) : m_script(script) {}

    std::optional<std::string> chooseFolder() override {
        ++m_script.asked;
        if (m_script.answers.empty()) {
            return std::nullopt;
        }
        auto answer = m_script.answers.front();
        m_script.answers.pop_front();
        return answer;
    }

private:
    ChooserScript& m_script;
};

}  // namespace tallowmere::testing
