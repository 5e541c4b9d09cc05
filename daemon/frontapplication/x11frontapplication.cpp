// SPDX-License-Identifier: MIT
#include "daemon/frontapplication/x11frontapplication.h"

#include "daemon/frontapplication/processexecutable.h"

#include <QList>

#include <xcb/xcbext.h>

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

// As in the Extended Window Manager Hints. The GTK and KDE properties name the desktop entry of such programs.
constexpr std::array atomNames{"_NET_ACTIVE_WINDOW"_L1, "_NET_WM_PID"_L1, "_GTK_APPLICATION_ID"_L1,
                               "_KDE_NET_WM_DESKTOP_FILE"_L1, "UTF8_STRING"_L1};
constexpr uint32_t longestProperty = 256; // in units of four bytes

template <typename T> using Freed = std::unique_ptr<T, decltype(&std::free)>;

QByteArray bytesOf(const xcb_get_property_reply_t *reply)
{
    if (!reply || reply->format != 8)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(reply)), xcb_get_property_value_length(reply)};
}

uint32_t numberOf(const xcb_get_property_reply_t *reply)
{
    if (!reply || reply->format != 32 || reply->value_len == 0)
        return 0;
    return *static_cast<const uint32_t *>(xcb_get_property_value(reply));
}

void selectEvents(xcb_connection_t *connection, xcb_window_t window, uint32_t mask)
{
    xcb_change_window_attributes(connection, window, XCB_CW_EVENT_MASK, &mask);
}

} // namespace

X11FrontApplication::~X11FrontApplication()
{
    mNotifier.reset(); // before its socket is closed
    if (mConnection)
        xcb_disconnect(mConnection);
}

void X11FrontApplication::start()
{
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        return fail(u"DISPLAY is not set"_s);
    int screenNumber = 0;
    mConnection = xcb_connect(nullptr, &screenNumber);
    if (xcb_connection_has_error(mConnection) != 0)
        return fail(u"no X server answers at %1"_s.arg(qEnvironmentVariable("DISPLAY")));
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(mConnection));
    for (int number = 0; number < screenNumber && screens.rem > 1; ++number)
        xcb_screen_next(&screens);
    if (screens.rem == 0 || !readAtoms())
        return fail(u"the X server ends the connection"_s);
    mRoot = screens.data->root;
    selectEvents(mConnection, mRoot, XCB_EVENT_MASK_PROPERTY_CHANGE);
    askForWindow();
    mNotifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(mConnection), QSocketNotifier::Read);
    connect(mNotifier.get(), &QSocketNotifier::activated, this, &X11FrontApplication::readAvailable);
    Q_EMIT ready();
    // Events received while the atoms were read are in the library's queue, where the notifier does not see them.
    QMetaObject::invokeMethod(this, &X11FrontApplication::readAvailable, Qt::QueuedConnection);
}

bool X11FrontApplication::seesAllWindows() const
{
    return qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

bool X11FrontApplication::readAtoms()
{
    std::array<xcb_intern_atom_cookie_t, atomCount> cookies{};
    for (std::size_t index = 0; index < atomCount; ++index)
        cookies[index] =
            xcb_intern_atom(mConnection, 0, static_cast<uint16_t>(atomNames[index].size()), atomNames[index].data());
    for (std::size_t index = 0; index < atomCount; ++index) {
        const Freed<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(mConnection, cookies[index], nullptr),
                                                   &std::free);
        if (!reply)
            return false;
        mAtoms[index] = reply->atom;
    }
    return true;
}

void X11FrontApplication::ask(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                              std::function<void(const xcb_get_property_reply_t *)> take)
{
    const auto cookie = xcb_get_property(mConnection, 0, window, property, type, 0, longestProperty);
    mQuestions.push_back({.sequence = cookie.sequence, .take = std::move(take)});
}

void X11FrontApplication::askForWindow()
{
    ask(mRoot, mAtoms[activeWindow], XCB_ATOM_WINDOW,
        [this](const xcb_get_property_reply_t *reply) { follow(numberOf(reply)); });
    xcb_flush(mConnection);
}

