// SPDX-License-Identifier: MIT
// A numeric locale with a decimal comma, for as long as the object lives: numbers that are stored must not care, and
// numbers that are shown must follow.
//
//     CommaLocale const comma;
//     if (!comma.IsSet())
//         GTEST_SKIP() << "no locale with a comma can be had on this machine";

#pragma once

#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"

#include <clocale>
#include <cstdlib>
#include <string>

class CommaLocale {
public:
    CommaLocale() : m_before(std::setlocale(LC_NUMERIC, nullptr)) {
        m_isSet = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") || std::setlocale(LC_NUMERIC, "fr_FR.UTF-8") || Compile();
    }
    CommaLocale(CommaLocale const&) = delete;
    CommaLocale& operator=(CommaLocale const&) = delete;
    ~CommaLocale() { std::setlocale(LC_NUMERIC, m_before.c_str()); }

    [[nodiscard]] bool IsSet() const { return m_isSet; }

private:
    // Bare machines have no such locale, but often the compiler for one.
    bool Compile() {
        TemporaryFolder const folder;
        folder.Write("source", "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \"\"\ngrouping -1\nEND LC_NUMERIC\n");
        std::string const path = folder.Native();
        std::string const command = "localedef -c -i " + path + "source " + path + "comma >" + path + "log 2>&1";
        // Warnings about the categories left out are no reason to refuse what was made.
        static_cast<void>(std::system(command.c_str()) == 0);
        ScopedVariable const place("LOCPATH", path);
        return std::setlocale(LC_NUMERIC, "comma") != nullptr; // held in memory from here on
    }

    std::string m_before;
    bool m_isSet = false;
};
