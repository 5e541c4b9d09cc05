// SPDX-License-Identifier: MIT
// Tracks which profile is active because its application is in front, and which one the user chose by hand. A value
// without clock and bus; held by the ProfileSwitch.
#pragma once

#include "base/daemonprotocol.h"
#include "base/frontapplication.h"

#include <QVariantMap>

#include <optional>

/// The rules:
/// - When an application with a bound profile comes to the front, this profile becomes active. The profile chosen by
///   hand is remembered, however many bound applications follow each other.
/// - When an application without a bound profile comes to the front, the remembered profile becomes active again.
/// - A switch by hand (a key, a client, a new profile) stays until the application in front changes, and is then
///   remembered.
/// - The disk keeps the profile chosen by hand, so a restarted daemon begins with it.
/// - Binding or unbinding a profile affects the application in front at once.
/// - When the automatically active profile is deleted, the remembered one becomes active. When the remembered one is
///   deleted, the one before it (or the first) replaces it.
class AutomaticSwitch
{
public:
    /// Must be called when `application` comes to the front. The profile to make active; absent when the active one
    /// stays.
    [[nodiscard]] std::optional<int> applicationInFront(const FrontApplication &application,
                                                        const QVariantMap &document);

    /// Must be called after a command has turned the document `before` into `after`. Returns `after`, possibly with
    /// another active profile.
    [[nodiscard]] QVariantMap afterCommand(DaemonProtocol::Command command, const QVariantMap &request,
                                           const QVariantMap &before, const QVariantMap &after);

    /// Must be called when `kept`, a document for the disk, replaces `keptBefore` there; `before` is in use. Returns
    /// the document to use, possibly with another active profile. Choosing and binding profiles have their usual
    /// effect.
    [[nodiscard]] QVariantMap afterReplacement(const QVariantMap &before, const QVariantMap &keptBefore,
                                               const QVariantMap &kept);

    /// Must be called when the active profile has been chosen by hand.
    void profileChosen() { mRemembered.reset(); }

    /// The name of the application for which the active profile is active; empty while it is the one chosen by hand.
    [[nodiscard]] QString application() const { return mRemembered ? mApplication.name() : QString(); }

    /// `document` as the disk keeps it: with the profile chosen by hand as the active one.
    [[nodiscard]] QVariantMap documentToKeep(const QVariantMap &document) const;

    friend bool operator==(const AutomaticSwitch &, const AutomaticSwitch &) = default;

private:
    [[nodiscard]] std::optional<int> decide(const QVariantMap &document);
    [[nodiscard]] QVariantMap afterDeletion(int deleted, const QVariantMap &before, const QVariantMap &after);
    void remember(int profile, const QVariantMap &document);

    FrontApplication mApplication;
    std::optional<int> mRemembered; // the profile chosen by hand, while another one is active automatically
};
