// SPDX-License-Identifier: MIT
#include "base/applicationmatch.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;
using ApplicationMatch::Strength;

Q_DECLARE_METATYPE(ApplicationMatch::Strength)
Q_DECLARE_METATYPE(FrontApplication)

namespace {

QVariantMap appInfo(const QString &identifier, const QString &signature, const QString &executable, const QString &name)
{
    return {{u"identifier"_s, identifier},
            {u"signature"_s, signature},
            {u"executable"_s, executable},
            {u"application"_s, name}};
}

QVariantMap profile(const QVariant &info, const QVariant &autoSwitch = 1)
{
    return {{u"ProfileName"_s, u"P"_s}, {u"AppInfo"_s, info}, {u"AutoSwitchOn"_s, autoSwitch}};
}

} // namespace

class ApplicationMatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void appInfoIdentifiesTheApplication_data();
    void appInfoIdentifiesTheApplication();
    void wrongShapesMatchNothing_data();
    void wrongShapesMatchNothing();
    void onlyProfilesWithAutoSwitchMatch_data();
    void onlyProfilesWithAutoSwitchMatch();
    void surestMatchWins();
    void activeProfileWinsAmongEquals();
    void nothingInFrontMatchesNothing();
};

void ApplicationMatchTest::appInfoIdentifiesTheApplication_data()
{
    QTest::addColumn<QVariantMap>("info");
    QTest::addColumn<FrontApplication>("application");
    QTest::addColumn<Strength>("strength");
    const FrontApplication game{.windowClass = u"Game"_s,
                                .windowInstance = u"game-x"_s,
                                .desktopEntry = u"org.example.Game"_s,
                                .executable = u"/opt/game/game-bin"_s};
    const auto row = [&](const char *name, const QVariantMap &info, Strength strength) {
        QTest::newRow(name) << info << game << strength;
    };
    row("entry id", appInfo(u"org.example.Game"_s, {}, {}, {}), Strength::identifier);
    row("entry id with suffix", appInfo(u"org.example.Game.desktop"_s, {}, {}, {}), Strength::identifier);
    row("entry id in other case", appInfo(u"org.example.game"_s, {}, {}, {}), Strength::identifier);
    row("identifier as class", appInfo(u"game"_s, {}, {}, {}), Strength::signature);
    row("class", appInfo({}, u"Game"_s, {}, {}), Strength::signature);
    row("class in other case", appInfo({}, u"gAME"_s, {}, {}), Strength::signature);
    row("instance", appInfo({}, u"game-x"_s, {}, {}), Strength::signature);
    row("path", appInfo({}, {}, u"/opt/game/game-bin"_s, {}), Strength::executable);
    row("linked path", appInfo({}, {}, u"/usr/bin/game-bin"_s, {}), Strength::executable);
    row("file name", appInfo({}, {}, u"game-bin"_s, {}), Strength::executable);
    row("executable as class", appInfo({}, {}, u"/usr/bin/game"_s, {}), Strength::executable);
    row("name", appInfo({}, {}, {}, u"Game"_s), Strength::name);
    row("surest of all", appInfo(u"org.example.Game"_s, u"Game"_s, u"game-bin"_s, u"Game"_s), Strength::identifier);
    row("other", appInfo(u"org.example.Other"_s, u"Other"_s, u"/usr/bin/other"_s, u"Other"_s), Strength::none);
    row("part of a name", appInfo(u"org.example"_s, u"Gam"_s, u"bin"_s, u"Ga"_s), Strength::none);
    row("unbound", appInfo({}, {}, {}, {}), Strength::none);
    row("no keys", {}, Strength::none);
    // A program that runs many applications identifies none of them.
    QTest::newRow("launcher") << appInfo({}, {}, u"/usr/bin/python3"_s, {})
                              << FrontApplication{.windowClass = u"editor"_s, .executable = u"/usr/bin/python3"_s}
                              << Strength::none;
    QTest::newRow("name as entry id") << appInfo({}, {}, {}, u"Game"_s)
                                      << FrontApplication{.desktopEntry = u"game.desktop"_s} << Strength::name;
    QTest::newRow("only a path known") << appInfo({}, u"Game"_s, u"game"_s, {})
                                       << FrontApplication{.executable = u"/usr/games/game"_s} << Strength::executable;
    QTest::newRow("told by a name") << appInfo(u"org.example.Game"_s, {}, {}, {})
                                    << FrontApplication::named(u"org.example.Game.desktop"_s) << Strength::identifier;
}

