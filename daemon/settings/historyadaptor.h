// SPDX-License-Identifier: MIT
// The D-Bus interface to the history of the settings: the object /History on the daemon's connection, described in
// docs/daemon-protocol.md. Owned by its HistoryObject; main thread only.
#pragma once

#include "daemon/settings/historycalls.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusContext>
#include <QVariantMap>

/// The object on the bus: carries the adaptor and, as its context, the current call.
class HistoryObject : public QObject, public QDBusContext
{
    Q_OBJECT

public:
    /// Both must outlive this.
    HistoryObject(History &history, HistoryCalls &calls, QObject *parent = nullptr);

    /// False if the object cannot be put on `connection`.
    [[nodiscard]] bool registerOn(QDBusConnection connection);
};

/// Its public slots and signals are the interface. A call is on the disk before it returns. `sourceApp` is the name
/// that a client gives itself, as in its requests.
class HistoryAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    // HistoryKeys::interfaceName; moc accepts only a literal.
    Q_CLASSINFO("D-Bus Interface", "org.quillkestra.History")

public:
    HistoryAdaptor(History &history, HistoryCalls &calls, HistoryObject *object);

public Q_SLOTS:
    [[nodiscard]] QList<QVariantMap> List() const { return mHistory.entries(); }
    [[nodiscard]] QList<QVariantMap> Next() const { return mHistory.nextEntries(); }
    uint Undo(uint id, const QString &sourceApp = {});
    uint Redo(uint id, const QString &sourceApp = {});
    uint Join(uint first, const QString &sourceApp = {});
    QVariantMap Restore(uint id, const QString &sourceApp = {}, uint newest = 0);
    [[nodiscard]] QVariantMap Preview(uint id);
    [[nodiscard]] QVariantMap Show(uint id);
    [[nodiscard]] QByteArray Document() const { return mCalls.document(); }
    uint RestoreDocument(const QByteArray &data, const QString &name, const QString &sourceApp = {});
    [[nodiscard]] QStringList Backups() const { return mCalls.backupDays(); }
    uint RestoreBackup(const QString &day, const QString &sourceApp = {});
    void Clear();

Q_SIGNALS:
    void Changed();

private:
    void refuse(History::Refusal refusal);
    uint idOrError(const Result<quint32, RestoreError> &restored);

    History &mHistory;
    HistoryCalls &mCalls;
    HistoryObject *mObject;
};
