// SPDX-License-Identifier: MIT
#include "base/visibletext.h"
#include "tests/support/testmain.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace Qt::StringLiterals;

class VisibleTextTest : public QObject
{
    Q_OBJECT

private slots:
    void replacesControlCharacters_data();
    void replacesControlCharacters();
    void keepsVisibleCharacters_data();
    void keepsVisibleCharacters();
    void replacesEachByOneCharacter();
    void escapesJsonWithoutChangingIt_data() { replacesControlCharacters_data(); }
    void escapesJsonWithoutChangingIt();
    void keepsLinesOfJson();
};

void VisibleTextTest::replacesControlCharacters_data()
{
    QTest::addColumn<QString>("character");
    const auto row = [](const char *name, char32_t character) {
        QTest::newRow(name) << QStringView(QChar::fromUcs4(character)).toString();
    };
    row("null", 0);
    row("bell", 0x07);
    row("tab", 0x09);
    row("line feed", 0x0a);
    row("carriage return", 0x0d);
    row("escape", 0x1b);
    row("delete", 0x7f);
    row("next line", 0x85);
    row("control sequence introducer", 0x9b);
    row("soft hyphen", 0xad);
    row("Arabic letter mark", 0x61c);
    row("zero width space", 0x200b);
    row("left-to-right mark", 0x200e);
    row("right-to-left mark", 0x200f);
    row("line separator", 0x2028);
    row("paragraph separator", 0x2029);
    row("left-to-right embedding", 0x202a);
    row("right-to-left override", 0x202e);
    row("word joiner", 0x2060);
    row("left-to-right isolate", 0x2066);
    row("pop directional isolate", 0x2069);
    row("byte order mark", 0xfeff);
    row("interlinear annotation", 0xfff9);
    row("musical format", 0x1d173);
    row("language tag", 0xe0001);
}

void VisibleTextTest::replacesControlCharacters()
{
    QFETCH(QString, character);
    QCOMPARE(visibleText(u"a"_s + character + u"b"_s + character, u'?'), u"a?b?"_s);
    QCOMPARE(visibleText(character, u' '), u" "_s);
}

void VisibleTextTest::keepsVisibleCharacters_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("letters") << u"Déjà vu, 鍵盤 \u0628\u0627 & <b>\u00a0?"_s;
    QTest::newRow("Persian with a non-joiner") << u"\u0645\u06cc\u200c\u062e\u0648\u0627\u0647\u0645"_s;
    QTest::newRow("family") << u"\U0001f468\u200d\U0001f469\u200d\U0001f467"_s;
    QTest::newRow("flag of England") << u"\U0001f3f4\U000e0067\U000e0062\U000e0065\U000e006e\U000e0067\U000e007f"_s;
}

void VisibleTextTest::keepsVisibleCharacters()
{
    QFETCH(QString, text);
    QCOMPARE(visibleText(text, u'?'), text);
    QCOMPARE(visibleJson(text), text);
}

void VisibleTextTest::replacesEachByOneCharacter()
{
    QCOMPARE(visibleText(u"\r\n\u001b[2J\u202eexe.txt"_s, u'?'), u"???[2J?exe.txt"_s);
    QCOMPARE(visibleText(QString(QChar(0xd83d)), u'?'), u"\ufffd"_s);
}

void VisibleTextTest::escapesJsonWithoutChangingIt()
{
    QFETCH(QString, character);
    const QJsonDocument document(QJsonArray{u"a"_s + character + u"b"_s});
    const QString json = visibleJson(QString::fromUtf8(document.toJson(QJsonDocument::Compact)));
    QVERIFY2(!json.contains(character), qPrintable(json));
    QCOMPARE(QJsonDocument::fromJson(json.toUtf8()), document);
}

void VisibleTextTest::keepsLinesOfJson()
{
    const QByteArray json = QJsonDocument(QJsonArray{u"a\nb"_s, 1}).toJson();
    QCOMPARE(visibleJson(QString::fromUtf8(json)).toUtf8(), json);
}

QTEST_APPLESS_MAIN(VisibleTextTest)
#include "visibletexttest.moc"
