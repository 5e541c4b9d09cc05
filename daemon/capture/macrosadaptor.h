// SPDX-License-Identifier: MIT
// The D-Bus interface to macros: the object /Macros on the daemon's connection, described in docs/daemon-protocol.md.
// Owned by its MacrosObject; main thread only.
#pragma once

#include "daemon/capture/macroreplacement.h"
#include "daemon/keyboards/macrotries.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusContext>

class CaptureCommands;

/// The object on the bus: carries the adaptor and, as its context, the current call.
class MacrosObject : public QObject, public QDBusContext
{
    Q_OBJECT

public:
    /// All must outlive this.
    MacrosObject(MacroReplacement &replacement, MacroTries &tries, CaptureCommands &captures,
                 QObject *parent = nullptr);

    /// False if the object cannot be put on `connection`.
    [[nodiscard]] bool registerOn(QDBusConnection connection);
};

/// Its public slots and signals are the interface. `sourceApp` is the name that a client gives itself, as in its
/// requests. The signals of a try go to its caller alone.
class MacrosAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    // MacrosKeys::interfaceName; moc accepts only a literal.
    Q_CLASSINFO("D-Bus Interface", "org.quillkestra.Macros")

public:
    MacrosAdaptor(MacroReplacement &replacement, MacroTries &tries, CaptureCommands &captures, MacrosObject *object);

    void setConnection(const QDBusConnection &connection) { mConnection = connection; }

public Q_SLOTS:
    void Replace(uint macroID, const QString &digest, const QByteArray &events, const QString &sourceApp = {});
    uint Try(uint macroID, uint repeat);
    void StopTry(uint id);
    void RecordButton(uint button, bool pressed);

Q_SIGNALS:
    // For the description of the interface. Never emitted: an emitted signal would reach every program.
    void Tried(uint id, const QList<int> &events, const QList<qlonglong> &times, const QList<uint> &usages,
               const QList<bool> &down);
    void TryEnded(uint id, const QString &reason);

private:
    void sendPlayed(const QString &caller, quint32 number, const QList<TriedEvent> &events);
    void sendEnded(const QString &caller, quint32 number, MacroTries::End end);
    void sendTo(const QString &caller, QLatin1StringView signal, const QVariantList &arguments);

    MacroReplacement &mReplacement;
    MacroTries &mTries;
    CaptureCommands &mCaptures;
    MacrosObject *mObject;
    QDBusConnection mConnection{QString()};
};
