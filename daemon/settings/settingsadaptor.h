// SPDX-License-Identifier: MIT
// The D-Bus interface to the problems of the settings files: the object /Settings on the daemon's connection, described
// in docs/daemon-protocol.md. Owned by its SettingsObject; main thread only.
#pragma once

#include "daemon/settings/settingsstore.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>

/// The object on the bus; carries the adaptor.
class SettingsObject : public QObject
{
    Q_OBJECT

public:
    /// `store` must outlive this.
    explicit SettingsObject(const SettingsStore &store, QObject *parent = nullptr);

    /// False if the object cannot be put on `connection`.
    [[nodiscard]] bool registerOn(QDBusConnection connection);

    /// Must be called after each new problem.
    void reportProblem() { Q_EMIT problemFound(); }

Q_SIGNALS:
    void problemFound();
};

/// Its public properties and signals are the interface.
class SettingsAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    // SettingsObjectKeys::interfaceName; moc accepts only a literal.
    Q_CLASSINFO("D-Bus Interface", "org.quillkestra.Settings")
    Q_PROPERTY(QStringList Problems READ problems)

public:
    SettingsAdaptor(const SettingsStore &store, SettingsObject *object);

    [[nodiscard]] QStringList problems() const { return mStore.problems(); }

Q_SIGNALS:
    void Changed();

private:
    const SettingsStore &mStore;
};
