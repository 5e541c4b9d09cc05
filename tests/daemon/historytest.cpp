// SPDX-License-Identifier: MIT
// The history of the settings, through the daemon's own commands: its entries, the way back and forth, and the file
// with all that can befall it.
#include "daemon/settings/history.h"
#include "base/document.h"
#include "base/historykeys.h"
#include "base/propertylist.h"
#include "base/qlcoreutility.h"
#include "daemon/settings/contentdigest.h"
#include "tests/daemon/devicedaemonfixture.h"
#include "tests/support/filesizelimit.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSignalSpy>

#include <sys/stat.h>

using namespace DaemonTestDocuments;
using namespace Qt::StringLiterals;
using Refusal = History::Refusal;

namespace {
constexpr qint64 dayMs = 24 * 60 * 60 * 1000;
}

class HistoryTest : public DeviceDaemonFixture
{
    Q_OBJECT

private Q_SLOTS:
    void keepsAnEntryForEachStoredChange();
    void describesChanges_data();
    void describesChanges();
    void showsBothStates_data();
    void showsBothStates();
    void showsEveryKeyOfAnEntry();
    void showsTheWholeStateOfAKeyThatChangedInPart();
    void showsWhatItShowedAfterLaterChanges();
    void showsAnUndoTheOtherWayRound();
    void showsNoKeyWhoseMacroOnlyMoved();
    void showsABoundedNumberOfParts();
    void keepsNoEntryWithoutAChange();
    void namesTheAuthor_data();
    void namesTheAuthor();
    void keyboardIsTheAuthorOfItsOwnKeys();
    void undoLeadsBackAndRedoForth();
    void undoStepsOverWhatIsUndone();
    void newChangeEndsRedo();
    void takesOnlyTheNextEntry();
    void everybodyLearnsOfAnUndo();
    void automaticSwitchHasNoEntry();
    void undoKeepsTheAutomaticSwitch();
    void undoOfASwitchByHandSwitches();
    void undoMovesTheActiveProfileWithItsRecord();
    void takesBackAnEarlierChangeAlone();
    void followsTheProfileThatHasMoved();
    void restoresTheWholeDocumentWhereARecordWasTouched();
    void restoresAnUndoneChange();
    void refusesToTakeBackTwice();
    void refusesToRestoreSomethingElseThanWasShown();
    void macroComesBackWithItsNumber();
    void joinsTheStepsOfASlider();
    void joinsNothingElse_data();
    void joinsNothingElse();
    void joinsNothingWithoutATimeForIt();
    void sliderThatReturnsLeavesNoEntry();
    void repairOfKeysBelongsToTheDeletion();
    void joinedChangesAreTakenBackInOneGo();
    void joinedChangesThatCancelOutLeaveNoEntry();
    void joinsOnlyChangesOfTheCaller_data();
    void joinsOnlyChangesOfTheCaller();
    void joinsNoEntryThatIsTooLarge();
    void isThereAfterARestart();
    void tornFileCostsOnlyTheTornEntries();
    void damagedByteCostsOnlyHistory();
    void keepsNewEntriesAfterOneThatCannotBeRead();
    void keepsTheEntriesBehindAnUnknownOne();
    void entriesOfAnUnfinishedWriteStayLost();
    void missingFileCostsOnlyHistory();
    void findsAChangeThatItHasMissed();
    void findsAnUndoThatItHasMissed();
    void crossesNoGap();
    void refusedWriteChangesNothing();
    void forgetsAfterNinetyDays();
    void forgetsOldEntriesWithFewWrites();
    void forgetsWithoutChanges();
    void survivesAClockThatJumpsAhead_data();
    void survivesAClockThatJumpsAhead();
    void entryFromTheFutureKeepsNoOlderOnes();
    void clockWithoutADateForgetsNothing();
    void staysWithinItsSize();
    void isPrivate();
    void saysWhyADocumentWasNotRestored();
    void restoresAllThatItHasStored();
    void givesTheDocumentWithTheChosenProfile();
    void clearForgetsAll();
    void clearLeavesNoFileWithADeletedMacro();
    void clearKeepsTheSettingsThatOnlyACopyHas();
    void startRemovesWhatAKilledDaemonHasLeft();

private:
    [[nodiscard]] QList<QVariantMap> entries() const { return mDaemon->history().entries(); }
    [[nodiscard]] QStringList kinds() const { return values(HistoryKeys::kind); }
    [[nodiscard]] QStringList values(HistoryKeys::Key key) const
    {
        QStringList list;
        for (const QVariantMap &entry : entries())
            list += entry.value(key).toString();
        return list;
    }
    [[nodiscard]] quint32 idAt(qsizetype index) const { return entries().value(index).value(HistoryKeys::id).toUInt(); }
    [[nodiscard]] quint32 lastId() const { return mDaemon->history().lastId(); }
    [[nodiscard]] quint32 nextUndo() const { return nextOf(HistoryKeys::nextUndo); }
    [[nodiscard]] quint32 nextRedo() const { return nextOf(HistoryKeys::nextRedo); }
    [[nodiscard]] quint32 nextOf(HistoryKeys::Key call) const
    {
        for (const QVariantMap &entry : mDaemon->history().nextEntries()) {
            if (entry.value(HistoryKeys::next).toString() == call)
                return entry.value(HistoryKeys::id).toUInt();
        }
        return 0;
    }
    [[nodiscard]] bool undo() { return bool(mDaemon->historyCommands().undo(nextUndo(), u"client"_s)); }
    [[nodiscard]] bool redo() { return bool(mDaemon->historyCommands().redo(nextRedo(), u"client"_s)); }
    [[nodiscard]] History::Found<History::Target> restore(quint32 id, quint32 newest = 0)
    {
        return mDaemon->historyCommands().restore(id, newest, u"client"_s);
    }
    [[nodiscard]] History::Found<ChangeParts> partsOf(quint32 id) const
    {
        return mDaemon->historyCommands().partsOf(id);
    }
    void updateProfile(int row, const QVariantMap &settings, const QVariantMap &more = {})
    {
        QVariantMap request{{u"ProfileID"_s, row}, {u"DeviceSettingsDictionary"_s, settings}};
        request.insert(more);
        QCOMPARE(statusOf(Command::updateProfile, request), 0);
    }
    void setBrightness(int level, const QString &source = u"S"_s)
    {
        updateProfile(0, {{u"BrightnessKBNormal"_s, level}}, {{u"Source App"_s, source}});
    }
    void addProfile(const QString &name)
    {
        QCOMPARE(statusOf(Command::addProfile, {{u"DeviceSettingsDictionary"_s, profile(name)}}), 0);
    }
    void addMacro(const QString &name)
    {
        QCOMPARE(statusOf(Command::addMacro, {{u"MacroContents"_s, macro(name, 4)}}), 0);
    }
    void disableKey(int row, const QString &key)
    {
        QVariantMap keys = Document(mDaemon->document()).profile(row).value(u"Keys"_s).toMap();
        keys.insert(key, keyEntry(20, 0));
        updateProfile(row, {{u"Keys"_s, keys}});
    }
    [[nodiscard]] QString path() const { return mTemporary->filePath(u"history"_s); }
    [[nodiscard]] QByteArray file() const
    {
        QFile history(path());
        return history.open(QIODevice::ReadOnly) ? history.readAll() : QByteArray();
    }
    void setFile(const QByteArray &bytes) const
    {
        QFile history(path());
        QVERIFY(history.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(history.write(bytes), bytes.size());
    }
    /// Opens the history of a folder of its own at the time of `mTimeMs`.
    void openAged()
    {
        mAged.reset();
        QVERIFY(QDir(mTemporary->path()).mkpath(u"aged"_s));
        mAged.emplace(filePath(u"aged"_s));
        mAged->setClock([this] { return mTimeMs; });
        mAged->open(mAgedDocument, [] { return QList<QByteArray>(); });
    }
    void setDay(int day) { mTimeMs = day * dayMs; }
    /// A change in that history.
    void addAged(const QString &name)
    {
        const QVariantMap before = mAgedDocument;
        mAgedDocument = SettingsDocument::withProfiles(before, Document(before).profiles() << profile(name));
        const QByteArray bytes = QlCoreUtility::convertDictionaryToData(mAgedDocument).value_or(QByteArray());
        mAged->record(before, {{.document = mAgedDocument, .cause = {.author = u"client"_s}}}, contentDigest(bytes));
    }
    [[nodiscard]] QStringList agedNames() const
    {
        QStringList names;
        for (const QVariantMap &entry : mAged->entries())
            names += entry.value(HistoryKeys::profile).toString();
        return names;
    }
    void restart() { start(SettingsDocument::completed(storedDocument())); }
    [[nodiscard]] QString filePath(const QString &name) const { return mTemporary->filePath(name); }
    [[nodiscard]] QByteArray contentOf(const QString &name) const
    {
        return PropertyList::readFileBytes(filePath(name)).valueOr({});
    }
    /// The files of the folder with these bytes.
    [[nodiscard]] QStringList filesWith(const QByteArray &bytes) const
    {
        QStringList names = QDir(mTemporary->path()).entryList(QDir::Files | QDir::Hidden);
        names.removeIf([&](const QString &name) { return !contentOf(name).contains(bytes); });
        return names;
    }
    [[nodiscard]] int brightness(int row) const
    {
        return Document(mDaemon->document()).profile(row).value(u"BrightnessKBNormal"_s).toInt();
    }
    [[nodiscard]] QStringList profileNames() const
    {
        QStringList names;
        for (const QVariant &record : Document(mDaemon->document()).profiles())
            names += record.toMap().value(u"ProfileName"_s).toString();
        return names;
    }

    std::optional<History> mAged;
    QVariantMap mAgedDocument = startDocument();
    qint64 mTimeMs = 0;
};

void HistoryTest::keepsAnEntryForEachStoredChange()
{
    addProfile(u"Game"_s);
    disableKey(1, u"5"_s);
    QCOMPARE(statusOf(Command::switchProfile, {{u"ProfileID"_s, 0}}), 0);
    QCOMPARE(kinds(), QStringList({u"profile added"_s, u"key"_s, u"profile chosen"_s}));
    QCOMPARE(values(HistoryKeys::profile), QStringList({u"Game"_s, u"B"_s, u"A"_s}));
    QCOMPARE(entries().at(1).value(HistoryKeys::key).toInt(), 5);
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    QVERIFY(std::abs(entries().at(0).value(HistoryKeys::time).toLongLong() - now) < 600'000);
}

void HistoryTest::describesChanges_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<QVariantMap>("request");
    QTest::addColumn<QVariantMap>("expected");
    const auto row = [](const char *name, Command command, const QVariantMap &request, QVariantMap expected,
                        const QString &kind) {
        expected.insert(u"Kind"_s, kind);
        QTest::newRow(name) << static_cast<int>(command) << request << expected;
    };
    const auto update = [&](const char *name, const QVariantMap &settings, QVariantMap expected, const QString &kind) {
        row(name, Command::updateProfile, {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, settings}}, expected,
            kind);
    };
    const QVariantMap ofA{{u"Profile"_s, u"A"_s}};
    const auto with = [](QVariantMap map, const QString &key, const QVariant &value) {
        map.insert(key, value);
        return map;
    };
    update("rename", {{u"ProfileName"_s, u"Z"_s}}, with(ofA, u"Name"_s, u"Z"_s), u"profile renamed"_s);
    update("brightness", {{u"BrightnessKBNormal"_s, 2}}, with(ofA, u"Value"_s, 2), u"brightness"_s);
    update("light", {{u"BacklightLED"_s, 1}}, with(ofA, u"On"_s, true), u"light"_s);
    update("effect", {{u"LEDKBEffects"_s, 4}}, with(ofA, u"Value"_s, 4), u"effect"_s);
    const QVariantMap red{{u"Red"_s, 1.0}, {u"Green"_s, 0.0}, {u"Blue"_s, 0.0}};
    update("colour", {{u"LEDKBColors"_s, QVariantList{red}}}, with(ofA, u"Color"_s, u"#ff0000"_s), u"color"_s);
    update("display", {{u"ProfileOSDOn"_s, 1}}, with(ofA, u"On"_s, true), u"profile display"_s);
    update("binding", {{u"AutoSwitchOn"_s, 1}, {u"AppInfo"_s, QVariantMap{{u"application"_s, u"gimp"_s}}}},
           with(ofA, u"Application"_s, u"gimp"_s), u"profile bound"_s);
    update("several keys",
           {{u"Keys"_s, QVariantMap{{u"4"_s, keyEntry(20, 0)}, {u"5"_s, keyEntry(20, 0)}, {u"6"_s, keyEntry(20, 0)}}}},
           ofA, u"keys"_s);
    update("two settings", {{u"BrightnessKBNormal"_s, 2}, {u"BacklightLED"_s, 1}}, ofA, u"profile changed"_s);
    row("profile deleted", Command::deleteProfile, {{u"ProfileID"_s, 1}}, {{u"Profile"_s, u"B"_s}},
        u"profile deleted"_s);
    const QVariantMap first{{u"Macro"_s, u"One"_s}};
    row("macro deleted", Command::deleteMacro, {{u"macroID"_s, 0}}, first, u"macro deleted"_s);
    row("macro added", Command::addMacro, {{u"MacroContents"_s, macro(u"Combo"_s, 4)}}, {{u"Macro"_s, u"Combo"_s}},
        u"macro added"_s);
    row("macro renamed", Command::renameMacro,
        {{u"MacroContents"_s, QVariantMap{{u"MacroName"_s, u"Three"_s}, {u"macroID"_s, 0}}}},
        with(first, u"Name"_s, u"Three"_s), u"macro renamed"_s);
    row("delays", Command::setAllDelays, {{u"macroID"_s, 0}, {u"HasNoDelay"_s, true}}, with(first, u"Count"_s, 2),
        u"delays set"_s);
    row("event removed", Command::removeEvent, {{u"macroID"_s, 0}, {u"macroEventTableIndex"_s, 0}},
        with(first, u"Count"_s, 1), u"events removed"_s);
    row("event changed", Command::updateEvent,
        {{u"macroID"_s, 0},
         {u"sequenceIdx"_s, 0},
         {u"sequence"_s, QVariantMap{{u"command"_s, 1}, {u"delay"_s, 10}, {u"page"_s, 7}, {u"argument"_s, 9}}}},
        with(first, u"Count"_s, 1), u"events changed"_s);
}

