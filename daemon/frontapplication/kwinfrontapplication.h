// SPDX-License-Identifier: MIT
// The application in front under KWin on Wayland. KWin does not report it to other programs, but runs a script. The
// script calls the daemon (org.quillkestra.FrontApplication.TellWindow) whenever another window is activated.
#pragma once

#include "daemon/frontapplication/frontapplicationsource.h"

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QDBusServiceWatcher>
#include <QTemporaryFile>

#include <functional>

class KWinFrontApplication : public FrontApplicationSource
{
    Q_OBJECT

public:
    explicit KWinFrontApplication(const QDBusConnection &bus);
    ~KWinFrontApplication() override;

    void start() override;

    /// The script that KWin runs.
    [[nodiscard]] static QByteArray script();

private:
    [[nodiscard]] QDBusPendingCall call(const QString &method, const QVariantList &arguments = {});
    void callThen(const QString &method, const QVariantList &arguments,
                  std::function<void(const QDBusPendingCall &)> answered);
    void load();
    void scriptLoaded(int number);

    QDBusConnection mBus;
    QDBusServiceWatcher mWatcher;
    QTemporaryFile mScript;
};
