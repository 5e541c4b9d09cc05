// SPDX-License-Identifier: MIT
// Names of new records: the same rows for each operation that names one. For tests with Qt Test; used on their thread.
#pragma once

#include <QTest>
#include <QVariantList>
#include <QVariantMap>

namespace UniqueNameCases {

/// Adds the columns "names", "wanted" and "result". An element of "names" is the value of a record's name; an invalid
/// one represents a record without a name.
inline void addRows()
{
    using namespace Qt::StringLiterals;
    QTest::addColumn<QVariantList>("names");
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<QString>("result");
    const QString untitled = u"Untitled Macro"_s;
    QTest::newRow("empty list") << QVariantList() << u"A"_s << u"A"_s;
    QTest::newRow("free") << QVariantList{u"B"_s} << u"A"_s << u"A"_s;
    QTest::newRow("taken") << QVariantList{u"A"_s} << u"A"_s << u"A(2)"_s;
    QTest::newRow("taken up to 2") << QVariantList{u"A"_s, u"A(2)"_s} << u"A"_s << u"A(3)"_s;
    QTest::newRow("only the second") << QVariantList{u"A(2)"_s} << u"A"_s << u"A"_s;
    QTest::newRow("taken twice") << QVariantList{u"A"_s, u"A"_s} << u"A"_s << u"A(3)"_s;
    QTest::newRow("case matters") << QVariantList{u"a"_s} << u"A"_s << u"A"_s;
    QTest::newRow("two words") << QVariantList{untitled, u"Untitled Macro(2)"_s} << untitled << u"Untitled Macro(3)"_s;
    QTest::newRow("two words, free") << QVariantList{u"Jump"_s, u"Untitled Macro(2)"_s} << untitled << untitled;
    QTest::newRow("an empty name is a name") << QVariantList{QString()} << QString() << u"(2)"_s;
    // A record without a name occupies no name, not even the empty one.
    QTest::newRow("no name") << QVariantList{QVariant(), QVariant()} << QString() << QString();
    QTest::newRow("no name among names") << QVariantList{u"A"_s, QVariant(), u"A(2)"_s} << u"A"_s << u"A(3)"_s;
    QTest::newRow("a name that is a number") << QVariantList{7} << u"7"_s << u"7"_s;
    QTest::newRow("a number and no name wanted") << QVariantList{7} << QString() << QString();
}

/// Records with `names` under `nameKey`, and one element that is not a record.
inline QVariantList records(const QVariantList &names, QLatin1StringView nameKey)
{
    QVariantList records{QStringLiteral("no record")};
    for (const QVariant &name : names)
        records.append(name.isValid() ? QVariantMap{{nameKey, name}} : QVariantMap());
    return records;
}

} // namespace UniqueNameCases
