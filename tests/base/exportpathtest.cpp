// SPDX-License-Identifier: MIT
#include "base/exportpath.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class ExportPathTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void suffixIsAlwaysAppended_data();
    void suffixIsAlwaysAppended();
    void longNameIsCutToTheLimitOfFileNames_data();
    void longNameIsCutToTheLimitOfFileNames();
};

void ExportPathTest::suffixIsAlwaysAppended_data()
{
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QString>("path");
    QTest::newRow("a name") << u"Work"_s << u"Work.Kind"_s;
    QTest::newRow("a path") << u"/a.b/Work"_s << u"/a.b/Work.Kind"_s;
    QTest::newRow("the suffix typed") << u"../Work.Kind"_s << u"../Work.Kind.Kind"_s;
    QTest::newRow("a dot in the name") << u"Work 1.5"_s << u"Work 1.5.Kind"_s;
    QTest::newRow("a long folder") << u"/%1/Work"_s.arg(QString(300, u'a'))
                                   << u"/%1/Work.Kind"_s.arg(QString(300, u'a'));
}

void ExportPathTest::suffixIsAlwaysAppended()
{
    QFETCH(QString, chosen);
    QTEST(exportPath(chosen, u"Kind"_s), "path");
}

void ExportPathTest::longNameIsCutToTheLimitOfFileNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("cut");
    QTest::newRow("exactly as long as possible") << QString(250, u'a') << QString(250, u'a');
    QTest::newRow("one byte too long") << QString(251, u'a') << QString(250, u'a');
    QTest::newRow("very long") << QString(100'000, u'a') << QString(250, u'a');
    QTest::newRow("letters of three bytes") << QString(200, u'\u30ab') << QString(83, u'\u30ab');
    QTest::newRow("letters of four bytes") << u"\U0001f3ae"_s.repeated(200) << u"\U0001f3ae"_s.repeated(62);
    QTest::newRow("cut inside a letter") << u"a"_s + u"\U0001f3ae"_s.repeated(200)
                                         << u"a"_s + u"\U0001f3ae"_s.repeated(62);
}

void ExportPathTest::longNameIsCutToTheLimitOfFileNames()
{
    QFETCH(QString, name);
    QFETCH(QString, cut);
    const QTemporaryDir folder;
    QCOMPARE(exportFileName(name, u"Kind"_s), cut);
    const QString path = exportPath(folder.filePath(name), u"Kind"_s);
    QCOMPARE(path, folder.filePath(cut + u".Kind"_s));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

QTEST_GUILESS_MAIN(ExportPathTest)
#include "exportpathtest.moc"
