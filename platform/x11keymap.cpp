// SPDX-License-Identifier: MIT
#include "platform/x11keymap.h"

#include <QSocketNotifier>

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-x11.h>

// The header of the C library has a member with a name that is a keyword of C++.
#define explicit explicitMembers
#include <xcb/xkb.h>
#undef explicit

#include <cstdlib>
#include <memory>

namespace {

template <typename T> using Freed = std::unique_ptr<T, decltype(&std::free)>;

} // namespace

X11Keymap::X11Keymap(const QByteArray &display, QObject *parent) : QObject(parent)
{
    if (!connectTo(display)) {
        end();
        return;
    }
    readKeymap();
    mNotifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(mConnection), QSocketNotifier::Read);
    connect(mNotifier.get(), &QSocketNotifier::activated, this, &X11Keymap::readEvents);
}

X11Keymap::~X11Keymap()
{
    end();
}

bool X11Keymap::connectTo(const QByteArray &display)
{
    mConnection = xcb_connect(display.isEmpty() ? nullptr : display.constData(), nullptr);
    if (xcb_connection_has_error(mConnection) != 0)
        return false;
    if (!xkb_x11_setup_xkb_extension(mConnection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                     XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &mFirstEvent, nullptr))
        return false;
    mKeyboard = xkb_x11_get_core_keyboard_device_id(mConnection);
    if (mKeyboard < 0)
        return false;
    constexpr quint16 events =
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
    constexpr quint16 mapParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS;
    xcb_xkb_select_events_details_t details{};
    details.affectNewKeyboard = details.newKeyboardDetails = XCB_XKB_NKN_DETAIL_KEYCODES;
    // A modifier also changes the state; only another layout matters.
    details.affectState = details.stateDetails = XCB_XKB_STATE_PART_GROUP_STATE;
    xcb_xkb_select_events_aux(mConnection, static_cast<xcb_xkb_device_spec_t>(mKeyboard), events, 0, 0, mapParts,
                              mapParts, &details);
    return true;
}

void X11Keymap::readKeymap()
{
    xkb_context *context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    xkb_keymap *map = context
                          ? xkb_x11_keymap_new_from_device(context, mConnection, mKeyboard, XKB_KEYMAP_COMPILE_NO_FLAGS)
                          : nullptr;
    xkb_state *state = map ? xkb_x11_state_new_from_device(map, mConnection, mKeyboard) : nullptr;
    const xkb_layout_index_t layout = state ? xkb_state_serialize_layout(state, XKB_STATE_LAYOUT_EFFECTIVE) : 0;
    xkb_state_unref(state);
    xkb_context_unref(context);
    mKeymap = Keymap(map, layout);
}

void X11Keymap::readEvents()
{
    bool isChanged = false;
    while (const Freed<xcb_generic_event_t> event{xcb_poll_for_event(mConnection), &std::free}) {
        // Of this extension, only the selected events arrive, and none of another one.
        isChanged = isChanged || (event->response_type & 0x7f) == mFirstEvent;
    }
    if (xcb_connection_has_error(mConnection) != 0) {
        end();
        return;
    }
    if (!isChanged)
        return;
    readKeymap();
    Q_EMIT changed();
}

void X11Keymap::end()
{
    mNotifier.reset(); // before its socket is closed
    if (mConnection)
        xcb_disconnect(mConnection);
    mConnection = nullptr;
}
