// SPDX-License-Identifier: MIT
// Types on a keyboard in front of the window, as the desktop delivers it: by scan code, to the widget with the focus,
// and to the shortcuts first. QTest's keys have no scan codes.
#pragma once

#include <QApplication>
#include <QKeyEvent>
#include <QSpontaneKeyEvent>
#include <QTest>

#include <linux/input-event-codes.h>

#include <functional>

namespace Typing {

/// A key of the keyboard: the kernel's code of its place, and its meaning in the user's layout.
struct Key
{
    quint32 code;
    Qt::Key meaning;
    QString text;
};

inline const Key a{KEY_A, Qt::Key_A, QStringLiteral("a")};
inline const Key b{KEY_B, Qt::Key_B, QStringLiteral("b")};
inline const Key c{KEY_C, Qt::Key_C, QStringLiteral("c")};
inline const Key leftControl{KEY_LEFTCTRL, Qt::Key_Control, {}};
inline const Key escape{KEY_ESC, Qt::Key_Escape, QStringLiteral("\x1b")};
inline const Key enter{KEY_ENTER, Qt::Key_Return, QStringLiteral("\r")};
inline const Key space{KEY_SPACE, Qt::Key_Space, QStringLiteral(" ")};
inline const Key tab{KEY_TAB, Qt::Key_Tab, QStringLiteral("\t")};
inline const Key f1{KEY_F1, Qt::Key_F1, {}};

enum class Repetition { none, automatic };

inline QKeyEvent keyEvent(QEvent::Type type, const Key &key, Qt::KeyboardModifiers modifiers, Repetition repetition)
{
    constexpr quint32 firstScanCode = 8; // of X11 and Wayland
    return QKeyEvent(type, key.meaning, modifiers, key.code + firstScanCode, 0, 0, key.text,
                     repetition == Repetition::automatic);
}

/// Null while another program has the focus.
inline QWidget *receiver()
{
    if (QWidget *popup = QApplication::activePopupWidget())
        return popup;
    return QApplication::focusWidget() ? QApplication::focusWidget() : QApplication::activeWindow();
}

inline void deliver(QKeyEvent event)
{
    QWidget *widget = receiver();
    if (!widget)
        return;
    QSpontaneKeyEvent::setSpontaneous(&event); // otherwise Qt offers it to the shortcuts itself, without its scan code
    qApp->notify(widget, &event);
}

inline void press(const Key &key, Qt::KeyboardModifiers modifiers = {}, Repetition repetition = Repetition::none)
{
    QWidget *widget = receiver();
    if (!widget)
        return;
    QKeyEvent override = keyEvent(QEvent::ShortcutOverride, key, modifiers, repetition);
    override.ignore();
    QSpontaneKeyEvent::setSpontaneous(&override);
    qApp->notify(widget, &override); // sendEvent() would make it an event of the program itself
    const bool isShortcut = !override.isAccepted()
                            && qt_sendShortcutOverrideEvent(widget, 0, key.meaning, modifiers, key.text,
                                                            repetition == Repetition::automatic);
    if (!isShortcut)
        deliver(keyEvent(QEvent::KeyPress, key, modifiers, repetition));
}

inline void release(const Key &key, Qt::KeyboardModifiers modifiers = {})
{
    deliver(keyEvent(QEvent::KeyRelease, key, modifiers, Repetition::none));
}

inline void tap(const Key &key, Qt::KeyboardModifiers modifiers = {})
{
    press(key, modifiers);
    release(key, modifiers);
}

/// Holds the key until `condition`, with the repetition of the desktop. False if it does not come about.
[[nodiscard]] inline bool holdUntil(const Key &key, const std::function<bool()> &condition)
{
    press(key);
    const bool isFulfilled = QTest::qWaitFor([&] {
        press(key, {}, Repetition::automatic);
        return condition();
    });
    press(key, {}, Repetition::automatic); // the hand is slower than the daemon
    release(key);
    return isFulfilled;
}

} // namespace Typing
