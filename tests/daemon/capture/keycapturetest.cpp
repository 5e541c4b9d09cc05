// SPDX-License-Identifier: MIT
#include "daemon/capture/keycapture.h"
#include "tests/support/testmain.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;
using Kind = KeyCapture::Kind;

class KeyCaptureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void computerOwnsTheKeysAtFirst();
    void daemonAwaitsAKeyForNoClient();
    void clientHasAName_data();
    void clientHasAName();
    void everyKindHasAName();
};

void KeyCaptureTest::computerOwnsTheKeysAtFirst()
{
    QCOMPARE(KeyCapture().kind(), Kind::none);
    QVERIFY(!KeyCapture().client());
}

void KeyCaptureTest::daemonAwaitsAKeyForNoClient()
{
    QCOMPARE(KeyCapture::forOnTheFlyKey().kind(), Kind::onTheFlyKey);
    QVERIFY(!KeyCapture::forOnTheFlyKey().client());
}

void KeyCaptureTest::clientHasAName_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::newRow("recording") << Kind::macroRecording;
    QTest::newRow("single key") << Kind::singleKey;
    QTest::newRow("edited event") << Kind::editedEvent;
}

void KeyCaptureTest::clientHasAName()
{
    QFETCH(Kind, kind);
    const KeyCapture capture = KeyCapture::forClient(u"Port"_s, kind);
    QCOMPARE(capture.kind(), kind);
    QCOMPARE(capture.client(), std::optional(u"Port"_s));
}

void KeyCaptureTest::everyKindHasAName()
{
    QSet<QString> names{QString::fromLatin1(KeyCapture().name()),
                        QString::fromLatin1(KeyCapture::forOnTheFlyKey().name())};
    for (const Kind kind : {Kind::macroRecording, Kind::singleKey, Kind::editedEvent})
        names += QString::fromLatin1(KeyCapture::forClient(u"Port"_s, kind).name());
    QCOMPARE(names.size(), 5);
    QVERIFY(!names.contains(u"?"_s));
}

QTEST_APPLESS_MAIN(KeyCaptureTest)
#include "keycapturetest.moc"
