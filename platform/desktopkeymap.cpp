// SPDX-License-Identifier: MIT
#include "platform/desktopkeymap.h"

#include "platform/waylandkeymap.h"
#include "platform/x11keymap.h"

#include <QEventLoop>
#include <QFile>
#include <QRegularExpression>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 maximumFileSize = 64 * 1024;

/// The first element of the list that `name` has in a file of shell assignments; empty if it has none.
QString firstOf(const QString &text, QLatin1StringView name)
{
    const QRegularExpression line(u"^[ \\t]*%1=[\"']?([A-Za-z0-9_,-]*)"_s.arg(name),
                                  QRegularExpression::MultilineOption);
    return line.match(text).captured(1).section(u',', 0, 0);
}

Keymap systemKeymap()
{
    QFile file(u"/etc/default/keyboard"_s);
    return DesktopKeymap::keymapOfFile(file.open(QIODevice::ReadOnly) ? file.read(maximumFileSize) : QByteArray());
}

} // namespace

DesktopKeymap::Desktop DesktopKeymap::desktopOfEnvironment()
{
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return Desktop::wayland;
    return qEnvironmentVariableIsEmpty("DISPLAY") ? Desktop::none : Desktop::x11;
}

DesktopKeymap::Desktop DesktopKeymap::desktopOfPlatform(const QString &name)
{
    if (name.startsWith("wayland"_L1))
        return Desktop::wayland;
    return name == "xcb"_L1 ? Desktop::x11 : Desktop::none;
}

Keymap DesktopKeymap::keymapOfFile(const QByteArray &text)
{
    const QString assignments = QString::fromUtf8(text);
    const QString layout = firstOf(assignments, "XKBLAYOUT"_L1);
    const QString variant = firstOf(assignments, "XKBVARIANT"_L1);
    const Keymap keymap = Keymap::fromDescription(variant.isEmpty() ? layout : u"%1(%2)"_s.arg(layout, variant));
    return keymap.isNull() ? Keymap::fromNames("us") : keymap;
}

DesktopKeymap::DesktopKeymap(Desktop desktop, QObject *parent) : QObject(parent)
{
    if (desktop == Desktop::x11) {
        mX11 = new X11Keymap({}, this);
        connect(mX11, &X11Keymap::changed, this, &DesktopKeymap::changed);
    } else if (desktop == Desktop::wayland) {
        mWayland = new WaylandKeymap({}, this);
        connect(mWayland, &WaylandKeymap::changed, this, &DesktopKeymap::changed);
    }
}

Keymap DesktopKeymap::keymap() const
{
    if (mX11 && !mX11->keymap().isNull())
        return mX11->keymap();
    if (mWayland && !mWayland->keymap().isNull())
        return mWayland->keymap();
    return systemKeymap();
}

void DesktopKeymap::waitForDesktop(std::chrono::milliseconds limit)
{
    if (!mWayland || !mWayland->keymap().isNull())
        return;
    QEventLoop loop;
    connect(mWayland, &WaylandKeymap::changed, &loop, &QEventLoop::quit);
    QTimer::singleShot(limit, &loop, &QEventLoop::quit);
    loop.exec();
}
