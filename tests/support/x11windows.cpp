// SPDX-License-Identifier: MIT
#include "tests/support/x11windows.h"

#include <QList>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

namespace {

template <typename T> using Freed = std::unique_ptr<T, decltype(&std::free)>;

} // namespace

X11Windows::X11Windows(const QString &display) : mConnection(xcb_connect(display.toLatin1().constData(), nullptr))
{
    if (!isConnected())
        return;
    mRoot = xcb_setup_roots_iterator(xcb_get_setup(mConnection)).data->root;
    mActiveWindow = atom("_NET_ACTIVE_WINDOW");
    mClientList = atom("_NET_CLIENT_LIST");
}

X11Windows::~X11Windows()
{
    xcb_disconnect(mConnection);
}

bool X11Windows::isConnected() const
{
    return xcb_connection_has_error(mConnection) == 0;
}

xcb_atom_t X11Windows::atom(QByteArrayView name)
{
    const auto cookie = xcb_intern_atom(mConnection, 0, static_cast<uint16_t>(name.size()), name.data());
    const Freed<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(mConnection, cookie, nullptr), &std::free);
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

QByteArray X11Windows::property(xcb_window_t window, xcb_atom_t property, xcb_atom_t type)
{
    constexpr uint32_t longest = 1024; // in units of four bytes
    const auto cookie = xcb_get_property(mConnection, 0, window, property, type, 0, longest);
    const Freed<xcb_get_property_reply_t> reply(xcb_get_property_reply(mConnection, cookie, nullptr), &std::free);
    return reply ? QByteArray(static_cast<const char *>(xcb_get_property_value(reply.get())),
                              xcb_get_property_value_length(reply.get()))
                 : QByteArray();
}

bool X11Windows::areManaged()
{
    if (!isConnected())
        return false;
    const QByteArray list = property(mRoot, mClientList, XCB_ATOM_WINDOW);
    const QByteArrayView probe(reinterpret_cast<const char *>(&mProbe), sizeof mProbe);
    if (mProbe != XCB_WINDOW_NONE && list.contains(probe)) {
        xcb_destroy_window(mConnection, std::exchange(mProbe, XCB_WINDOW_NONE));
        xcb_flush(mConnection);
        return true;
    }
    showProbe();
    return false;
}

void X11Windows::showProbe()
{
    constexpr qint64 patienceMs = 500;
    if (mProbe != XCB_WINDOW_NONE && !mProbeShown.hasExpired(patienceMs))
        return;
    if (mProbe != XCB_WINDOW_NONE)
        xcb_destroy_window(mConnection, mProbe);
    mProbe = xcb_generate_id(mConnection);
    xcb_create_window(mConnection, XCB_COPY_FROM_PARENT, mProbe, mRoot, 0, 0, 8, 8, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(mConnection, mProbe);
    xcb_flush(mConnection);
    mProbeShown.start();
}

xcb_window_t X11Windows::find(const QString &name)
{
    const QByteArray list = property(mRoot, mClientList, XCB_ATOM_WINDOW);
    for (qsizetype offset = 0; offset + qsizetype(sizeof(xcb_window_t)) <= list.size();
         offset += sizeof(xcb_window_t)) {
        xcb_window_t window = XCB_WINDOW_NONE;
        std::memcpy(&window, list.constData() + offset, sizeof window);
        if (property(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING).split('\0').contains(name.toLatin1()))
            return window;
    }
    return XCB_WINDOW_NONE;
}

bool X11Windows::activate(const QString &name)
{
    const xcb_window_t window = find(name);
    if (window == XCB_WINDOW_NONE)
        return false;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = mActiveWindow;
    message.data.data32[0] = 2; // from a pager: a user's request
    xcb_send_event(mConnection, 0, mRoot, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&message));
    return xcb_flush(mConnection) > 0;
}

QByteArray X11Windows::picture()
{
    constexpr uint32_t allPlanes = ~0U;
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(mConnection)).data;
    const auto cookie = xcb_get_image(mConnection, XCB_IMAGE_FORMAT_Z_PIXMAP, mRoot, 0, 0, screen->width_in_pixels,
                                      screen->height_in_pixels, allPlanes);
    const Freed<xcb_get_image_reply_t> reply(xcb_get_image_reply(mConnection, cookie, nullptr), &std::free);
    return reply ? QByteArray(reinterpret_cast<const char *>(xcb_get_image_data(reply.get())),
                              xcb_get_image_data_length(reply.get()))
                 : QByteArray();
}
