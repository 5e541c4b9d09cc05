// SPDX-License-Identifier: MIT
// A desktop of the test's own: an X server with a window manager, or a Wayland compositor, without a screen, with
// windows of given names. The test's thread.
#pragma once

#include "tests/support/x11windows.h"

#include <QHash>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSize>
#include <QTemporaryDir>

#include <memory>

class TestDesktop
{
public:
    enum class Kind { x11, wayland };

    /// `screenSize`: of the X11 desktop; the other has its own.
    explicit TestDesktop(Kind kind, QSize screenSize = {640, 480});
    ~TestDesktop();

    /// False when a program it needs is missing or does not come up. A process may have one X11 desktop at a time.
    [[nodiscard]] bool start();
    /// Kills it, as a crash would; windows go with it.
    void stop();

    /// `environment` with this desktop as the one to use; the same for every start().
    [[nodiscard]] QProcessEnvironment in(QProcessEnvironment environment) const;

    /// Opens a window of the application `name`; it gets the focus. False when it does not come.
    [[nodiscard]] bool open(const QString &name);
    void close(const QString &name);
    /// Gives an open window the focus; false when the desktop cannot be told.
    [[nodiscard]] bool focus(const QString &name) const;

    /// What the screen shows, four bytes a dot; empty where it cannot be told. X11 only.
    [[nodiscard]] QByteArray picture() const { return mX11Windows ? mX11Windows->picture() : QByteArray(); }

private:
    [[nodiscard]] bool startX11();
    void removeLeftOvers() const;
    [[nodiscard]] bool startWayland();
    [[nodiscard]] bool run(const QString &program, const QStringList &arguments) const;
    void end(std::unique_ptr<QProcess> process);

    Kind mKind;
    QSize mScreenSize;
    QTemporaryDir mRuntimeFolder;
    QString mDisplay;
    std::unique_ptr<QProcess> mServer;
    std::unique_ptr<QProcess> mWindowManager;
    std::unique_ptr<X11Windows> mX11Windows;
    QHash<QString, QProcess *> mWindows;
};
