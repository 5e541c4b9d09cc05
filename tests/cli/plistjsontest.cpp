// SPDX-License-Identifier: MIT
#include "cli/plistjson.h"
#include "tests/support/testmain.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>
#include <QTimeZone>
#include <QVariantMap>

using namespace Qt::StringLiterals;

class TestPlistJson : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesEachType_data();
    void writesEachType();
    void keepsTheTree();
};

void TestPlistJson::writesEachType_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("json");
    const auto row = [](const char *name, const QVariant &value, const char *json) {
        QTest::newRow(name) << value << QByteArray(json);
    };
    row("string", u"caf\u00e9"_s, "\"caf\u00e9\"");
    row("empty string", QString(), "\"\"");
    row("true", true, "true");
    row("false", false, "false");
    row("zero stays a number", 0, "0");
    row("one stays a number", 1, "1");
    row("negative", -50, "-50");
    row("64 bits", Q_INT64_C(9007199254740993), "9007199254740993");
    row("unsigned that fits", QVariant::fromValue<quint64>(5), "5");
    row("real", 0.25, "0.25");
    row("data", QByteArray("\x00\x01\xff", 3), "\"AAH/\"");
    row("empty data", QByteArray(), "\"\"");
    row("date", QDateTime(QDate(2024, 2, 29), QTime(13, 14, 15, 678), QTimeZone(3600)), "\"2024-02-29T12:14:15.678Z\"");
    row("empty array", QVariantList(), "[]");
    row("empty dictionary", QVariantMap(), "{}");
    row("what no property list holds", QVariant(), "null");
}

void TestPlistJson::writesEachType()
{
    QFETCH(QVariant, value);
    QFETCH(QByteArray, json);
    const QJsonArray wrapped{jsonFromPropertyList(value)};
    QCOMPARE(QJsonDocument(wrapped).toJson(QJsonDocument::Compact), '[' + json + ']');
}

void TestPlistJson::keepsTheTree()
{
    const QVariantMap tree{{u"Profiles"_s, QVariantList{QVariantMap{{u"ProfileName"_s, u"One"_s}}, 7}},
                           {u"On"_s, true}};
    const QJsonObject expected{{u"Profiles"_s, QJsonArray{QJsonObject{{u"ProfileName"_s, u"One"_s}}, 7}},
                               {u"On"_s, true}};
    QCOMPARE(jsonFromPropertyList(tree).toObject(), expected);
}

QTEST_GUILESS_MAIN(TestPlistJson)
#include "plistjsontest.moc"