void HistoryTest::describesChanges()
{
    QFETCH(int, command);
    QFETCH(QVariantMap, request);
    QFETCH(QVariantMap, expected);
    QVariantMap document = startDocument();
    document.insert(u"Macros"_s, QVariantList{macro(u"One"_s, 4), macro(u"Two"_s, 5)});
    start(SettingsDocument::completed(document));
    QCOMPARE(statusOf(static_cast<Command>(command), request), 0);
    const QVariantMap entry = entries().value(entries().size() - 1);
    for (auto value = expected.cbegin(); value != expected.cend(); ++value)
        QCOMPARE(entry.value(value.key()), value.value());
}

void HistoryTest::showsBothStates_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<QVariantMap>("request");
    QTest::addColumn<QList<QVariantMap>>("expected");
    struct States
    {
        QString kind;
        QVariantMap thing, before, after;
        QVariantMap map() const
        {
            QVariantMap part = thing;
            part.insert(u"Kind"_s, kind);
            if (!before.isEmpty())
                part.insert(u"Before"_s, before);
            if (!after.isEmpty())
                part.insert(u"After"_s, after);
            return part;
        }
    };
    const auto row = [](const char *name, Command command, const QVariantMap &request, const QList<States> &expected) {
        QList<QVariantMap> parts;
        for (const States &states : expected)
            parts += states.map();
        QTest::newRow(name) << static_cast<int>(command) << request << parts;
    };
    const auto update = [&](const char *name, const QVariantMap &settings, const QList<States> &expected) {
        row(name, Command::updateProfile, {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, settings}}, expected);
    };
    const auto one = [](const QString &key, const QVariant &value) { return QVariantMap{{key, value}}; };
    const QVariantMap ofA = one(u"Profile"_s, u"A"_s);
    const QVariantMap ofOne = one(u"Macro"_s, u"One"_s);
    const auto event = [](int command, int delay, uint key) {
        return QVariantMap{
            {u"Event"_s,
             QVariantMap{{u"command"_s, command}, {u"delay"_s, delay}, {u"page"_s, 7}, {u"argument"_s, key}}}};
    };
    const auto ofEvent = [](int index) { return QVariantMap{{u"Macro"_s, u"One"_s}, {u"Index"_s, index}}; };
    update("rename", {{u"ProfileName"_s, u"Z"_s}},
           {{u"profile renamed"_s, one(u"Profile"_s, u"Z"_s), one(u"Name"_s, u"A"_s), one(u"Name"_s, u"Z"_s)}});
    update("brightness", {{u"BrightnessKBNormal"_s, 2}},
           {{u"brightness"_s, ofA, one(u"Value"_s, 3), one(u"Value"_s, 2)}});
    update("two settings", {{u"BrightnessKBNormal"_s, 2}, {u"BacklightLED"_s, 1}},
           {{u"light"_s, ofA, one(u"On"_s, false), one(u"On"_s, true)},
            {u"brightness"_s, ofA, one(u"Value"_s, 3), one(u"Value"_s, 2)}});
    update("effect", {{u"LEDKBEffects"_s, 4}}, {{u"effect"_s, ofA, one(u"Value"_s, 0), one(u"Value"_s, 4)}});
    const QVariantMap red{{u"Red"_s, 1.0}, {u"Green"_s, 0.0}, {u"Blue"_s, 0.0}};
    update("colour", {{u"LEDKBColors"_s, QVariantList{red}}},
           {{u"color"_s, ofA, one(u"Color"_s, u"#ffffff"_s), one(u"Color"_s, u"#ff0000"_s)}});
    update("display", {{u"ProfileOSDOn"_s, 1}}, {{u"profile display"_s, ofA, one(u"On"_s, false), one(u"On"_s, true)}});
    update("binding", {{u"AutoSwitchOn"_s, 1}, {u"AppInfo"_s, QVariantMap{{u"application"_s, u"gimp"_s}}}},
           {{u"profile bound"_s, ofA, one(u"Application"_s, QString()), one(u"Application"_s, u"gimp"_s)}});
    update("unknown setting", {{u"Other"_s, 1}}, {{u"profile changed"_s, ofA, {}, {}}});
    row("profile deleted", Command::deleteProfile, {{u"ProfileID"_s, 1}},
        {{u"profile deleted"_s, one(u"Profile"_s, u"B"_s), one(u"Name"_s, u"B"_s), {}}});
    row("profile chosen", Command::switchProfile, {{u"ProfileID"_s, 1}},
        {{u"profile chosen"_s, {}, ofA, one(u"Profile"_s, u"B"_s)}});
    row("macro deleted", Command::deleteMacro, {{u"macroID"_s, 0}},
        {{u"macro deleted"_s, ofOne, one(u"Name"_s, u"One"_s), {}}});
    row("macro added", Command::addMacro, {{u"MacroContents"_s, macro(u"Combo"_s, 4)}},
        {{u"macro added"_s, one(u"Macro"_s, u"Combo"_s), {}, one(u"Name"_s, u"Combo"_s)}});
    row("macro renamed", Command::renameMacro,
        {{u"MacroContents"_s, QVariantMap{{u"MacroName"_s, u"Three"_s}, {u"macroID"_s, 0}}}},
        {{u"macro renamed"_s, one(u"Macro"_s, u"Three"_s), one(u"Name"_s, u"One"_s), one(u"Name"_s, u"Three"_s)}});
    row("event removed", Command::removeEvent, {{u"macroID"_s, 0}, {u"macroEventTableIndex"_s, 0}},
        {{u"events"_s, ofOne, one(u"Count"_s, 2), one(u"Count"_s, 1)}, {u"event"_s, ofEvent(1), event(1, 10, 4), {}}});
    row("delay", Command::setDelay, {{u"macroID"_s, 0}, {u"sequenceIdx"_s, 1}, {u"delay"_s, 70}},
        {{u"event"_s, ofEvent(2), event(0, 10, 4), event(0, 70, 4)}});
}

