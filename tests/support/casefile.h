// SPDX-License-Identifier: MIT
// Cases as text files: lines of input, a blank line, the lines that come out. Lines that begin with "#" are comments.
// For tests of Qt Test; their thread.
#pragma once

#include <QDir>
#include <QFile>
#include <QTest>

#include <functional>

/// Adds a row with the column "path" for each case of `folder`.
inline void addCaseRows(const QString &folder)
{
    QTest::addColumn<QString>("path");
    const QFileInfoList files = QDir(folder).entryInfoList({QStringLiteral("*.txt")}, QDir::Files, QDir::Name);
    QVERIFY(!files.isEmpty());
    for (const QFileInfo &file : files)
        QTest::newRow(qUtf8Printable(file.completeBaseName())) << file.filePath();
}

/// Runs the case at `path` on a new Script and compares what comes out. A Script has run(line), which returns what is
/// wrong with the line, and outputLines(). `down`, a member of it, returns the keys that are down: none at the end.
template <typename Script, typename Down> void runCase(const QString &path, Down down)
{
    Script script;
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
    const std::decay_t<std::invoke_result_t<Down, Script>> none;
    QCOMPARE(std::invoke(down, script), none);
}
