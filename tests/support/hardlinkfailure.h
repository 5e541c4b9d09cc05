// SPDX-License-Identifier: MIT
// Simulates a file system without hard links. The test's thread; affects the whole process.
#pragma once

#include <QtGlobal>

/// During its lifetime, giving a file a second name (linkat) fails with `errorNumber`, an errno value.
class HardLinkFailure
{
public:
    explicit HardLinkFailure(int errorNumber);
    ~HardLinkFailure();
    Q_DISABLE_COPY_MOVE(HardLinkFailure)
};
