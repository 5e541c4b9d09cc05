// SPDX-License-Identifier: MIT
// One wrong value at a time in a full document: the value is repaired, and everything else remains unchanged.
#include "daemon/settings/settingsrepair.h"
#include "base/document.h"
#include "tests/support/reason.h"
#include "tests/support/testmain.h"

#include "daemon/settings/settingsdocument.h"
#include "macros/macrorecord.h"

#include <QRandomGenerator>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

QVariantMap keyEvent(int argument)
{
    return {{u"command"_s, 1}, {u"delay"_s, 15}, {u"page"_s, 7}, {u"argument"_s, argument}};
}

QVariantMap macro(const QString &name, int id)
{
    return {{u"MacroName"_s, name},
            {u"macroID"_s, id},
            {u"delay"_s, 20},
            {u"sequence"_s, QVariantMap{{u"Events"_s, QVariantList{keyEvent(4), keyEvent(5)}}, {u"Other"_s, 1}}},
            {u"Other"_s, u"kept"_s}};
}

QVariantMap profile(const QString &name)
{
    const QVariantMap entry{{u"command"_s, 16}, {u"param1"_s, 5}, {u"param2"_s, 0}};
    return {{u"ProfileName"_s, name},
            {u"Keys"_s, QVariantMap{{u"4"_s, entry}, {u"5"_s, entry}}},
            {u"AppInfo"_s, QVariantMap{{u"executable"_s, u"game"_s}}},
            {u"LEDKBColors"_s, QVariantList{QVariantMap{{u"Red"_s, 0.5}}}},
            {u"Other"_s, u"kept"_s}};
}

/// Valid, with three profiles, of which the last is active, two macros, and keys that the program does not know.
QVariantMap fullDocument()
{
    return {{u"Profiles"_s, QVariantList{profile(u"A"_s), profile(u"B"_s), profile(u"C"_s)}},
            {u"Macros"_s, QVariantList{macro(u"M"_s, 1), macro(u"N"_s, 2)}},
            {u"DeviceSettings"_s, QVariantMap{{u"ActiveProfile"_s, 2}, {u"GameMode"_s, true}, {u"Other"_s, 1}}},
            {u"Other"_s, QVariantList{1, u"kept"_s}}};
}

/// The place of a value: the keys of dictionaries and the positions in arrays, from the root on.
using Path = QVariantList;

using Change = std::function<QVariant(const QVariant &)>;

/// `tree` with the value at `path` changed. An invalid value removes the entry.
QVariant changed(const QVariant &tree, const Path &path, const Change &change)
{
    if (path.isEmpty())
        return change(tree);
    const Path rest = path.sliced(1);
    if (path.first().typeId() == QMetaType::Int) {
        QVariantList list = tree.toList();
        const int index = path.first().toInt();
        if (const QVariant value = changed(list.at(index), rest, change); value.isValid())
            list[index] = value;
        else
            list.removeAt(index);
        return list;
    }
    QVariantMap map = tree.toMap();
    const QString key = path.first().toString();
    const QVariant value = changed(map.value(key), rest, change);
    if (value.isValid())
        map.insert(key, value);
    else
        map.remove(key);
    return map;
}

QVariantMap with(const QVariantMap &document, const Path &path, const QVariant &value)
{
    return changed(document, path, [&](const QVariant &) { return value; }).toMap();
}

QVariantMap with(const Path &path, const QVariant &value)
{
    return with(fullDocument(), path, value);
}

QVariantMap without(const Path &path)
{
    return with(path, QVariant());
}

QVariantMap withActive(const QVariantMap &document, const QVariant &position)
{
    return with(document, {u"DeviceSettings"_s, u"ActiveProfile"_s}, position);
}

QVariantList profileList(int count)
{
    QVariantList list;
    for (int number = 0; number < count; ++number)
        list += profile(QString::number(number));
    return list;
}

QVariantList macroList(int count)
{
    QVariantList list;
    for (int number = 0; number < count; ++number)
        list += macro(QString::number(number), number + 1);
    return list;
}

