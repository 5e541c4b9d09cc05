// SPDX-License-Identifier: MIT
// Ends a scenario: an expected event did not arrive, or a step failed.
#pragma once

#include <stdexcept>

class Failure : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};