void HistoryTest::showsBothStates()
{
    QFETCH(int, command);
    QFETCH(QVariantMap, request);
    QFETCH(QList<QVariantMap>, expected);
    QVariantMap document = startDocument();
    document.insert(u"Macros"_s, QVariantList{macro(u"One"_s, 4), macro(u"Two"_s, 5)});
    start(SettingsDocument::completed(document));
    QCOMPARE(statusOf(static_cast<Command>(command), request), 0);
    const auto parts = partsOf(lastId());
    QVERIFY(parts);
    QCOMPARE(parts->list, expected);
    QCOMPARE(parts->count, expected.size());
}

void HistoryTest::showsEveryKeyOfAnEntry()
{
    updateProfile(1, {{u"Keys"_s, QVariantMap{{u"4"_s, keyEntry(16, 9)}, {u"30"_s, keyEntry(20, 0)}}}});
    updateProfile(1, {{u"Keys"_s, QVariantMap{{u"4"_s, keyEntry(17, 0)}, {u"31"_s, keyEntry(20, 0)}}}});
    const auto parts = partsOf(lastId());
    QVERIFY(parts);
    const QVariantMap disabled{{u"Assignment"_s, keyEntry(20, 0)}};
    const QVariantMap nothing{{u"Assignment"_s, QVariantMap()}};
    const auto part = [](int code, const QVariantMap &before, const QVariantMap &after) {
        return QVariantMap{{u"Kind"_s, u"key"_s},
                           {u"Profile"_s, u"B"_s},
                           {u"Key"_s, code},
                           {u"Before"_s, before},
                           {u"After"_s, after}};
    };
    QCOMPARE(parts->list, QList<QVariantMap>({part(4, {{u"Assignment"_s, keyEntry(16, 9)}},
                                                   {{u"Assignment"_s, keyEntry(17, 0)}, {u"Name"_s, u"A"_s}}),
                                              part(30, disabled, nothing), part(31, nothing, disabled)}));
}

void HistoryTest::showsTheWholeStateOfAKeyThatChangedInPart()
{
    updateProfile(0, {{u"Keys"_s, QVariantMap{{u"4"_s, keyEntry(16, 9)}}}});
    updateProfile(0, {{u"Keys"_s, QVariantMap{{u"4"_s, keyEntry(16, 8)}}}});
    const auto parts = partsOf(lastId());
    QVERIFY(parts);
    const QVariantMap part = parts->list.value(0);
    QCOMPARE(part.value(u"Before"_s).toMap().value(u"Assignment"_s).toMap(), keyEntry(16, 9));
    QCOMPARE(part.value(u"After"_s).toMap().value(u"Assignment"_s).toMap(), keyEntry(16, 8));
}

void HistoryTest::showsWhatItShowedAfterLaterChanges()
{
    disableKey(0, u"5"_s);
    const quint32 id = lastId();
    const QList<QVariantMap> parts = partsOf(id).valueOr({}).list;
    QCOMPARE(parts.size(), 1);
    updateProfile(0, {{u"Keys"_s, QVariantMap()}});
    QCOMPARE(statusOf(Command::deleteProfile, {{u"ProfileID"_s, 0}}), 0);
    QVERIFY(undo());
    addMacro(u"Combo"_s);
    QVERIFY(restore(id));
    QCOMPARE(partsOf(id).valueOr({}).list, parts);
    restart();
    QCOMPARE(partsOf(id).valueOr({}).list, parts);
}

void HistoryTest::showsAnUndoTheOtherWayRound()
{
    setBrightness(2);
    const quint32 id = lastId();
    const auto states = [this](quint32 of) {
        const QVariantMap part = partsOf(of).valueOr({}).list.value(0);
        return QList<int>{part.value(u"Before"_s).toMap().value(u"Value"_s).toInt(),
                          part.value(u"After"_s).toMap().value(u"Value"_s).toInt()};
    };
    QVERIFY(undo());
    QCOMPARE(states(id), QList<int>({3, 2}));
    QCOMPARE(states(lastId()), QList<int>({2, 3}));
    QVERIFY(redo());
    QCOMPARE(states(lastId()), QList<int>({3, 2}));
}

void HistoryTest::showsNoKeyWhoseMacroOnlyMoved()
{
    for (const QString &name : {u"One"_s, u"Two"_s, u"Three"_s})
        addMacro(name);
    updateProfile(0, {{u"Keys"_s, QVariantMap{{u"4"_s, keyEntry(10, 3)}, {u"5"_s, keyEntry(10, 2)}}}});
    QCOMPARE(statusOf(Command::deleteMacro, {{u"macroID"_s, 2}}), 0);
    QVariantList profiles = Document(mDaemon->document()).profiles();
    QVariantMap first = profiles.first().toMap();
    first.insert(u"Keys"_s, QVariantMap{{u"4"_s, keyEntry(10, 2)}});
    profiles.replace(0, first);
    QCOMPARE(statusOf(Command::replaceAllProfiles, {{u"AllProfiles"_s, profiles}}), 0);
    QCOMPARE(kinds().last(), u"macro deleted"_s);
    const QList<QVariantMap> parts = partsOf(lastId()).valueOr({}).list;
    QCOMPARE(parts.size(), 2);
    QCOMPARE(parts.at(0).value(u"Key"_s).toInt(), 5);
    QCOMPARE(parts.at(0).value(u"Before"_s).toMap().value(u"Name"_s).toString(), u"One"_s);
    QCOMPARE(parts.at(1).value(u"Kind"_s).toString(), u"macro deleted"_s);
}

void HistoryTest::showsABoundedNumberOfParts()
{
    addMacro(QString(5000, u'M'));
    QVariantList events;
    for (int count = 0; count < 300; ++count)
        events += QVariantMap{{u"command"_s, 1}, {u"delay"_s, count}, {u"page"_s, 7}, {u"argument"_s, 4}};
    QVariantMap contents = Document(mDaemon->document()).macro(2);
    contents.insert(u"sequence"_s, QVariantMap{{u"Events"_s, events}});
    QVariantMap document = storedDocument();
    QVariantList macros = Document(document).macros();
    macros.replace(2, contents);
    document.insert(u"Macros"_s, macros);
    const auto data = PropertyList::writeBinary(document);
    QVERIFY(data && mDaemon->historyCommands().restoreDocument(*data, u"file"_s, u"client"_s));
    const auto parts = partsOf(lastId());
    QVERIFY(parts);
    QCOMPARE(parts->count, 301); // the events and their number
    QCOMPARE(parts->list.size(), 200);
    for (const QVariantMap &part : parts->list)
        QCOMPARE(part.value(u"Macro"_s).toString().size(), 100);
}

