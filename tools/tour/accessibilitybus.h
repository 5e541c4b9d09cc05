// SPDX-License-Identifier: MIT
// The two interfaces that a desktop's accessibility service offers under the name org.a11y.Bus. They ask programs to
// describe their controls on the session bus itself; the guided tour therefore needs no desktop.
#pragma once

#include <QDBusAbstractAdaptor>
#include <QString>

class AccessibilityBus : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.a11y.Bus")

public:
    AccessibilityBus(QString address, QObject *parent) : QDBusAbstractAdaptor(parent), mAddress(std::move(address)) {}

public Q_SLOTS:
    QString GetAddress() const { return mAddress; }

private:
    QString mAddress;
};

class AccessibilityStatus : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.a11y.Status")
    Q_PROPERTY(bool IsEnabled READ isEnabled CONSTANT)
    Q_PROPERTY(bool ScreenReaderEnabled READ isEnabled CONSTANT)

public:
    explicit AccessibilityStatus(QObject *parent) : QDBusAbstractAdaptor(parent) {}

    [[nodiscard]] bool isEnabled() const { return true; }
};
