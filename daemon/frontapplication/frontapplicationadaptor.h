// SPDX-License-Identifier: MIT
// The D-Bus interface to the application in front: the object /FrontApplication on the daemon's connection, described
// in docs/daemon-protocol.md. Owned by its FrontApplicationObject; main thread only.
#pragma once

#include "daemon/frontapplication/frontapplicationwatch.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>

/// The object on the bus; carries the adaptor.
class FrontApplicationObject : public QObject
{
    Q_OBJECT

public:
    /// `watch` must outlive this.
    explicit FrontApplicationObject(FrontApplicationWatch &watch, QObject *parent = nullptr);

    /// False if the object cannot be put on `connection`.
    [[nodiscard]] bool registerOn(QDBusConnection connection);
};

/// Its public slots and properties are the interface.
class FrontApplicationAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    // FrontApplicationKeys::interfaceName; moc accepts only a literal.
    Q_CLASSINFO("D-Bus Interface", "org.quillkestra.FrontApplication")
    Q_PROPERTY(QString Source READ source)
    Q_PROPERTY(bool SeesAllWindows READ seesAllWindows)
    Q_PROPERTY(QString Application READ application)

public:
    FrontApplicationAdaptor(FrontApplicationWatch &watch, FrontApplicationObject *object);

    [[nodiscard]] QString source() const { return mWatch.sourceName(); }
    [[nodiscard]] bool seesAllWindows() const { return mWatch.seesAllWindows(); }
    [[nodiscard]] QString application() const { return mWatch.application().name(); }

public Q_SLOTS:
    void Tell(const QString &name) { mWatch.report(FrontApplication::named(name)); }
    void TellWindow(const QString &windowClass, const QString &desktopEntry, const QString &processId);

private:
    FrontApplicationWatch &mWatch;
};
