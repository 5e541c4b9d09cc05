// SPDX-License-Identifier: MIT
#include "daemon/settings/documentcommands.h"
#include "base/daemonprotocol.h"
#include "base/document.h"
#include "daemon/settings/settingsdocument.h"
#include "macros/macrorecord.h"
#include "tests/support/reason.h"
#include "tests/support/testmain.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

QVariantMap profile(const QString &name)
{
    return {{u"ProfileName"_s, name}, {u"Keys"_s, QVariantMap()}, {u"BrightnessKBNormal"_s, 4}};
}

QVariantMap macroEvent(int command, int delay, int page, int argument)
{
    return MacroRecord::eventRecord({command, delay, page, static_cast<uint>(argument)});
}

// Macro 0 has no events. Macro 1: press A; release A after 11 ms; an event without a line; left button down.
QVariantMap sample(int active = 1)
{
    const QVariantList events{macroEvent(1, 10, 7, 4), macroEvent(0, 11, 7, 4), macroEvent(1, 12, 8, 4),
                              macroEvent(1, 13, 9, 1)};
    const QVariantMap empty{
        {u"MacroName"_s, u"Empty"_s}, {u"delay"_s, 20}, {u"sequence"_s, QVariantMap()}, {u"mine"_s, u"kept"_s}};
    return SettingsDocument::completed(
        {{u"Profiles"_s, QVariantList{profile(u"A"_s), profile(u"B"_s), profile(u"C"_s)}},
         {u"Macros"_s, QVariantList{empty, MacroRecord::withEvents({{u"MacroName"_s, u"Four"_s}}, events)}},
         {u"DeviceSettings"_s, QVariantMap{{u"ActiveProfile"_s, active}}}});
}

CommandOutcome apply(Command command, const QVariantMap &request, const QVariantMap &document = sample())
{
    const DocumentCommand *entry = findDocumentCommand(static_cast<qint32>(command));
    return entry->apply(document, request);
}

QStringList profileNames(const QVariantMap &document)
{
    QStringList names;
    for (const QVariant &record : Document(document).profiles())
        names += record.toMap().value(u"ProfileName"_s).toString();
    return names;
}

QVariantMap macroAt(const QVariantMap &document, int row)
{
    return Document(document).macros().value(row).toMap();
}

QList<int> delays(const QVariantMap &document, int row = 1)
{
    QList<int> result;
    for (const QVariant &entry : MacroRecord::events(macroAt(document, row)))
        result += MacroRecord::eventFields(entry.toMap()).delayMs;
    return result;
}

} // namespace

Q_DECLARE_METATYPE(DaemonProtocol::Command)

class DocumentCommandsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readSettingsReturnsTheDocument();
    void addedProfileIsLastAndActive();
    void addedProfileCanLeaveTheActiveOneActive();
    void addedRecordsGetNumbersInsteadOfTexts();
    void twentyProfilesAreTheLimit();
    void updateMergesTheGivenKeys();
    void updateOfOnScreenDisplayShowsInDeviceSettings();
    void replaceAllProfilesKeepsActiveInRange();
    void deleteProfileAdjustsActive_data();
    void deleteProfileAdjustsActive();
    void lastProfileCannotBeDeleted();
    void switchProfileSetsActive();
    void addedMacroIsLastWithAFreshNumber();
    void macroNumbersSurviveDeletion();
    void macrosAreLimited();
    void eventsAreLimited();
    void renameMacroChangesOnlyTheName();
    void macroLinesAreTheDisplayLines();
    void readEventByRow_data();
    void readEventByRow();
    void updateEventByRow();
    void removeEventByRow();
    void removeAllEventsLeavesAnEmptySequence();
    void copyDelayTakesADisplayRow();
    void noDelaySetsAllToZero();
    void setDelayByRow();
    void savedEventsReplaceOrFollow();
    void failuresChangeNothing_data();
    void failuresChangeNothing();
    void onlyFailedDeleteReturnsNoDocument();
    void excludesCommandsOfTheDevice();
    void randomRequestsKeepTheDocumentValid();
};

