// SPDX-License-Identifier: MIT
// A scenario: a text file with one step a line, done one after the other (tests/vm/README.md has the language).
#pragma once

#include <string>
#include <vector>

struct Step
{
    int line = 0;
    std::vector<std::string> words; ///< "quoted words" are one

    [[nodiscard]] std::string text() const;
};

struct Scenario
{
    std::string name; ///< the file's, without its suffix
    std::vector<Step> steps;
};

/// Throws Failure when the file cannot be read.
[[nodiscard]] Scenario readScenario(const std::string &path);

/// Throws Failure, with line and step, at the first that does not hold.
void runScenario(const Scenario &scenario);
