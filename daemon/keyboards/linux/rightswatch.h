// SPDX-License-Identifier: MIT
// Reports that the rights to event devices or to the output device may have changed. The login manager grants and
// revokes them without a message of udev. Owned by the source of event devices; main thread only.
#pragma once

#include <QObject>
#include <QString>

#include <memory>

class QSocketNotifier;

/// Watches the folders, because a watch on a file needs the right to read it.
class RightsWatch : public QObject
{
    Q_OBJECT

public:
    /// `folder`: has the device nodes, with those of event devices in its folder "input", which may appear later.
    explicit RightsWatch(const QString &folder = QStringLiteral("/dev"), QObject *parent = nullptr);
    ~RightsWatch() override;

Q_SIGNALS:
    void changed(); ///< once for changes that arrive together

private:
    void watchInputFolder();
    void read();
    [[nodiscard]] bool take(int watch, quint32 mask, const QByteArray &name);

    QString mFolder;
    int mDescriptor; // of inotify
    int mInputWatch = -1;
    std::unique_ptr<QSocketNotifier> mNotifier;
};