void DocumentCommandsTest::readSettingsReturnsTheDocument()
{
    const CommandOutcome outcome = apply(Command::readSettings, {});
    QCOMPARE(outcome.status, Status::ok);
    QVERIFY(!outcome.changesDocument);
    QCOMPARE(outcome.reply, (QVariantMap{{u"AllDevSettings"_s, sample()}}));
}

void DocumentCommandsTest::addedProfileIsLastAndActive()
{
    const CommandOutcome outcome = apply(Command::addProfile, {{u"DeviceSettingsDictionary"_s, profile(u"New"_s)}});
    QCOMPARE(outcome.status, Status::ok);
    QCOMPARE(profileNames(outcome.document), QStringList({u"A"_s, u"B"_s, u"C"_s, u"New"_s}));
    QCOMPARE(Document(outcome.document).activeProfileIndex(), 3);
}

void DocumentCommandsTest::addedProfileCanLeaveTheActiveOneActive()
{
    const int active = Document(sample()).activeProfileIndex();
    for (const bool keepsActive : {false, true}) {
        const CommandOutcome outcome = apply(Command::addProfile, {{u"DeviceSettingsDictionary"_s, profile(u"New"_s)},
                                                                   {u"KeepActiveProfile"_s, keepsActive}});
        QCOMPARE(outcome.status, Status::ok);
        QCOMPARE(profileNames(outcome.document), QStringList({u"A"_s, u"B"_s, u"C"_s, u"New"_s}));
        QCOMPARE(Document(outcome.document).activeProfileIndex(), keepsActive ? active : 3);
    }
}

void DocumentCommandsTest::addedRecordsGetNumbersInsteadOfTexts()
{
    const QVariantMap newProfile{{u"AutoSwitchOn"_s, u"1"_s}};
    const CommandOutcome withProfile = apply(Command::addProfile, {{u"DeviceSettingsDictionary"_s, newProfile}});
    const QVariant switched = Document(withProfile.document).profiles().last().toMap().value(u"AutoSwitchOn"_s);
    QCOMPARE(switched.typeId(), int(QMetaType::Int));
    const QVariantMap newMacro =
        MacroRecord::withEvents({{u"MacroName"_s, u"M"_s}}, {QVariantMap{{u"delay"_s, u"7"_s}}});
    const CommandOutcome withMacro = apply(Command::addMacro, {{u"MacroContents"_s, newMacro}});
    QCOMPARE(withMacro.status, Status::ok);
    QCOMPARE(MacroRecord::events(macroAt(withMacro.document, 2)), (QVariantList{QVariantMap{{u"delay"_s, 7}}}));
}

void DocumentCommandsTest::twentyProfilesAreTheLimit()
{
    QVariantMap document = sample();
    const QVariantMap request{{u"DeviceSettingsDictionary"_s, profile(u"New"_s)}};
    for (int count = 4; count <= 20; ++count)
        document = apply(Command::addProfile, request, document).document;
    QCOMPARE(Document(document).profiles().size(), 20);
    const CommandOutcome outcome = apply(Command::addProfile, request, document);
    QCOMPARE(outcome.status, Status::limitReached);
    QCOMPARE(outcome.document, document);
}

void DocumentCommandsTest::updateMergesTheGivenKeys()
{
    const CommandOutcome outcome =
        apply(Command::updateProfile,
              {{u"ProfileID"_s, 2},
               {u"DeviceSettingsDictionary"_s, QVariantMap{{u"BrightnessKBNormal"_s, 2}, {u"further"_s, u"x"_s}}}});
    QCOMPARE(outcome.status, Status::ok);
    const QVariantMap changed = Document(outcome.document).profiles().at(2).toMap();
    QCOMPARE(changed, (QVariantMap{{u"ProfileName"_s, u"C"_s},
                                   {u"Keys"_s, QVariantMap()},
                                   {u"BrightnessKBNormal"_s, 2},
                                   {u"further"_s, u"x"_s}}));
    QCOMPARE(Document(outcome.document).profiles().first(), Document(sample()).profiles().first());
    QCOMPARE(Document(outcome.document).activeProfileIndex(), 1);
}