void HistoryTest::keepsNoEntryWithoutAChange()
{
    updateProfile(0, {{u"ProfileName"_s, u"A"_s}});
    QCOMPARE(statusOf(Command::deleteProfile, {{u"ProfileID"_s, 9}}), 3);
    QCOMPARE(kinds(), QStringList());
}

void HistoryTest::namesTheAuthor_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("author");
    QTest::newRow("configurator") << u"org.quillkestra.Configurator"_s << u"configurator"_s;
    QTest::newRow("kestractl") << u"org.quillkestra.kestractl"_s << u"kestractl"_s;
    QTest::newRow("other") << u"org.example.Other"_s << u"client"_s;
}

void HistoryTest::namesTheAuthor()
{
    QFETCH(QString, source);
    QFETCH(QString, author);
    setBrightness(2, source);
    QCOMPARE(values(HistoryKeys::author), QStringList{author});
}

void HistoryTest::keyboardIsTheAuthorOfItsOwnKeys()
{
    QVERIFY(mKeyboard->pressGameMode());
    press(58); // F1 switches to B
    release(58);
    QCOMPARE(kinds(), QStringList({u"game mode"_s, u"profile chosen"_s}));
    QCOMPARE(values(HistoryKeys::author), QStringList({u"keyboard"_s, u"keyboard"_s}));
}

void HistoryTest::undoLeadsBackAndRedoForth()
{
    QList<QVariantMap> documents{mDaemon->document()};
    addProfile(u"Game"_s);
    documents += mDaemon->document();
    disableKey(2, u"5"_s);
    documents += mDaemon->document();
    QCOMPARE(statusOf(Command::deleteProfile, {{u"ProfileID"_s, 0}}), 0);
    documents += mDaemon->document();
    for (qsizetype index = documents.size() - 2; index >= 0; --index) {
        QVERIFY(undo());
        QCOMPARE(mDaemon->document(), documents.at(index));
        QCOMPARE(storedDocument(), documents.at(index));
    }
    QVERIFY(!undo());
    for (qsizetype index = 1; index < documents.size(); ++index) {
        QVERIFY(redo());
        QCOMPARE(mDaemon->document(), documents.at(index));
        QCOMPARE(storedDocument(), documents.at(index));
    }
    QVERIFY(!redo());
}

void HistoryTest::undoStepsOverWhatIsUndone()
{
    addProfile(u"One"_s);
    addProfile(u"Two"_s);
    QVERIFY(undo());
    addProfile(u"Three"_s);
    QVERIFY(undo());
    QVERIFY(undo()); // "One": "Two" is undone already
    QCOMPARE(profileNames(), QStringList({u"A"_s, u"B"_s}));
    QCOMPARE(kinds(), QStringList({u"profile added"_s, u"profile added"_s, u"undo"_s, u"profile added"_s, u"undo"_s,
                                   u"undo"_s}));
    QCOMPARE(entries().last().value(HistoryKeys::target).toUInt(), idAt(0));
    QCOMPARE(entries().last().value(HistoryKeys::change).toMap().value(HistoryKeys::profile).toString(), u"One"_s);
}

void HistoryTest::newChangeEndsRedo()
{
    addProfile(u"One"_s);
    QVERIFY(undo());
    const quint32 undone = nextRedo();
    QCOMPARE(undone, idAt(0));
    addProfile(u"Two"_s);
    QCOMPARE(nextRedo(), 0u);
    QCOMPARE(mDaemon->historyCommands().redo(undone, u"client"_s).error(), Refusal::outdated);
    QCOMPARE(values(HistoryKeys::state), QStringList({u"undone"_s, u"done"_s, u"done"_s}));
    QCOMPARE(profileNames(), QStringList({u"A"_s, u"B"_s, u"Two"_s}));
}

void HistoryTest::takesOnlyTheNextEntry()
{
    addProfile(u"One"_s);
    const quint32 seen = nextUndo();
    addProfile(u"Two"_s);
    const QVariantMap document = mDaemon->document();
    QCOMPARE(mDaemon->historyCommands().undo(seen, u"client"_s).error(), Refusal::outdated);
    QCOMPARE(mDaemon->historyCommands().undo(4711, u"client"_s).error(), Refusal::unknown);
    QCOMPARE(mDaemon->document(), document);
    QVERIFY(undo());
    const quint32 undone = nextRedo();
    QVERIFY(undo());
    QCOMPARE(mDaemon->historyCommands().redo(undone, u"client"_s).error(), Refusal::outdated);
}

void HistoryTest::everybodyLearnsOfAnUndo()
{
    QSignalSpy changed(&mDaemon->history(), &History::changed);
    setBrightness(2);
    QCOMPARE(changed.size(), 1);
    takeNotificationNames();
    QVERIFY(undo());
    QCOMPARE(changed.size(), 2);
    QCOMPARE(notification(u"Profile Updated 271"_s), (QVariantMap{{u"Source App"_s, u"QuillKestraDaemon"_s}}));
    press(4); // the keys also follow
    release(4);
    QCOMPARE(mSent, QStringList({u"+4"_s, u"-4"_s}));
}

void HistoryTest::automaticSwitchHasNoEntry()
{
    updateProfile(1, {{u"AutoSwitchOn"_s, 1}, {u"AppInfo"_s, QVariantMap{{u"application"_s, u"gimp"_s}}}});
    mDaemon->setFrontApplication(FrontApplication{.windowClass = u"gimp"_s});
    QCOMPARE(Document(mDaemon->document()).activeProfileIndex(), 1);
    QCOMPARE(kinds(), QStringList{u"profile bound"_s});
}

void HistoryTest::undoKeepsTheAutomaticSwitch()
{
    updateProfile(1, {{u"AutoSwitchOn"_s, 1}, {u"AppInfo"_s, QVariantMap{{u"application"_s, u"gimp"_s}}}});
    mDaemon->setFrontApplication(FrontApplication{.windowClass = u"gimp"_s});
    setBrightness(2);
    QVERIFY(undo());
    QCOMPARE(Document(mDaemon->document()).activeProfileIndex(), 1); // the application is still in front
    QCOMPARE(Document(storedDocument()).activeProfileIndex(), 0);
    QVERIFY(undo()); // the binding itself
    QCOMPARE(Document(mDaemon->document()).activeProfileIndex(), 0);
    QVERIFY(redo());
    QCOMPARE(Document(mDaemon->document()).activeProfileIndex(), 1);
}

void HistoryTest::undoOfASwitchByHandSwitches()
{
    QCOMPARE(statusOf(Command::switchProfile, {{u"ProfileID"_s, 1}}), 0);
    setBrightness(2);
    QVERIFY(undo());
    QCOMPARE(Document(mDaemon->document()).activeProfileIndex(), 1);
    QVERIFY(undo());
    QCOMPARE(Document(mDaemon->document()).activeProfileIndex(), 0);
}

void HistoryTest::undoMovesTheActiveProfileWithItsRecord()
{
    QCOMPARE(statusOf(Command::switchProfile, {{u"ProfileID"_s, 1}}), 0);
    QCOMPARE(statusOf(Command::deleteProfile, {{u"ProfileID"_s, 0}}), 0);
    QCOMPARE(Document(mDaemon->document()).activeProfileIndex(), 0);
    QVERIFY(undo());
    QCOMPARE(profileNames(), QStringList({u"A"_s, u"B"_s}));
    QCOMPARE(Document(mDaemon->document()).activeProfileIndex(), 1);
}

void HistoryTest::takesBackAnEarlierChangeAlone()
{
    setBrightness(2);
    addMacro(u"Combo"_s);
    updateProfile(1, {{u"BrightnessKBNormal"_s, 4}});
    const auto restored = restore(idAt(0));
    QVERIFY(restored);
    QVERIFY(restored->isAlone);
    QCOMPARE(restored->others, QList<quint32>());
    QCOMPARE(brightness(0), 3);
    QCOMPARE(brightness(1), 4);
    QCOMPARE(Document(mDaemon->document()).macros().size(), 3);
    QVERIFY(undo()); // of the restoration
    QCOMPARE(brightness(0), 2);
}

void HistoryTest::followsTheProfileThatHasMoved()
{
    updateProfile(1, {{u"BrightnessKBNormal"_s, 4}});
    QCOMPARE(statusOf(Command::deleteProfile, {{u"ProfileID"_s, 0}}), 0);
    const auto restored = restore(idAt(0));
    QVERIFY(restored);
    QVERIFY(restored->isAlone);
    QCOMPARE(profileNames(), QStringList{u"B"_s});
    QCOMPARE(brightness(0), 3);
}

