// SPDX-License-Identifier: MIT
#include "macros/macrorecord.h"
#include "macros/eventparser.h"
#include "tests/support/testmain.h"

#include <QRandomGenerator>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

QVariant makeEvent(int command, int delay, int page, int argument)
{
    return MacroRecord::eventRecord({command, delay, page, static_cast<uint>(argument)});
}

QVariant withoutLine(int delay)
{
    return makeEvent(1, delay, 8, 4);
}

QList<int> delays(const QVariantList &events)
{
    QList<int> result;
    for (const QVariant &entry : events)
        result += MacroRecord::eventFields(entry.toMap()).delayMs;
    return result;
}

// press A, release A, an event without a line, left button down
const QVariantList &sample()
{
    static const QVariantList events{makeEvent(1, 10, 7, 4), makeEvent(0, 11, 7, 4), withoutLine(12),
                                     makeEvent(1, 13, 9, 1)};
    return events;
}

} // namespace

class MacroRecordTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsEventsOfARecord_data();
    void readsEventsOfARecord();
    void readsTheFieldsOfARecord();
    void findsTheMacroWithANumber();
    void capacityIsThatOfTheMacroAndOfAllMacros();
    void fieldsThatAreNotNumbersAreZero_data();
    void fieldsThatAreNotNumbersAreZero();
    void nameThatIsNotTextIsEmpty();
    void keepsFurtherKeysWhenEventsAreReplaced();
    void noEventsAreAnEmptyDictionary();
    void mapsRowsToEvents_data();
    void mapsRowsToEvents();
    void rowsAgreeWithTheDisplayLines();
    void removesTheEventOfARow();
    void replacesTheEventOfARow();
    void setsTheDelayOfARow();
    void copiesTheDelayOfARowToAll();
    void setsAllDelays();
    void editsOfAMissingRowAreAbsent_data();
    void editsOfAMissingRowAreAbsent();
    void editsKeepFurtherKeysOfEvents();
    void recognisesWellFormedRecords_data();
    void recognisesWellFormedRecords();
    void handlesTheGreatestMacro();
    void digestIsThatOfTheDocumentedBytes();
    void digestDistinguishesWhatIsStored();
};

void MacroRecordTest::readsEventsOfARecord_data()
{
    QTest::addColumn<QVariantMap>("macro");
    QTest::addColumn<int>("count");
    QTest::newRow("no sequence") << QVariantMap{{u"MacroName"_s, u"M"_s}} << 0;
    QTest::newRow("empty sequence") << QVariantMap{{u"sequence"_s, QVariantMap()}} << 0;
    QTest::newRow("four events") << QVariantMap{{u"sequence"_s, QVariantMap{{u"Events"_s, sample()}}}} << 4;
    QTest::newRow("sequence of another type") << QVariantMap{{u"sequence"_s, u"x"_s}} << 0;
}

void MacroRecordTest::readsEventsOfARecord()
{
    QFETCH(QVariantMap, macro);
    QTEST(int(MacroRecord::events(macro).size()), "count");
}

void MacroRecordTest::readsTheFieldsOfARecord()
{
    const QVariantMap sequence{{u"Events"_s, QVariantList()}};
    const QVariantMap macro{
        {u"MacroName"_s, u"A"_s}, {u"macroID"_s, qlonglong(7)}, {u"delay"_s, 20}, {u"sequence"_s, sequence}};
    QCOMPARE(MacroRecord::name(macro), u"A"_s);
    QCOMPARE(MacroRecord::identity(macro), QVariant(7));
    QCOMPARE(MacroRecord::macroId(macro), 7);
    QCOMPARE(MacroRecord::delayMs(macro), 20);
    QCOMPARE(MacroRecord::sequence(macro), QVariant(sequence));
}

