// SPDX-License-Identifier: MIT
// The D-Bus interface to the application in front: the object /FrontApplication on the daemon's connection, described
// in docs/daemon-protocol.md. Owned by its FrontApplicationObject; main thread only.
#pragma once

#include "daemon/frontapplication/frontapplicationwatch.h"
#include "daemon/frontapplication/gnomeshell.h"
#include "daemon/frontapplication/profileswitch.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusContext>

/// The object on the bus: carries the adaptor and, as its context, the current call.
class FrontApplicationObject : public QObject, public QDBusContext
{
    Q_OBJECT

public:
    /// All must outlive this.
    FrontApplicationObject(FrontApplicationWatch &watch, GnomeShell &shell, const ProfileSwitch &profiles,
                           QObject *parent = nullptr);

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
    Q_PROPERTY(bool NeedsShellExtension READ needsShellExtension)
    Q_PROPERTY(QString Application READ application)
    Q_PROPERTY(QString ProfileApplication READ profileApplication)

public:
    FrontApplicationAdaptor(FrontApplicationWatch &watch, GnomeShell &shell, const ProfileSwitch &profiles,
                            FrontApplicationObject *object);

    [[nodiscard]] QString source() const { return mWatch.sourceName(); }
    [[nodiscard]] bool seesAllWindows() const { return mWatch.seesAllWindows(); }
    [[nodiscard]] bool needsShellExtension() const { return mNeedsShellExtension; }
    [[nodiscard]] QString application() const { return mWatch.application().name(); }
    [[nodiscard]] QString profileApplication() const { return mProfiles.application(); }

public Q_SLOTS:
    void Tell(const QString &name) { report(FrontApplication::named(name)); }
    void TellWindow(const QString &windowClass, const QString &desktopEntry, const QString &processId);
    void EndReports();

Q_SIGNALS:
    void ProfileApplicationChanged(const QString &application);
    void NeedsShellExtensionChanged(bool needsIt);

private:
    void report(const FrontApplication &application);
    void checkShellExtension();

    FrontApplicationWatch &mWatch;
    GnomeShell &mShell;
    const ProfileSwitch &mProfiles;
    FrontApplicationObject *mObject;
    bool mNeedsShellExtension = false;
};
