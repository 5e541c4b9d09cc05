// SPDX-License-Identifier: MIT
// Another program's controls, as it describes them to screen readers on the session bus (AT-SPI 2).
#pragma once

#include <QDBusConnection>
#include <QRect>
#include <QString>
#include <QStringList>

#include <optional>

struct AccessibleControl
{
    QString name;
    QString description;
    QString value; ///< of a combo box
    QString role;
    QStringList states; ///< those that apply of "checked", "enabled", "focused", "selected", "sensitive", "showing"
    QRect screenRect;
};

/// Main thread only; each query blocks until the other program has answered.
class AccessibleTree
{
public:
    /// Finds the program with the process ID `pid` on `connection`.
    AccessibleTree(const QDBusConnection &connection, uint pid);

    [[nodiscard]] bool isPresent() const { return !mService.isEmpty(); }

    /// Every control that is showing, parents before children.
    [[nodiscard]] QList<AccessibleControl> showingControls() const;

private:
    void collect(const QString &path, int depth, QList<AccessibleControl> &controls) const;
    [[nodiscard]] QStringList childPaths(const QString &path) const;
    [[nodiscard]] AccessibleControl control(const QString &path) const;
    [[nodiscard]] QVariant call(const QString &path, QLatin1StringView interface, QLatin1StringView method,
                                const QVariantList &arguments) const;

    QDBusConnection mConnection;
    QString mService;
};
