// SPDX-License-Identifier: MIT
// Cases as text files: a comment with the rule, lines of input, a blank line, the lines of output. Lines that begin
// with "#" are comments. For tests with Qt Test; used on their thread.
#pragma once

#include <QDir>
#include <QFile>
#include <QTest>

#include <functional>

/// Runs the case at `path` on a new Script and compares the output. A Script has outputLines() and run(line), which
/// returns the mistake in the line. `down` is a member of Script that returns the pressed keys; none may remain at the
/// end.
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
        QVERIFY2(number > 1 || line.startsWith(QStringLiteral("# ")), "the first line does not say what holds");
        if (line.startsWith(u'#'))
            continue;
        if (line.isEmpty()) {
            isInput = isInput && script.outputLines().isEmpty(); // before the first event it separates comments
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

/// A test that runs each case of a folder, and lines with mistakes. The test's program must list this header among its
/// SOURCES, for moc.
class CaseFilesTest : public QObject
{
    Q_OBJECT

public:
    explicit CaseFilesTest(const QString &folder) : mFolder(folder) {}

private Q_SLOTS:
    void caseHolds_data()
    {
        QTest::addColumn<QString>("path");
        const QFileInfoList files = QDir(mFolder).entryInfoList({QStringLiteral("*.txt")}, QDir::Files, QDir::Name);
        QVERIFY(!files.isEmpty());
        for (const QFileInfo &file : files)
            QTest::newRow(qUtf8Printable(file.completeBaseName())) << file.filePath();
    }

    void caseHolds()
    {
        QFETCH(QString, path);
        runCaseFile(path);
    }

    void mistakesInACaseAreFound_data()
    {
        QTest::addColumn<QString>("line");
        addMistakes();
    }

    void mistakesInACaseAreFound()
    {
        QFETCH(QString, line);
        QVERIFY(!problemWith(line).isEmpty());
    }

private:
    /// Runs runCase() with the Script of the test.
    virtual void runCaseFile(const QString &path) = 0;
    /// Adds rows that each have a line with a mistake.
    virtual void addMistakes() = 0;
    /// The mistake that a new Script reports for `line`.
    virtual QString problemWith(const QString &line) = 0;

    QString mFolder;
};