QVariant nested(int depth)
{
    QVariant value = 1;
    for (int level = 0; level < depth; ++level)
        value = QVariantList{value};
    return value;
}

bool isFullContainer(const QVariant &value)
{
    return (value.typeId() == QMetaType::QVariantMap && !value.toMap().isEmpty())
           || (value.typeId() == QMetaType::QVariantList && !value.toList().isEmpty());
}

/// The path of a random value in `tree`, below its root.
Path chancePath(const QVariant &tree, QRandomGenerator &random)
{
    Path path;
    QVariant value = tree;
    do {
        if (value.typeId() == QMetaType::QVariantList) {
            path += random.bounded(int(value.toList().size()));
            value = value.toList().at(path.last().toInt());
        } else {
            const QStringList keys = value.toMap().keys();
            path += keys.at(random.bounded(int(keys.size())));
            value = value.toMap().value(path.last().toString());
        }
    } while (isFullContainer(value) && random.bounded(4) != 0);
    return path;
}

QVariantMap emptyProfile(const QString &name)
{
    return {{u"ProfileName"_s, name}, {u"Keys"_s, QVariantMap()}};
}

QString tooLong()
{
    return QString(SettingsDocument::maximumContentBytes / 2, u'x');
}

void row(const char *name, const QVariantMap &broken, const QVariantMap &expected)
{
    QTest::newRow(name) << broken << expected;
}

} // namespace

class SettingsRepairTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void validDocumentStaysTheSame();
    void oneWrongValueIsRepaired_data();
    void oneWrongValueIsRepaired();
    void severalWrongValuesAreRepaired();
    void largestUnknownValuesAreRemoved();
    void knownValuesAreRemovedWhenNecessary();
    void anyDamageIsRepairedAtOnce();
    void otherDocumentsAreNotRepaired_data();
    void otherDocumentsAreNotRepaired();

private:
    static void addRowsOfTheDocument();
    static void addRowsOfProfiles();
    static void addRowsOfMacros();
    static void addRowsOfTheActiveProfile();
    static void addRowsOfTheBounds();
};

void SettingsRepairTest::validDocumentStaysTheSame()
{
    const auto result = repairedSettings(fullDocument());
    QVERIFY(result);
    QCOMPARE(result->document, fullDocument());
    QCOMPARE(result->repairs, QStringList());
}

void SettingsRepairTest::addRowsOfTheDocument()
{
    const QVariantList oneProfile{emptyProfile(u"Default Profile"_s)};
    const QVariantMap onlyEmptyProfile = withActive(with({u"Profiles"_s}, oneProfile), 0);
    row("no profiles", without({u"Profiles"_s}), onlyEmptyProfile);
    row("profiles are a dictionary", with({u"Profiles"_s}, QVariantMap()), onlyEmptyProfile);
    row("an empty list of profiles", with({u"Profiles"_s}, QVariantList()), onlyEmptyProfile);
    row("no macros", without({u"Macros"_s}), with({u"Macros"_s}, QVariantList()));
    row("macros are text", with({u"Macros"_s}, u"x"_s), with({u"Macros"_s}, QVariantList()));
    const QVariantMap onlyActive = with({u"DeviceSettings"_s}, QVariantMap{{u"ActiveProfile"_s, 0}});
    row("no device settings", without({u"DeviceSettings"_s}), onlyActive);
    row("device settings are an array", with({u"DeviceSettings"_s}, QVariantList{1}), onlyActive);
}

