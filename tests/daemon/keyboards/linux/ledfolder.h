// SPDX-License-Identifier: MIT
// A simulated device tree below /sys: devices, and links to them by class.
#pragma once

#include "daemon/keyboards/linux/keyboardleds.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

class LedFolder
{
public:
    LedFolder()
    {
        // An ordinary user may read it, like the real one.
        QFile::setPermissions(mRoot.path(), QFile::Permissions(0x5755));
        QDir(mRoot.path()).mkpath(QStringLiteral("class/leds"));
        QDir(mRoot.path()).mkpath(QStringLiteral("class/input"));
    }

    [[nodiscard]] LedFolders folders() const
    {
        return {.leds = mRoot.filePath(QStringLiteral("class/leds")),
                .inputs = mRoot.filePath(QStringLiteral("class/input"))};
    }

    /// Makes the folder `path` below "devices", with `attributes` as its files; returns it.
    QString addDevice(const QString &path, const QList<std::pair<QString, QByteArray>> &attributes = {})
    {
        const QString folder = mRoot.filePath(QStringLiteral("devices/") + path);
        QDir().mkpath(folder);
        for (const auto &[name, value] : attributes)
            write(folder + u'/' + name, value);
        return folder;
    }
    /// Adds an event device below the device `path`.
    void addNode(const QString &path, int number)
    {
        const QString name = QStringLiteral("event%1").arg(number);
        const QString folder = addDevice(path + QStringLiteral("/input/input7/") + name);
        QFile::link(folder, mRoot.filePath(QStringLiteral("class/input/") + name));
    }
    /// Adds an LED below the device `path`. It has several colours when `colors` ("red green blue") is given.
    QString addLed(const QString &path, const QString &name, uint maximum, const QByteArray &colors = {})
    {
        const QString folder = addDevice(
            path + QStringLiteral("/leds/") + name,
            {{QStringLiteral("brightness"), "0"}, {QStringLiteral("max_brightness"), QByteArray::number(maximum)}});
        if (!colors.isEmpty()) {
            write(folder + QStringLiteral("/multi_index"), colors);
            write(folder + QStringLiteral("/multi_intensity"), "0 0 0");
        }
        QFile::link(folder, mRoot.filePath(QStringLiteral("class/leds/") + name));
        return folder;
    }

    static void write(const QString &path, const QByteArray &value)
    {
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(value + '\n');
    }
    [[nodiscard]] static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray("cannot be read");
    }

private:
    QTemporaryDir mRoot;
};
