// SPDX-License-Identifier: MIT
// All events of a macro replaced at once, in the daemon without a bus.
#include "daemon/capture/macroreplacement.h"
#include "base/document.h"
#include "base/historykeys.h"
#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "macros/macroedits.h"
#include "macros/macrorecord.h"
#include "tests/daemon/devicedaemonfixture.h"
#include "tests/support/filesizelimit.h"
#include "tests/support/testmain.h"

using namespace DaemonTestDocuments;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Refusal = MacroReplacement::Refusal;

namespace {

constexpr HidUsage keyB{.page = 7, .usage = 5};

QByteArray written(const QVariant &events)
{
    return PropertyList::writeBinary(events).value();
}

} // namespace

class MacroReplacementTest : public DeviceDaemonFixture
{
    Q_OBJECT

private Q_SLOTS:
    void replacesTheEvents();
    void isOneChangeThatGoesBack();
    void namesTheCallerAsTheSource();
    void equalEventsChangeNothing();
    void addressesTheMacroByItsOwnNumber();
    void refusesAMacroThatIsGone();
    void refusesOtherEventsThanWereRead();
    void refusesDuringARecordingIntoTheMacro();
    void refusesInvalidEvents_data();
    void refusesInvalidEvents();
    void keepsTheLimitOfAllEvents();
    void takesAsManyEventsAsAMacroMayHave();
    void refusesWhatCannotBeWritten();
    void keepsFurtherKeysOfTheRecord();
    void stopsTheOldMacro();

private:
    [[nodiscard]] QVariantMap macroAt(int row) const { return Document(mDaemon->document()).macro(row); }
    [[nodiscard]] QVariantList eventsAt(int row) const { return MacroRecord::events(macroAt(row)); }
    [[nodiscard]] quint32 numberAt(int row) const { return quint32(MacroRecord::macroId(macroAt(row))); }
    [[nodiscard]] QString digestAt(int row) const { return MacroRecord::digest(eventsAt(row)); }
    /// The refusal; absent when the events are stored.
    std::optional<Refusal> replace(int row, const QVariant &events, const QString &source = u"S"_s)
    {
        return outcome(numberAt(row), digestAt(row), written(events), source);
    }
    std::optional<Refusal> outcome(quint32 number, const QString &digest, const QByteArray &events,
                                   const QString &source = u"S"_s)
    {
        const auto replaced = mDaemon->macroReplacement().replace(number, digest, events, source);
        mReason = replaced ? QString() : replaced.error().message;
        return replaced ? std::nullopt : std::optional(replaced.error().refusal);
    }

    void open()
    {
        startWithMacros();
        mNotifications.clear();
    }

    QString mReason; // of the last refusal
};

void MacroReplacementTest::replacesTheEvents()
{
    open();
    const QVariantList tap = MacroEdits::tap(keyB, 1, 2);
    QCOMPARE(replace(0, tap), std::nullopt);
    QCOMPARE(eventsAt(0), tap);
    QCOMPARE(MacroRecord::events(Document(storedDocument()).macro(0)), tap);
    QCOMPARE(replace(0, QVariantList()), std::nullopt);
    QCOMPARE(macroAt(0).value(u"sequence"_s), QVariant(QVariantMap()));
}

void MacroReplacementTest::isOneChangeThatGoesBack()
{
    open();
    const QVariantMap before = mDaemon->document();
    QVariantList longer = eventsAt(0);
    longer += MacroEdits::tap(keyB);
    QCOMPARE(replace(0, longer, u"com.example.other"_s), std::nullopt);
    const QList<QVariantMap> entries = mDaemon->history().entries();
    QCOMPARE(entries.size(), 1);
    QCOMPARE(entries.first().value(HistoryKeys::kind), QVariant(u"events added"_s));
    QCOMPARE(entries.first().value(HistoryKeys::count), QVariant(2));
    QCOMPARE(entries.first().value(HistoryKeys::author), QVariant(u"client"_s));
    QVERIFY(mDaemon->historyCommands().undo(entries.first().value(HistoryKeys::id).toUInt(), u"client"_s));
    QCOMPARE(mDaemon->document(), before);
}

