// SPDX-License-Identifier: MIT
// Which profile is active because its application is in front, and which one was chosen by hand. A value without clock
// and bus; held by the ProfileSwitch.
#pragma once

#include "base/daemonprotocol.h"
#include "daemon/frontapplication/frontapplication.h"

#include <QVariantMap>

#include <optional>

/// The rule:
/// - When an application comes to the front that a profile is bound to, that profile becomes active. The profile that
///   was chosen by hand is remembered, however many bound applications follow each other.
/// - When one comes to the front that no profile is bound to, the remembered profile becomes active again.
/// - A switch by hand (a key, a client, a new profile) stays until the application in front changes, and is then what
///   is remembered.
/// - The profile chosen by hand is what is kept on the disk, so that a daemon that starts again begins with it.
/// - Binding or unbinding a profile counts at once for the application that is in front.
/// - When the automatically active profile is deleted, the remembered one becomes active; when the remembered one is
///   deleted, the one before it (or the first) takes its place.
class AutomaticSwitch
{
public:
    /// The profile to make active now that `application` is in front; absent when the active one stays.
    [[nodiscard]] std::optional<int> applicationInFront(const FrontApplication &application,
                                                        const QVariantMap &document);

    /// Tells of a command that has turned the document `before` into `after`; `after`, in which another profile may
    /// now be active.
    [[nodiscard]] QVariantMap afterCommand(DaemonProtocol::Command command, const QVariantMap &request,
                                           const QVariantMap &before, const QVariantMap &after);

    /// The active profile is chosen by hand.
    void profileChosen() { mRemembered.reset(); }

    /// `document` as it is to be kept on the disk: the profile chosen by hand is the active one.
    [[nodiscard]] QVariantMap documentToKeep(const QVariantMap &document) const;

    friend bool operator==(const AutomaticSwitch &, const AutomaticSwitch &) = default;

private:
    [[nodiscard]] std::optional<int> decide(const QVariantMap &document);
    [[nodiscard]] QVariantMap afterDeletion(int deleted, const QVariantMap &before, const QVariantMap &after);
    void remember(int profile, const QVariantMap &document);

    FrontApplication mApplication;
    std::optional<int> mRemembered; // the profile chosen by hand, while another one is active automatically
};