void X11FrontApplication::follow(xcb_window_t window)
{
    if (window == mWindow)
        return;
    if (mWindow != XCB_WINDOW_NONE)
        selectEvents(mConnection, mWindow, XCB_EVENT_MASK_NO_EVENT);
    mWindow = window;
    if (mWindow == XCB_WINDOW_NONE) {
        Q_EMIT applicationChanged({});
        return;
    }
    // Some programs set their name after their window is shown. Some window managers keep naming the last window after
    // it is gone.
    selectEvents(mConnection, mWindow, XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    askForApplication();
}

void X11FrontApplication::askForApplication()
{
    const xcb_window_t window = mWindow;
    mBeingRead = {};
    ask(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, [this](const xcb_get_property_reply_t *reply) {
        const QList<QByteArray> parts = bytesOf(reply).split('\0'); // instance, class
        mBeingRead.windowInstance = QString::fromLatin1(parts.value(0));
        mBeingRead.windowClass = QString::fromLatin1(parts.value(1));
    });
    ask(window, mAtoms[gtkApplicationId], mAtoms[utf8String],
        [this](const xcb_get_property_reply_t *reply) { mBeingRead.desktopEntry = QString::fromUtf8(bytesOf(reply)); });
    ask(window, mAtoms[kdeDesktopFile], mAtoms[utf8String], [this](const xcb_get_property_reply_t *reply) {
        if (mBeingRead.desktopEntry.isEmpty())
            mBeingRead.desktopEntry = QString::fromUtf8(bytesOf(reply));
    });
    ask(window, mAtoms[processId], XCB_ATOM_CARDINAL, [this, window](const xcb_get_property_reply_t *reply) {
        mBeingRead.executable = processExecutable(numberOf(reply));
        if (window == mWindow)
            Q_EMIT applicationChanged(mBeingRead);
    });
    xcb_flush(mConnection);
}

void X11FrontApplication::readAvailable()
{
    // An event causes requests, and reading an event may also read a reply: repeats until nothing is left.
    while (takeEvents() || takeReplies()) {
    }
    if (xcb_connection_has_error(mConnection) != 0) {
        mNotifier->setEnabled(false);
        fail(u"the X server is gone"_s);
    }
}

bool X11FrontApplication::takeEvents()
{
    bool hasTaken = false;
    while (const Freed<xcb_generic_event_t> event{xcb_poll_for_event(mConnection), &std::free}) {
        hasTaken = true;
        constexpr uint8_t sentByAClient = 0x80;
        switch (event->response_type & ~sentByAClient) {
        case XCB_PROPERTY_NOTIFY:
            propertyChanged(*reinterpret_cast<const xcb_property_notify_event_t *>(event.get()));
            break;
        case XCB_UNMAP_NOTIFY:
            if (reinterpret_cast<const xcb_unmap_notify_event_t *>(event.get())->window == mWindow)
                Q_EMIT applicationChanged({});
            break;
        case XCB_MAP_NOTIFY:
            if (reinterpret_cast<const xcb_map_notify_event_t *>(event.get())->window == mWindow)
                askForApplication();
            break;
        default: break; // includes errors about windows that are gone
        }
    }
    return hasTaken;
}

void X11FrontApplication::propertyChanged(const xcb_property_notify_event_t &change)
{
    const bool isName = change.atom == XCB_ATOM_WM_CLASS || change.atom == mAtoms[gtkApplicationId]
                        || change.atom == mAtoms[kdeDesktopFile] || change.atom == mAtoms[processId];
    if (change.window == mRoot && change.atom == mAtoms[activeWindow])
        askForWindow();
    else if (change.window == mWindow && isName)
        askForApplication();
}

bool X11FrontApplication::takeReplies()
{
    bool hasTaken = false;
    while (!mQuestions.empty()) {
        void *reply = nullptr;
        xcb_generic_error_t *error = nullptr;
        if (xcb_poll_for_reply(mConnection, mQuestions.front().sequence, &reply, &error) == 0)
            break; // still on its way
        const Freed<xcb_generic_error_t> freedError(error, &std::free);
        const Freed<xcb_get_property_reply_t> freedReply(static_cast<xcb_get_property_reply_t *>(reply), &std::free);
        const Question question = std::move(mQuestions.front());
        mQuestions.pop_front();
        if (xcb_connection_has_error(mConnection) != 0)
            break;
        question.take(freedReply.get());
        hasTaken = true;
    }
    return hasTaken;
}
