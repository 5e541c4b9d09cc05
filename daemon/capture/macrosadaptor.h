// SPDX-License-Identifier: MIT
// The D-Bus interface to macros: the object /Macros on the daemon's connection, described in docs/daemon-protocol.md.
// Owned by its MacrosObject; main thread only.
#pragma once

#include "daemon/capture/macroreplacement.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusContext>

/// The object on the bus: carries the adaptor and, as its context, the current call.
class MacrosObject : public QObject, public QDBusContext
{
    Q_OBJECT

public:
    /// `replacement` must outlive this.
    explicit MacrosObject(MacroReplacement &replacement, QObject *parent = nullptr);

    /// False if the object cannot be put on `connection`.
    [[nodiscard]] bool registerOn(QDBusConnection connection);
};

/// Its public slots are the interface. `sourceApp` is the name that a client gives itself, as in its requests.
class MacrosAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    // MacrosKeys::interfaceName; moc accepts only a literal.
    Q_CLASSINFO("D-Bus Interface", "org.quillkestra.Macros")

public:
    MacrosAdaptor(MacroReplacement &replacement, MacrosObject *object);

public Q_SLOTS:
    void Replace(uint macroID, const QString &digest, const QByteArray &events, const QString &sourceApp = {});

private:
    MacroReplacement &mReplacement;
    MacrosObject *mObject;
};