void SettingsRepairTest::addRowsOfProfiles()
{
    row("21 profiles", with({u"Profiles"_s}, profileList(21)), with({u"Profiles"_s}, profileList(20)));
    row("21 profiles, the last one active", withActive(with({u"Profiles"_s}, profileList(21)), 20),
        withActive(with({u"Profiles"_s}, profileList(20)), 0));
    row("a profile is text", with({u"Profiles"_s, 1}, u"x"_s), with({u"Profiles"_s, 1}, emptyProfile(u"Profile 2"_s)));
    row("a profile's name is a number", with({u"Profiles"_s, 1, u"ProfileName"_s}, 3),
        with({u"Profiles"_s, 1, u"ProfileName"_s}, u"Profile 2"_s));
    row("a profile's keys are an array", with({u"Profiles"_s, 0, u"Keys"_s}, QVariantList{1}),
        without({u"Profiles"_s, 0, u"Keys"_s}));
    row("a key's entry is a number", with({u"Profiles"_s, 0, u"Keys"_s, u"4"_s}, 20),
        without({u"Profiles"_s, 0, u"Keys"_s, u"4"_s}));
    row("a profile's application is text", with({u"Profiles"_s, 2, u"AppInfo"_s}, u"game"_s),
        without({u"Profiles"_s, 2, u"AppInfo"_s}));
    row("a profile's colours are text", with({u"Profiles"_s, 2, u"LEDKBColors"_s}, u"red"_s),
        without({u"Profiles"_s, 2, u"LEDKBColors"_s}));
}

void SettingsRepairTest::addRowsOfMacros()
{
    const Path events{u"Macros"_s, 0, u"sequence"_s, u"Events"_s};
    row("257 macros", with({u"Macros"_s}, macroList(257)), with({u"Macros"_s}, macroList(256)));
    row("a macro is a number", with({u"Macros"_s, 0}, 3),
        with({u"Macros"_s, 0}, QVariantMap{{u"MacroName"_s, u"Macro 1"_s}, {u"sequence"_s, QVariantMap()}}));
    row("a macro without a name", without({u"Macros"_s, 1, u"MacroName"_s}),
        with({u"Macros"_s, 1, u"MacroName"_s}, u"Macro 2"_s));
    row("a macro's name is a number", with({u"Macros"_s, 1, u"MacroName"_s}, 3),
        with({u"Macros"_s, 1, u"MacroName"_s}, u"Macro 2"_s));
    row("a macro's pause is a word", with({u"Macros"_s, 1, u"delay"_s}, u"long"_s),
        without({u"Macros"_s, 1, u"delay"_s}));
    row("a macro's pause is a decimal text", with({u"Macros"_s, 1, u"delay"_s}, u"20"_s), fullDocument());
    row("a sequence is an array", with({u"Macros"_s, 0, u"sequence"_s}, QVariantList{1}),
        with({u"Macros"_s, 0, u"sequence"_s}, QVariantMap()));
    row("events are a dictionary", with(events, QVariantMap()), without(events));
    row("an event is text", with(events + Path{1}, u"x"_s), without(events));
    for (const QString &field : {u"command"_s, u"delay"_s, u"page"_s, u"argument"_s}) {
        const Path path = events + Path{1, field};
        QTest::addRow("an event's %s is a word", qPrintable(field)) << with(path, u"x"_s) << without(events);
        QTest::addRow("an event's %s is an array", qPrintable(field)) << with(path, QVariantList{1}) << without(events);
    }
    row("an event's delay is a decimal text", with(events + Path{1, u"delay"_s}, u"15"_s), fullDocument());
    row("too many events in a macro", with(events, QVariantList(MacroRecord::maximumEvents + 1, keyEvent(4))),
        without(events));
    QVariantList full;
    for (int number = 1; number <= 5; ++number)
        full += MacroRecord::withEvents(macro(u"M"_s, number), QVariantList(MacroRecord::maximumEvents, keyEvent(4)));
    const QVariantList rest{macro(u"N"_s, 6), MacroRecord::withEvents(macro(u"O"_s, 7), {})};
    row("too many events in all", with({u"Macros"_s}, full + rest),
        with(with({u"Macros"_s}, full + rest), {u"Macros"_s, 5, u"sequence"_s, u"Events"_s}, QVariant()));
}