void HistoryTest::restoresTheWholeDocumentWhereARecordWasTouched()
{
    const QVariantMap before = mDaemon->document();
    updateProfile(0, {{u"BrightnessKBNormal"_s, 4}});
    addMacro(u"Combo"_s);
    updateProfile(0, {{u"BacklightLED"_s, 1}});
    const QVariantMap after = mDaemon->document();
    const auto preview = mDaemon->historyCommands().preview(idAt(0));
    QVERIFY(preview);
    QVERIFY(!preview->isAlone);
    QCOMPARE(preview->others, QList<quint32>({idAt(2), idAt(1)}));
    QCOMPARE(mDaemon->document(), after);
    QVERIFY(restore(idAt(0)));
    // The number of the macro is never used again.
    QCOMPARE(mDaemon->document(), SettingsDocument::withDeviceSetting(before, "LastMacroID"_L1, 3));
    QVERIFY(undo());
    QCOMPARE(mDaemon->document(), after);
}

void HistoryTest::restoresAnUndoneChange()
{
    addMacro(u"Combo"_s);
    QVERIFY(undo());
    setBrightness(2);                       // ends redo
    const auto restored = restore(idAt(1)); // takes back the undo
    QVERIFY(restored);
    QVERIFY(restored->isAlone);
    QCOMPARE(Document(mDaemon->document()).macros().size(), 3);
}

void HistoryTest::refusesToTakeBackTwice()
{
    setBrightness(2);
    addMacro(u"Combo"_s);
    QVERIFY(undo());
    QCOMPARE(restore(idAt(1)).error(), Refusal::notInEffect);
    QCOMPARE(restore(4711).error(), Refusal::unknown);
}

void HistoryTest::refusesToRestoreSomethingElseThanWasShown()
{
    setBrightness(2);
    const quint32 id = lastId();
    const quint32 shown = lastId();
    QVERIFY(mDaemon->historyCommands().preview(id)->isAlone);
    updateProfile(0, {{u"BacklightLED"_s, 1}});
    const QVariantMap document = mDaemon->document();
    QCOMPARE(restore(id, shown).error(), Refusal::outdated);
    QCOMPARE(mDaemon->document(), document);
    QVERIFY(restore(id, lastId()));
    QCOMPARE(brightness(0), 3);
}

void HistoryTest::macroComesBackWithItsNumber()
{
    addMacro(u"One"_s);
    addMacro(u"Two"_s);
    QCOMPARE(statusOf(Command::deleteMacro, {{u"macroID"_s, 0}}), 0);
    QVERIFY(undo());
    const auto numbers = [this] {
        QVariantList list;
        for (const QVariant &record : Document(mDaemon->document()).macros())
            list += record.toMap().value(u"macroID"_s);
        return list;
    };
    QCOMPARE(numbers(), QVariantList({1, 2, 3, 4}));
    QVERIFY(undo()); // the addition of "Two"
    QCOMPARE(Document(mDaemon->document()).deviceSettings().lastMacroId(), 4);
    addMacro(u"Three"_s);
    QCOMPARE(numbers(), QVariantList({1, 2, 3, 5}));
}

void HistoryTest::joinsTheStepsOfASlider()
{
    qint64 now = QDateTime::currentMSecsSinceEpoch();
    mDaemon->history().setClock([&now] { return now; });
    setBrightness(1);
    const quint32 seen = nextUndo();
    for (const int level : {2, 0, 4}) {
        now += 2000;
        setBrightness(level);
    }
    QCOMPARE(kinds(), QStringList{u"brightness"_s});
    QCOMPARE(entries().first().value(HistoryKeys::value).toInt(), 4);
    // A client that has seen less does not take back more.
    QCOMPARE(mDaemon->historyCommands().undo(seen, u"client"_s).error(), Refusal::unknown);
    const QVariantMap after = mDaemon->document();
    restart();
    QVERIFY(undo());
    QCOMPARE(brightness(0), 3);
    QVERIFY(!undo());
    QVERIFY(redo());
    QCOMPARE(mDaemon->document(), after);
}

void HistoryTest::joinsNothingElse_data()
{
    QTest::addColumn<int>("later");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("key");
    QTest::newRow("later") << 4000 << u"S"_s << u"BrightnessKBNormal"_s;
    QTest::newRow("before, by the clock") << -1000 << u"S"_s << u"BrightnessKBNormal"_s;
    QTest::newRow("another author") << 100 << u"org.quillkestra.kestractl"_s << u"BrightnessKBNormal"_s;
    QTest::newRow("another setting") << 100 << u"S"_s << u"LEDKBEffects"_s;
}

void HistoryTest::joinsNothingElse()
{
    QFETCH(int, later);
    QFETCH(QString, source);
    QFETCH(QString, key);
    qint64 now = QDateTime::currentMSecsSinceEpoch();
    mDaemon->history().setClock([&now] { return now; });
    setBrightness(1);
    now += later;
    updateProfile(0, {{key, 3}}, {{u"Source App"_s, source}});
    QCOMPARE(entries().size(), 2);
}

void HistoryTest::joinsNothingWithoutATimeForIt()
{
    const QTemporaryDir folder;
    History history(folder.path(), {.joiningMs = -1});
    QVariantMap before = startDocument();
    history.open(before, [] { return QList<QByteArray>(); });
    for (const int level : {2, 1}) {
        QVariantMap first = Document(before).profile(0);
        first.insert(u"BrightnessKBNormal"_s, level);
        QVariantList profiles = Document(before).profiles();
        profiles.replace(0, first);
        const QVariantMap after = SettingsDocument::withProfiles(before, profiles);
        history.record(before, {{.document = after, .cause = {.author = u"client"_s}}}, quint64(level));
        before = after;
    }
    QCOMPARE(history.entries().size(), 2);
}

void HistoryTest::sliderThatReturnsLeavesNoEntry()
{
    setBrightness(1);
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    mDaemon->history().setClock([now] { return now; });
    setBrightness(2);
    setBrightness(1);
    QCOMPARE(kinds(), QStringList{u"brightness"_s});
    QVERIFY(undo());
    QCOMPARE(brightness(0), 3);
    restart();
    QCOMPARE(kinds(), QStringList({u"brightness"_s, u"undo"_s}));
    QCOMPARE(nextRedo(), idAt(0));
}

void HistoryTest::repairOfKeysBelongsToTheDeletion()
{
    const QVariantMap before = mDaemon->document();
    QCOMPARE(statusOf(Command::deleteProfile, {{u"ProfileID"_s, 1}}), 0);
    QVariantMap repaired = Document(mDaemon->document()).profile(0);
    repaired.insert(u"Keys"_s, QVariantMap());
    QCOMPARE(statusOf(Command::replaceAllProfiles, {{u"AllProfiles"_s, QVariantList{repaired}}}), 0);
    QCOMPARE(kinds(), QStringList{u"profile deleted"_s});
    QVERIFY(undo());
    QCOMPARE(mDaemon->document(), before);
    QVERIFY(redo());
    repaired.insert(u"ProfileName"_s, u"Z"_s);
    QCOMPARE(statusOf(Command::replaceAllProfiles, {{u"AllProfiles"_s, QVariantList{repaired}}}), 0);
    QCOMPARE(kinds(), QStringList({u"profile deleted"_s, u"undo"_s, u"redo"_s, u"profile renamed"_s}));
}

void HistoryTest::joinedChangesAreTakenBackInOneGo()
{
    addProfile(u"Earlier"_s);
    const quint32 earlier = nextUndo();
    const QVariantMap before = mDaemon->document();
    addMacro(u"One"_s);
    const quint32 first = nextUndo();
    disableKey(0, u"5"_s);
    QCOMPARE(statusOf(Command::renameMacro,
                      {{u"MacroContents"_s, QVariantMap{{u"macroID"_s, 2}, {u"MacroName"_s, u"Two"_s}}}}),
             0);
    const QVariantMap after = mDaemon->document();
    QSignalSpy changes(&mDaemon->history(), &History::changed);
    const History::Found<quint32> joined = mDaemon->historyCommands().join(first, u"client"_s);
    QVERIFY(joined);
    QCOMPARE(changes.size(), 1);
    QCOMPARE(kinds(), QStringList({u"profile added"_s, u"macro added"_s}));
    QCOMPARE(entries().last().value(HistoryKeys::macro).toString(), u"Two"_s);
    QCOMPARE(nextUndo(), *joined);
    QVERIFY(*joined > first); // a client that still shows the first change does not take back the others
    QCOMPARE(mDaemon->document(), after);
    const History::Found<ChangeParts> parts = partsOf(*joined);
    QVERIFY(parts);
    QCOMPARE(parts->count, 2);
    // One change alone is joined already.
    QCOMPARE(mDaemon->historyCommands().join(*joined, u"client"_s).valueOr(0), *joined);
    restart();
    QCOMPARE(kinds(), QStringList({u"profile added"_s, u"macro added"_s}));
    QVERIFY(undo());
    QCOMPARE(Document(mDaemon->document()).profiles(), Document(before).profiles());
    QCOMPARE(Document(mDaemon->document()).macros(), Document(before).macros());
    QCOMPARE(nextUndo(), earlier);
    QVERIFY(redo());
    QCOMPARE(mDaemon->document(), after);
    QCOMPARE(nextRedo(), 0U);
}

