// SPDX-License-Identifier: MIT
// The windows of an X server's window manager, and giving one of them the focus as a task bar does: without starting a
// program, so that it takes no time of its own. The test's thread.
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

    /// False when the server does not answer.
    [[nodiscard]] bool isConnected() const;
    /// Whether a window manager takes in windows: tries it with one of its own. To be called again and again, since one
    /// that has only begun to work may overlook a window.
    [[nodiscard]] bool areManaged();
    /// Asks the window manager to bring the window whose class is `name` to the front; false when there is none. Does
    /// not wait for it.
    [[nodiscard]] bool activate(const QString &name);
    /// What the screen shows, row by row, four bytes a dot; empty when it cannot be told.
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