void MacroRecordTest::findsTheMacroWithANumber()
{
    const auto numbered = [](const QVariant &number) { return QVariantMap{{u"macroID"_s, number}}; };
    const QVariantList macros{numbered(7),  QVariantMap(),          numbered(0),   numbered(u"first"_s),
                              numbered(-1), numbered(qlonglong(9)), u"no record"_s};
    QCOMPARE(MacroRecord::indexOfMacroId(macros, 7), 0);
    QCOMPARE(MacroRecord::indexOfMacroId(macros, 9), 5);
    for (const qint64 other : {qint64(8), qint64(0), qint64(-1), qint64(7) + (qint64(1) << 32)})
        QCOMPARE(MacroRecord::indexOfMacroId(macros, other), std::nullopt);
    QCOMPARE(MacroRecord::indexOfMacroId({}, 7), std::nullopt);
}

void MacroRecordTest::capacityIsThatOfTheMacroAndOfAllMacros()
{
    const auto ofSize = [](int events) {
        return MacroRecord::withEvents({}, QVariantList(events, QVariantMap{{u"page"_s, 7}}));
    };
    QVariantList macros{ofSize(3), ofSize(10'000), ofSize(10'000), ofSize(10'000), ofSize(10'000)};
    QCOMPARE(MacroRecord::capacity({}, 0), 10'000);
    QCOMPARE(MacroRecord::capacity(macros, 0), 10'000); // its own events do not count
    QCOMPARE(MacroRecord::capacity(macros, 1), 10'000);
    QCOMPARE(MacroRecord::capacity(macros, 5), 9'997); // a new one
    macros += ofSize(9'990);
    QCOMPARE(MacroRecord::capacity(macros, 0), 10);
    QCOMPARE(MacroRecord::capacity(macros, 6), 7);
    QCOMPARE(MacroRecord::faultOfCount(macros, 0, 10), QString());
    QCOMPARE(MacroRecord::faultOfCount(macros, 0, 11),
             u"11 events; the other macros leave room for 10, as all together have at most 50000"_s);
    QCOMPARE(MacroRecord::faultOfCount(macros, 0, 10'001), u"10001 events; a macro has at most 10000"_s);
    macros += ofSize(10'000); // a list that is not checked yet
    QCOMPARE(MacroRecord::capacity(macros, 7), 0);
    QCOMPARE(MacroRecord::capacity(QVariantList(256, ofSize(0)), 255), 10'000);
    QCOMPARE(MacroRecord::capacity(QVariantList(256, ofSize(0)), 256), 0);
}

void MacroRecordTest::fieldsThatAreNotNumbersAreZero_data()
{
    QTest::addColumn<QVariantMap>("macro");
    const auto ofValue = [](const QVariant &value) { return QVariantMap{{u"macroID"_s, value}, {u"delay"_s, value}}; };
    QTest::newRow("absent") << QVariantMap();
    QTest::newRow("words") << ofValue(u"first"_s);
    QTest::newRow("array") << ofValue(QVariantList{1});
    QTest::newRow("dictionary") << ofValue(QVariantMap{{u"macroID"_s, 1}});
}

void MacroRecordTest::fieldsThatAreNotNumbersAreZero()
{
    QFETCH(QVariantMap, macro);
    QCOMPARE(MacroRecord::macroId(macro), 0);
    QCOMPARE(MacroRecord::delayMs(macro), 0);
    QCOMPARE(MacroRecord::identity(macro).isValid(), macro.contains(u"macroID"_s));
    QVERIFY(!MacroRecord::sequence(macro).isValid());
}

void MacroRecordTest::nameThatIsNotTextIsEmpty()
{
    for (const QVariant &name : {QVariant(), QVariant(3), QVariant(QVariantList{u"A"_s})})
        QCOMPARE(MacroRecord::name({{u"MacroName"_s, name}}), QString());
}

void MacroRecordTest::keepsFurtherKeysWhenEventsAreReplaced()
{
    const QVariantMap macro{{u"MacroName"_s, u"M"_s},
                            {u"mine"_s, 3},
                            {u"sequence"_s, QVariantMap{{u"Events"_s, sample()}, {u"other"_s, true}}}};
    const QVariantMap changed = MacroRecord::withEvents(macro, {sample().first()});
    QCOMPARE(changed.value(u"mine"_s), QVariant(3));
    QCOMPARE(changed.value(u"sequence"_s).toMap().value(u"other"_s), QVariant(true));
    QCOMPARE(MacroRecord::events(changed), QVariantList{sample().first()});
    QCOMPARE(MacroRecord::events(macro), sample()); // the given macro is unchanged
}

void MacroRecordTest::noEventsAreAnEmptyDictionary()
{
    const QVariantMap macro = MacroRecord::withEvents(MacroRecord::withEvents({}, sample()), {});
    QCOMPARE(macro, (QVariantMap{{u"sequence"_s, QVariantMap()}}));
}

void MacroRecordTest::mapsRowsToEvents_data()
{
    QTest::addColumn<QVariantList>("events");
    QTest::addColumn<QList<int>>("eventsByRow");
    QTest::newRow("none") << QVariantList() << QList<int>();
    QTest::newRow("one") << QVariantList{makeEvent(1, 0, 7, 4)} << QList<int>{0};
    QTest::newRow("a delay row, then its event row")
        << QVariantList{makeEvent(1, 0, 7, 4), makeEvent(0, 0, 7, 4)} << QList<int>{0, 1, 1};
    QTest::newRow("event without line") << sample() << QList<int>{0, 1, 1, 2, 3, 3};
    QTest::newRow("first event without line")
        << QVariantList{withoutLine(1), makeEvent(0, 0, 7, 4)} << QList<int>{1, 1};
    QTest::newRow("nothing but events without lines")
        << QVariantList{withoutLine(1), withoutLine(2), withoutLine(3)} << QList<int>{1, 2};
}

void MacroRecordTest::mapsRowsToEvents()
{
    QFETCH(QVariantList, events);
    QFETCH(QList<int>, eventsByRow);
    QCOMPARE(qsizetype(MacroRecord::rowCount(events)), eventsByRow.size());
    for (int row = 0; row < eventsByRow.size(); ++row)
        QCOMPARE(MacroRecord::eventIndexOfRow(events, row), std::optional<int>(eventsByRow.at(row)));
    for (const int missing :
         {-1, int(eventsByRow.size()), 255, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        QCOMPARE(MacroRecord::eventIndexOfRow(events, missing), std::optional<int>());
}

// Property: for all events there are as many rows as lines, and the lines of a row's event contain the row's line.
void MacroRecordTest::rowsAgreeWithTheDisplayLines()
{
    QRandomGenerator random(271);
    for (int round = 0; round < 300; ++round) {
        QVariantList events;
        for (int count = random.bounded(12); count > 0; --count)
            events += makeEvent(random.bounded(4) - 1, random.bounded(3000), random.bounded(6, 11), random.bounded(13));
        const QStringList lines = eventParser::getMessagesArray(events);
        QCOMPARE(qsizetype(MacroRecord::rowCount(events)), lines.size());
        for (int row = 0; row < lines.size(); ++row) {
            const std::optional<int> index = MacroRecord::eventIndexOfRow(events, row);
            QVERIFY(index);
            QVERIFY(eventParser::parseSequence(events.at(*index).toMap()).contains(lines.at(row)));
        }
    }
}

void MacroRecordTest::removesTheEventOfARow()
{
    QCOMPARE(delays(*MacroRecord::removingEventOfRow(sample(), 0)), QList<int>({11, 12, 13}));
    QCOMPARE(delays(*MacroRecord::removingEventOfRow(sample(), 1)), QList<int>({10, 12, 13})); // by its delay row
    QCOMPARE(delays(*MacroRecord::removingEventOfRow(sample(), 2)), QList<int>({10, 12, 13})); // by its event row
    QCOMPARE(delays(*MacroRecord::removingEventOfRow(sample(), 3)), QList<int>({10, 11, 13}));
    QCOMPARE(delays(*MacroRecord::removingEventOfRow(sample(), 5)), QList<int>({10, 11, 12}));
}

void MacroRecordTest::replacesTheEventOfARow()
{
    const QVariantMap other = makeEvent(0, 99, 7, 30).toMap();
    QVariantList expected = sample();
    expected[1] = other;
    QCOMPARE(MacroRecord::replacingEventOfRow(sample(), 1, other), expected);
    QCOMPARE(MacroRecord::replacingEventOfRow(sample(), 2, other), expected);
}

void MacroRecordTest::setsTheDelayOfARow()
{
    QCOMPARE(delays(*MacroRecord::settingDelayOfRow(sample(), 1, 500)), QList<int>({10, 500, 12, 13}));
    QCOMPARE(delays(*MacroRecord::settingDelayOfRow(sample(), 5, 0)), QList<int>({10, 11, 12, 0}));
    QCOMPARE(delays(*MacroRecord::settingDelayOfRow(sample(), 0, 7)), QList<int>({7, 11, 12, 13}));
}

void MacroRecordTest::copiesTheDelayOfARowToAll()
{
    QCOMPARE(delays(*MacroRecord::copyingDelayOfRowToAll(sample(), 3)), QList<int>({12, 12, 12, 12}));
}

void MacroRecordTest::setsAllDelays()
{
    QCOMPARE(delays(MacroRecord::settingAllDelays(sample(), 0)), QList<int>({0, 0, 0, 0}));
    QCOMPARE(MacroRecord::settingAllDelays({}, 0), QVariantList());
}

void MacroRecordTest::editsOfAMissingRowAreAbsent_data()
{
    QTest::addColumn<int>("row");
    QTest::newRow("-1") << -1;
    QTest::newRow("one too far") << 6;
    QTest::newRow("far") << 255;
}

void MacroRecordTest::editsOfAMissingRowAreAbsent()
{
    QFETCH(int, row);
    QVERIFY(!MacroRecord::removingEventOfRow(sample(), row));
    QVERIFY(!MacroRecord::replacingEventOfRow(sample(), row, {}));
    QVERIFY(!MacroRecord::settingDelayOfRow(sample(), row, 1));
    QVERIFY(!MacroRecord::copyingDelayOfRowToAll(sample(), row));
}

void MacroRecordTest::editsKeepFurtherKeysOfEvents()
{
    QVariantMap marked = makeEvent(1, 5, 7, 4).toMap();
    marked.insert(u"mark"_s, u"kept"_s);
    const QVariantList events{marked, makeEvent(0, 6, 7, 4)};
    QCOMPARE(MacroRecord::settingDelayOfRow(events, 0, 1)->first().toMap().value(u"mark"_s), QVariant(u"kept"_s));
    QCOMPARE(MacroRecord::settingAllDelays(events, 1).first().toMap().value(u"mark"_s), QVariant(u"kept"_s));
}

void MacroRecordTest::recognisesWellFormedRecords_data()
{
    QTest::addColumn<QVariantMap>("macro");
    QTest::addColumn<bool>("wellFormed");
    const QVariantMap named{{u"MacroName"_s, u"M"_s}};
    const auto with = [&](const QString &key, const QVariant &value) {
        QVariantMap macro = named;
        macro.insert(key, value);
        return macro;
    };
    const auto withEvents = [&](const QVariant &events) {
        return with(u"sequence"_s, QVariantMap{{u"Events"_s, events}});
    };
    QTest::newRow("name only") << named << true;
    QTest::newRow("empty name") << QVariantMap{{u"MacroName"_s, QString()}} << true;
    QTest::newRow("no name") << QVariantMap() << false;
    QTest::newRow("name is a number") << QVariantMap{{u"MacroName"_s, 3}} << false;
    QTest::newRow("delay") << with(u"delay"_s, 20) << true;
    QTest::newRow("delay is text") << with(u"delay"_s, u"20"_s) << false;
    QTest::newRow("empty sequence") << with(u"sequence"_s, QVariantMap()) << true;
    QTest::newRow("sequence is an array") << with(u"sequence"_s, QVariantList()) << false;
    QTest::newRow("events") << withEvents(sample()) << true;
    QTest::newRow("events are no array") << withEvents(u"x"_s) << false;
    QTest::newRow("an event is no dictionary") << withEvents(QVariantList{sample().first(), 3}) << false;
    QTest::newRow("an event's page is text") << withEvents(QVariantList{QVariantMap{{u"page"_s, u"7"_s}}}) << false;
    QTest::newRow("further keys") << with(u"anything"_s, QVariantList{1, u"x"_s}) << true;
    QTest::newRow("as many events as fit")
        << withEvents(QVariantList(MacroRecord::maximumEvents, sample().first())) << true;
    QTest::newRow("one event too many") << withEvents(QVariantList(MacroRecord::maximumEvents + 1, sample().first()))
                                        << false;
}

void MacroRecordTest::recognisesWellFormedRecords()
{
    QFETCH(QVariantMap, macro);
    QTEST(MacroRecord::isWellFormed(macro), "wellFormed");
}

void MacroRecordTest::handlesTheGreatestMacro()
{
    QVariantList events(MacroRecord::maximumEvents, makeEvent(1, 10, 7, 4));
    const int lastRow = 2 * MacroRecord::maximumEvents - 2;
    QCOMPARE(MacroRecord::rowCount(events), lastRow + 1);
    QCOMPARE(MacroRecord::eventIndexOfRow(events, lastRow), std::optional<int>(MacroRecord::maximumEvents - 1));
    QCOMPARE(MacroRecord::removingEventOfRow(events, lastRow)->size(), qsizetype(MacroRecord::maximumEvents - 1));
}

// The digests were computed from the description in docs/daemon-protocol.md, without this program.
void MacroRecordTest::digestIsThatOfTheDocumentedBytes()
{
    QCOMPARE(MacroRecord::digest({}), u"aad02e1bbbb00b10402fb9abc3fb93c5eee7df168946b1f75bbdb510b6763a1f"_s);
    QCOMPARE(MacroRecord::digest({makeEvent(1, 20, 7, 4), makeEvent(0, 300, 7, 4)}),
             u"316aadee6a21c5e5a7b11220c48a3f21851653f657fb0b91f68ef984a3c2875b"_s);
    QVariantMap further = makeEvent(1, -1, 9, 1).toMap();
    further.insert(u"mark"_s, u"\u00e9 of the maker"_s);
    further.insert(u"ratio"_s, 0.5);
    further.insert(u"is"_s, true);
    QVariantList many{further};
    for (int index = 0; index < 400; ++index)
        many += makeEvent(index % 2, 70'000 + index, 7, 4 + index % 200);
    QCOMPARE(MacroRecord::digest(many), u"09870e9fe802d6af07d935721bff7d153b5161039f5c9b8a75c973e20640320c"_s);
}

void MacroRecordTest::digestDistinguishesWhatIsStored()
{
    const auto digestWith = [](const QVariant &delay) {
        QVariantMap event = makeEvent(1, 0, 7, 4).toMap();
        event.insert(u"delay"_s, delay);
        return MacroRecord::digest({event});
    };
    const QStringList digests{digestWith(0), digestWith(1), digestWith(true), digestWith(1.0),
                              MacroRecord::digest({makeEvent(1, 0, 7, 4), makeEvent(1, 0, 7, 4)})};
    QCOMPARE(QSet<QString>(digests.begin(), digests.end()).size(), digests.size());
    QCOMPARE(digestWith(qlonglong(1)), digestWith(1)); // the same number of the same type in the file
    QCOMPARE(digestWith(QVariant()), QString());       // has no form in a property list
}

QTEST_APPLESS_MAIN(MacroRecordTest)
#include "macrorecordtest.moc"