void MacroReplacementTest::namesTheCallerAsTheSource()
{
    open();
    QCOMPARE(replace(0, MacroEdits::tap(keyB), u"com.example.other"_s), std::nullopt);
    QCOMPARE(takeNotificationNames(), QStringList{u"Profile Updated 271"_s});
    QCOMPARE(replace(0, QVariantList(), u"com.example.other"_s), std::nullopt);
    QCOMPARE(notification(u"Profile Updated 271"_s).value(u"Source App"_s), QVariant(u"com.example.other"_s));
}

void MacroReplacementTest::equalEventsChangeNothing()
{
    open();
    QCOMPARE(replace(0, eventsAt(0)), std::nullopt);
    QVERIFY(mDaemon->history().entries().isEmpty());
    QCOMPARE(takeNotificationNames(), QStringList());
}

void MacroReplacementTest::addressesTheMacroByItsOwnNumber()
{
    open();
    const quint32 second = numberAt(1);
    const QString digest = digestAt(1);
    QCOMPARE(statusOf(Command::deleteMacro, {{u"macroID"_s, 0}}), 0);
    QCOMPARE(outcome(second, digest, written(MacroEdits::tap(keyB))), std::nullopt);
    QCOMPARE(eventsAt(0), MacroEdits::tap(keyB));
}

void MacroReplacementTest::refusesAMacroThatIsGone()
{
    open();
    const quint32 number = numberAt(0);
    const QString digest = digestAt(0);
    QCOMPARE(statusOf(Command::deleteMacro, {{u"macroID"_s, 0}}), 0);
    const QVariantMap before = mDaemon->document();
    for (const quint32 other : {number, 0U, std::numeric_limits<quint32>::max()})
        QCOMPARE(outcome(other, digest, written(QVariantList())), Refusal::gone);
    QCOMPARE(mDaemon->document(), before);
}

void MacroReplacementTest::refusesOtherEventsThanWereRead()
{
    open();
    const QString digest = digestAt(0);
    QCOMPARE(statusOf(Command::setDelay, {{u"macroID"_s, 0}, {u"sequenceIdx"_s, 0}, {u"delay"_s, 99}}), 0);
    const QVariantMap before = mDaemon->document();
    for (const QString &other : {digest, QString(), digestAt(0).toUpper()})
        QCOMPARE(outcome(numberAt(0), other, written(QVariantList())), Refusal::changed);
    QCOMPARE(mDaemon->document(), before);
}

void MacroReplacementTest::refusesDuringARecordingIntoTheMacro()
{
    open();
    QCOMPARE(statusOf(Command::startMacroRecording, {{u"macroID"_s, 0}, {u"isAppendRecording"_s, 1}}), 0);
    QCOMPARE(replace(0, QVariantList()), Refusal::busy);
    QCOMPARE(replace(1, QVariantList()), std::nullopt); // another macro
    QCOMPARE(statusOf(Command::stopMacroRecording), 0);
    QCOMPARE(replace(0, QVariantList()), std::nullopt);
}

void MacroReplacementTest::refusesInvalidEvents_data()
{
    QTest::addColumn<QByteArray>("events");
    QTest::addColumn<QString>("reason");
    const QVariantMap event = MacroEdits::press(keyB);
    const auto with = [&event](const QString &key, const QVariant &value) {
        QVariantMap changed = event;
        changed.insert(key, value);
        return changed;
    };
    const QString noArray = u"it is not a property list with an array"_s;
    QTest::newRow("nothing") << QByteArray() << noArray;
    QTest::newRow("damaged") << written(QVariantList{event}).chopped(1) << noArray;
    QTest::newRow("a dictionary") << written(event) << noArray;
    QTest::newRow("an element is a number") << written(QVariantList{event, 3}) << u"event 2: not a dictionary"_s;
    QTest::newRow("the delay is a text") << written(QVariantList{event, event, with(u"delay"_s, u"20"_s)})
                                         << u"event 3: \"delay\" is not a number"_s;
    QTest::newRow("the page is an array")
        << written(QVariantList{with(u"page"_s, QVariantList())}) << u"event 1: \"page\" is not a number"_s;
    QTest::newRow("too many") << written(QVariantList(MacroRecord::maximumEvents + 1, event))
                              << u"10001 events; a macro has at most 10000"_s;
    QVariant deep = 1;
    for (int level = 0; level < 505; ++level)
        deep = QVariantList{deep};
    QTest::newRow("nested too deeply") << written(QVariantList{with(u"further"_s, deep)})
                                       << u"too large, or nested too deeply"_s;
    QTest::newRow("too much text") << written(QVariantList{with(u"further"_s, QString(3'000'000, u'x'))})
                                   << u"too large, or nested too deeply"_s;
}

