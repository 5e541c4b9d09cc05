// SPDX-License-Identifier: MIT
#include "daemon/system/logging.h"

#include "base/visibletext.h"

namespace {

QtMessageHandler defaultHandler = nullptr;

void writeVisibly(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    defaultHandler(type, context, visibleText(message, u'?'));
}

} // namespace

Q_LOGGING_CATEGORY(lcDaemon, "kestra.daemon", QtInfoMsg)
Q_LOGGING_CATEGORY(lcRequests, "kestra.requests", QtInfoMsg)
Q_LOGGING_CATEGORY(lcSettings, "kestra.settings", QtInfoMsg)
Q_LOGGING_CATEGORY(lcKeyboard, "kestra.keyboard", QtInfoMsg)
Q_LOGGING_CATEGORY(lcFront, "kestra.front", QtInfoMsg)

void makeLogVisible()
{
    defaultHandler = qInstallMessageHandler(writeVisibly);
}
