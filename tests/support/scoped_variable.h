// SPDX-License-Identifier: MIT
// An environment variable that has another value for the length of a test.

#pragma once

#include <cstdlib>
#include <optional>
#include <string>

class ScopedVariable {
public:
    ScopedVariable(char const* variableName, std::string const& value) : name(variableName) {
        if (char const* const present = std::getenv(name)) {
            before = present;
        }
        setenv(name, value.c_str(), 1);
    }
    ~ScopedVariable() { before ? setenv(name, before->c_str(), 1) : unsetenv(name); }
    ScopedVariable(ScopedVariable const&) = delete;
    ScopedVariable& operator=(ScopedVariable const&) = delete;

private:
    char const* name;
    std::optional<std::string> before;
};
