// SPDX-License-Identifier: MIT
// A scenario: a text file with one step a line, run in order (tests/vm/README.md describes the language).
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
    std::string name; ///< file name without its suffix
    std::vector<Step> steps;
};

/// Throws Failure when the file cannot be read.
[[nodiscard]] Scenario readScenario(const std::string &path);

/// Throws Failure, with line and step, at the first step that fails.
void runScenario(const Scenario &scenario);
