// SPDX-License-Identifier: MIT
// The difference between two documents: it leads from either to the other and to nothing else, and is small.
#include "daemon/settings/documentdifference.h"
#include "tests/support/testmain.h"

#include "base/document.h"
#include "base/propertylist.h"
#include "daemon/settings/settingsdocument.h"
#include "tests/support/fulldocument.h"

#include <QRandomGenerator>
#include <QTest>

using namespace DocumentDifference;
using namespace Qt::StringLiterals;

namespace {

QVariantMap documentOf(const QVariantList &profiles, const QVariantList &macros)
{
    return {{u"Profiles"_s, profiles},
            {u"Macros"_s, macros},
            {u"DeviceSettings"_s, QVariantMap{{u"ActiveProfile"_s, 0}, {u"LastMacroID"_s, 7}}}};
}

QVariantMap profileNamed(const QString &name)
{
    return {{u"ProfileName"_s, name}, {u"Keys"_s, QVariantMap()}};
}

QVariantMap macroNumbered(int id, const QVariantList &events = {})
{
    return {
        {u"MacroName"_s, u"M%1"_s.arg(id)}, {u"macroID"_s, id}, {u"sequence"_s, QVariantMap{{u"Events"_s, events}}}};
}

QByteArray bytesOf(const QVariantMap &document)
{
    return PropertyList::writeBinary(document).value_or(QByteArray());
}

/// As a daemon reads it back from the disk.
QVariantMap stored(const QVariantMap &difference)
{
    return PropertyList::read(bytesOf(difference)).value_or(QVariant()).toMap();
}

QVariant randomValue(QRandomGenerator &random, int depth)
{
    switch (random.bounded(depth > 0 ? 8 : 6)) {
    case 0: return random.bounded(2);
    case 1: return random.bounded(2) == 1;
    case 2: return double(random.bounded(3));
    case 3: return u"text %1"_s.arg(random.bounded(3));
    case 4: return QByteArray(random.bounded(3), 'x');
    case 5: return qlonglong{1} << (31 + random.bounded(3));
    case 6: {
        QVariantMap map;
        for (int count = random.bounded(4); count > 0; --count)
            map.insert(QString(QChar(u'a' + random.bounded(4))), randomValue(random, depth - 1));
        return map;
    }
    default: {
        QVariantList list;
        for (int count = random.bounded(5); count > 0; --count)
            list += randomValue(random, depth - 1);
        return list;
    }
    }
}

QVariantMap randomRecord(QRandomGenerator &random, int number, bool isMacro)
{
    QVariantMap record = isMacro ? macroNumbered(number) : profileNamed(u"P%1"_s.arg(random.bounded(5)));
    for (int count = random.bounded(3); count > 0; --count)
        record.insert(QString(QChar(u'a' + random.bounded(3))), randomValue(random, 3));
    return record;
}

/// The document with a few records removed, inserted, moved and changed.
QVariantMap randomlyChanged(QVariantMap document, QRandomGenerator &random, int &number)
{
    for (const QString &key : {u"Profiles"_s, u"Macros"_s}) {
        QVariantList list = document.value(key).toList();
        for (int count = random.bounded(4); count > 0; --count) {
            const qsizetype at = list.isEmpty() ? 0 : random.bounded(list.size());
            switch (list.isEmpty() ? 0 : random.bounded(4)) {
            case 0: list.insert(at, randomRecord(random, ++number, key == u"Macros"_s)); break;
            case 1: list.removeAt(at); break;
            case 2: list.move(at, random.bounded(list.size())); break;
            default: {
                QVariantMap record = list.at(at).toMap();
                record.insert(QString(QChar(u'a' + random.bounded(3))), randomValue(random, 3));
                list[at] = record;
            }
            }
        }
        document.insert(key, list);
    }
    QVariantMap settings = document.value(u"DeviceSettings"_s).toMap();
    settings.insert(u"ActiveProfile"_s, random.bounded(3));
    document.insert(u"DeviceSettings"_s, settings);
    if (random.bounded(4) == 0)
        document.insert(u"Other"_s, randomValue(random, 3));
    return document;
}

} // namespace

class DocumentDifferenceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leadsFromEachDocumentToTheOther();
    void fitsNoOtherDocument();
    void distinguishesTypes();
    void leavesOutTheLastMacroNumber();
    void deletedRecordIsOneStep();
    void macrosOfOtherNumbersAreOtherMacros();
    void oneKeyOfAFullDocumentIsSmall();
    void delaysOfAMacroAreSmall();
};

