// SPDX-License-Identifier: MIT
// The desktop's end of an output device that is a pair of sockets: reads what the daemon sends, and switches LEDs. Used
// on the test's thread.
#pragma once

#include "daemon/keyboards/linux/outputdevice.h"

#include <QStringList>

#include <fcntl.h>
#include <linux/input.h>
#include <sys/socket.h>
#include <unistd.h>

class OutputPipe
{
public:
    OutputPipe()
    {
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, mSockets) != 0)
            qFatal("no sockets");
    }
    ~OutputPipe() { ::close(mSockets[0]); }

    [[nodiscard]] std::unique_ptr<OutputDevice> device() { return OutputDevice::onFile(mSockets[1]); }

    /// Everything since the beginning: "30 down", "30 up", "turn 7 1", "volume 7", "switch 2 on", "report".
    [[nodiscard]] const QStringList &read()
    {
        input_event event = {};
        while (::read(mSockets[0], &event, sizeof event) == sizeof event) {
            if (event.type == EV_KEY)
                mLines += QStringLiteral("%1 %2").arg(event.code).arg(QLatin1StringView(event.value ? "down" : "up"));
            else if (event.type == EV_REL)
                mLines += QStringLiteral("turn %1 %2").arg(event.code).arg(event.value);
            else if (event.type == EV_ABS)
                mLines += QStringLiteral("volume %1").arg(event.value);
            else if (event.type == EV_SW)
                mLines +=
                    QStringLiteral("switch %1 %2").arg(event.code).arg(QLatin1StringView(event.value ? "on" : "off"));
            else
                mLines += QStringLiteral("report");
        }
        return mLines;
    }
    [[nodiscard]] QStringList keys()
    {
        QStringList lines = read();
        lines.removeAll(QStringLiteral("report"));
        return lines;
    }

    void switchLed(quint16 led, bool isOn)
    {
        input_event event = {};
        event.type = EV_LED;
        event.code = led;
        event.value = isOn;
        if (::write(mSockets[0], &event, sizeof event) != sizeof event)
            qFatal("cannot switch the LED");
    }

private:
    int mSockets[2] = {-1, -1};
    QStringList mLines;
};