void HistoryTest::joinedChangesThatCancelOutLeaveNoEntry()
{
    addProfile(u"Earlier"_s);
    const quint32 earlier = nextUndo();
    addMacro(u"One"_s);
    const quint32 first = nextUndo();
    QCOMPARE(statusOf(Command::deleteMacro, {{u"macroID"_s, 2}}), 0);
    QCOMPARE(mDaemon->historyCommands().join(first, u"client"_s).valueOr(1), 0U);
    QCOMPARE(kinds(), QStringList{u"profile added"_s});
    QCOMPARE(nextUndo(), earlier);
    restart();
    QCOMPARE(kinds(), QStringList{u"profile added"_s});
    QVERIFY(undo());
}

void HistoryTest::joinsOnlyChangesOfTheCaller_data()
{
    QTest::addColumn<QString>("obstacle");
    for (const char *obstacle : {"another author", "another caller", "undo", "redo", "undone", "unknown"})
        QTest::newRow(obstacle) << QString::fromLatin1(obstacle);
}

void HistoryTest::joinsOnlyChangesOfTheCaller()
{
    QFETCH(QString, obstacle);
    addMacro(u"One"_s);
    const quint32 first = nextUndo();
    addMacro(u"Two"_s);
    if (obstacle == "another author"_L1)
        setBrightness(1, u"org.quillkestra.kestractl"_s);
    if (obstacle == "undo"_L1 || obstacle == "redo"_L1)
        QVERIFY(undo());
    if (obstacle == "redo"_L1)
        QVERIFY(redo());
    if (obstacle == "undone"_L1) {
        QVERIFY(undo());
        QVERIFY(undo());
    }
    const QList<QVariantMap> before = entries();
    const quint32 named = obstacle == "unknown"_L1 ? lastId() + 1 : first;
    const QString caller = obstacle == "another caller"_L1 ? u"kestractl"_s : u"client"_s;
    const History::Found<quint32> joined = mDaemon->historyCommands().join(named, caller);
    QVERIFY(!joined);
    QCOMPARE(joined.error(), obstacle == "unknown"_L1 ? Refusal::unknown : Refusal::outdated);
    QCOMPARE(entries(), before);
}

void HistoryTest::joinsNoEntryThatIsTooLarge()
{
    const QTemporaryDir folder;
    constexpr qsizetype bytes = 4000;
    History history(folder.path(), {.bytes = bytes});
    QVariantMap document = startDocument();
    history.open(document, [] { return QList<QByteArray>(); });
    QRandomGenerator random(7); // such names cannot be compressed
    quint64 digest = 0;
    for (int count = 0; count < 2; ++count) {
        QString name;
        while (name.size() < bytes / 8)
            name += QChar(char16_t(random.bounded(0x4e00, 0x9fa5)));
        const QVariantMap before = document;
        document = SettingsDocument::withProfiles(before, Document(before).profiles() << profile(name));
        history.record(before, {{.document = document, .cause = {.author = u"client"_s}}}, ++digest);
    }
    QCOMPARE(history.entries().size(), 2);
    const quint32 first = history.entries().first().value(HistoryKeys::id).toUInt();
    QCOMPARE(history.joinSince(document, first, u"client"_s).error(), Refusal::invalid);
    QCOMPARE(history.entries().size(), 2);
    QVERIFY(history.undoTarget(document, history.lastId()));
}

void HistoryTest::isThereAfterARestart()
{
    addProfile(u"One"_s);
    addProfile(u"Two"_s);
    QVERIFY(undo());
    const QList<QVariantMap> before = entries();
    restart();
    QCOMPARE(entries(), before);
    QVERIFY(redo());
    QCOMPARE(profileNames(), QStringList({u"A"_s, u"B"_s, u"One"_s, u"Two"_s}));
    addProfile(u"Three"_s);
    QVERIFY(idAt(3) > before.last().value(HistoryKeys::id).toUInt());
}

void HistoryTest::tornFileCostsOnlyTheTornEntries()
{
    addProfile(u"One"_s);
    const QByteArray first = file();
    disableKey(0, u"5"_s);
    const QByteArray whole = file();
    QVERIFY(whole.startsWith(first));
    const QVariantMap document = mDaemon->document();
    for (qsizetype size = first.size(); size < whole.size(); ++size) {
        setFile(whole.first(size));
        if (size > first.size())
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"history .* is damaged"_s));
        restart();
        QCOMPARE(mDaemon->document(), document);
        // The lost entry is found again by the copy of the settings.
        QCOMPARE(kinds(), QStringList({u"profile added"_s, u"key"_s}));
        QVERIFY(undo());
        QVERIFY(redo());
        QCOMPARE(mDaemon->document(), document);
    }
}

void HistoryTest::damagedByteCostsOnlyHistory()
{
    addProfile(u"One"_s);
    disableKey(0, u"5"_s);
    addMacro(u"Combo"_s);
    const QByteArray whole = file();
    const QVariantMap document = mDaemon->document();
    for (qsizetype at = 0; at < whole.size(); at += 7) {
        QByteArray damaged = whole;
        damaged[at] = static_cast<char>(damaged.at(at) ^ 0x55);
        setFile(damaged);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"history .* is damaged"_s));
        restart();
        QCOMPARE(mDaemon->document(), document);
        // Whatever is left leads back to a document that was once in use.
        while (undo())
            QVERIFY(SettingsDocument::validate(mDaemon->document()));
        while (redo()) {
        }
        QCOMPARE(mDaemon->document(), document);
        QCOMPARE(storedDocument(), document);
    }
}

void HistoryTest::keepsNewEntriesAfterOneThatCannotBeRead()
{
    addProfile(u"One"_s);
    HistoryLog log(path());
    QCOMPARE(log.load().size(), 1);
    const HistoryEntry later{.id = lastId() + 1, .kind = static_cast<HistoryEntry::Kind>(99), .digest = 0};
    QVERIFY(log.append({later.toFrame()}));
    const auto expectWarning = [] {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"an entry that cannot be read"_s));
    };
    expectWarning();
    restart();
    QCOMPARE(values(HistoryKeys::profile), QStringList{u"One"_s});
    addProfile(u"Two"_s);
    restart();
    QCOMPARE(values(HistoryKeys::profile), QStringList({u"One"_s, u"Two"_s}));
    QVERIFY(undo());
    QVERIFY(undo());
}

void HistoryTest::keepsTheEntriesBehindAnUnknownOne()
{
    for (const QString &name : {u"One"_s, u"Two"_s, u"Three"_s, u"Four"_s, u"Five"_s})
        addProfile(name);
    const quint32 last = lastId();
    HistoryLog log(path());
    QList<QByteArray> frames = log.load();
    QCOMPARE(frames.size(), 5);
    for (const qsizetype unknown : {1, 2, 4}) {
        std::optional<HistoryEntry> entry = HistoryEntry::fromFrame(frames.at(unknown));
        QVERIFY(entry);
        entry->kind = static_cast<HistoryEntry::Kind>(99);
        frames[unknown] = entry->toFrame();
    }
    QVERIFY(log.rewrite(frames));
    for (int count = 0; count < 3; ++count)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"an entry that cannot be read"_s));
    restart();
    const auto names = [this] { return values(HistoryKeys::profile).filter(QRegularExpression(u"."_s)); };
    QCOMPARE(names(), QStringList({u"One"_s, u"Four"_s, u"Five"_s})); // the last one by the copies of the settings
    QVERIFY(lastId() > last);
    QCOMPARE(restore(idAt(0)).error(), Refusal::unreachable);

    addProfile(u"Six"_s);
    restart(); // without a warning
    QCOMPARE(names(), QStringList({u"One"_s, u"Four"_s, u"Five"_s, u"Six"_s}));
    for (int count = 0; count < 3; ++count)
        QVERIFY(undo());
    QVERIFY(!undo());
    QCOMPARE(profileNames(), QStringList({u"A"_s, u"B"_s, u"One"_s, u"Two"_s, u"Three"_s}));
}

void HistoryTest::entriesOfAnUnfinishedWriteStayLost()
{
    addProfile(u"One"_s);
    HistoryLog log(path());
    QCOMPARE(log.load().size(), 1);
    const HistoryEntry unfinished{
        .id = lastId() + 1, .author = u"client"_s, .what = {{HistoryKeys::kind, u"several"_s}}, .difference = {}};
    QVERIFY(log.append({unfinished.toFrame()}));
    restart();
    addProfile(u"Two"_s);
    restart();
    QCOMPARE(kinds(), QStringList({u"profile added"_s, u"profile added"_s}));
    QVERIFY(undo());
    QCOMPARE(profileNames(), QStringList({u"A"_s, u"B"_s, u"One"_s}));
}

void HistoryTest::missingFileCostsOnlyHistory()
{
    addProfile(u"One"_s);
    QVERIFY(QFile::remove(path())); // while the daemon runs: its next entry writes all of them again
    addProfile(u"Two"_s);
    const QList<QVariantMap> before = entries();
    restart();
    QCOMPARE(entries(), before);
    QVERIFY(QFile::remove(path()));
    restart();
    QCOMPARE(entries(), QList<QVariantMap>());
    QCOMPARE(profileNames(), QStringList({u"A"_s, u"B"_s, u"One"_s, u"Two"_s}));
}

