// SPDX-License-Identifier: MIT
// The computer's end of an output device: the keys that are down, and the events of one input. Used on the test's
// thread.
#pragma once

#include "daemon/keyboards/linux/outputdevice.h"

#include <QString>
#include <QStringList>

#include <linux/input.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <bitset>
#include <memory>
#include <vector>

class StormComputer
{
public:
    using Codes = std::bitset<KeyCodes::codeCount>;

    StormComputer()
    {
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, mSockets) != 0)
            qFatal("no sockets");
    }
    ~StormComputer() { ::close(mSockets[0]); }
    StormComputer(const StormComputer &) = delete;
    StormComputer &operator=(const StormComputer &) = delete;

    /// Must be called once.
    [[nodiscard]] std::unique_ptr<OutputDevice> device() { return OutputDevice::onFile(mSockets[1]); }

    void beginInput()
    {
        mEvents.clear();
        mBefore = mDown;
    }
    void read()
    {
        std::array<input_event, 512> events;
        ssize_t size = 0;
        do {
            size = ::read(mSockets[0], events.data(), sizeof events);
            for (std::size_t index = 0; size > 0 && index < static_cast<std::size_t>(size) / sizeof(input_event);
                 ++index)
                take(events[index]);
        } while (size == sizeof events);
    }

    [[nodiscard]] const Codes &down() const { return mDown; }
    [[nodiscard]] const Codes &before() const { return mBefore; } ///< the input
    /// A key that went down twice, or up without being down; empty for none.
    [[nodiscard]] QString wrongEvent() const { return mWrongEvent; }
    /// Whatever one key alone must not do: change another key back and forth, send its modifiers after it, or release
    /// them before it. Empty for none.
    [[nodiscard]] QString sideEffect() const
    {
        Codes changed;
        bool hasModifierUp = false;
        for (std::size_t index = 0; index < mEvents.size(); ++index) {
            const auto [code, isDown] = mEvents[index];
            const std::optional<HidUsage> usage = KeyCodes::usageOfCode(code);
            const bool isModifier = usage && usage->isModifier();
            if (changed[code])
                return QStringLiteral("%1 has gone down and up").arg(code);
            changed.set(code);
            if (isDown && !isModifier && index + 1 < mEvents.size())
                return QStringLiteral("%1 goes down before its modifiers").arg(code);
            if (!isDown && !isModifier && hasModifierUp)
                return QStringLiteral("%1 comes up after its modifiers").arg(code);
            hasModifierUp = hasModifierUp || (!isDown && isModifier);
        }
        return {};
    }

    [[nodiscard]] static QString namesOf(const Codes &codes)
    {
        QStringList names;
        for (std::size_t code = 0; code < codes.size(); ++code) {
            if (codes[code])
                names += QString::number(code);
        }
        return names.isEmpty() ? QStringLiteral("nothing") : names.join(QLatin1Char(' '));
    }

private:
    struct Event
    {
        quint16 code;
        bool isDown;
    };

    void take(const input_event &event)
    {
        if (event.type != EV_KEY)
            return;
        const bool isDown = event.value != 0;
        if (mDown[event.code] == isDown)
            mWrongEvent =
                QStringLiteral("%1 goes %2 twice").arg(event.code).arg(QLatin1StringView(isDown ? "down" : "up"));
        mDown.set(event.code, isDown);
        mEvents.push_back({.code = event.code, .isDown = isDown});
    }

    int mSockets[2] = {-1, -1}; // the output device closes the second
    Codes mDown;
    Codes mBefore;
    std::vector<Event> mEvents;
    QString mWrongEvent;
};
