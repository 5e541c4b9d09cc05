// SPDX-License-Identifier: MIT
#include "keys/assignmentclip.h"
#include "tests/support/testmain.h"

#include "base/propertylist.h"

#include <QMimeData>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using KeyMappings::Assignment;

class AssignmentClipTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void returnsFromTheClipboardUnchanged_data();
    void returnsFromTheClipboardUnchanged();
    void otherContentIsNotAnAssignment_data();
    void otherContentIsNotAnAssignment();
    void noContentIsNotAnAssignment();
};

void AssignmentClipTest::returnsFromTheClipboardUnchanged_data()
{
    QTest::addColumn<int>("assignment");
    QTest::addColumn<QVariant>("param1");
    QTest::addColumn<QVariant>("param2");
    QTest::addColumn<QString>("recordName");
    QTest::newRow("macro") << 10 << QVariant(3) << QVariant(254) << u"Heal"_s;
    QTest::newRow("single key") << 16 << QVariant(6) << QVariant(8) << QString();
    QTest::newRow("profile") << 17 << QVariant(1) << QVariant(0) << u"Game"_s;
    QTest::newRow("disabled") << 20 << QVariant(0) << QVariant(0) << QString();
    QTest::newRow("default") << 45 << QVariant(0) << QVariant(0) << QString();
    QTest::newRow("program") << 46 << QVariant(u"/opt/Tool.app"_s) << QVariant(QString()) << QString();
}

void AssignmentClipTest::returnsFromTheClipboardUnchanged()
{
    QFETCH(int, assignment);
    QFETCH(QVariant, param1);
    QFETCH(QVariant, param2);
    QFETCH(QString, recordName);
    const AssignmentClip clip{.assignment = static_cast<Assignment>(assignment),
                              .param1 = param1,
                              .param2 = param2,
                              .recordName = recordName};
    const std::unique_ptr<QMimeData> data(clip.toMimeData(u"words"_s));
    QCOMPARE(data->text(), u"words"_s);
    const std::optional<AssignmentClip> read = AssignmentClip::fromMimeData(data.get());
    QVERIFY(read);
    QCOMPARE(read->assignment, clip.assignment);
    QCOMPARE(read->param1, clip.param1);
    QCOMPARE(read->param2, clip.param2);
    QCOMPARE(read->recordName, clip.recordName);
}

void AssignmentClipTest::otherContentIsNotAnAssignment_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const auto list = [](const QVariant &root) { return PropertyList::writeBinary(root).value_or(QByteArray()); };
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no property list") << QByteArray("\x01\x02 bytes");
    QTest::newRow("text") << list(u"Heal"_s);
    QTest::newRow("unknown assignment") << list(QVariantMap{{u"command"_s, 30}});
    QTest::newRow("no command") << list(QVariantMap{{u"param1"_s, 1}});
    QTest::newRow("program without a path") << list(QVariantMap{{u"command"_s, 46}, {u"param1"_s, 5}});
}

void AssignmentClipTest::otherContentIsNotAnAssignment()
{
    QFETCH(QByteArray, bytes);
    QMimeData data;
    data.setData(u"application/x-quill-kestra-assignment"_s, bytes);
    QVERIFY(!AssignmentClip::fromMimeData(&data));
}

void AssignmentClipTest::noContentIsNotAnAssignment()
{
    QVERIFY(!AssignmentClip::fromMimeData(nullptr));
    QMimeData text;
    text.setText(u"Macro: Heal"_s);
    QVERIFY(!AssignmentClip::fromMimeData(&text));
}

QTEST_MAIN(AssignmentClipTest)
#include "assignmentcliptest.moc"
