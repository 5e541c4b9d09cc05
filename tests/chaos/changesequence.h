// SPDX-License-Identifier: MIT
// Random changes of the settings, and what each must make of them by docs/daemon-protocol.md. The requests depend on
// the random numbers alone, so that a seed gives the same requests whatever the daemon has kept of those before. No
// part of the daemon is used. Pure values.
#pragma once

#include "base/daemonprotocol.h"
#include "base/status.h"

#include <QList>
#include <QString>
#include <QVariantMap>

class QRandomGenerator;

/// Of a settings document, what the changes change.
struct SettingsOutline
{
    struct Profile
    {
        QString name;
        int brightness = 0;
        bool operator==(const Profile &) const = default;
    };

    QList<Profile> profiles;
    int active = 0;
    QStringList macros;

    [[nodiscard]] static SettingsOutline of(const QVariantMap &document);
    [[nodiscard]] QString text() const;
    bool operator==(const SettingsOutline &) const = default;
};

struct RandomChange
{
    DaemonProtocol::Command command;
    QVariantMap request;
};

/// `number` makes the names that it gives unique.
[[nodiscard]] RandomChange randomChange(QRandomGenerator &random, int number);

/// Makes the change in `outline`; the status of the reply. Anything but Status::ok leaves it unchanged.
[[nodiscard]] Status apply(const RandomChange &change, SettingsOutline &outline);
