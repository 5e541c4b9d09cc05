// SPDX-License-Identifier: MIT
#include "cli/console.h"

#include "base/visibletext.h"

#include <QFileDevice>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QByteArray printable(const QString &line)
{
    return visibleText(line, u'?').toUtf8();
}

} // namespace

void Console::print(const QString &line)
{
    mResults.write(printable(line) + '\n');
}

void Console::printNow(const QString &line)
{
    print(line);
    if (auto *file = qobject_cast<QFileDevice *>(&mResults))
        file->flush();
}

void Console::printJson(const QJsonValue &value)
{
    const QJsonDocument document = value.isArray() ? QJsonDocument(value.toArray()) : QJsonDocument(value.toObject());
    mResults.write(visibleJson(QString::fromUtf8(document.toJson(QJsonDocument::Indented))).toUtf8());
}

ExitCode Console::fail(ExitCode code, const QString &reason)
{
    mErrors.write("kestractl: " + printable(reason) + '\n');
    if (auto *file = qobject_cast<QFileDevice *>(&mErrors))
        file->flush(); // the command may go on
    return code;
}