void SettingsRepairTest::addRowsOfTheActiveProfile()
{
    const auto active = [](const char *name, const QVariant &wrong, int expected) {
        row(name, withActive(fullDocument(), wrong), withActive(fullDocument(), expected));
    };
    active("no active profile", QVariant(), 0);
    active("active -1", -1, 0);
    active("active 3 of 3", 3, 0);
    active("active 7", 7, 0);
    active("active is the text 0", u"0"_s, 0);
    active("active is the text 2", u"2"_s, 2);
    active("active is the text 7", u"7"_s, 0);
    active("active is a word", u"x"_s, 0);
    active("active is a real", 1.0, 1);
    active("active is between two", 1.5, 0);
    active("active is huge", (qlonglong(1) << 32) + 1, 0);
    active("active is an array", QVariantList{1}, 0);
}

void SettingsRepairTest::addRowsOfTheBounds()
{
    const Path inDocument{u"Further"_s};
    const Path inDevice{u"DeviceSettings"_s, u"Further"_s};
    const Path inProfile{u"Profiles"_s, 1, u"Further"_s};
    const Path inMacro{u"Macros"_s, 1, u"Further"_s};
    for (const Path &path : {inDocument, inDevice, inProfile, inMacro}) {
        const QByteArray place = path.first().toByteArray();
        QTest::addRow("in %s: too deep", place.constData())
            << with(path, nested(SettingsDocument::maximumDepth - 1)) << fullDocument();
        QTest::addRow("in %s: too many values", place.constData())
            << with(path, QVariantList(SettingsDocument::maximumNodes, 1)) << fullDocument();
        QTest::addRow("in %s: too much text", place.constData()) << with(path, tooLong()) << fullDocument();
        QTest::addRow("in %s: too much data", place.constData())
            << with(path, QByteArray(SettingsDocument::maximumContentBytes, 'x')) << fullDocument();
    }
    row("a key's entry is too large", with({u"Profiles"_s, 0, u"Keys"_s, u"4"_s, u"param1"_s}, tooLong()),
        without({u"Profiles"_s, 0, u"Keys"_s, u"4"_s}));
    row("an event is too large", with({u"Macros"_s, 0, u"sequence"_s, u"Events"_s, 0, u"Other"_s}, tooLong()),
        without({u"Macros"_s, 0, u"sequence"_s}));
    row("a profile's name is too long", with({u"Profiles"_s, 0, u"ProfileName"_s}, tooLong()),
        with({u"Profiles"_s, 0, u"ProfileName"_s}, QString()));
    row("a macro's name is too long", with({u"Macros"_s, 0, u"MacroName"_s}, tooLong()),
        with({u"Macros"_s, 0, u"MacroName"_s}, QString()));
}

void SettingsRepairTest::oneWrongValueIsRepaired_data()
{
    QTest::addColumn<QVariantMap>("broken");
    QTest::addColumn<QVariantMap>("expected");
    addRowsOfTheDocument();
    addRowsOfProfiles();
    addRowsOfMacros();
    addRowsOfTheActiveProfile();
    addRowsOfTheBounds();
}

void SettingsRepairTest::oneWrongValueIsRepaired()
{
    QFETCH(QVariantMap, broken);
    QFETCH(QVariantMap, expected);
    QVERIFY(!SettingsDocument::validate(broken));
    const auto result = repairedSettings(broken);
    QVERIFY(result);
    QVERIFY(!result->repairs.isEmpty());
    QCOMPARE(reasonOf(SettingsDocument::validate(result->document)), QString());
    QCOMPARE(result->document, expected);
}

void SettingsRepairTest::severalWrongValuesAreRepaired()
{
    QVariantMap broken = with({u"Profiles"_s, 0, u"Keys"_s, u"4"_s}, 20);
    broken = with(broken, {u"Macros"_s, 1}, 3);
    broken = withActive(broken, 9);
    const auto result = repairedSettings(broken);
    QVERIFY(result);
    QCOMPARE(result->repairs.size(), 3);
    QCOMPARE(reasonOf(SettingsDocument::validate(result->document)), QString());
    QVariantMap expected = without({u"Profiles"_s, 0, u"Keys"_s, u"4"_s});
    expected =
        with(expected, {u"Macros"_s, 1}, QVariantMap{{u"MacroName"_s, u"Macro 2"_s}, {u"sequence"_s, QVariantMap()}});
    QCOMPARE(result->document, withActive(expected, 0));
}