void DocumentCommandsTest::updateOfOnScreenDisplayShowsInDeviceSettings()
{
    const CommandOutcome outcome =
        apply(Command::updateProfile,
              {{u"ProfileID"_s, 1}, {u"DeviceSettingsDictionary"_s, QVariantMap{{u"ProfileOSDOn"_s, 1}}}});
    QCOMPARE(outcome.document.value(u"DeviceSettings"_s).toMap().value(u"ProfileOSDOn"_s), QVariant(1));
}

void DocumentCommandsTest::replaceAllProfilesKeepsActiveInRange()
{
    CommandOutcome outcome =
        apply(Command::replaceAllProfiles, {{u"AllProfiles"_s, QVariantList{profile(u"X"_s), profile(u"Y"_s)}}});
    QCOMPARE(outcome.status, Status::ok);
    QCOMPARE(profileNames(outcome.document), QStringList({u"X"_s, u"Y"_s}));
    QCOMPARE(Document(outcome.document).activeProfileIndex(), 1);
    outcome = apply(Command::replaceAllProfiles, {{u"AllProfiles"_s, QVariantList{profile(u"X"_s)}}});
    QCOMPARE(Document(outcome.document).activeProfileIndex(), 0);
}

void DocumentCommandsTest::deleteProfileAdjustsActive_data()
{
    QTest::addColumn<int>("active");
    QTest::addColumn<int>("deleted");
    QTest::addColumn<int>("activeAfter");
    QTest::newRow("before the active one") << 2 << 0 << 1;
    QTest::newRow("after the active one") << 0 << 2 << 0;
    QTest::newRow("the active one") << 1 << 1 << 0;
    QTest::newRow("the active one, first") << 0 << 0 << 0;
    QTest::newRow("the active one, last") << 2 << 2 << 1;
}

void DocumentCommandsTest::deleteProfileAdjustsActive()
{
    QFETCH(int, active);
    QFETCH(int, deleted);
    const CommandOutcome outcome = apply(Command::deleteProfile, {{u"ProfileID"_s, deleted}}, sample(active));
    QCOMPARE(outcome.status, Status::ok);
    QStringList names{u"A"_s, u"B"_s, u"C"_s};
    names.removeAt(deleted);
    QCOMPARE(profileNames(outcome.document), names);
    QTEST(Document(outcome.document).activeProfileIndex(), "activeAfter");
}

void DocumentCommandsTest::lastProfileCannotBeDeleted()
{
    const QVariantMap document = SettingsDocument::minimal();
    const CommandOutcome outcome = apply(Command::deleteProfile, {{u"ProfileID"_s, 0}}, document);
    QCOMPARE(outcome.status, Status::lastProfile);
    QCOMPARE(outcome.document, document);
}

void DocumentCommandsTest::switchProfileSetsActive()
{
    const CommandOutcome outcome = apply(Command::switchProfile, {{u"ProfileID"_s, 2}});
    QCOMPARE(outcome.status, Status::ok);
    QCOMPARE(Document(outcome.document).activeProfileIndex(), 2);
}

void DocumentCommandsTest::addedMacroIsLastWithAFreshNumber()
{
    const QVariantMap record{{u"MacroName"_s, u"New"_s},
                             {u"delay"_s, 20},
                             {u"sequence"_s, QVariantMap()},
                             {u"ResponseMsgPortName"_s, u"KeyboardConfiguratorReplyPort"_s},
                             {u"macroID"_s, 1},
                             {u"more"_s, true}};
    const CommandOutcome outcome = apply(Command::addMacro, {{u"MacroContents"_s, record}});
    QCOMPARE(outcome.status, Status::ok);
    QVariantMap expected = record;
    expected.insert(u"macroID"_s, 3);
    QCOMPARE(macroAt(outcome.document, 2), expected);
}

