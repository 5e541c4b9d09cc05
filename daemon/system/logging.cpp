// SPDX-License-Identifier: MIT
#include "daemon/system/logging.h"

Q_LOGGING_CATEGORY(lcDaemon, "kestra.daemon", QtInfoMsg)
Q_LOGGING_CATEGORY(lcRequests, "kestra.requests", QtInfoMsg)
Q_LOGGING_CATEGORY(lcSettings, "kestra.settings", QtInfoMsg)
Q_LOGGING_CATEGORY(lcKeyboard, "kestra.keyboard", QtInfoMsg)
Q_LOGGING_CATEGORY(lcFront, "kestra.front", QtInfoMsg)
