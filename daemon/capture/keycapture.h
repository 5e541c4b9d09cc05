// SPDX-License-Identifier: MIT
// Who has the keys of the keyboard, and what for. A value; any thread.
#pragma once

#include <QString>

#include <optional>

/// Keys pressed while they are captured do not reach the computer, where they would press the buttons of the very sheet
/// that waits for them.
class KeyCapture
{
public:
    /// The keys after `none` and `onTheFlyKey` are a client's.
    enum class Kind { none, onTheFlyKey, macroRecording, singleKey, editedEvent };

    /// Nothing is captured: the computer has the keys.
    KeyCapture() = default;
    /// The daemon itself awaits the key that is to play a macro recorded on the keyboard.
    [[nodiscard]] static KeyCapture forOnTheFlyKey();
    /// `client`: the name of its port. `kind`: one of a client's.
    [[nodiscard]] static KeyCapture forClient(const QString &client, Kind kind);

    [[nodiscard]] Kind kind() const { return mKind; }
    /// The port of the client that has the keys; absent when no client has them.
    [[nodiscard]] const std::optional<QString> &client() const { return mClient; }
    /// For the log.
    [[nodiscard]] const char *name() const;

private:
    Kind mKind = Kind::none;
    std::optional<QString> mClient;
};
