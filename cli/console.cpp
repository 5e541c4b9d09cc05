// SPDX-License-Identifier: MIT
#include "cli/console.h"

#include <QFileDevice>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

void Console::printNow(const QString &line)
{
    print(line);
    if (auto *file = qobject_cast<QFileDevice *>(&mResults))
        file->flush();
}

void Console::printJson(const QJsonValue &value)
{
    const QJsonDocument document = value.isArray() ? QJsonDocument(value.toArray()) : QJsonDocument(value.toObject());
    mResults.write(document.toJson(QJsonDocument::Indented));
}

ExitCode Console::fail(ExitCode code, const QString &reason)
{
    mErrors.write("kestractl: " + reason.toUtf8() + '\n');
    return code;
}
