#include "CliRunner.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <stdexcept>

#include "TemporaryTree.h"

namespace tallowmere::testing {

namespace {

std::string contentsOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

}  // namespace

CliRun runCli(const std::vector<std::string>& arguments, const std::filesystem::path& home,
              const std::filesystem::path& workingFolder) {
    TemporaryTree outputs;
    const auto outPath = outputs / "out";
    const auto errPath = outputs / "err";
    std::vector<std::string> words = {TALLOWMERE_CLI_PATH};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (auto& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);

    const pid_t child = ::fork();
    if (child < 0) {
        throw std::runtime_error("cannot fork to run tallowmere-cli");
    }
    if (child == 0) {
        const int out = ::open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        const int err = ::open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        const int in = ::open("/dev/null", O_RDONLY);
        for (const char* variable :
             {"XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME"}) {
            ::unsetenv(variable);
        }
        if (in < 0 || out < 0 || err < 0 || ::dup2(in, 0) < 0 || ::dup2(out, 1) < 0 ||
            ::dup2(err, 2) < 0 || ::setenv("HOME", home.c_str(), 1) != 0 ||
            (!workingFolder.empty() && ::chdir(workingFolder.c_str()) != 0)) {
            ::_exit(127);
        }
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), contentsOf(outPath),
            contentsOf(errPath)};
}

}  // namespace tallowmere::testing
