// SPDX-License-Identifier: MIT
#include "app/util/text.h"

#include <QCoreApplication>
#include <QStringList>

QString localizedText(const char *key)
{
    const QString text = qtTrId(key);
    return text == QLatin1StringView(key) ? QStringLiteral("No Translation") : text;
}

QString formatted(const QString &format, const QStringList &arguments)
{
    static const QString placeholder = QStringLiteral("%@");
    QString result;
    qsizetype from = 0;
    for (const QString &argument : arguments) {
        const qsizetype at = format.indexOf(placeholder, from);
        if (at < 0)
            break;
        result += QStringView(format).sliced(from, at - from);
        result += argument;
        from = at + placeholder.size();
    }
    result += QStringView(format).sliced(from);
    return result;
}

QString localizedFormat(const char *key, const QStringList &arguments)
{
    return formatted(localizedText(key), arguments);
}