void SettingsRepairTest::largestUnknownValuesAreRemoved()
{
    const QVariantMap small = with({u"Macros"_s, 0, u"Small"_s}, QString(1000, u'x'));
    const QString threeQuarters(SettingsDocument::maximumContentBytes * 3 / 8, u'x');
    // The known part is larger than the unknown part, and remains.
    const QVariantMap large = with(small, {u"Profiles"_s, 2, u"AppInfo"_s, u"executable"_s}, threeQuarters);
    const QVariantMap broken =
        with(large, {u"DeviceSettings"_s, u"Large"_s}, threeQuarters.first(threeQuarters.size() / 2));
    const auto result = repairedSettings(broken);
    QVERIFY(result);
    QCOMPARE(result->document, large);
}

void SettingsRepairTest::knownValuesAreRemovedWhenNecessary()
{
    const QString threeQuarters(SettingsDocument::maximumContentBytes * 3 / 8, u'x');
    QVariantMap broken = with({u"Profiles"_s, 2, u"AppInfo"_s, u"executable"_s}, threeQuarters);
    broken = with(broken, {u"Profiles"_s, 1, u"ProfileName"_s}, threeQuarters);
    const auto result = repairedSettings(broken);
    QVERIFY(result);
    QCOMPARE(reasonOf(SettingsDocument::validate(result->document)), QString());
    const QVariantList profiles = Document(result->document).profiles();
    QVERIFY(!profiles.at(2).toMap().contains(u"AppInfo"_s));
    QCOMPARE(profiles.at(2).toMap().value(u"Keys"_s), profile(u"C"_s).value(u"Keys"_s));
    QCOMPARE(profiles.at(1).toMap().value(u"ProfileName"_s), QVariant(threeQuarters));
    QCOMPARE(Document(result->document).macros().at(0).toMap().value(u"sequence"_s),
             macro(u"M"_s, 1).value(u"sequence"_s));
}

// Random values change or disappear. The remaining document is valid.
void SettingsRepairTest::anyDamageIsRepairedAtOnce()
{
    QRandomGenerator random(271);
    const QVariantList values{QVariant(),
                              -1,
                              0,
                              7,
                              1e300,
                              true,
                              u"x"_s,
                              QByteArray(),
                              QVariantList{QVariantList(), 1},
                              nested(600),
                              QVariantMap{{u"Events"_s, 1}, {u"Keys"_s, QVariantMap{{u"4"_s, 1}}}}};
    int brokenCount = 0;
    for (int round = 0; round < 2000; ++round) {
        QVariantMap broken = fullDocument();
        for (int change = random.bounded(1, 4); change > 0; --change)
            broken = with(broken, chancePath(broken, random), values.at(random.bounded(int(values.size()))));
        const auto result = repairedSettings(broken);
        if (!result) // all three pieces are missing
            continue;
        const bool isBroken = !SettingsDocument::validate(broken);
        brokenCount += isBroken ? 1 : 0;
        QCOMPARE(result->repairs.isEmpty(), !isBroken);
        QCOMPARE(reasonOf(SettingsDocument::validate(result->document)), QString());
        QCOMPARE(repairedSettings(result->document)->repairs, QStringList());
    }
    QVERIFY2(brokenCount > 500, qPrintable(QString::number(brokenCount)));
}

void SettingsRepairTest::otherDocumentsAreNotRepaired_data()
{
    QTest::addColumn<QVariantMap>("document");
    QTest::newRow("empty") << QVariantMap();
    QTest::newRow("another document") << QVariantMap{{u"a"_s, 1}};
    QTest::newRow("of wrong types") << QVariantMap{{u"Profiles"_s, 1}, {u"Macros"_s, u"x"_s}};
}

void SettingsRepairTest::otherDocumentsAreNotRepaired()
{
    QFETCH(QVariantMap, document);
    QVERIFY(!repairedSettings(document));
}

QTEST_APPLESS_MAIN(SettingsRepairTest)
#include "settingsrepairtest.moc"