void ApplicationMatchTest::appInfoIdentifiesTheApplication()
{
    QFETCH(QVariantMap, info);
    QFETCH(FrontApplication, application);
    QTEST(ApplicationMatch::strengthOf(info, application), "strength");
}

void ApplicationMatchTest::wrongShapesMatchNothing_data()
{
    QTest::addColumn<QVariantList>("profiles");
    const QVariantMap numbers{{u"identifier"_s, 1}, {u"signature"_s, true}, {u"executable"_s, 1.5}};
    const QVariantMap containers{{u"identifier"_s, QVariantList{u"game"_s}},
                                 {u"signature"_s, QVariantMap{{u"game"_s, u"game"_s}}},
                                 {u"executable"_s, QByteArray("game")},
                                 {u"application"_s, QVariant()}};
    QTest::newRow("no profiles") << QVariantList{};
    QTest::newRow("profile is text") << QVariantList{u"game"_s};
    QTest::newRow("no AppInfo") << QVariantList{QVariantMap{{u"AutoSwitchOn"_s, 1}}};
    QTest::newRow("AppInfo is text") << QVariantList{profile(u"game"_s)};
    QTest::newRow("AppInfo is an array") << QVariantList{profile(QVariantList{u"game"_s})};
    QTest::newRow("numbers") << QVariantList{profile(numbers)};
    QTest::newRow("containers") << QVariantList{profile(containers)};
}

void ApplicationMatchTest::wrongShapesMatchNothing()
{
    QFETCH(QVariantList, profiles);
    for (const QString &name : {u"game"_s, u"1"_s, u"true"_s, u"1.5"_s})
        QCOMPARE(ApplicationMatch::boundProfile(profiles, FrontApplication::named(name), 0), std::nullopt);
}

void ApplicationMatchTest::onlyProfilesWithAutoSwitchMatch_data()
{
    QTest::addColumn<QVariant>("autoSwitch");
    QTest::addColumn<bool>("counts");
    QTest::newRow("1") << QVariant(1) << true;
    QTest::newRow("true") << QVariant(true) << true;
    QTest::newRow("0") << QVariant(0) << false;
    QTest::newRow("false") << QVariant(false) << false;
    QTest::newRow("absent") << QVariant() << false;
    QTest::newRow("dictionary") << QVariant(QVariantMap{{u"a"_s, 1}}) << false;
}

void ApplicationMatchTest::onlyProfilesWithAutoSwitchMatch()
{
    QFETCH(QVariant, autoSwitch);
    const QVariantList profiles{profile(appInfo(u"game"_s, {}, {}, {}), autoSwitch)};
    QTEST(ApplicationMatch::boundProfile(profiles, FrontApplication::named(u"game"_s), 0).has_value(), "counts");
}

void ApplicationMatchTest::surestMatchWins()
{
    const QVariantList profiles{profile(appInfo({}, {}, {}, u"game"_s)), profile(appInfo({}, u"game"_s, {}, {})),
                                profile(appInfo(u"game"_s, {}, {}, {})), profile(appInfo({}, {}, u"game"_s, {}))};
    for (int active = 0; active < profiles.size(); ++active)
        QCOMPARE(ApplicationMatch::boundProfile(profiles, FrontApplication::named(u"game"_s), active), 2);
}

void ApplicationMatchTest::activeProfileWinsAmongEquals()
{
    const QVariantMap bound = profile(appInfo(u"game"_s, {}, {}, {}));
    const QVariantList profiles{profile({}), bound, bound, bound};
    const FrontApplication game = FrontApplication::named(u"game"_s);
    QCOMPARE(ApplicationMatch::boundProfile(profiles, game, 0), 1);
    QCOMPARE(ApplicationMatch::boundProfile(profiles, game, 2), 2);
    QCOMPARE(ApplicationMatch::boundProfile(profiles, game, 3), 3);
}

void ApplicationMatchTest::nothingInFrontMatchesNothing()
{
    const QVariantList profiles{profile(appInfo({}, {}, {}, {}))};
    QCOMPARE(ApplicationMatch::boundProfile(profiles, {}, 0), std::nullopt);
}

QTEST_GUILESS_MAIN(ApplicationMatchTest)
#include "applicationmatchtest.moc"
