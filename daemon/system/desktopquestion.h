// SPDX-License-Identifier: MIT
// A desktop notification with buttons, through which the daemon asks the user and which stays until it is closed. Main
// thread only; no function waits.
#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <utility>

class QDBusPendingCallWatcher;

/// Shows at most one bubble. Only the service that shows the bubble can answer it: others may send the same signals.
class DesktopQuestion : public QObject
{
    Q_OBJECT

public:
    struct Bubble
    {
        QString summary;
        QString body;
        /// Each button: its name in pressed(), then its label.
        QStringList buttons;
    };

    enum class Obstacle {
        noService, ///< no notification service, or it does not answer
        noButtons, ///< it cannot show buttons
    };

    explicit DesktopQuestion(const QDBusConnection &bus) : mBus(bus) {}
    ~DesktopQuestion() override;

    /// Shows the bubble instead of the previous one. Exactly one of shown() and impossible() follows, unless close() or
    /// show() comes first.
    void show(const Bubble &bubble);
    /// Removes the bubble. No signal follows.
    void close();

Q_SIGNALS:
    void shown();
    void impossible(DesktopQuestion::Obstacle obstacle);
    void pressed(const QString &button);
    /// The bubble has gone without a button: the user has dismissed it, or the service has ended.
    void dismissed();

private Q_SLOTS:
    void takeButton(uint id, const QString &button);
    void takeClosing(uint id, uint reason);

private:
    void send(const Bubble &bubble, const QString &service);
    void take(uint id, const QString &button);
    void listen(bool isOn);
    void forget();
    template <typename Function>
    void call(const QString &service, const QString &method, const QVariantList &arguments, Function answered);

    QDBusConnection mBus;
    QString mService;  // the unique name of the service that shows the bubble; empty: none
    uint mId = 0;      // of the bubble; 0 until the service has answered
    quint64 mTurn = 0; // counts the calls of show() and close(); late answers to earlier ones are ignored
    QList<std::pair<uint, QString>> mEarly; // signals that came before the service's answer
    std::unique_ptr<QDBusServiceWatcher> mWatcher;
};
