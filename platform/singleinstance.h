// SPDX-License-Identifier: MIT
// Limits a program to one instance per session. The instance owns a bus name; a second one asks it to come to the
// front, or to open the files of its command line.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

/// Serves Activate(a{sv}) and Open(as, a{sv}) of org.freedesktop.Application at the object path derived from the name.
/// A Wayland compositor lets a window come to the front only with a token from the program that the user clicked. The
/// second instance hands its token over, and the window that activationRequested() activates gets it. Main thread only.
class SingleInstance : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// Requests the bus name `name`. Without a session bus, each instance counts as the only one.
    explicit SingleInstance(const QString &name, QObject *parent = nullptr);
    ~SingleInstance() override;

    [[nodiscard]] bool isAnotherRunning() const { return mIsAnotherRunning; }
    /// Asks the other instance to come to the front and waits at most one second for its answer.
    void activateOther() const;
    /// Asks the other instance to open the files with these addresses. Waits as activateOther().
    void openInOther(const QStringList &addresses) const;

public Q_SLOTS:
    Q_SCRIPTABLE void Activate(const QVariantMap &platformData);
    Q_SCRIPTABLE void Open(const QStringList &uris, const QVariantMap &platformData);

Q_SIGNALS:
    void activationRequested();
    /// Addresses from another program, unchecked. Comes after activationRequested().
    void openingRequested(const QStringList &uris);

private:
    void callOther(const QString &method, const QVariantList &arguments) const;
    void requestActivation(const QVariantMap &platformData);
    [[nodiscard]] QString objectPath() const;

    QString mName;
    bool mIsAnotherRunning = false;
};
