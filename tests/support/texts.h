// SPDX-License-Identifier: MIT
// The program's texts in a test: where they are, and the English ones installed as main() does it. Main thread only.
#pragma once

#include <QCoreApplication>
#include <QTranslator>

/// The folder of the string tables of the build.
[[nodiscard]] inline QString textsFolder()
{
    return qEnvironmentVariable("KESTRA_BIN_DIR") + QStringLiteral("/resources/texts");
}

/// Returns false when the string table is missing where the build puts it.
[[nodiscard]] inline bool installEnglishTexts()
{
    static QTranslator table;
    return table.load(QStringLiteral("en"), textsFolder()) && QCoreApplication::installTranslator(&table);
}
