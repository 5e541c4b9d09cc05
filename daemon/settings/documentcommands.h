// SPDX-License-Identifier: MIT
// The commands that only read or change the settings document, as pure functions: document and request in, status,
// changed document and reply out. No state; any thread.
#pragma once

#include "base/daemonprotocol.h"
#include "base/status.h"

#include <QVariantMap>

/// The result of a command. A command that fails returns `document` unchanged.
struct CommandOutcome
{
    Status status = Status::ok;
    QVariantMap document; ///< the document afterwards
    QVariantMap reply;    ///< the contents of the reply besides "ReturnStatus" and "ReturnDictionary"
    bool changesDocument = false;
};

/// When the reply contains "ReturnDictionary", the whole document.
enum class ReturnsDocument { never, onSuccess, always };

enum class DocumentUse { changes, reads };

struct DocumentCommand
{
    DaemonProtocol::Command command;
    CommandOutcome (*apply)(const QVariantMap &document, const QVariantMap &request);
    ReturnsDocument returnsDocument = ReturnsDocument::never;
    DocumentUse use = DocumentUse::changes;
};

/// The command with this number; null if there is none, or if it concerns more than the document.
[[nodiscard]] const DocumentCommand *findDocumentCommand(qint32 number);

/// Appends recorded events to the macro with this index (without `isAppended`: replaces its events).
[[nodiscard]] CommandOutcome saveEvents(const QVariantMap &document, int index, const QVariantList &events,
                                        bool isAppended);
