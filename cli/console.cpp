// SPDX-License-Identifier: MIT
#include "cli/console.h"

#include <QFileDevice>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

QByteArray printable(QString line)
{
    const auto isObeyed = [](QChar character) {
        const bool turnsText = (character >= u'\u202a' && character <= u'\u202e')
                               || (character >= u'\u2066' && character <= u'\u2069'); // the direction of what follows
        return character.category() == QChar::Other_Control || turnsText;
    };
    std::ranges::replace_if(line, isObeyed, QChar(u'?'));
    return line.toUtf8();
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
    mResults.write(document.toJson(QJsonDocument::Indented));
}

ExitCode Console::fail(ExitCode code, const QString &reason)
{
    mErrors.write("kestractl: " + printable(reason) + '\n');
    return code;
}
