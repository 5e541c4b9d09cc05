// SPDX-License-Identifier: MIT
// A private desktop with windows of given names: an X server with a window manager, or a Wayland compositor, without a
// screen. Used on the test's thread.
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

    /// `screenSize`: of the X11 desktop; the Wayland compositor has a fixed one.
    explicit TestDesktop(Kind kind, QSize screenSize = {640, 480});
    ~TestDesktop();

    /// Returns false when a program that it needs is missing or does not start. A process may have one X11 desktop at a
    /// time.
    [[nodiscard]] bool start();
    /// Kills it as a crash would. Its windows disappear with it.
    void stop();

    /// Returns `environment` with this desktop selected; the same for every start().
    [[nodiscard]] QProcessEnvironment in(QProcessEnvironment environment) const;

    /// Opens a window of the application `name`; it gets the focus. Returns false when it does not appear.
    [[nodiscard]] bool open(const QString &name);
    void close(const QString &name);
    /// Gives an open window the focus. Returns false when the desktop does not accept the request.
    [[nodiscard]] bool focus(const QString &name) const;

    /// The content of the screen, four bytes per pixel; empty when it is unknown. X11 only.
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
