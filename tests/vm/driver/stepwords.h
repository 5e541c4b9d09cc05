// SPDX-License-Identifier: MIT
// Reads the words of a step. Throws Failure for missing words.
#pragma once

#include <string>
#include <vector>

using Words = std::vector<std::string>;

[[nodiscard]] const std::string &word(const Words &words, std::size_t index);
[[nodiscard]] Words from(const Words &words, std::size_t index);
/// "name=value" among the words; `otherwise` when it is missing.
[[nodiscard]] std::string option(const Words &words, const std::string &name, const std::string &otherwise);
[[nodiscard]] int number(const Words &words, const std::string &name, int otherwise);
/// The words from the second on, split at commas.
[[nodiscard]] std::vector<std::string> parts(const Words &words);
/// The content of a file; empty when it cannot be read.
[[nodiscard]] std::string contentOf(const std::string &path);
