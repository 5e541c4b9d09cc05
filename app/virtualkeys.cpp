// SPDX-License-Identifier: MIT
#include "app/virtualkeys.h"

#include "app/daemonobject.h"
#include "app/servicestatus.h"
#include "base/daemonprotocol.h"
#include "base/hidpages.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr DaemonObject keyboardObject(DaemonProtocol::virtualKeyboardPath, DaemonProtocol::virtualKeyboardInterface);

} // namespace

VirtualKeys::VirtualKeys(const ServiceStatus &service, QObject *parent) : QObject(parent)
{
    connect(&service, &ServiceStatus::daemonHasGone, this, [this] {
        mPressed.clear(); // they went with the daemon
        takeCapture({});
    });
    connect(&service, &ServiceStatus::daemonHasCome, this, &VirtualKeys::readCapture);
    keyboardObject.connect("CaptureChanged"_L1, this, SLOT(takeCapture(QString)));
    readCapture();
}

VirtualKeys::~VirtualKeys()
{
    releaseAll();
}

void VirtualKeys::press(quint16 usage)
{
    if (mPressed.contains(usage))
        return;
    mPressed += usage;
    call("Press"_L1, usage);
}

void VirtualKeys::release(quint16 usage)
{
    if (mPressed.removeOne(usage))
        call("Release"_L1, usage);
}

void VirtualKeys::releaseAll()
{
    while (!mPressed.isEmpty())
        call("Release"_L1, mPressed.takeLast());
}

void VirtualKeys::call(QLatin1StringView method, quint16 usage)
{
    keyboardObject.call(method, this, [](const QDBusMessage &) {}, {uint{HidPages::keyboard}, uint{usage}});
}

void VirtualKeys::readCapture()
{
    keyboardObject.read("CaptureClient"_L1, this, [this, news = mNews](const std::optional<QVariant> &client) {
        if (news == mNews) // a signal can arrive before the reply of an earlier reading
            takeCapture(client.value_or(QVariant()).toString());
    });
}

void VirtualKeys::takeCapture(const QString &client)
{
    ++mNews;
    const bool areCaptured = client == DaemonProtocol::configuratorReplyPortName;
    if (std::exchange(mAreCaptured, areCaptured) != areCaptured)
        Q_EMIT captureChanged();
}
