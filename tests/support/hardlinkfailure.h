// SPDX-License-Identifier: MIT
// A file system without hard links. The test's thread; it holds for the whole process.
#pragma once

#include <QtGlobal>

/// While it lives, giving a file a second name (linkat) fails with `errorNumber`, an errno value.
class HardLinkFailure
{
public:
    explicit HardLinkFailure(int errorNumber);
    ~HardLinkFailure();
    Q_DISABLE_COPY_MOVE(HardLinkFailure)
};
