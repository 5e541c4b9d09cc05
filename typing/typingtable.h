// SPDX-License-Identifier: MIT
// The characters that a keyboard layout types, each with its keystrokes. A value that is made once for each keymap, in
// a few milliseconds; copies share the data. Any thread.
#pragma once

#include "typing/keystroke.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

class Keymap;

/// Modifier keys are those that act while they are held: Shift, AltGr and, in some layouts, another one for more
/// levels. Keys that lock, latch or switch the layout, and those of shortcuts (Control, Alt, Super) are not used.
/// Neither is the numeric keypad, whose characters depend on Num Lock. Caps Lock is assumed to be off.
class TypingTable
{
public:
    /// Can type nothing.
    TypingTable() = default;
    /// `keymap` may be null. Dead keys and the Compose key type what the Compose file of `locale` says ("de_DE.UTF-8"),
    /// or that of the process's locale if it is empty. Without such a file, they type nothing.
    explicit TypingTable(const Keymap &keymap, const QByteArray &locale = {});

    [[nodiscard]] bool isEmpty() const { return mKeystrokes.isEmpty(); }
    /// The shortest keystrokes that type `text`; empty if the layout cannot type it at once. `text` is a character in
    /// Unicode's normalization form C, with its combining marks if a Compose file has them in one sequence. A line feed
    /// is the Return key, a tab the Tab key.
    [[nodiscard]] QList<Keystroke> keystrokesOf(const QString &text) const { return mKeystrokes.value(text); }
    /// The length of the longest text for which keystrokesOf() has keystrokes, in UTF-16 units; 0 without any.
    [[nodiscard]] qsizetype longestText() const { return mLongestText; }
    /// Every text for which keystrokesOf() has keystrokes, in no order.
    [[nodiscard]] QStringList texts() const { return mKeystrokes.keys(); }

private:
    QHash<QString, QList<Keystroke>> mKeystrokes;
    qsizetype mLongestText = 0;
};
