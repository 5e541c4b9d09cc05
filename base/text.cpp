// SPDX-License-Identifier: MIT
#include "base/text.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QStringList>
#include <QTranslator>

using namespace Qt::StringLiterals;

void installTexts(const QString &folder, const QStringList &languages)
{
    const auto install = [](const QString &table, const QString &inFolder) {
        auto *translator = new QTranslator(QCoreApplication::instance());
        if (translator->load(table, inFolder))
            return QCoreApplication::installTranslator(translator);
        delete translator;
        return false;
    };
    const auto baseOf = [](const QString &language) { return language.section(u'_', 0, 0); };
    install(u"en"_s, folder);
    const QStringList names = QStringList(languages).replaceInStrings(u"-"_s, u"_"_s);
    for (const QString &name : names) {
        if (baseOf(name) == "en"_L1)
            return;
        if (!install(name, folder))
            continue;
        // Qt's own panels use texts that the system may have in this language. They may be under any of its names: Qt
        // uses "zh_CN" where the desktop may list "zh_Hans_CN" first.
        const QString qtFolder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
        for (const QString &other : names) {
            if (baseOf(other) == baseOf(name) && install(u"qtbase_"_s + other, qtFolder))
                return;
        }
        return;
    }
}

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
