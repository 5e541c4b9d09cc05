// SPDX-License-Identifier: MIT
// The owner of the keyboard's keys, and the purpose of the capture. A value; any thread.
#pragma once

#include <QString>

#include <optional>

/// Captured keys do not reach the computer, where they would press the buttons of the very sheet that waits for them.
class KeyCapture
{
public:
    /// The kinds after `none` and `onTheFlyKey` belong to clients.
    enum class Kind { none, onTheFlyKey, macroRecording, singleKey, editedEvent };

    /// Nothing is captured: the computer receives the keys.
    KeyCapture() = default;
    /// The daemon itself waits for the key that will play a macro recorded on the keyboard.
    [[nodiscard]] static KeyCapture forOnTheFlyKey();
    /// `client`: the name of its port. `kind`: one of a client's.
    [[nodiscard]] static KeyCapture forClient(const QString &client, Kind kind);

    [[nodiscard]] Kind kind() const { return mKind; }
    /// The port of the client that captures the keys; absent if none does.
    [[nodiscard]] const std::optional<QString> &client() const { return mClient; }
    /// For the log.
    [[nodiscard]] const char *name() const;

private:
    Kind mKind = Kind::none;
    std::optional<QString> mClient;
};