void HistoryTest::findsAChangeThatItHasMissed()
{
    addProfile(u"One"_s);
    const QVariantMap before = mDaemon->document();
    const QByteArray earlier = file();
    addProfile(u"Two"_s);
    const QVariantMap after = mDaemon->document();
    setFile(earlier); // killed between the settings and the history
    restart();
    QCOMPARE(kinds(), QStringList({u"profile added"_s, u"profile added"_s}));
    QCOMPARE(values(HistoryKeys::author), QStringList({u"client"_s, u"unknown"_s}));
    QVERIFY(undo());
    QCOMPARE(mDaemon->document(), before);
    QVERIFY(redo());
    QCOMPARE(mDaemon->document(), after);
}

void HistoryTest::findsAnUndoThatItHasMissed()
{
    addMacro(u"One"_s);
    addProfile(u"Two"_s);
    const QVariantMap after = mDaemon->document();
    QByteArray earlier = file();
    QVERIFY(undo());
    const QVariantMap before = mDaemon->document();
    setFile(earlier);
    restart();
    QCOMPARE(kinds(), QStringList({u"macro added"_s, u"profile added"_s, u"undo"_s}));
    earlier = file();
    QVERIFY(redo());
    QCOMPARE(mDaemon->document(), after);
    setFile(earlier);
    restart();
    QCOMPARE(kinds().last(), u"redo"_s);
    QVERIFY(undo());
    QCOMPARE(mDaemon->document(), before);
}

void HistoryTest::crossesNoGap()
{
    addProfile(u"One"_s);
    QVariantMap other = storedDocument();
    other.insert(u"Macros"_s, QVariantList{macro(u"Foreign"_s, 4)});
    for (const QString &name : {u"settings.plist.1"_s, u"settings.plist"_s})
        QFile::remove(mTemporary->filePath(name));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"not those that the history leads to"_s));
    start(SettingsDocument::completed(other));
    QCOMPARE(kinds(), QStringList({u"profile added"_s, u"elsewhere"_s}));
    QCOMPARE(values(HistoryKeys::state).first(), u"out of reach"_s);
    QCOMPARE(mDaemon->historyCommands().undo(idAt(0), u"client"_s).error(), Refusal::unreachable);
    QCOMPARE(restore(idAt(0)).error(), Refusal::unreachable);
    QCOMPARE(partsOf(idAt(0)).error(), Refusal::unreachable);
    QCOMPARE(partsOf(idAt(1)).error(), Refusal::unreachable);
    QCOMPARE(partsOf(4711).error(), Refusal::unknown);
    QCOMPARE(nextUndo(), 0u);
    addProfile(u"Two"_s);
    QVERIFY(undo());
    QCOMPARE(mDaemon->document(), SettingsDocument::completed(other));
    QVERIFY(!undo());
}

void HistoryTest::refusedWriteChangesNothing()
{
    addProfile(u"One"_s);
    const QList<QVariantMap> before = entries();
    const QVariantMap document = mDaemon->document();
    {
        const FileSizeLimit limit(10);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write"_s));
        QCOMPARE(mDaemon->historyCommands().undo(nextUndo(), u"client"_s).error(), Refusal::notSaved);
    }
    QCOMPARE(entries(), before);
    QCOMPARE(mDaemon->document(), document);
    QVERIFY(undo());
}

void HistoryTest::forgetsAfterNinetyDays()
{
    setDay(1000);
    openAged();
    addAged(u"One"_s);
    const quint32 first = mAged->lastId();
    setDay(1088);
    addAged(u"Two"_s);
    setDay(1092);
    addAged(u"Three"_s);
    setDay(1094);
    addAged(u"Four"_s);
    const QStringList names{u"Two"_s, u"Three"_s, u"Four"_s};
    QCOMPARE(agedNames(), names);
    QCOMPARE(mAged->undoTarget(mAgedDocument, first).error(), Refusal::unknown);
    openAged();
    QCOMPARE(agedNames(), names);
    QVERIFY(mAged->undoTarget(mAgedDocument, mAged->lastId()));
}

void HistoryTest::forgetsOldEntriesWithFewWrites()
{
    // 4 changes a day: after 90 days, each of them makes an older one too old.
    setDay(1000);
    openAged();
    int rewrites = 0;
    const auto fileNumber = [this] {
        struct stat status = {};
        return ::stat(QFile::encodeName(filePath(u"aged/history"_s)).constData(), &status) == 0 ? status.st_ino : 0;
    };
    for (int change = 0; change < 4 * 100; ++change) {
        const auto before = fileNumber();
        mAgedDocument = startDocument();
        addAged(u"Name"_s);
        rewrites += before != 0 && fileNumber() != before ? 1 : 0;
        const qint64 oldest = mAged->entries().first().value(HistoryKeys::time).toLongLong();
        QVERIFY(mTimeMs - oldest <= 93 * dayMs);
        mTimeMs += dayMs / 4;
    }
    QVERIFY(rewrites > 0);
    QVERIFY2(rewrites <= 12, qPrintable(QString::number(rewrites)));
}

void HistoryTest::forgetsWithoutChanges()
{
    setDay(1000);
    openAged();
    addAged(u"One"_s);
    setDay(1100);
    openAged();
    QCOMPARE(agedNames(), QStringList{u"One"_s});
    mTimeMs += dayMs / 2;
    openAged();
    QCOMPARE(agedNames(), QStringList{u"One"_s});
    setDay(1101);
    openAged();
    QCOMPARE(agedNames(), QStringList());
    QVERIFY(!contentOf(u"aged/history"_s).contains("One"));
}

void HistoryTest::survivesAClockThatJumpsAhead_data()
{
    QTest::addColumn<bool>("changes"); // while the clock is wrong
    QTest::newRow("starts") << false;
    QTest::newRow("starts and changes") << true;
}

void HistoryTest::survivesAClockThatJumpsAhead()
{
    QFETCH(bool, changes);
    setDay(1000);
    openAged();
    addAged(u"One"_s);
    setDay(1001);
    addAged(u"Two"_s);
    setDay(1095);
    for (int count = 0; count < 3; ++count)
        openAged();
    QStringList names{u"One"_s, u"Two"_s};
    if (changes) {
        addAged(u"Ahead"_s);
        names += u"Ahead"_s;
    }
    setDay(1002);
    openAged();
    addAged(u"Three"_s);
    QCOMPARE(agedNames(), names + QStringList{u"Three"_s});
}

void HistoryTest::entryFromTheFutureKeepsNoOlderOnes()
{
    setDay(3000);
    openAged();
    addAged(u"Ahead"_s);
    setDay(1000);
    addAged(u"One"_s);
    QCOMPARE(agedNames(), QStringList({u"Ahead"_s, u"One"_s}));
    setDay(1095);
    addAged(u"Two"_s);
    QCOMPARE(agedNames(), QStringList{u"Two"_s});
}

void HistoryTest::clockWithoutADateForgetsNothing()
{
    setDay(1000);
    openAged();
    addAged(u"One"_s);
    setDay(1001);
    addAged(u"Two"_s);
    setDay(0);
    openAged();
    addAged(u"Without a date"_s);
    setDay(1002);
    openAged();
    setDay(1004);
    addAged(u"Three"_s);
    QCOMPARE(agedNames(), QStringList({u"One"_s, u"Two"_s, u"Without a date"_s, u"Three"_s}));
}

