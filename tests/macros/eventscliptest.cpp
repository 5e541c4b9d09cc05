// SPDX-License-Identifier: MIT
#include "macros/eventsclip.h"

#include "base/propertylist.h"
#include "macros/macrorecord.h"
#include "tests/support/testmain.h"

#include <QMimeData>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

const QString mimeType = u"application/x-quill-kestra-macro-events"_s;

QVariantMap eventOf(int command, int delayMs, int page, int argument)
{
    return {{u"command"_s, command}, {u"delay"_s, delayMs}, {u"page"_s, page}, {u"argument"_s, argument}};
}

/// The data of another program that claims to have events.
std::unique_ptr<QMimeData> dataWith(const QVariantMap &content)
{
    auto data = std::make_unique<QMimeData>();
    data->setData(mimeType, PropertyList::writeBinary(content).value_or(QByteArray()));
    return data;
}

} // namespace

class EventsClipTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void returnsWhatWasCopied();
    void otherProgramsReadTheLines();
    void takesTheFieldsOfAnEventAlone();
    void refusesWhatAMacroCannotHave_data();
    void refusesWhatAMacroCannotHave();
    void refusesMoreThanAMacroHolds();
    void refusesOtherContent();
};

void EventsClipTest::returnsWhatWasCopied()
{
    const QVariantList events{eventOf(1, 0, 7, 4), eventOf(0, 120, 7, 231), eventOf(1, 5, 9, 9), eventOf(0, 70, 0, 0)};
    const std::unique_ptr<QMimeData> data(EventsClip::toMimeData(events));
    const std::optional<QVariantList> copied = EventsClip::fromMimeData(data.get());
    QVERIFY(copied);
    QCOMPARE(copied->size(), 4);
    for (int index = 0; index < 4; ++index) {
        const MacroRecord::Event event = MacroRecord::eventFields(copied->at(index).toMap());
        const MacroRecord::Event before = MacroRecord::eventFields(events.at(index).toMap());
        QCOMPARE(event.command, before.command);
        QCOMPARE(event.delayMs, before.delayMs);
        QCOMPARE(event.page, before.page);
        QCOMPARE(event.argument, before.argument);
    }
}

void EventsClipTest::otherProgramsReadTheLines()
{
    const std::unique_ptr<QMimeData> data(EventsClip::toMimeData({eventOf(1, 0, 7, 4), eventOf(0, 120, 7, 4)}));
    QCOMPARE(data->text(), u"Key Press A\n0.120 seconds delay\nKey Release A\n"_s);
}

void EventsClipTest::takesTheFieldsOfAnEventAlone()
{
    QVariantMap event = eventOf(1, 0, 7, 4);
    event.insert(u"Extra"_s, QByteArray(1000, 'x'));
    const std::optional<QVariantList> copied =
        EventsClip::fromMimeData(dataWith({{u"Events"_s, QVariantList{event}}}).get());
    QVERIFY(copied);
    QCOMPARE(copied->first().toMap().size(), 4);
}

void EventsClipTest::refusesWhatAMacroCannotHave_data()
{
    QTest::addColumn<QVariant>("event");
    QTest::newRow("no dictionary") << QVariant(7);
    QTest::newRow("text for a number") << QVariant(QVariantMap{{u"command"_s, u"x"_s}});
    QTest::newRow("negative pause") << QVariant(eventOf(1, -1, 7, 4));
    QTest::newRow("unknown command") << QVariant(eventOf(2, 0, 7, 4));
    QTest::newRow("key below the first") << QVariant(eventOf(1, 0, 7, 3));
    QTest::newRow("key above the last") << QVariant(eventOf(1, 0, 7, 232));
    QTest::newRow("negative key") << QVariant(eventOf(1, 0, 7, -4));
    QTest::newRow("button 0") << QVariant(eventOf(1, 0, 9, 0));
    QTest::newRow("button 10") << QVariant(eventOf(1, 0, 9, 10));
}

void EventsClipTest::refusesWhatAMacroCannotHave()
{
    QFETCH(QVariant, event);
    const QVariantMap good = eventOf(1, 0, 7, 4);
    QVERIFY(EventsClip::fromMimeData(dataWith({{u"Events"_s, QVariantList{good}}}).get()));
    // One such event spoils all.
    QVERIFY(!EventsClip::fromMimeData(dataWith({{u"Events"_s, QVariantList{good, event}}}).get()));
}

void EventsClipTest::refusesMoreThanAMacroHolds()
{
    QVariantList events(MacroRecord::maximumEvents, eventOf(1, 0, 7, 4));
    QVERIFY(EventsClip::fromMimeData(dataWith({{u"Events"_s, events}}).get()));
    events.append(events.first());
    QVERIFY(!EventsClip::fromMimeData(dataWith({{u"Events"_s, events}}).get()));
}

void EventsClipTest::refusesOtherContent()
{
    QVERIFY(!EventsClip::fromMimeData(nullptr));
    QMimeData text;
    text.setText(u"Key Press A"_s);
    QVERIFY(!EventsClip::fromMimeData(&text));
    QVERIFY(!EventsClip::fromMimeData(dataWith({}).get()));
    QVERIFY(!EventsClip::fromMimeData(dataWith({{u"Events"_s, u"none"_s}}).get()));
    QMimeData garbage;
    garbage.setData(mimeType, "bplist00 and nothing else");
    QVERIFY(!EventsClip::fromMimeData(&garbage));
}

QTEST_MAIN(EventsClipTest)
#include "eventscliptest.moc"
