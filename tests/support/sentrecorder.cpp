// SPDX-License-Identifier: MIT
#include "tests/support/sentrecorder.h"

#include "base/daemonprotocol.h"
#include "platform/messageport.h"

#include <QDBusConnection>

using namespace Qt::StringLiterals;

KeyboardProxy::KeyboardProxy()
    : QDBusAbstractInterface(messagePortBusName(DaemonProtocol::requestPortName), DaemonProtocol::virtualKeyboardPath,
                             DaemonProtocol::virtualKeyboardInterface.data(), QDBusConnection::sessionBus(), nullptr)
{
}

SentRecorder::SentRecorder()
{
    QObject::connect(&mKeyboard, &KeyboardProxy::Sent, &mKeyboard, [this](uint page, uint usage, bool isDown) {
        mSent += u"%1%2:%3"_s.arg(isDown ? u"+"_s : u"-"_s).arg(page).arg(usage);
    });
}
