#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace tallowmere::testing {

// Sets (or, given nothing, removes) one environment variable for the life of the value and
// puts the old value back afterwards.
class ScopedVariable {
public:
    ScopedVariable(const char* name, const std::optional<std::string>& value) : m_name(name) {
        if (const char* old = std::getenv(name)) {
            m_old = old;
        }
        set(value);
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;
    ~ScopedVariable() { set(m_old); }

private:
    void set(const std::optional<std::string>& value) {
        if (value) {
            ::setenv(m_name, value->c_str(), 1);
        } else {
            ::unsetenv(m_name);
        }
    }

    const char* m_name;
    std::optional<std::string> m_old;
};

}  // namespace tallowmere::testing
