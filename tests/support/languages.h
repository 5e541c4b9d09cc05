// SPDX-License-Identifier: MIT
// The languages that have a string table in the build, for tests that run in each of them.
#pragma once

#include "tests/support/texts.h"

#include <QDir>
#include <QTest>

/// Returns the names of the tables, such as "en".
[[nodiscard]] inline QStringList languages()
{
    QStringList names;
    for (const QString &file : QDir(textsFolder()).entryList({QStringLiteral("*.qm")}))
        names += file.chopped(3);
    return names;
}

/// Adds the column "language" and a row for each language to the data of the test function.
inline void addLanguageRows()
{
    QTest::addColumn<QString>("language");
    for (const QString &language : languages())
        QTest::newRow(qPrintable(language)) << language;
}
