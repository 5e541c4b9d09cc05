// SPDX-License-Identifier: MIT
// The keys of the daemon's virtual keyboard, as this window presses them. Owned by TypedKeys; main thread only.
#pragma once

#include <QLatin1StringView>
#include <QList>
#include <QObject>

class ServiceStatus;

/// Calls without waiting. A call that the daemon refuses has no effect.
class VirtualKeys : public QObject
{
    Q_OBJECT

public:
    /// Follows the daemon that `service` follows.
    explicit VirtualKeys(const ServiceStatus &service, QObject *parent = nullptr);
    ~VirtualKeys() override; ///< releases its keys

    /// Whether the daemon gives the keys to this program, and not to the computer or to another client.
    [[nodiscard]] bool areCaptured() const { return mAreCaptured; }
    /// The keys that this object has pressed: usages of the keyboard page, in the order of the presses.
    [[nodiscard]] const QList<quint16> &pressed() const { return mPressed; }

    void press(quint16 usage);
    /// Does nothing unless this object has pressed the key.
    void release(quint16 usage);
    void releaseAll(); ///< the last pressed first

Q_SIGNALS:
    void captureChanged();

private Q_SLOTS:
    void takeCapture(const QString &client);

private:
    void readCapture();
    void call(QLatin1StringView method, quint16 usage);

    QList<quint16> mPressed;
    bool mAreCaptured = false;
    quint64 mNews = 0; // counts what was heard of the capture: a reading that was overtaken is out of date
};
