// SPDX-License-Identifier: MIT
// One line per story: the applications in front, the user's actions, and the profiles that are then active and
// remembered.
#include "daemon/frontapplication/automaticswitch.h"
#include "base/document.h"
#include "tests/support/reason.h"
#include "tests/support/testmain.h"

#include "daemon/settings/documentcommands.h"
#include "daemon/settings/settingsdocument.h"

#include <QTest>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

QVariantMap profile(const QString &name, const QString &application)
{
    return {{u"ProfileName"_s, name},
            {u"AppInfo"_s, QVariantMap{{u"identifier"_s, application}}},
            {u"AutoSwitchOn"_s, application.isEmpty() ? 0 : 1}};
}

/// Profiles "P", "Q" (unbound), "A" and "B" (bound to the applications "a" and "b"); "P" is active.
QVariantMap startDocument()
{
    return SettingsDocument::completed({{u"Profiles"_s, QVariantList{profile(u"P"_s, {}), profile(u"Q"_s, {}),
                                                                     profile(u"A"_s, u"a"_s), profile(u"B"_s, u"b"_s)}},
                                        {u"Macros"_s, QVariantList()},
                                        {u"DeviceSettings"_s, QVariantMap{{u"ActiveProfile"_s, 0}}}});
}

QString activeName(const QVariantMap &document)
{
    return Document(document).activeProfile().value(u"ProfileName"_s).toString();
}

} // namespace

class AutomaticSwitchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void storyEndsWithTheRightProfiles_data();
    void storyEndsWithTheRightProfiles();
    void keptDocumentDiffersOnlyInTheActiveProfile();

private:
    /// "a" "b" "x" "-": that application ("-": none) comes to the front; "=NAME": the profile is chosen; "+NAME": it is
    /// added; "_NAME": it is added, but not activated; "!NAME": it is deleted; "NAME~": it is renamed; "NAME>x": it is
    /// bound to x ("NAME>": to nothing); "0": all but the first profile are replaced by none.
    void act(const QString &word);
    void obey(Command command, const QVariantMap &request);
    int indexOf(const QString &name) const;

    QVariantMap mDocument;
    AutomaticSwitch mSwitch;
};

void AutomaticSwitchTest::init()
{
    mDocument = startDocument();
    mSwitch = {};
}

int AutomaticSwitchTest::indexOf(const QString &name) const
{
    const QVariantList profiles = Document(mDocument).profiles();
    for (int index = 0; index < profiles.size(); ++index) {
        if (profiles.at(index).toMap().value(u"ProfileName"_s) == name)
            return index;
    }
    return -1;
}

void AutomaticSwitchTest::obey(Command command, const QVariantMap &request)
{
    const DocumentCommand *found = findDocumentCommand(static_cast<qint32>(command));
    QVERIFY(found);
    const CommandOutcome outcome = found->apply(mDocument, request);
    QCOMPARE(outcome.status, Status::ok);
    mDocument = mSwitch.afterCommand(command, request, mDocument, outcome.document);
}

void AutomaticSwitchTest::act(const QString &word)
{
    const QString rest = word.sliced(1);
    if (word.startsWith(u'=')) {
        obey(Command::switchProfile, {{u"ProfileID"_s, indexOf(rest)}});
    } else if (word.startsWith(u'+')) {
        obey(Command::addProfile, {{u"DeviceSettingsDictionary"_s, profile(rest, {})}});
    } else if (word.startsWith(u'_')) {
        obey(Command::addProfile, {{u"DeviceSettingsDictionary"_s, profile(rest, {})}, {u"KeepActiveProfile"_s, true}});
    } else if (word.startsWith(u'!')) {
        obey(Command::deleteProfile, {{u"ProfileID"_s, indexOf(rest)}});
    } else if (word.endsWith(u'~')) {
        obey(Command::updateProfile, {{u"ProfileID"_s, indexOf(word.chopped(1))},
                                      {u"DeviceSettingsDictionary"_s, QVariantMap{{u"ProfileName"_s, u"N"_s}}}});
    } else if (word.contains(u'>')) {
        const QString name = word.section(u'>', 0, 0);
        obey(Command::updateProfile,
             {{u"ProfileID"_s, indexOf(name)}, {u"DeviceSettingsDictionary"_s, profile(name, word.section(u'>', 1))}});
    } else if (word == "0"_L1) {
        obey(Command::replaceAllProfiles, {{u"AllProfiles"_s, Document(mDocument).profiles().first(1)}});
    } else {
        const FrontApplication application = word == "-"_L1 ? FrontApplication{} : FrontApplication::named(word);
        if (const auto index = mSwitch.applicationInFront(application, mDocument))
            mDocument = SettingsDocument::withActiveProfile(mDocument, *index);
    }
}

