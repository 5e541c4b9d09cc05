// SPDX-License-Identifier: MIT
#include "base/document.h"
#include "tests/support/testmain.h"

#include <QDateTime>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

QVariantMap profile(const QString &name)
{
    return {{u"ProfileName"_s, name}};
}

QVariantMap macro(const QString &name)
{
    return {{u"MacroName"_s, name}};
}

/// Two profiles, the second active, and one macro; an entry of each list is not a record.
QVariantMap sample()
{
    return {{u"Profiles"_s, QVariantList{profile(u"A"_s), profile(u"B"_s), 7}},
            {u"Macros"_s, QVariantList{macro(u"M"_s), u"no record"_s}},
            {u"DeviceSettings"_s, QVariantMap{{u"ActiveProfile"_s, 1}, {u"GameMode"_s, true}}}};
}

Document withActiveProfile(const QVariant &index)
{
    QVariantMap document = sample();
    document.insert(u"DeviceSettings"_s, QVariantMap{{u"ActiveProfile"_s, index}});
    return Document(document);
}

} // namespace

class DocumentTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsItsLists();
    void readsTheActiveProfile();
    void elementThatIsNotARecordIsEmpty();
    void indexOutsideTheListIsEmpty_data();
    void indexOutsideTheListIsEmpty();
    void activeProfileThatDoesNotExistIsEmpty_data();
    void activeProfileThatDoesNotExistIsEmpty();
    void withoutAnIndexTheFirstProfileIsActive();
    void partsThatAreMissingOrOfAnotherTypeAreEmpty_data();
    void partsThatAreMissingOrOfAnotherTypeAreEmpty();
    void textInPlaceOfAListHasNoRecords();
};

void DocumentTest::readsItsLists()
{
    const Document document(sample());
    QCOMPARE(document.profiles(), (QVariantList{profile(u"A"_s), profile(u"B"_s), 7}));
    QCOMPARE(document.macros(), (QVariantList{macro(u"M"_s), u"no record"_s}));
    QCOMPARE(document.profile(0), profile(u"A"_s));
    QCOMPARE(document.macro(0), macro(u"M"_s));
}

void DocumentTest::readsTheActiveProfile()
{
    const Document document(sample());
    QCOMPARE(document.activeProfileIndex(), 1);
    QCOMPARE(document.activeProfile(), profile(u"B"_s));
    QVERIFY(document.deviceSettings().isGameModeOn());
}

void DocumentTest::elementThatIsNotARecordIsEmpty()
{
    QCOMPARE(Document(sample()).profile(2), QVariantMap());
    QCOMPARE(Document(sample()).macro(1), QVariantMap());
    QCOMPARE(withActiveProfile(2).activeProfile(), QVariantMap());
}

void DocumentTest::indexOutsideTheListIsEmpty_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("negative") << -1;
    QTest::newRow("lowest") << std::numeric_limits<int>::min();
    QTest::newRow("one past the end") << 3;
    QTest::newRow("highest") << std::numeric_limits<int>::max();
}

void DocumentTest::indexOutsideTheListIsEmpty()
{
    QFETCH(int, index);
    QCOMPARE(Document(sample()).profile(index), QVariantMap());
    QCOMPARE(Document(sample()).macro(index), QVariantMap());
}

void DocumentTest::activeProfileThatDoesNotExistIsEmpty_data()
{
    indexOutsideTheListIsEmpty_data();
}

void DocumentTest::activeProfileThatDoesNotExistIsEmpty()
{
    QFETCH(int, index);
    QCOMPARE(withActiveProfile(index).activeProfileIndex(), index);
    QCOMPARE(withActiveProfile(index).activeProfile(), QVariantMap());
}

void DocumentTest::withoutAnIndexTheFirstProfileIsActive()
{
    for (const QVariant &index : {QVariant(u"second"_s), QVariant(QVariantList{1}), QVariant()}) {
        QCOMPARE(withActiveProfile(index).activeProfileIndex(), 0);
        QCOMPARE(withActiveProfile(index).activeProfile(), profile(u"A"_s));
    }
}

void DocumentTest::partsThatAreMissingOrOfAnotherTypeAreEmpty_data()
{
    QTest::addColumn<QVariantMap>("dictionary");
    const auto ofValue = [](const QVariant &value) {
        return QVariantMap{{u"Profiles"_s, value}, {u"Macros"_s, value}, {u"DeviceSettings"_s, value}};
    };
    QTest::newRow("empty document") << QVariantMap();
    QTest::newRow("numbers") << ofValue(1);
    QTest::newRow("booleans") << ofValue(true);
    QTest::newRow("empty texts") << ofValue(QString());
    QTest::newRow("dates") << ofValue(QDateTime::fromSecsSinceEpoch(0));
}

void DocumentTest::partsThatAreMissingOrOfAnotherTypeAreEmpty()
{
    QFETCH(QVariantMap, dictionary);
    const Document document(dictionary);
    QCOMPARE(document.profiles(), QVariantList());
    QCOMPARE(document.macros(), QVariantList());
    QCOMPARE(document.deviceSettings().dictionary(), QVariantMap());
    QCOMPARE(document.profile(0), QVariantMap());
    QCOMPARE(document.activeProfileIndex(), 0);
    QCOMPARE(document.activeProfile(), QVariantMap());
}

// The characters of a text may count as elements, but never as records.
void DocumentTest::textInPlaceOfAListHasNoRecords()
{
    const Document document({{u"Profiles"_s, u"AB"_s}, {u"Macros"_s, u"M"_s}});
    QCOMPARE(document.profile(0), QVariantMap());
    QCOMPARE(document.macro(0), QVariantMap());
    QCOMPARE(document.activeProfile(), QVariantMap());
}

QTEST_APPLESS_MAIN(DocumentTest)
#include "documenttest.moc"
