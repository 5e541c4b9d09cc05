// SPDX-License-Identifier: MIT
// Installs the program's English texts in a test, as main() does. Main thread only.
#pragma once

#include <QCoreApplication>
#include <QTranslator>

/// Returns false when the string table is missing where the build puts it.
[[nodiscard]] inline bool installEnglishTexts()
{
    static QTranslator table;
    return table.load(qEnvironmentVariable("KESTRA_BIN_DIR") + QStringLiteral("/resources/texts/en.qm"))
           && QCoreApplication::installTranslator(&table);
}