void AutomaticSwitchTest::storyEndsWithTheRightProfiles_data()
{
    QTest::addColumn<QString>("story");
    QTest::addColumn<QString>("active");
    QTest::addColumn<QString>("kept"); // after a restart
    const auto row = [](const char *name, const QString &story, const QString &active, const QString &kept) {
        QTest::newRow(name) << story << active << kept;
    };
    row("nothing happened", u"x"_s, u"P"_s, u"P"_s);
    row("bound", u"a"_s, u"A"_s, u"P"_s);
    row("bound, unbound", u"a x"_s, u"P"_s, u"P"_s);
    row("bound, nothing in front", u"a -"_s, u"P"_s, u"P"_s);
    row("bound, bound", u"a b"_s, u"B"_s, u"P"_s);
    row("bound, bound, unbound", u"a b x"_s, u"P"_s, u"P"_s);
    row("there and back and out", u"a b a x"_s, u"P"_s, u"P"_s);
    row("unbound to unbound", u"x y"_s, u"P"_s, u"P"_s);

    row("chosen before", u"=Q a x"_s, u"Q"_s, u"Q"_s);
    row("chosen meanwhile stays", u"a =Q"_s, u"Q"_s, u"Q"_s);
    row("chosen meanwhile stays in the same application", u"a =Q a"_s, u"Q"_s, u"Q"_s);
    row("chosen meanwhile is the new before", u"a =Q x"_s, u"Q"_s, u"Q"_s);
    row("chosen meanwhile, another bound", u"a =Q b"_s, u"B"_s, u"Q"_s);
    row("chosen meanwhile, back to the application", u"a =Q b a"_s, u"A"_s, u"Q"_s);
    row("added without activation", u"_N"_s, u"P"_s, u"P"_s);
    row("added without activation, then left", u"a _N x"_s, u"P"_s, u"P"_s);
    row("chosen what is active already", u"a =A"_s, u"A"_s, u"A"_s);
    row("chosen what is active already, then left", u"a =A x"_s, u"A"_s, u"A"_s);
    row("chosen is the bound one", u"=A a x"_s, u"A"_s, u"A"_s);
    row("chosen is bound, another bound, back", u"=A a b"_s, u"B"_s, u"A"_s);
    row("chosen is bound, another bound and back", u"=A a b a"_s, u"A"_s, u"A"_s);
    row("added meanwhile", u"a +N x"_s, u"N"_s, u"N"_s);
    row("renamed meanwhile", u"a P~ x"_s, u"N"_s, u"N"_s);

    row("automatic one deleted", u"a !A"_s, u"P"_s, u"P"_s);
    row("automatic one deleted, then left", u"a !A x"_s, u"P"_s, u"P"_s);
    row("remembered one deleted", u"=Q a !Q x"_s, u"P"_s, u"P"_s);
    row("first one deleted while remembered", u"a !P x"_s, u"Q"_s, u"Q"_s);
    row("one before the remembered deleted", u"=Q a !P x"_s, u"Q"_s, u"Q"_s);
    row("one behind deleted", u"=Q a !B x"_s, u"Q"_s, u"Q"_s);
    row("one before both deleted", u"=Q b !P"_s, u"B"_s, u"Q"_s);
    row("both deleted", u"=Q a !Q !A"_s, u"P"_s, u"P"_s);
    row("remembered falls onto the automatic", u"=B a !P !Q !B"_s, u"A"_s, u"A"_s);
    row("all but the first replaced", u"=Q b 0 x"_s, u"P"_s, u"P"_s);

    row("bound while in front", u"x Q>x"_s, u"Q"_s, u"P"_s);
    row("bound while in front, then left", u"x Q>x y"_s, u"P"_s, u"P"_s);
    row("unbound while in front", u"a A>"_s, u"P"_s, u"P"_s);
    row("bound to another while in front", u"a A>y"_s, u"P"_s, u"P"_s);
    row("another one is bound meanwhile", u"a Q>y"_s, u"A"_s, u"P"_s);
    row("chosen, another one is bound meanwhile", u"a =P Q>y"_s, u"P"_s, u"P"_s);
    row("chosen, another one is unbound meanwhile", u"a =Q B>"_s, u"Q"_s, u"Q"_s);
}

void AutomaticSwitchTest::storyEndsWithTheRightProfiles()
{
    QFETCH(QString, story);
    for (const QString &word : story.split(u' ')) {
        act(word);
        QCOMPARE(reasonOf(SettingsDocument::validate(mDocument)), QString());
        QCOMPARE(reasonOf(SettingsDocument::validate(mSwitch.documentToKeep(mDocument))), QString());
    }
    QTEST(activeName(mDocument), "active");
    QTEST(activeName(mSwitch.documentToKeep(mDocument)), "kept");
}

void AutomaticSwitchTest::keptDocumentDiffersOnlyInTheActiveProfile()
{
    act(u"a"_s);
    QVariantMap kept = mSwitch.documentToKeep(mDocument);
    QVERIFY(kept != mDocument);
    QCOMPARE(SettingsDocument::withActiveProfile(kept, 2), mDocument);
}

QTEST_GUILESS_MAIN(AutomaticSwitchTest)
#include "automaticswitchtest.moc"
