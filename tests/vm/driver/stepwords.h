// SPDX-License-Identifier: MIT
// Reading the words of a step. Throws Failure for those that are missing.
#pragma once

#include <string>
#include <vector>

using Words = std::vector<std::string>;

[[nodiscard]] const std::string &word(const Words &words, std::size_t index);
[[nodiscard]] Words from(const Words &words, std::size_t index);
/// "name=value" among the words; `otherwise` when it is not there.
[[nodiscard]] std::string option(const Words &words, const std::string &name, const std::string &otherwise);
[[nodiscard]] int number(const Words &words, const std::string &name, int otherwise);
/// The words from the second on, as what their commas part.
[[nodiscard]] std::vector<std::string> parts(const Words &words);
/// The content of a file; empty when it cannot be read.
[[nodiscard]] std::string contentOf(const std::string &path);
