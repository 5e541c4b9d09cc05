// SPDX-License-Identifier: MIT
// Shows in a comparison why an operation has failed. No state; any thread.
#pragma once

#include "base/result.h"

/// The reason of a failure; empty for a success.
template <typename T> QString reasonOf(const Result<T> &result)
{
    return result ? QString() : result.error().message;
}
