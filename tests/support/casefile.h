// SPDX-License-Identifier: MIT
// Cases as text files: lines of input, a blank line, the lines that come out. Lines that begin with "#" are comments.
// For tests of Qt Test; their thread.
#pragma once

#include <QDir>
#include <QFile>
#include <QTest>

/// Adds a row with the column "path" for each case of `folder`.
inline void addCaseRows(const QString &folder)
{
    QTest::addColumn<QString>("path");
    const QFileInfoList files = QDir(folder).entryInfoList({QStringLiteral("*.txt")}, QDir::Files, QDir::Name);
    QVERIFY(!files.isEmpty());
    for (const QFileInfo &file : files)
        QTest::newRow(qUtf8Printable(file.completeBaseName())) << file.filePath();
}

/// Runs the case at `path` on `script` and compares what comes out. A Script has run(line), which returns what is wrong
/// with the line, and outputLines().
template <typename Script> void runCase(Script &script, const QString &path)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    QStringList expected;
    bool isInput = true;
    int number = 0;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        ++number;
        if (line.startsWith(u'#'))
            continue;
        if (line.isEmpty()) {
            isInput = isInput && script.outputLines().isEmpty(); // a blank line before the first event parts comments
        } else if (isInput) {
            const QString problem = script.run(line);
            QVERIFY2(problem.isEmpty(), qPrintable(QStringLiteral("line %1: %2").arg(number).arg(problem)));
        } else {
            expected += line;
        }
    }
    QVERIFY(!expected.isEmpty());
    QCOMPARE(script.outputLines().join(u'\n'), expected.join(u'\n'));
}
