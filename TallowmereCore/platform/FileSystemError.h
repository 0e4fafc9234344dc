#pragma once

#include <stdexcept>
#include <string>

namespace tallowmere {

// A failure of the file system, described in the program's own short words ("The file doesn’t
// exist.") rather than the C library's; `code` keeps the errno value for decisions.
class FileSystemError : public std::runtime_error {
public:
    FileSystemError(int code, const std::string& description)
        : std::runtime_error(description), m_code(code) {}

    // The error for `code`, described by `describeErrno`.
    static FileSystemError fromErrno(int code);

    int code() const { return m_code; }

private:
    int m_code;
};

// One sentence for an errno value, for messages of the form "name: sentence".
std::string describeErrno(int code);

}  // namespace tallowmere
