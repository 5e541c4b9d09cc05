// SPDX-License-Identifier: MIT
// The strict check of a document that a user restores: each fault is named with its place.
#include "daemon/settings/documentfault.h"
#include "tests/support/testmain.h"

#include "daemon/settings/settingsdocument.h"
#include "tests/support/fulldocument.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// `value` in place of what is at `path` in the tree; an invalid value removes it.
QVariant with(const QVariant &tree, QStringList path, const QVariant &value)
{
    if (path.isEmpty())
        return value;
    const QString step = path.takeFirst();
    if (tree.typeId() == QMetaType::QVariantList) {
        QVariantList list = tree.toList();
        list[step.toInt() - 1] = with(list.at(step.toInt() - 1), path, value);
        return list;
    }
    QVariantMap map = tree.toMap();
    const QVariant changed = with(map.value(step), path, value);
    if (changed.isValid())
        map.insert(step, changed);
    else
        map.remove(step);
    return map;
}

} // namespace

class DocumentFaultTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void acceptsDocumentsOfTheDaemon();
    void namesThePlace_data();
    void namesThePlace();
    void repairsNothing();
};

void DocumentFaultTest::acceptsDocumentsOfTheDaemon()
{
    QCOMPARE(firstFaultOf(SettingsDocument::minimal()), QString());
    QCOMPARE(firstFaultOf(SettingsDocument::completed(fullDocument())), QString());
}

void DocumentFaultTest::namesThePlace_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("fault");
    const auto row = [](const QString &path, const QVariant &value, const QString &fault) {
        QTest::newRow(qPrintable(path + u' ' + fault)) << path << value << fault;
    };
    row(u"Profiles"_s, {}, u"missing"_s);
    row(u"Macros"_s, u"text"_s, u"not an array"_s);
    row(u"DeviceSettings"_s, QVariantList(), u"not a dictionary"_s);
    row(u"Profiles > 3"_s, 1, u"not a dictionary"_s);
    row(u"Profiles > 2 > ProfileName"_s, 5, u"not a text"_s);
    row(u"Profiles > 20 > Keys > 4"_s, 20, u"not a dictionary"_s);
    row(u"Macros > 7 > macroID"_s, 0, u"not a positive number"_s);
    row(u"Macros > 7 > macroID"_s, 1, u"another macro has this number"_s);
    row(u"Macros > 7 > sequence > Events"_s, QVariantMap(), u"not an array"_s);
    row(u"Macros > 7 > sequence > Events > 5 > delay"_s, u"x"_s, u"not a number"_s);
    row(u"DeviceSettings > ActiveProfile"_s, u"0"_s, u"not a number"_s);
    row(u"DeviceSettings > GameMode"_s, u"yes"_s, u"not a number"_s);
    row(u"DeviceSettings > LastMacroID"_s, u"7"_s, u"not a number"_s);
}

void DocumentFaultTest::namesThePlace()
{
    QFETCH(QString, path);
    QFETCH(QVariant, value);
    QFETCH(QString, fault);
    const QVariantMap document = SettingsDocument::completed(fullDocument());
    const QVariantMap faulty = with(document, path.split(u" > "_s), value).toMap();
    QCOMPARE(firstFaultOf(faulty), path + u": "_s + fault);
}

void DocumentFaultTest::repairsNothing()
{
    const QVariantMap document = SettingsDocument::completed(fullDocument());
    QVERIFY(!firstFaultOf(with(document, {u"DeviceSettings"_s, u"ActiveProfile"_s}, 20).toMap()).isEmpty());
    QVERIFY(!firstFaultOf(with(document, {u"DeviceSettings"_s, u"ActiveProfile"_s}, {}).toMap()).isEmpty());
    QVERIFY(!firstFaultOf(with(document, {u"Profiles"_s}, QVariantList()).toMap()).isEmpty());
    QVERIFY(!firstFaultOf({}).isEmpty());
}

QTEST_GUILESS_MAIN(DocumentFaultTest)
#include "documentfaulttest.moc"
