// SPDX-License-Identifier: MIT
// Follows the keyboard layout of a Wayland compositor, on a connection of its own. Main thread only.
#pragma once

#include "platform/keymap.h"

#include <QByteArray>
#include <QObject>

#include <memory>

class QSocketNotifier;
struct wl_display;
struct wl_keyboard;
struct wl_keyboard_listener;
struct wl_registry;
struct wl_registry_listener;
struct wl_seat;
struct wl_seat_listener;

/// A compositor sends its keymap to every client, but the layout in use only to the one with the focus, which this
/// connection never has. Of several chosen layouts it therefore reports the first.
class WaylandKeymap : public QObject
{
    Q_OBJECT

public:
    /// Connects to `display` ("wayland-0"; empty: the one of the environment). Does not wait for the keymap.
    explicit WaylandKeymap(const QByteArray &display = {}, QObject *parent = nullptr);
    ~WaylandKeymap() override;

    /// Null until the compositor has sent one.
    [[nodiscard]] const Keymap &keymap() const { return mKeymap; }

Q_SIGNALS:
    void changed();

private:
    void addGlobal(wl_registry *registry, quint32 name, const char *interface);
    void setCapabilities(quint32 capabilities);
    /// Closes `file`, which has `size` bytes of a keymap in `format`.
    void receiveKeymap(quint32 format, int file, quint32 size);
    void readEvents();
    void end();

    static const wl_registry_listener registryListener;
    static const wl_seat_listener seatListener;
    static const wl_keyboard_listener keyboardListener;

    wl_display *mDisplay = nullptr;
    wl_registry *mRegistry = nullptr;
    wl_seat *mSeat = nullptr; ///< the first one
    wl_keyboard *mKeyboard = nullptr;
    std::unique_ptr<QSocketNotifier> mNotifier;
    Keymap mKeymap;
};
