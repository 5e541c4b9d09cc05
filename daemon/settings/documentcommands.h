// SPDX-License-Identifier: MIT
// The commands that read or change nothing but the settings document, as pure functions: document and request in,
// status, changed document and reply out. No state; any thread may call them.
#pragma once

#include "base/daemonprotocol.h"
#include "base/status.h"

#include <QVariantMap>

/// What a command does. A command that fails leaves `document` as it was given.
struct CommandOutcome
{
    Status status = Status::ok;
    QVariantMap document; ///< the document afterwards
    QVariantMap reply;    ///< what the reply holds besides "ReturnStatus" and "ReturnDictionary"
    bool changesDocument = false;
};

/// When the reply holds "ReturnDictionary", the whole document.
enum class ReturnsDocument { never, onSuccess, always };

enum class DocumentUse { changes, reads };

struct DocumentCommand
{
    DaemonProtocol::Command command;
    CommandOutcome (*apply)(const QVariantMap &document, const QVariantMap &request);
    ReturnsDocument returnsDocument = ReturnsDocument::never;
    DocumentUse use = DocumentUse::changes;
};

/// The command with this number; null when there is none or it is not about the document alone.
[[nodiscard]] const DocumentCommand *findDocumentCommand(qint32 number);

/// Appends (or, without `isAppended`, sets) recorded events of the macro in `row`.
[[nodiscard]] CommandOutcome saveEvents(const QVariantMap &document, int row, const QVariantList &events,
                                        bool isAppended);
