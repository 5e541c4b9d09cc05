// SPDX-License-Identifier: MIT
// What the computer receives from the virtual keyboard of the daemon on the session bus, in the order in which it came.
// The test's thread; needs an event loop.
#pragma once

#include <QDBusAbstractInterface>
#include <QStringList>

/// A proxy: QtDBus connects the signals it declares to those of the object.
class KeyboardProxy : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    KeyboardProxy();

Q_SIGNALS:
    void Sent(uint usagePage, uint usage, bool down);
};

/// Records from its construction on.
class SentRecorder
{
public:
    SentRecorder();

    /// "+7:4" for a press, "-7:4" for a release: usage page and usage.
    [[nodiscard]] const QStringList &sent() const { return mSent; }
    void clear() { mSent.clear(); }
    [[nodiscard]] KeyboardProxy &keyboard() { return mKeyboard; }

private:
    KeyboardProxy mKeyboard;
    QStringList mSent;
};
