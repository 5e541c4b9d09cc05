// SPDX-License-Identifier: MIT
// Ends a scenario: what was expected did not come, or a step could not be done.
#pragma once

#include <stdexcept>

class Failure : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};
