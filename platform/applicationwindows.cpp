// SPDX-License-Identifier: MIT
#include "platform/applicationwindows.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <vector>

#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace {

// As in the Extended Window Manager Hints. The GTK and KDE properties name the desktop entry of such programs.
enum Atom { clientList, windowType, desktopType, dockType, processId, gtkApplicationId, kdeDesktopFile, utf8String };
constexpr std::array atomNames{
    "_NET_CLIENT_LIST"_L1, "_NET_WM_WINDOW_TYPE"_L1, "_NET_WM_WINDOW_TYPE_DESKTOP"_L1, "_NET_WM_WINDOW_TYPE_DOCK"_L1,
    "_NET_WM_PID"_L1,      "_GTK_APPLICATION_ID"_L1, "_KDE_NET_WM_DESKTOP_FILE"_L1,    "UTF8_STRING"_L1};
constexpr uint32_t longestProperty = 256; // in units of four bytes
constexpr uint32_t mostWindows = 1000;

template <typename T> using Freed = std::unique_ptr<T, decltype(&std::free)>;

/// The requests for one window, sent before the first reply is read: one wait for all windows.
struct Requests
{
    xcb_get_property_cookie_t windowClass, gtkId, kdeFile, process, type;
};

class WindowReader
{
public:
    explicit WindowReader(const QByteArray &display)
        : mConnection(xcb_connect(display.constData(), &mScreenNumber), &xcb_disconnect)
    {
    }

    QList<FrontApplication> applications()
    {
        if (xcb_connection_has_error(mConnection.get()) != 0 || !readAtoms())
            return {};
        std::vector<Requests> sent;
        for (const xcb_window_t window : numbers(ask(root(), clientList, XCB_ATOM_WINDOW, mostWindows)))
            sent.push_back({.windowClass = askPredefined(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING),
                            .gtkId = ask(window, gtkApplicationId, mAtoms[utf8String]),
                            .kdeFile = ask(window, kdeDesktopFile, mAtoms[utf8String]),
                            .process = ask(window, processId, XCB_ATOM_CARDINAL),
                            .type = ask(window, windowType, XCB_ATOM_ATOM)});
        QList<FrontApplication> found;
        for (const Requests &requests : sent) {
            const FrontApplication application = applicationOf(requests);
            if (!application.isNone() && !found.contains(application))
                found += application;
        }
        return found;
    }

private:
    [[nodiscard]] xcb_window_t root() const
    {
        xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(mConnection.get()));
        for (int number = 0; number < mScreenNumber && screens.rem > 1; ++number)
            xcb_screen_next(&screens);
        return screens.rem > 0 ? screens.data->root : xcb_window_t(XCB_WINDOW_NONE);
    }

    [[nodiscard]] bool readAtoms()
    {
        std::array<xcb_intern_atom_cookie_t, atomNames.size()> cookies{};
        for (std::size_t index = 0; index < atomNames.size(); ++index)
            cookies[index] = xcb_intern_atom(mConnection.get(), 0, static_cast<uint16_t>(atomNames[index].size()),
                                             atomNames[index].data());
        for (std::size_t index = 0; index < atomNames.size(); ++index) {
            const Freed<xcb_intern_atom_reply_t> reply(
                xcb_intern_atom_reply(mConnection.get(), cookies[index], nullptr), &std::free);
            if (!reply)
                return false;
            mAtoms[index] = reply->atom;
        }
        return true;
    }

    xcb_get_property_cookie_t askPredefined(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                                            uint32_t longest = longestProperty)
    {
        return xcb_get_property(mConnection.get(), 0, window, property, type, 0, longest);
    }

    xcb_get_property_cookie_t ask(xcb_window_t window, Atom property, xcb_atom_t type,
                                  uint32_t longest = longestProperty)
    {
        return askPredefined(window, mAtoms[property], type, longest);
    }

    /// Null when the window is gone.
    Freed<xcb_get_property_reply_t> replyTo(xcb_get_property_cookie_t cookie)
    {
        return {xcb_get_property_reply(mConnection.get(), cookie, nullptr), &std::free};
    }

    QByteArray bytes(xcb_get_property_cookie_t cookie)
    {
        const auto reply = replyTo(cookie);
        if (!reply || reply->format != 8)
            return {};
        return {static_cast<const char *>(xcb_get_property_value(reply.get())),
                xcb_get_property_value_length(reply.get())};
    }

    std::vector<uint32_t> numbers(xcb_get_property_cookie_t cookie)
    {
        const auto reply = replyTo(cookie);
        if (!reply || reply->format != 32)
            return {};
        const auto *first = static_cast<const uint32_t *>(xcb_get_property_value(reply.get()));
        return {first, first + reply->value_len};
    }

    /// None for a window that does not count. Takes every reply, because a reply that is left stays in memory.
    FrontApplication applicationOf(const Requests &requests)
    {
        const QList<QByteArray> classParts = bytes(requests.windowClass).split('\0'); // instance, class
        const QString gtkEntry = QString::fromUtf8(bytes(requests.gtkId));
        const QString kdeEntry = QString::fromUtf8(bytes(requests.kdeFile));
        const std::vector<uint32_t> process = numbers(requests.process);
        const std::vector<uint32_t> types = numbers(requests.type);
        const bool isOwn = !process.empty() && process.front() == QCoreApplication::applicationPid();
        const auto isPartOfDesktop = [this](uint32_t type) {
            return type == mAtoms[desktopType] || type == mAtoms[dockType];
        };
        if (isOwn || std::ranges::any_of(types, isPartOfDesktop))
            return {};
        return {.windowClass = QString::fromLatin1(classParts.value(1)),
                .windowInstance = QString::fromLatin1(classParts.value(0)),
                .desktopEntry = gtkEntry.isEmpty() ? kdeEntry : gtkEntry};
    }

    int mScreenNumber = 0;
    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> mConnection;
    std::array<xcb_atom_t, atomNames.size()> mAtoms{};
};

} // namespace

QList<FrontApplication> ApplicationWindows::read(const QByteArray &display)
{
    return WindowReader(display).applications();
}
