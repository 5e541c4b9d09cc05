// SPDX-License-Identifier: MIT
// The disk of a test's daemon; the test chooses its faults. The test's thread. One at a time.
#pragma once

#include "tests/chaos/diskcontrol.h"

#include <QTemporaryDir>

class QProcessEnvironment;

class FaultyDisk
{
public:
    FaultyDisk();
    ~FaultyDisk();
    Q_DISABLE_COPY_MOVE(FaultyDisk)

    /// Daemons that start in `environment` from now on have `folder` on this disk.
    void prepare(QProcessEnvironment &environment, const QString &folder) const;

    [[nodiscard]] DiskControl *operator->() const { return mControl; }

    /// Ends all faults; held flushes continue.
    void recover();
    [[nodiscard]] int deathCount() const;
    [[nodiscard]] int deathCount(DiskCall call, DeathPlace place) const;

private:
    QTemporaryDir mFolder;
    DiskControl *mControl = nullptr;
};