void DocumentCommandsTest::macroNumbersSurviveDeletion()
{
    const CommandOutcome outcome = apply(Command::deleteMacro, {{u"macroID"_s, 0}});
    QCOMPARE(outcome.status, Status::ok);
    QCOMPARE(Document(outcome.document).macros().size(), 1);
    QCOMPARE(macroAt(outcome.document, 0), macroAt(sample(), 1));
}

void DocumentCommandsTest::macrosAreLimited()
{
    const QVariantMap record{{u"MacroName"_s, u"M"_s}};
    QVariantMap document = SettingsDocument::completed(
        SettingsDocument::withMacros(sample(), QVariantList(MacroRecord::maximumMacros - 1, record)));
    const CommandOutcome last = apply(Command::addMacro, {{u"MacroContents"_s, record}}, document);
    QCOMPARE(last.status, Status::ok);
    QCOMPARE(apply(Command::addMacro, {{u"MacroContents"_s, record}}, last.document).status, Status::limitReached);
}

void DocumentCommandsTest::eventsAreLimited()
{
    const auto record = [](int count) {
        return MacroRecord::withEvents({{u"MacroName"_s, u"M"_s}}, QVariantList(count, macroEvent(1, 0, 7, 4)));
    };
    QCOMPARE(apply(Command::addMacro, {{u"MacroContents"_s, record(MacroRecord::maximumEvents)}}).status, Status::ok);
    QCOMPARE(apply(Command::addMacro, {{u"MacroContents"_s, record(MacroRecord::maximumEvents + 1)}}).status,
             Status::limitReached);
    QCOMPARE(saveEvents(sample(), 1, QVariantList(MacroRecord::maximumEvents - 3, macroEvent(1, 0, 7, 4)), true).status,
             Status::limitReached);
    QVariantMap document = sample();
    for (int count = 0; count < 4; ++count)
        document =
            apply(Command::addMacro, {{u"MacroContents"_s, record(MacroRecord::maximumEvents)}}, document).document;
    QCOMPARE(Document(document).macros().size(), 6);
    QCOMPARE(apply(Command::addMacro, {{u"MacroContents"_s, record(MacroRecord::maximumEvents)}}, document).status,
             Status::limitReached);
}

void DocumentCommandsTest::renameMacroChangesOnlyTheName()
{
    const CommandOutcome outcome = apply(
        Command::renameMacro, {{u"MacroContents"_s, QVariantMap{{u"MacroName"_s, u"Renamed"_s}, {u"macroID"_s, 0}}}});
    QCOMPARE(outcome.status, Status::ok);
    QVariantMap expected = macroAt(sample(), 0);
    expected.insert(u"MacroName"_s, u"Renamed"_s);
    QCOMPARE(macroAt(outcome.document, 0), expected);
    QCOMPARE(macroAt(outcome.document, 1), macroAt(sample(), 1));
}

void DocumentCommandsTest::macroLinesAreTheDisplayLines()
{
    const CommandOutcome outcome = apply(Command::readMacroLines, {{u"IndexOfMacroSequence"_s, 1}});
    QCOMPARE(outcome.reply.value(u"MacroSequences"_s),
             QVariant(QVariantList{u"Key Press A"_s, u"0.011 seconds delay\n"_s, u"Key Release A"_s,
                                   u"0.012 seconds delay\n"_s, u"0.013 seconds delay\n"_s, u"Left Button down\n"_s}));
    QCOMPARE(apply(Command::readMacroLines, {{u"IndexOfMacroSequence"_s, 0}}).reply,
             (QVariantMap{{u"MacroSequences"_s, QVariantList()}}));
}

void DocumentCommandsTest::readEventByRow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("delay");
    for (const auto &[row, delay] : {std::pair(0, 10), {1, 11}, {2, 11}, {3, 12}, {4, 13}, {5, 13}})
        QTest::addRow("row %d", row) << row << delay;
}