void HistoryTest::staysWithinItsSize()
{
    // Texts that no compression shrinks
    QRandomGenerator random(7);
    const auto text = [&random] {
        QString characters;
        for (int count = 0; count < 20'000; ++count)
            characters += QChar(random.bounded(0x4e00, 0x9f00));
        return characters;
    };
    const qsizetype limit = HistoryLimits().bytes;
    for (int count = 0; count < 100; ++count) {
        updateProfile(0, {{u"Other"_s, text()}});
        QVERIFY(file().size() <= limit);
    }
    QVERIFY(entries().size() > 10);
    QVERIFY(entries().size() < 100);
    const qsizetype kept = entries().size();
    restart();
    QCOMPARE(entries().size(), kept);
    QVERIFY(undo());
}

void HistoryTest::isPrivate()
{
    addProfile(u"One"_s);
    QCOMPARE(QFile::permissions(path()) & ~(QFile::ReadUser | QFile::WriteUser),
             QFile::Permissions(QFile::ReadOwner | QFile::WriteOwner));
}

void HistoryTest::saysWhyADocumentWasNotRestored()
{
    using Cause = RestoreError::Cause;
    const QByteArray other = QlCoreUtility::convertDictionaryToData(SettingsDocument::minimal()).value_or(QByteArray());
    HistoryCommands &commands = mDaemon->historyCommands();
    const QString day = u"2026-01-02"_s;
    const QString backup = filePath(u"settings-%1.plist"_s.arg(day));
    QVERIFY(PropertyList::writeFileAtomically(backup, other));
    {
        const FileSizeLimit limit(10);
        const auto expectFailure = [] {
            QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write"_s));
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot write the backup"_s));
        };
        expectFailure();
        QCOMPARE(commands.restoreDocument(other, u"x"_s, u"client"_s).error().cause, Cause::notSaved);
        expectFailure();
        QCOMPARE(commands.restoreBackup(day, u"client"_s).error().cause, Cause::notSaved);
    }
    QCOMPARE(commands.restoreDocument("x", u"x"_s, u"client"_s).error().cause, Cause::faulty);
    QCOMPARE(commands.restoreBackup(u"2026-01-03"_s, u"client"_s).error().cause, Cause::noBackup);
    QVERIFY(QFile::remove(backup));
    QVERIFY(QFile::link(u"/proc/self/mem"_s, backup)); // a file whose first bytes cannot be read
    QCOMPARE(commands.restoreBackup(day, u"client"_s).error().cause, Cause::unreadable);
    const quint32 restored = commands.restoreDocument(other, u"x"_s, u"client"_s).valueOr(0);
    QVERIFY(restored != 0);
    QCOMPARE(restored, lastId());
}

void HistoryTest::restoresAllThatItHasStored()
{
    QRandomGenerator random(11);
    const QVariantList odd{1,
                           -3,
                           2.5,
                           true,
                           u"text"_s,
                           u"7"_s,
                           QByteArray("data"),
                           QVariantList{u"Red"_s, 4},
                           QVariantMap{{u"Red"_s, u"1"_s}},
                           QVariantList{QVariantMap{{u"Red"_s, u"1"_s}}}};
    const QStringList fields{u"AppInfo"_s,     u"AutoSwitchOn"_s, u"ProfileOSDOn"_s,       u"BacklightLED"_s,
                             u"LEDKBColors"_s, u"LEDKBEffects"_s, u"BrightnessKBNormal"_s, u"Other"_s};
    const auto any = [&random](const auto &list) { return list.at(random.bounded(int(list.size()))); };
    int stored = 0;
    for (int count = 0; count < 300; ++count) {
        QVariantMap record{{any(fields), any(odd)}};
        record.insert(u"AppInfo"_s, QVariantMap{{any(QStringList{u"application"_s, u"executable"_s}), any(odd)}});
        record.insert(u"Keys"_s, QVariantMap{{any(QStringList{u"4"_s, u"04"_s, u"odd"_s, QString()}),
                                              QVariantMap{{u"command"_s, any(odd)}, {u"param1"_s, any(odd)}}}});
        QVariantMap macro = DaemonTestDocuments::macro(u"M"_s, 4);
        macro.insert(any(QStringList{u"delay"_s, u"macroID"_s, u"MacroName"_s, u"sequence"_s, u"Other"_s}), any(odd));
        const int kind = random.bounded(4);
        const int status =
            kind == 0
                ? statusOf(Command::replaceAllProfiles, {{u"AllProfiles"_s, QVariantList{profile(u"P"_s), record}}})
            : kind == 1 ? statusOf(Command::addMacro, {{u"MacroContents"_s, macro}})
                        : statusOf(Command::updateProfile,
                                   {{u"ProfileID"_s, random.bounded(2)}, {u"DeviceSettingsDictionary"_s, record}});
        if (status != 0)
            continue;
        ++stored;
        const QByteArray exported = mDaemon->historyCommands().document();
        QCOMPARE(exported, contentOf(u"settings.plist"_s));
        setBrightness(count % 4, QString::number(count));
        const auto restored = mDaemon->historyCommands().restoreDocument(exported, u"file"_s, u"client"_s);
        QVERIFY2(restored, qPrintable(restored ? QString() : restored.error().message));
        QCOMPARE(contentOf(u"settings.plist"_s), exported);
    }
    QVERIFY2(stored > 100, qPrintable(QString::number(stored)));
}

void HistoryTest::givesTheDocumentWithTheChosenProfile()
{
    updateProfile(1, {{u"AutoSwitchOn"_s, 1}, {u"AppInfo"_s, QVariantMap{{u"application"_s, u"gimp"_s}}}});
    mDaemon->setFrontApplication(FrontApplication{.windowClass = u"gimp"_s});
    QCOMPARE(Document(mDaemon->document()).activeProfileIndex(), 1);
    const std::optional<QVariantMap> given =
        QlCoreUtility::convertDataToDictionary(mDaemon->historyCommands().document());
    QVERIFY(given);
    QCOMPARE(Document(*given).activeProfileIndex(), 0);
    QCOMPARE(*given, storedDocument());
}

void HistoryTest::clearForgetsAll()
{
    addProfile(u"Secret"_s);
    QVERIFY(undo());
    QVERIFY(file().contains("Secret"));
    const quint32 last = lastId();
    QVERIFY(mDaemon->history().clear());
    QVERIFY(!file().contains("Secret"));
    QCOMPARE(entries(), QList<QVariantMap>());
    restart();
    QCOMPARE(entries(), QList<QVariantMap>());
    addProfile(u"New"_s);
    QVERIFY(idAt(0) > last); // a client that still shows an old list takes back nothing else
    QVERIFY(undo());
}

void HistoryTest::clearLeavesNoFileWithADeletedMacro()
{
    const QByteArray secret("PassWordInAMacro");
    start(documentWithMacros());
    QCOMPARE(statusOf(Command::addMacro, {{u"MacroContents"_s, macro(QString::fromLatin1(secret), 4)}}), 0);
    const QByteArray withSecret = contentOf(u"settings.plist"_s);
    QVERIFY(withSecret.contains(secret));
    addProfile(u"One"_s);
    addProfile(u"Two"_s);
    QCOMPARE(statusOf(Command::deleteMacro, {{u"macroID"_s, 2}}), 0);
    for (const QString &name :
         {u"settings.plist.damaged-20261121T101112Z"_s, u"settings.plist.replaced-20261121T101112Z-2"_s,
          u"settings.plist.damaged-20261121T101112Z.QwErTy"_s, u"settings.plist.AbCdEf"_s, u"settings.plist.0"_s,
          u"history.AbCdEf"_s, u"settings-2026-01-02.plist"_s, u"settings-2026-01-02.plist.AbCdEf"_s})
        QVERIFY(PropertyList::writeFileAtomically(filePath(name), withSecret));
    QVERIFY(filesWith(secret).size() > 10);

    const QVariantMap document = storedDocument();
    QVERIFY(mDaemon->historyCommands().clear());
    QCOMPARE(filesWith(secret), QStringList());
    QCOMPARE(QDir(mTemporary->path()).entryList(QDir::Files),
             QStringList({u"history"_s, u"lock"_s, u"settings.plist"_s}));
    QCOMPARE(storedDocument(), document);
    restart();
    QCOMPARE(entries(), QList<QVariantMap>());

    // The next changes are as safe as before.
    for (const QString &name : {u"Three"_s, u"Four"_s, u"Five"_s})
        addProfile(name);
    QVERIFY(QFile::exists(filePath(u"settings.plist.3"_s)));
    QCOMPARE(filesWith(secret), QStringList());
    QVERIFY(undo());
}

void HistoryTest::clearKeepsTheSettingsThatOnlyACopyHas()
{
    addProfile(u"One"_s);
    addProfile(u"Two"_s);
    const QVariantMap document = storedDocument();
    QVERIFY(QFile::remove(filePath(u"settings.plist"_s))); // by another program
    QVERIFY(mDaemon->historyCommands().clear());
    QCOMPARE(storedDocument(), document);
    addProfile(u"Three"_s);
    QVERIFY(QFile::remove(filePath(u"settings.plist"_s)));
    {
        const FileSizeLimit limit(10);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write"_s));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"history .* cannot be written"_s));
        QVERIFY(!mDaemon->historyCommands().clear());
    }
    QVERIFY(QFile::exists(filePath(u"settings.plist.1"_s)));
}

void HistoryTest::startRemovesWhatAKilledDaemonHasLeft()
{
    const QStringList leftOvers{u"history.AbCdEf"_s, u"settings.plist.AbCdEf"_s, u"settings-2026-01-02.plist.AbCdEf"_s,
                                u"settings.plist.replaced-20261121T101112Z.AbCdEf"_s};
    const QStringList others{u"settings-2026-01-02.plist"_s, u"settings.plist.replaced-20261121T101112Z"_s,
                             u"settings-2026-13-02.plist.AbCdEf"_s, u"notes.AbCdEf"_s, u"history.AbCdE1"_s};
    for (const QString &name : leftOvers + others)
        QVERIFY(PropertyList::writeFileAtomically(filePath(name), "text"));
    mDaemon.reset();
    mStore.reset();
    mStore = std::make_unique<SettingsStore>(mTemporary->path());
    QVERIFY(mStore->open());
    for (const QString &name : leftOvers)
        QVERIFY2(!QFile::exists(filePath(name)), qPrintable(name));
    for (const QString &name : others)
        QVERIFY2(QFile::exists(filePath(name)), qPrintable(name));
}

QTEST_GUILESS_MAIN(HistoryTest)
#include "historytest.moc"
