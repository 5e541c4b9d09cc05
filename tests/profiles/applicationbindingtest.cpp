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

    void sameApplicationIsTheSameIdentifierOrSignature_data()
    {
        QTest::addColumn<QVariantMap>("one");
        QTest::addColumn<QVariantMap>("other");
        QTest::addColumn<bool>("isSame");
        // In the order: name, executable, identifier, signature.
        const QVariantMap racer = texts(u"Racer"_s, u"racer"_s, u"racer.desktop"_s, u"RacerClass"_s);
        QTest::newRow("itself") << racer << racer << true;
        QTest::newRow("the identifier, in other letters")
            << racer << texts(u"Rennen"_s, u"x"_s, u"RACER.desktop"_s, u""_s) << true;
        QTest::newRow("the signature of a window")
            << racer << texts(u"racerclass"_s, u""_s, u""_s, u"racerclass"_s) << true;
        QTest::newRow("the program of another entry, such as an interpreter")
            << racer << texts(u"Racer"_s, u"racer"_s, u"other.desktop"_s, u""_s) << false;
        QTest::newRow("the executable alone")
            << texts(u"A"_s, u"game"_s, u""_s, u""_s) << texts(u"B"_s, u"Game"_s, u""_s, u""_s) << true;
        QTest::newRow("the name alone") << texts(u"A"_s, u""_s, u""_s, u""_s) << texts(u"a"_s, u""_s, u""_s, u""_s)
                                        << true;
        QTest::newRow("nothing") << texts(u""_s, u""_s, u""_s, u""_s) << texts(u""_s, u""_s, u""_s, u""_s) << false;
        QTest::newRow("no dictionaries") << QVariantMap() << QVariantMap() << false;
    }

    void sameApplicationIsTheSameIdentifierOrSignature()
    {
        QFETCH(QVariantMap, one);
        QFETCH(QVariantMap, other);
        QTEST(ApplicationBinding::nameTheSameApplication(one, other), "isSame");
        QTEST(ApplicationBinding::nameTheSameApplication(other, one), "isSame");
    }

    void theFirstOtherProfileThatFollowsTheApplicationIsFound()
    {
        const QVariantMap racer = texts(u"Racer"_s, u"racer"_s, u"racer.desktop"_s, u""_s);
        const auto profile = [&racer](int autoSwitch) {
            return QVariantMap{{u"AppInfo"_s, racer}, {u"AutoSwitchOn"_s, autoSwitch}};
        };
        using ApplicationBinding::otherProfileFollowing;
        QCOMPARE(otherProfileFollowing({profile(1)}, 0), std::nullopt);
        QCOMPARE(otherProfileFollowing({profile(1), profile(1)}, 0), std::optional(1));
        QCOMPARE(otherProfileFollowing({profile(0), 7, profile(1), profile(1), profile(1)}, 3), std::optional(2));
        QCOMPARE(otherProfileFollowing({profile(0), profile(1)}, 1), std::nullopt);
        QCOMPARE(otherProfileFollowing({profile(1)}, 5), std::nullopt);
    }
};

QTEST_GUILESS_MAIN(ApplicationBindingTest)
#include "applicationbindingtest.moc"
