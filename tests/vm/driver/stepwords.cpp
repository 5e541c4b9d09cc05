// SPDX-License-Identifier: MIT
#include "tests/vm/driver/stepwords.h"

#include "tests/vm/driver/failure.h"

#include <fstream>
#include <sstream>

const std::string &word(const Words &words, std::size_t index)
{
    if (index >= words.size())
        throw Failure("a word is missing");
    return words[index];
}

Words from(const Words &words, std::size_t index)
{
    return words.size() > index ? Words(words.begin() + static_cast<std::ptrdiff_t>(index), words.end()) : Words();
}

std::string option(const Words &words, const std::string &name, const std::string &otherwise)
{
    for (const std::string &candidate : words) {
        if (candidate.starts_with(name + "="))
            return candidate.substr(name.size() + 1);
    }
    return otherwise;
}

int number(const Words &words, const std::string &name, int otherwise)
{
    return std::stoi(option(words, name, std::to_string(otherwise)));
}

std::vector<std::string> parts(const Words &words)
{
    std::vector<std::string> result(1);
    for (std::string part : from(words, 1)) {
        const bool isLast = part.ends_with(',');
        if (isLast)
            part.pop_back();
        result.back() += (result.back().empty() ? "" : " ") + part;
        if (isLast)
            result.emplace_back();
    }
    return result;
}

std::string contentOf(const std::string &path)
{
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}