void DocumentDifferenceTest::leadsFromEachDocumentToTheOther()
{
    QRandomGenerator random(20);
    int number = 0;
    QVariantMap document = documentOf({profileNamed(u"P0"_s)}, {});
    for (int round = 0; round < 3000; ++round) {
        const QVariantMap before = document;
        document = randomlyChanged(document, random, number);
        const QVariantMap difference = stored(between(before, document));
        const auto after = applied(before, difference, Direction::forward);
        QVERIFY2(after && bytesOf(*after) == bytesOf(document), qPrintable(u"round %1"_s.arg(round)));
        const auto again = applied(document, difference, Direction::back);
        QVERIFY2(again && bytesOf(*again) == bytesOf(before), qPrintable(u"round %1"_s.arg(round)));
        const auto reverse = applied(document, reversed(difference), Direction::forward);
        QVERIFY2(reverse && bytesOf(*reverse) == bytesOf(before), qPrintable(u"round %1"_s.arg(round)));
    }
}

void DocumentDifferenceTest::fitsNoOtherDocument()
{
    const QVariantMap before = documentOf({profileNamed(u"A"_s), profileNamed(u"B"_s)}, {macroNumbered(1)});
    QVariantMap after = documentOf({profileNamed(u"A"_s), profileNamed(u"C"_s)}, {});
    const QVariantMap difference = between(before, after);
    QVERIFY(applied(before, difference, Direction::forward));
    QVERIFY(!applied(after, difference, Direction::forward));
    QVERIFY(!applied(before, difference, Direction::back));
    QVERIFY(!applied({}, difference, Direction::forward));
    const QVariantMap other = documentOf({profileNamed(u"A"_s), profileNamed(u"B"_s)}, {macroNumbered(2)});
    QVERIFY(!applied(other, difference, Direction::forward));
}

void DocumentDifferenceTest::distinguishesTypes()
{
    for (const auto &[one, other] : {std::pair<QVariant, QVariant>{1, true}, {1, 1.0}, {0.0, -0.0}, {false, 0}}) {
        QVERIFY(!areIdentical(one, other));
        QVERIFY(!between({{u"a"_s, QVariantList{one}}}, {{u"a"_s, QVariantList{other}}}).isEmpty());
        QVERIFY(areIdentical(one, one));
    }
}

void DocumentDifferenceTest::leavesOutTheLastMacroNumber()
{
    const QVariantMap before = documentOf({profileNamed(u"A"_s)}, {});
    const QVariantMap after = SettingsDocument::withDeviceSetting(before, "LastMacroID"_L1, 8);
    QCOMPARE(between(before, after), QVariantMap());
}

void DocumentDifferenceTest::deletedRecordIsOneStep()
{
    QVariantMap after = fullDocument();
    QVariantList profiles = Document(after).profiles();
    profiles.removeAt(4);
    after.insert(u"Profiles"_s, profiles);
    const QVariantList steps = between(fullDocument(), after).value(u"Profiles"_s).toMap().value(u"l"_s).toList();
    QCOMPARE(steps.size(), 1);
    QCOMPARE(steps.first().toMap().value(u"o"_s).toList().size(), 1);
    QCOMPARE(steps.first().toMap().value(u"n"_s).toList().size(), 0);
}

void DocumentDifferenceTest::macrosOfOtherNumbersAreOtherMacros()
{
    const QVariantMap difference = between(documentOf({}, {macroNumbered(1), macroNumbered(2)}),
                                           documentOf({}, {macroNumbered(2), macroNumbered(3)}));
    const QVariantList steps = difference.value(u"Macros"_s).toMap().value(u"l"_s).toList();
    QCOMPARE(steps.size(), 2);
    QCOMPARE(steps.at(0).toMap().value(u"o"_s).toList(), QVariantList{macroNumbered(1)});
    QCOMPARE(steps.at(1).toMap().value(u"n"_s).toList(), QVariantList{macroNumbered(3)});
}

void DocumentDifferenceTest::oneKeyOfAFullDocumentIsSmall()
{
    QVariantMap after = fullDocument();
    QVariantList profiles = Document(after).profiles();
    QVariantMap profile = profiles.at(7).toMap();
    QVariantMap keys = profile.value(u"Keys"_s).toMap();
    keys.insert(u"4"_s, QVariantMap{{u"command"_s, 46}, {u"param1"_s, u"/usr/bin/true"_s}, {u"param2"_s, u""_s}});
    profile.insert(u"Keys"_s, keys);
    profiles[7] = profile;
    after.insert(u"Profiles"_s, profiles);
    QVERIFY(bytesOf(between(fullDocument(), after)).size() < 300);
}

void DocumentDifferenceTest::delaysOfAMacroAreSmall()
{
    QVariantList events;
    QVariantList delayed;
    for (int count = 0; count < 40; ++count) {
        events += QVariantMap{{u"command"_s, 1}, {u"delay"_s, count}, {u"page"_s, 7}, {u"argument"_s, 4}};
        delayed += QVariantMap{{u"command"_s, 1}, {u"delay"_s, 500}, {u"page"_s, 7}, {u"argument"_s, 4}};
    }
    const QVariantMap difference =
        between(documentOf({}, {macroNumbered(1, events)}), documentOf({}, {macroNumbered(1, delayed)}));
    QVERIFY(qCompress(bytesOf(difference), 1).size() < 1500);
}

QTEST_GUILESS_MAIN(DocumentDifferenceTest)
#include "documentdifferencetest.moc"
