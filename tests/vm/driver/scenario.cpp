// SPDX-License-Identifier: MIT
#include "tests/vm/driver/scenario.h"

#include "tests/vm/driver/failure.h"
#include "tests/vm/driver/steps.h"

#include <filesystem>
#include <fstream>
#include <iomanip>
#include <sstream>

std::string Step::text() const
{
    std::string text;
    for (const std::string &word : words)
        text += (text.empty() ? "" : " ") + word;
    return text;
}

Scenario readScenario(const std::string &path)
{
    std::ifstream file(path);
    if (!file)
        throw Failure("cannot read " + path);
    Scenario scenario{.name = std::filesystem::path(path).stem().string(), .steps = {}};
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        std::istringstream stream(line);
        Step step{.line = number, .words = {}};
        for (std::string word; stream >> std::ws && stream.peek() != EOF && stream >> std::quoted(word);)
            step.words.push_back(word);
        if (!step.words.empty() && !step.words.front().starts_with('#'))
            scenario.steps.push_back(step);
    }
    return scenario;
}

void runScenario(const Scenario &scenario)
{
    Machine machine("/run/scenario");
    try {
        for (const Step &step : scenario.steps) {
            try {
                doStep(machine, step.words);
            } catch (const Failure &failure) {
                throw Failure("line " + std::to_string(step.line) + " (" + step.text() + "): " + failure.what());
            }
        }
    } catch (const Failure &failure) {
        throw Failure(std::string(failure.what()) + "\n--- the daemon's log\n" + machine.daemonLog());
    }
}
