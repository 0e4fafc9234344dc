#include "CliRunner.h"

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
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

// Everything the program wrote to the terminal; reading ends once no one holds its other side.
std::string drained(int terminal) {
    std::string text;
    char buffer[4096];
    for (;;) {
        const ssize_t read = ::read(terminal, buffer, sizeof buffer);
        if (read > 0) {
            text.append(buffer, static_cast<std::size_t>(read));
        } else if (read < 0 && errno == EINTR) {
            continue;
        } else {
            return text;
        }
    }
}

}  // namespace

CliSetup inFolder(std::filesystem::path folder) {
    CliSetup setup;
    setup.workingFolder = std::move(folder);
    return setup;
}

CliSetup writingTo(std::filesystem::path file) {
    CliSetup setup;
    setup.standardOutput = std::move(file);
    return setup;
}

CliSetup onTerminal(CliSetup::Terminal terminal, unsigned short columns) {
    CliSetup setup;
    setup.terminal = terminal;
    setup.columns = columns;
    return setup;
}

CliRun runCli(const std::vector<std::string>& arguments, const std::filesystem::path& home,
              const CliSetup& setup) {
    TemporaryTree outputs;
    const auto outPath = setup.standardOutput.empty() ? outputs / "out" : setup.standardOutput;
    const auto errPath = outputs / "err";
    std::vector<std::string> words = {TALLOWMERE_CLI_PATH};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (auto& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);

    using Terminal = CliSetup::Terminal;
    int master = -1;
    int slave = -1;
    if (setup.terminal != Terminal::none) {
        winsize size{};
        size.ws_row = 40;
        size.ws_col = setup.columns;
        // Raw, so that what is collected is exactly what the program wrote.
        termios mode{};
        ::cfmakeraw(&mode);
        if (::openpty(&master, &slave, nullptr, &mode, &size) != 0) {
            throw std::runtime_error("cannot open a pseudo-terminal");
        }
    }
    const pid_t child = ::fork();
    if (child < 0) {
        throw std::runtime_error("cannot fork to run tallowmere-cli");
    }
    if (child == 0) {
        int out = ::open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        int err = ::open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        if (setup.terminal == Terminal::standardOutput) {
            out = slave;
        } else if (setup.terminal == Terminal::standardError) {
            err = slave;
        }
        const int in = ::open("/dev/null", O_RDONLY);
        for (const char* variable :
             {"XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "COLUMNS"}) {
            ::unsetenv(variable);
        }
        if (in < 0 || out < 0 || err < 0 || ::dup2(in, 0) < 0 || ::dup2(out, 1) < 0 ||
            ::dup2(err, 2) < 0 || ::setenv("HOME", home.c_str(), 1) != 0 ||
            (!setup.workingFolder.empty() && ::chdir(setup.workingFolder.c_str()) != 0)) {
            ::_exit(127);
        }
        if (master >= 0) {
            ::close(master);
            ::close(slave);
        }
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    std::string shown;
    if (master >= 0) {
        ::close(slave);
        shown = drained(master);
        ::close(master);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    CliRun run{WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
               setup.standardOutput.empty() ? contentsOf(outPath) : std::string(),
               contentsOf(errPath)};
    if (setup.terminal == Terminal::standardOutput) {
        run.out = shown;
    } else if (setup.terminal == Terminal::standardError) {
        run.err = shown;
    }
    return run;
}

}  // namespace tallowmere::testing