void DocumentCommandsTest::readEventByRow()
{
    QFETCH(int, row);
    const CommandOutcome outcome = apply(Command::readEvent, {{u"macroID"_s, 1}, {u"sequenceIdx"_s, row}});
    QCOMPARE(outcome.status, Status::ok);
    QTEST(outcome.reply.value(u"sequenceInMacro"_s).toMap().value(u"delay"_s).toInt(), "delay");
}

void DocumentCommandsTest::updateEventByRow()
{
    QVariantMap changed = macroEvent(0, 99, 7, 30);
    changed.insert(u"mark"_s, u"kept"_s);
    const CommandOutcome outcome =
        apply(Command::updateEvent, {{u"macroID"_s, 1}, {u"sequenceIdx"_s, 5}, {u"sequence"_s, changed}});
    QCOMPARE(outcome.status, Status::ok);
    QCOMPARE(MacroRecord::events(macroAt(outcome.document, 1)).at(3).toMap(), changed);
    QCOMPARE(delays(outcome.document), QList<int>({10, 11, 12, 99}));
}

void DocumentCommandsTest::removeEventByRow()
{
    const CommandOutcome outcome = apply(Command::removeEvent, {{u"macroID"_s, 1}, {u"macroEventTableIndex"_s, 2}});
    QCOMPARE(outcome.status, Status::ok);
    QCOMPARE(delays(outcome.document), QList<int>({10, 12, 13}));
}

void DocumentCommandsTest::removeAllEventsLeavesAnEmptySequence()
{
    const CommandOutcome outcome = apply(Command::removeAllEvents, {{u"macroID"_s, 1}});
    QCOMPARE(outcome.status, Status::ok);
    QCOMPARE(macroAt(outcome.document, 1).value(u"sequence"_s), QVariant(QVariantMap()));
}

void DocumentCommandsTest::copyDelayTakesADisplayRow()
{
    const CommandOutcome outcome =
        apply(Command::setAllDelays, {{u"macroID"_s, 1}, {u"delay"_s, 3}, {u"HasNoDelay"_s, false}});
    QCOMPARE(outcome.status, Status::ok);
    QCOMPARE(delays(outcome.document), QList<int>({12, 12, 12, 12}));
}

void DocumentCommandsTest::noDelaySetsAllToZero()
{
    for (const QVariant &flag : {QVariant(true), QVariant(1)}) {
        const CommandOutcome outcome =
            apply(Command::setAllDelays, {{u"macroID"_s, 1}, {u"delay"_s, 0}, {u"HasNoDelay"_s, flag}});
        QCOMPARE(outcome.status, Status::ok);
        QCOMPARE(delays(outcome.document), QList<int>({0, 0, 0, 0}));
    }
}

void DocumentCommandsTest::setDelayByRow()
{
    const CommandOutcome outcome =
        apply(Command::setDelay, {{u"macroID"_s, 1}, {u"sequenceIdx"_s, 1}, {u"delay"_s, 500}});
    QCOMPARE(outcome.status, Status::ok);
    QCOMPARE(delays(outcome.document), QList<int>({10, 500, 12, 13}));
}

void DocumentCommandsTest::savedEventsReplaceOrFollow()
{
    const QVariantList recorded{macroEvent(1, 5, 7, 9), macroEvent(0, 6, 7, 9)};
    QCOMPARE(delays(saveEvents(sample(), 1, recorded, true).document), QList<int>({10, 11, 12, 13, 5, 6}));
    QCOMPARE(delays(saveEvents(sample(), 1, recorded, false).document), QList<int>({5, 6}));
    QCOMPARE(saveEvents(sample(), 2, recorded, false).status, Status::indexOutOfRange);
}

