// SPDX-License-Identifier: MIT
// The keys that the computer receives from the virtual keyboard of the daemon on the session bus, in their order. Used
// on the test's thread; needs an event loop.
#pragma once

#include <QDBusAbstractInterface>
#include <QStringList>

/// A proxy: QtDBus connects the signals that it declares to those of the object.
class KeyboardProxy : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    KeyboardProxy();

Q_SIGNALS:
    void Sent(uint usagePage, uint usage, bool down);
};

/// Records from its construction.
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
