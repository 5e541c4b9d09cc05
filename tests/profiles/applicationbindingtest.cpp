// SPDX-License-Identifier: MIT
#include "profiles/applicationbinding.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QVariantMap texts(const QString &application, const QString &executable, const QString &identifier,
                  const QString &signature)
{
    return {{u"application"_s, application},
            {u"executable"_s, executable},
            {u"identifier"_s, identifier},
            {u"signature"_s, signature}};
}

} // namespace

class ApplicationBindingTest : public QObject
{
    Q_OBJECT

private slots:
    void bindsByTheFourTexts_data()
    {
        QTest::addColumn<QVariantMap>("information");
        QTest::addColumn<QVariantMap>("bound");
        const QVariantMap whole{{u"CFBundleName"_s, u"Racer"_s},
                                {u"CFBundleExecutable"_s, u"racer.bin"_s},
                                {u"CFBundleIdentifier"_s, u"org.example.Racer"_s},
                                {u"CFBundleSignature"_s, u"RACE"_s},
                                {u"CFBundleVersion"_s, u"1"_s}};
        QTest::newRow("all there") << whole << texts(u"Racer"_s, u"racer.bin"_s, u"org.example.Racer"_s, u"RACE"_s);
        QVariantMap nameless = whole;
        nameless.remove(u"CFBundleName"_s);
        QTest::newRow("without a name, shown by its executable")
            << nameless << texts(u"racer.bin"_s, u"racer.bin"_s, u"org.example.Racer"_s, u"RACE"_s);
        QTest::newRow("nothing there") << QVariantMap() << texts(u""_s, u""_s, u""_s, u""_s);
        QTest::newRow("values that are no texts")
            << QVariantMap{{u"CFBundleName"_s, 7}, {u"CFBundleExecutable"_s, QVariantList{1}}}
            << texts(u""_s, u""_s, u""_s, u""_s);
    }

    void bindsByTheFourTexts()
    {
        QFETCH(QVariantMap, information);
        QFETCH(QVariantMap, bound);
        QVariantMap before = texts(u"a"_s, u"b"_s, u"c"_s, u"d"_s);
        before.insert(u"version"_s, 7);
        bound.insert(u"version"_s, 7);
        QCOMPARE(ApplicationBinding::bound(before, information), bound);
    }

    void anApplicationHasANameAnExecutableOrAnIdentifier()
    {
        using ApplicationBinding::namesAnApplication;
        QVERIFY(namesAnApplication(texts(u"a"_s, u""_s, u""_s, u""_s)));
        QVERIFY(namesAnApplication(texts(u""_s, u"a"_s, u""_s, u""_s)));
        QVERIFY(namesAnApplication(texts(u""_s, u""_s, u"a"_s, u""_s)));
        QVERIFY(!namesAnApplication(texts(u""_s, u""_s, u""_s, u"a"_s)));
        QVERIFY(!namesAnApplication({}));
    }

    void unbindingEmptiesTheTextsAndKeepsTheRest()
    {
        QVariantMap before = texts(u"a"_s, u"b"_s, u"c"_s, u"d"_s);
        before.insert(u"version"_s, 7);
        QVariantMap after = texts(u""_s, u""_s, u""_s, u""_s);
        after.insert(u"version"_s, 7);
        const QVariantMap unbound = ApplicationBinding::unbound(before);
        QCOMPARE(unbound, after);
        // A null string would not become a text on the wire.
        QVERIFY(!unbound.value(u"application"_s).toString().isNull());
    }

    void theApplicationIsTheNameShown_data()
    {
        QTest::addColumn<QVariant>("appInfo");
        QTest::addColumn<QString>("application");
        QTest::newRow("bound") << QVariant(texts(u"Racer"_s, u""_s, u""_s, u""_s)) << u"Racer"_s;
        QTest::newRow("unbound") << QVariant(texts(u""_s, u"x"_s, u""_s, u""_s)) << QString();
        QTest::newRow("no dictionary") << QVariant(12) << QString();
    }

    void theApplicationIsTheNameShown()
    {
        QFETCH(QVariant, appInfo);
        QTEST(ApplicationBinding::applicationOf({{u"AppInfo"_s, appInfo}}), "application");
    }
};

QTEST_GUILESS_MAIN(ApplicationBindingTest)
#include "applicationbindingtest.moc"
