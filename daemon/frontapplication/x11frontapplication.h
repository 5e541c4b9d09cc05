// SPDX-License-Identifier: MIT
// The application in front on an X11 display: the window that the window manager names in _NET_ACTIVE_WINDOW, and the
// properties that name its application.
#pragma once

#include "daemon/frontapplication/frontapplicationsource.h"

#include <QSocketNotifier>

#include <xcb/xcb.h>

#include <array>
#include <deque>
#include <functional>
#include <memory>

class X11FrontApplication : public FrontApplicationSource
{
    Q_OBJECT

public:
    ~X11FrontApplication() override;

    /// Connects to $DISPLAY.
    void start() override;
    /// Beside a Wayland compositor, an X server knows only the windows of X11 programs.
    [[nodiscard]] bool seesAllWindows() const override;

private:
    enum Atom { activeWindow, processId, gtkApplicationId, kdeDesktopFile, utf8String, atomCount };

    struct Question
    {
        unsigned int sequence;
        std::function<void(const xcb_get_property_reply_t *)> take; // null when the window is gone
    };

    [[nodiscard]] bool readAtoms();
    void ask(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
             std::function<void(const xcb_get_property_reply_t *)> take);
    void askForWindow();
    void askForApplication();
    void follow(xcb_window_t window);
    void readAvailable();
    [[nodiscard]] bool takeEvents();
    void propertyChanged(const xcb_property_notify_event_t &change);
    [[nodiscard]] bool takeReplies();

    xcb_connection_t *mConnection = nullptr;
    xcb_window_t mRoot = XCB_WINDOW_NONE;
    xcb_window_t mWindow = XCB_WINDOW_NONE; // the one in front
    std::array<xcb_atom_t, atomCount> mAtoms{};
    std::deque<Question> mQuestions; // in the order of their answers
    FrontApplication mBeingRead;
    std::unique_ptr<QSocketNotifier> mNotifier;
};
