// SPDX-License-Identifier: MIT
// The windows of an X server's window manager. Gives one of them the focus like a task bar, without the delay of
// starting a program. Used on the test's thread.
#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>

#include <xcb/xcb.h>

class X11Windows
{
public:
    /// Connects to `display` (":7").
    explicit X11Windows(const QString &display);
    ~X11Windows();
    Q_DISABLE_COPY_MOVE(X11Windows)

    /// Returns false when the server does not answer.
    [[nodiscard]] bool isConnected() const;
    /// Whether a window manager manages windows: tries it with a window of its own. Call it repeatedly, because a
    /// window manager that has just started may overlook a window.
    [[nodiscard]] bool areManaged();
    /// Asks the window manager to bring the window whose class is `name` to the front; does not wait. Returns false
    /// when there is none.
    [[nodiscard]] bool activate(const QString &name);
    /// The content of the screen, row by row, four bytes per pixel; empty when it is unknown.
    [[nodiscard]] QByteArray picture();

private:
    void showProbe();
    [[nodiscard]] xcb_window_t find(const QString &name);
    [[nodiscard]] QByteArray property(xcb_window_t window, xcb_atom_t property, xcb_atom_t type);
    [[nodiscard]] xcb_atom_t atom(QByteArrayView name);

    xcb_connection_t *mConnection = nullptr;
    xcb_window_t mRoot = XCB_WINDOW_NONE;
    xcb_window_t mProbe = XCB_WINDOW_NONE;
    QElapsedTimer mProbeShown;
    xcb_atom_t mActiveWindow = XCB_ATOM_NONE;
    xcb_atom_t mClientList = XCB_ATOM_NONE;
};
