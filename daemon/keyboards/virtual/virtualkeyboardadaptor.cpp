// SPDX-License-Identifier: MIT
#include "daemon/keyboards/virtual/virtualkeyboardadaptor.h"

#include "base/daemonprotocol.h"

#include <QDBusError>

using namespace Qt::StringLiterals;

namespace {

QList<uint> extended(const QList<HidUsage> &usages)
{
    QList<uint> result;
    for (const HidUsage usage : usages)
        result += usage.extended();
    return result;
}

} // namespace

VirtualKeyboardObject::VirtualKeyboardObject(VirtualKeyboard &keyboard, QObject *parent) : QObject(parent)
{
    new VirtualKeyboardAdaptor(keyboard, this);
}

bool VirtualKeyboardObject::registerOn(QDBusConnection connection)
{
    return connection.registerObject(DaemonProtocol::virtualKeyboardPath, this, QDBusConnection::ExportAdaptors);
}

VirtualKeyboardAdaptor::VirtualKeyboardAdaptor(VirtualKeyboard &keyboard, VirtualKeyboardObject *object)
    : QDBusAbstractAdaptor(object), mKeyboard(keyboard), mObject(object)
{
    connect(&mKeyboard, &VirtualKeyboard::sent, this, &VirtualKeyboardAdaptor::Sent);
    connect(&mKeyboard, &VirtualKeyboard::captureChanged, this, &VirtualKeyboardAdaptor::CaptureChanged);
    connect(&mKeyboard, &VirtualKeyboard::lightChanged, this,
            [this](Backlight::Color color) { Q_EMIT LightChanged(Backlight::colorText(color)); });
}

QList<uint> VirtualKeyboardAdaptor::pressedKeys() const
{
    return extended(mKeyboard.pressedKeys());
}

QList<uint> VirtualKeyboardAdaptor::sentKeys() const
{
    return extended(mKeyboard.sentKeys());
}

void VirtualKeyboardAdaptor::finish(const VirtualKeyboard::Outcome &outcome) const
{
    using Refusal = VirtualKeyboard::Refusal;
    if (outcome)
        return;
    switch (outcome.error()) {
    case Refusal::notInUse:
        mObject->sendErrorReply(DaemonProtocol::virtualKeyboardNotInUse,
                                u"a real keyboard is chosen; \"kestractl device release\" releases it"_s);
        return;
    case Refusal::notAttached:
        mObject->sendErrorReply(DaemonProtocol::virtualKeyboardNotAttached, u"the keyboard is not attached"_s);
        return;
    case Refusal::noSuchKey:
        mObject->sendErrorReply(
            QDBusError::InvalidArgs,
            u"page 7 has the keys 4 to 231, page 9 the buttons 1 to 255, page 12 the keys 121 and 122"_s);
        return;
    case Refusal::noSuchBrightness:
        mObject->sendErrorReply(QDBusError::InvalidArgs, u"the brightness levels are 0 to 4"_s);
        return;
    }
}