void MacroReplacementTest::refusesInvalidEvents()
{
    open();
    QFETCH(QByteArray, events);
    const QVariantMap before = mDaemon->document();
    QCOMPARE(outcome(numberAt(0), digestAt(0), events), Refusal::invalid);
    QTEST(mReason, "reason");
    QCOMPARE(mDaemon->document(), before);
    QVERIFY(mDaemon->history().entries().isEmpty());
    QCOMPARE(takeNotificationNames(), QStringList());
}

void MacroReplacementTest::keepsTheLimitOfAllEvents()
{
    QVariantMap document = documentWithMacros();
    const QVariantList full(MacroRecord::maximumEvents, MacroEdits::press(keyB));
    QVariantList macros{macro(u"One"_s, 4), macro(u"Two"_s, 4)};
    for (int index = 0; index < 4; ++index)
        macros += MacroRecord::withEvents(macro(u"Full"_s, 4), full);
    start(SettingsDocument::completed(SettingsDocument::withMacros(document, macros)));
    QCOMPARE(replace(0, full.first(9'999)), Refusal::invalid);
    QCOMPARE(mReason, u"9999 events; the other macros leave room for 9998, as all together have at most 50000"_s);
    QCOMPARE(replace(0, full.first(9'998)), std::nullopt);
}

void MacroReplacementTest::takesAsManyEventsAsAMacroMayHave()
{
    open();
    QVariantList full;
    while (full.size() < MacroRecord::maximumEvents)
        full += MacroEdits::tap({.page = 7, .usage = quint16(4 + full.size() % 100)}, int(full.size()), 1);
    QCOMPARE(replace(0, full), std::nullopt);
    QCOMPARE(eventsAt(0), full);
    QCOMPARE(replace(0, full.first(3)), std::nullopt);
}

void MacroReplacementTest::refusesWhatCannotBeWritten()
{
    open();
    const QVariantMap before = mDaemon->document();
    {
        const FileSizeLimit limit(0);
        QCOMPARE(replace(0, MacroEdits::tap(keyB)), Refusal::notSaved);
    }
    QCOMPARE(mDaemon->document(), before);
    QCOMPARE(takeNotificationNames(), QStringList());
    QCOMPARE(replace(0, MacroEdits::tap(keyB)), std::nullopt);
}

void MacroReplacementTest::keepsFurtherKeysOfTheRecord()
{
    QVariantMap record = macro(u"One"_s, 4);
    record.insert(u"maker"_s, u"kept"_s);
    QVariantMap sequence = record.value(u"sequence"_s).toMap();
    sequence.insert(u"version"_s, 7);
    record.insert(u"sequence"_s, sequence);
    start(SettingsDocument::completed(SettingsDocument::withMacros(documentWithMacros(), {record})));
    QVariantMap event = MacroEdits::press(keyB);
    event.insert(u"mark"_s, u"kept"_s);
    QCOMPARE(replace(0, QVariantList{event}), std::nullopt);
    QCOMPARE(macroAt(0).value(u"maker"_s), QVariant(u"kept"_s));
    QCOMPARE(macroAt(0).value(u"sequence"_s),
             QVariant(QVariantMap{{u"version"_s, 7}, {u"Events"_s, QVariantList{event}}}));
}

void MacroReplacementTest::stopsTheOldMacro()
{
    open();
    press(58); // plays the first macro until F1 is pressed again
    release(58);
    passTime(10ms);
    QCOMPARE(mSent, QStringList{u"+4"_s});
    QCOMPARE(replace(0, MacroEdits::tap(keyB)), std::nullopt);
    QCOMPARE(mSent, QStringList({u"+4"_s, u"-4"_s}));
}

QTEST_GUILESS_MAIN(MacroReplacementTest)
#include "macroreplacementtest.moc"
