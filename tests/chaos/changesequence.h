// SPDX-License-Identifier: MIT
// Random changes of the settings, and the outcome that docs/daemon-protocol.md requires of each. Only the random
// numbers decide the requests: a seed gives the same ones, whatever the daemon has kept of those before. This code uses
// no part of the daemon. Pure values.
#pragma once

#include "base/daemonprotocol.h"
#include "base/status.h"

#include <QList>
#include <QString>
#include <QVariantMap>

class QRandomGenerator;

/// The part of a settings document that the changes affect.
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

/// `number` makes the names in the change unique.
[[nodiscard]] RandomChange randomChange(QRandomGenerator &random, int number);

/// Applies the change to `outline`, unless the daemon must refuse it. Returns the status that the reply must have.
[[nodiscard]] Status apply(const RandomChange &change, SettingsOutline &outline);
