// SPDX-License-Identifier: MIT
// The program as it runs, for benchmarks: the real window, and the real daemon on state of its own. Needs a
// QApplication and a session bus of the benchmark's own. Main thread only.
#pragma once

#include "app/keyboardmaincontroller.h"
#include "app/mainwindow.h"

#include <QProcess>
#include <QTemporaryDir>

/// The real daemon with `document` as its settings.
class BenchDaemon
{
public:
    explicit BenchDaemon(const QVariantMap &document);
    ~BenchDaemon();

private:
    QTemporaryDir mState;
    QProcess mProcess;
};

/// The window, shown, with that daemon's document in it.
struct BenchProgram
{
    explicit BenchProgram(const QVariantMap &document);

    BenchDaemon daemon;
    MainWindow window;
    KeyboardMainController controller;
};
