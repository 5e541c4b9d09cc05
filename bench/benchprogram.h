// SPDX-License-Identifier: MIT
// The real window and the real daemon for benchmarks; the daemon has a private state folder. Needs a QApplication and a
// private session bus. Main thread only.
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

/// The window, shown, with the document of that daemon in it.
struct BenchProgram
{
    explicit BenchProgram(const QVariantMap &document);

    BenchDaemon daemon;
    MainWindow window;
    KeyboardMainController controller;
};