void DocumentCommandsTest::failuresChangeNothing_data()
{
    QTest::addColumn<Command>("command");
    QTest::addColumn<QVariantMap>("request");
    QTest::addColumn<int>("status");
    const int malformed = static_cast<int>(Status::malformedRequest);
    const int outOfRange = static_cast<int>(Status::indexOutOfRange);
    const QVariantMap settings{{u"BrightnessKBNormal"_s, 1}};
    const QVariantMap anEvent = macroEvent(1, 0, 7, 4);
    const auto row = [&](const char *name, Command command, const QVariantMap &request, int status) {
        QTest::newRow(name) << command << request << status;
    };
    row("5 nothing", Command::addProfile, {}, malformed);
    row("5 text", Command::addProfile, {{u"DeviceSettingsDictionary"_s, u"x"_s}}, malformed);
    row("5 name is a number", Command::addProfile,
        {{u"DeviceSettingsDictionary"_s, QVariantMap{{u"ProfileName"_s, 1}}}}, malformed);
    row("6 no row", Command::updateProfile, {{u"DeviceSettingsDictionary"_s, settings}}, malformed);
    row("6 no settings", Command::updateProfile, {{u"ProfileID"_s, 0}}, malformed);
    row("6 row 3", Command::updateProfile, {{u"ProfileID"_s, 3}, {u"DeviceSettingsDictionary"_s, settings}},
        outOfRange);
    row("6 row -1", Command::updateProfile, {{u"ProfileID"_s, -1}, {u"DeviceSettingsDictionary"_s, settings}},
        outOfRange);
    row("6 row beyond 32 bits", Command::updateProfile,
        {{u"ProfileID"_s, qlonglong(1) << 32}, {u"DeviceSettingsDictionary"_s, settings}}, malformed);
    row("6 row is text", Command::updateProfile, {{u"ProfileID"_s, u"0"_s}, {u"DeviceSettingsDictionary"_s, settings}},
        malformed);
    row("6 row is no whole number", Command::updateProfile,
        {{u"ProfileID"_s, 0.5}, {u"DeviceSettingsDictionary"_s, settings}}, malformed);
    row("6 keys are text", Command::updateProfile,
        {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, QVariantMap{{u"Keys"_s, u"x"_s}}}}, malformed);
    row("7 nothing", Command::replaceAllProfiles, {}, malformed);
    row("7 empty", Command::replaceAllProfiles, {{u"AllProfiles"_s, QVariantList()}}, malformed);
    row("7 a number among them", Command::replaceAllProfiles, {{u"AllProfiles"_s, QVariantList{profile(u"X"_s), 3}}},
        malformed);
    row("7 twenty-one", Command::replaceAllProfiles, {{u"AllProfiles"_s, QVariantList(21, profile(u"X"_s))}},
        static_cast<int>(Status::limitReached));
    row("9 nothing", Command::deleteProfile, {}, malformed);
    row("9 row 3", Command::deleteProfile, {{u"ProfileID"_s, 3}}, outOfRange);
    row("10 nothing", Command::switchProfile, {}, malformed);
    row("10 row -1", Command::switchProfile, {{u"ProfileID"_s, -1}}, outOfRange);
    row("22 nothing", Command::deleteMacro, {}, malformed);
    row("22 row 2", Command::deleteMacro, {{u"macroID"_s, 2}}, outOfRange);
    row("23 no event row", Command::removeEvent, {{u"macroID"_s, 1}}, malformed);
    row("23 event row 6", Command::removeEvent, {{u"macroID"_s, 1}, {u"macroEventTableIndex"_s, 6}}, outOfRange);
    row("23 macro without events", Command::removeEvent, {{u"macroID"_s, 0}, {u"macroEventTableIndex"_s, 0}},
        outOfRange);
    row("24 no record", Command::updateEvent, {{u"macroID"_s, 1}, {u"sequenceIdx"_s, 0}}, malformed);
    row("24 page is text", Command::updateEvent,
        {{u"macroID"_s, 1}, {u"sequenceIdx"_s, 0}, {u"sequence"_s, QVariantMap{{u"page"_s, u"7"_s}}}}, malformed);
    row("24 event row -1", Command::updateEvent, {{u"macroID"_s, 1}, {u"sequenceIdx"_s, -1}, {u"sequence"_s, anEvent}},
        outOfRange);
    row("24 macro 2", Command::updateEvent, {{u"macroID"_s, 2}, {u"sequenceIdx"_s, 0}, {u"sequence"_s, anEvent}},
        outOfRange);
    row("25 nothing", Command::renameMacro, {}, malformed);
    row("25 empty name", Command::renameMacro,
        {{u"MacroContents"_s, QVariantMap{{u"MacroName"_s, QString()}, {u"macroID"_s, 0}}}}, malformed);
    row("25 no row", Command::renameMacro, {{u"MacroContents"_s, QVariantMap{{u"MacroName"_s, u"x"_s}}}}, malformed);
    row("25 row 2", Command::renameMacro,
        {{u"MacroContents"_s, QVariantMap{{u"MacroName"_s, u"x"_s}, {u"macroID"_s, 2}}}}, outOfRange);
    row("27 nothing", Command::readMacroLines, {}, malformed);
    row("27 row 2", Command::readMacroLines, {{u"IndexOfMacroSequence"_s, 2}}, outOfRange);
    row("28 no event row", Command::readEvent, {{u"macroID"_s, 1}}, malformed);
    row("28 event row 6", Command::readEvent, {{u"macroID"_s, 1}, {u"sequenceIdx"_s, 6}}, outOfRange);
    row("32 nothing", Command::addMacro, {}, malformed);
    row("32 no name", Command::addMacro, {{u"MacroContents"_s, QVariantMap()}}, malformed);
    row("32 sequence is text", Command::addMacro,
        {{u"MacroContents"_s, QVariantMap{{u"MacroName"_s, u"x"_s}, {u"sequence"_s, u"x"_s}}}}, malformed);
    row("33 nothing", Command::removeAllEvents, {}, malformed);
    row("33 row 2", Command::removeAllEvents, {{u"macroID"_s, 2}}, outOfRange);
    row("34 no flag", Command::setAllDelays, {{u"macroID"_s, 1}, {u"delay"_s, 0}}, malformed);
    row("34 no row", Command::setAllDelays, {{u"macroID"_s, 1}, {u"HasNoDelay"_s, false}}, malformed);
    row("34 row 6", Command::setAllDelays, {{u"macroID"_s, 1}, {u"delay"_s, 6}, {u"HasNoDelay"_s, 0}}, outOfRange);
    row("37 no delay", Command::setDelay, {{u"macroID"_s, 1}, {u"sequenceIdx"_s, 1}}, malformed);
    row("37 negative delay", Command::setDelay, {{u"macroID"_s, 1}, {u"sequenceIdx"_s, 1}, {u"delay"_s, -1}},
        malformed);
    row("37 event row 6", Command::setDelay, {{u"macroID"_s, 1}, {u"sequenceIdx"_s, 6}, {u"delay"_s, 1}}, outOfRange);
}

