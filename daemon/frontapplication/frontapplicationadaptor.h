// SPDX-License-Identifier: MIT
// The D-Bus interface to the application in front: the object /FrontApplication on the daemon's connection, described
// in docs/daemon-protocol.md. Owned by its FrontApplicationObject; main thread only.
#pragma once

#include "daemon/frontapplication/frontapplicationwatch.h"
#include "daemon/frontapplication/profileswitch.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>

/// The object on the bus; carries the adaptor.
class FrontApplicationObject : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive this.
    FrontApplicationObject(FrontApplicationWatch &watch, const ProfileSwitch &profiles, QObject *parent = nullptr);

    /// False if the object cannot be put on `connection`.
    [[nodiscard]] bool registerOn(QDBusConnection connection);
};

/// Its public slots, properties and signals are the interface.
class FrontApplicationAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    // FrontApplicationKeys::interfaceName; moc accepts only a literal.
    Q_CLASSINFO("D-Bus Interface", "org.quillkestra.FrontApplication")
    Q_PROPERTY(QString Source READ source)
    Q_PROPERTY(bool SeesAllWindows READ seesAllWindows)
    Q_PROPERTY(QString Application READ application)
    Q_PROPERTY(QString ProfileApplication READ profileApplication)

public:
    FrontApplicationAdaptor(FrontApplicationWatch &watch, const ProfileSwitch &profiles,
                            FrontApplicationObject *object);

    [[nodiscard]] QString source() const { return mWatch.sourceName(); }
    [[nodiscard]] bool seesAllWindows() const { return mWatch.seesAllWindows(); }
    [[nodiscard]] QString application() const { return mWatch.application().name(); }
    [[nodiscard]] QString profileApplication() const { return mProfiles.application(); }

public Q_SLOTS:
    void Tell(const QString &name) { mWatch.report(FrontApplication::named(name)); }
    void TellWindow(const QString &windowClass, const QString &desktopEntry, const QString &processId);

Q_SIGNALS:
    void ProfileApplicationChanged(const QString &application);

private:
    FrontApplicationWatch &mWatch;
    const ProfileSwitch &mProfiles;
};
