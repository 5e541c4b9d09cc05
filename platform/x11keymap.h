// SPDX-License-Identifier: MIT
// Follows the keyboard layout of an X server, on a connection of its own. Main thread only.
#pragma once

#include "platform/keymap.h"

#include <QByteArray>
#include <QObject>

#include <memory>

class QSocketNotifier;
struct xcb_connection_t;

class X11Keymap : public QObject
{
    Q_OBJECT

public:
    /// Connects to `display` (":0"; empty: the one of the environment) and reads its layout.
    explicit X11Keymap(const QByteArray &display = {}, QObject *parent = nullptr);
    ~X11Keymap() override;

    /// Null when no server answers or it has no keyboard.
    [[nodiscard]] const Keymap &keymap() const { return mKeymap; }

Q_SIGNALS:
    /// The user has chosen another layout, or has switched to another one of those chosen.
    void changed();

private:
    [[nodiscard]] bool connectTo(const QByteArray &display);
    void readKeymap();
    void readEvents();
    void end();

    xcb_connection_t *mConnection = nullptr;
    std::unique_ptr<QSocketNotifier> mNotifier;
    quint8 mFirstEvent = 0; ///< of the XKB extension
    qint32 mKeyboard = -1;  ///< the core keyboard; -1 without one
    Keymap mKeymap;
};