void DocumentCommandsTest::failuresChangeNothing()
{
    QFETCH(Command, command);
    QFETCH(QVariantMap, request);
    const CommandOutcome outcome = apply(command, request);
    QTEST(static_cast<int>(outcome.status), "status");
    QVERIFY(!outcome.changesDocument);
    QCOMPARE(outcome.document, sample());
    QVERIFY(outcome.reply.isEmpty());
}

void DocumentCommandsTest::onlyFailedDeleteReturnsNoDocument()
{
    QMap<int, ReturnsDocument> returning;
    for (qint32 number = 0; number < DaemonProtocol::commandLimit; ++number) {
        const DocumentCommand *command = findDocumentCommand(number);
        if (command && command->returnsDocument != ReturnsDocument::never)
            returning.insert(number, command->returnsDocument);
    }
    QCOMPARE(returning, (QMap<int, ReturnsDocument>{{5, ReturnsDocument::always},
                                                    {6, ReturnsDocument::always},
                                                    {7, ReturnsDocument::always},
                                                    {9, ReturnsDocument::onSuccess},
                                                    {10, ReturnsDocument::always}}));
}

void DocumentCommandsTest::excludesCommandsOfTheDevice()
{
    for (const qint32 number : {0, 1, 2, 14, 18, 19, 20, 21, 29, 30, 38, -1, 255, 2'147'483'647})
        QVERIFY(!findDocumentCommand(number));
}

// Random requests: dictionaries with the protocol's keys and values of every kind, for every command, one after the
// other.
void DocumentCommandsTest::randomRequestsKeepTheDocumentValid()
{
    QRandomGenerator random(271);
    const QStringList keys{u"ProfileID"_s,
                           u"DeviceSettingsDictionary"_s,
                           u"AllProfiles"_s,
                           u"macroID"_s,
                           u"macroEventTableIndex"_s,
                           u"sequenceIdx"_s,
                           u"sequence"_s,
                           u"MacroContents"_s,
                           u"IndexOfMacroSequence"_s,
                           u"delay"_s,
                           u"HasNoDelay"_s,
                           u"MacroName"_s,
                           u"Events"_s,
                           u"ProfileName"_s,
                           u"Keys"_s,
                           u"command"_s,
                           u"page"_s,
                           u"argument"_s,
                           u"ProfileOSDOn"_s};
    const std::function<QVariant(int)> value = [&](int depth) -> QVariant {
        switch (random.bounded(depth > 3 ? 7 : 10)) {
        case 0: return random.bounded(-1, 4);
        case 1: return random.bounded(2) == 1;
        case 2: return random.generateDouble() * 5;
        case 3: return qlonglong(random.generate64());
        case 4: return QByteArray("data");
        case 5: return u"text"_s;
        case 6: return random.bounded(10);
        case 7: {
            QVariantList list;
            for (int count = random.bounded(4); count > 0; --count)
                list += value(depth + 1);
            return list;
        }
        default: {
            QVariantMap map;
            for (int count = random.bounded(6); count > 0; --count)
                map.insert(keys.at(random.bounded(int(keys.size()))), value(depth + 1));
            return map;
        }
        }
    };
    // Three times in four the value has the kind that belongs to the key, because random values rarely succeed.
    const auto valueOf = [&](const QString &key) -> QVariant {
        const QVariantMap named{
            {u"MacroName"_s, u"M"_s}, {u"macroID"_s, random.bounded(-1, 4)}, {u"ProfileName"_s, u"P"_s}};
        if (random.bounded(4) == 0)
            return value(0);
        if (key == "DeviceSettingsDictionary"_L1 || key == "MacroContents"_L1)
            return random.bounded(3) == 0 ? value(0) : named;
        if (key == "AllProfiles"_L1)
            return QVariantList(random.bounded(1, 4), profile(u"X"_s));
        return key == "sequence"_L1 ? QVariant(macroEvent(random.bounded(3), 5, random.bounded(6, 11), 4))
                                    : QVariant(random.bounded(-1, 5));
    };
    QVariantMap document = sample();
    int changes = 0;
    for (int round = 0; round < 30'000; ++round) {
        const DocumentCommand *command = findDocumentCommand(random.bounded(DaemonProtocol::commandLimit));
        if (!command)
            continue;
        QVariantMap request;
        for (int index = 0; index < 11; ++index) { // the request keys of the list
            if (random.bounded(10) != 0)
                request.insert(keys.at(index), valueOf(keys.at(index)));
        }
        const CommandOutcome outcome = command->apply(document, request);
        const QString problem = reasonOf(SettingsDocument::validate(outcome.document));
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
        if (outcome.status != Status::ok)
            QCOMPARE(outcome.document, document);
        changes += outcome.changesDocument && outcome.document != document;
        document = round % 100 == 0 ? sample() : outcome.document;
    }
    QVERIFY2(changes > 1000, qPrintable(u"only %1 requests changed anything"_s.arg(changes)));
}

QTEST_APPLESS_MAIN(DocumentCommandsTest)
#include "documentcommandstest.moc"
