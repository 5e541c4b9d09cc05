// SPDX-License-Identifier: MIT
#include "platform/waylandkeymap.h"

#include <QSocketNotifier>

#include <cstring>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>
#include <xkbcommon/xkbcommon.h>

namespace {

constexpr quint32 seatVersion = 1;

WaylandKeymap *self(void *data)
{
    return static_cast<WaylandKeymap *>(data);
}

xkb_keymap *compiled(const char *text, std::size_t size)
{
    xkb_context *context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    if (!context)
        return nullptr;
    xkb_keymap *map = xkb_keymap_new_from_buffer(context, text, ::strnlen(text, size), XKB_KEYMAP_FORMAT_TEXT_V1,
                                                 XKB_KEYMAP_COMPILE_NO_FLAGS);
    xkb_context_unref(context); // the keymap holds its own reference
    return map;
}

} // namespace

// Callbacks of libwayland, in the order of the events of each interface.

const wl_registry_listener WaylandKeymap::registryListener = {
    .global = [](void *data, wl_registry *registry, uint32_t name, const char *interface,
                 uint32_t) { self(data)->addGlobal(registry, name, interface); },
    .global_remove = [](void *, wl_registry *, uint32_t) {},
};

const wl_seat_listener WaylandKeymap::seatListener = {
    .capabilities = [](void *data, wl_seat *, uint32_t capabilities) { self(data)->setCapabilities(capabilities); },
    .name = [](void *, wl_seat *, const char *) {},
};

const wl_keyboard_listener WaylandKeymap::keyboardListener = {
    .keymap = [](void *data, wl_keyboard *, uint32_t format, int32_t file,
                 uint32_t size) { self(data)->receiveKeymap(format, file, size); },
    .enter = [](void *, wl_keyboard *, uint32_t, wl_surface *, wl_array *) {},
    .leave = [](void *, wl_keyboard *, uint32_t, wl_surface *) {},
    .key = [](void *, wl_keyboard *, uint32_t, uint32_t, uint32_t, uint32_t) {},
    .modifiers = [](void *, wl_keyboard *, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t) {},
    .repeat_info = [](void *, wl_keyboard *, int32_t, int32_t) {},
};

WaylandKeymap::WaylandKeymap(const QByteArray &display, QObject *parent) : QObject(parent)
{
    // Without a name, libwayland would use the first compositor it finds, possibly of another session.
    if (display.isEmpty() && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return;
    mDisplay = wl_display_connect(display.isEmpty() ? nullptr : display.constData());
    if (!mDisplay)
        return;
    mRegistry = wl_display_get_registry(mDisplay);
    wl_registry_add_listener(mRegistry, &registryListener, this);
    wl_display_flush(mDisplay);
    mNotifier = std::make_unique<QSocketNotifier>(wl_display_get_fd(mDisplay), QSocketNotifier::Read);
    connect(mNotifier.get(), &QSocketNotifier::activated, this, &WaylandKeymap::readEvents);
}

WaylandKeymap::~WaylandKeymap()
{
    end();
}

void WaylandKeymap::addGlobal(wl_registry *registry, quint32 name, const char *interface)
{
    if (mSeat || std::strcmp(interface, wl_seat_interface.name) != 0)
        return;
    mSeat = static_cast<wl_seat *>(wl_registry_bind(registry, name, &wl_seat_interface, seatVersion));
    wl_seat_add_listener(mSeat, &seatListener, this);
}

void WaylandKeymap::setCapabilities(quint32 capabilities)
{
    const bool hasKeyboard = capabilities & WL_SEAT_CAPABILITY_KEYBOARD;
    if (hasKeyboard && !mKeyboard) {
        mKeyboard = wl_seat_get_keyboard(mSeat);
        wl_keyboard_add_listener(mKeyboard, &keyboardListener, this);
    } else if (!hasKeyboard && mKeyboard) {
        wl_keyboard_destroy(mKeyboard);
        mKeyboard = nullptr; // the layout stays
    }
}

void WaylandKeymap::receiveKeymap(quint32 format, int file, quint32 size)
{
    void *text = format == WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1 && size > 0
                     ? ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0)
                     : MAP_FAILED;
    ::close(file);
    if (text == MAP_FAILED)
        return;
    mKeymap = Keymap(compiled(static_cast<const char *>(text), size), 0);
    ::munmap(text, size);
    Q_EMIT changed();
}

void WaylandKeymap::readEvents()
{
    while (wl_display_prepare_read(mDisplay) != 0)
        wl_display_dispatch_pending(mDisplay);
    if (wl_display_read_events(mDisplay) < 0 || wl_display_dispatch_pending(mDisplay) < 0) {
        end();
        return;
    }
    wl_display_flush(mDisplay);
}

void WaylandKeymap::end()
{
    mNotifier.reset(); // before its socket is closed
    if (!mDisplay)
        return;
    if (mKeyboard)
        wl_keyboard_destroy(mKeyboard);
    if (mSeat)
        wl_seat_destroy(mSeat);
    wl_registry_destroy(mRegistry);
    wl_display_disconnect(mDisplay);
    mDisplay = nullptr;
    mRegistry = nullptr;
    mSeat = nullptr;
    mKeyboard = nullptr;
}
