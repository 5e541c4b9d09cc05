// SPDX-License-Identifier: MIT
// The sheet on which the user tries a macro, and the area in which the user clicks to record mouse buttons.
#include "macros/macrotimelineview.h"
#include "macros/macrotrysheet.h"
#include "platform/buttonarea.h"
#include "platform/popupbutton.h"
#include "platform/statusline.h"
#include "tests/macros/macrostesting.h"
#include "tests/support/testmain.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

using namespace MacrosTesting;

namespace {

constexpr TriedKey pressOfA{.event = 0, .timeUs = 20'000, .page = 7, .argument = 4, .isDown = true};
constexpr TriedKey releaseOfA{.event = 1, .timeUs = 145'000, .page = 7, .argument = 4, .isDown = false};

} // namespace

class MacrosTryTest : public MacrosTest
{
    Q_OBJECT

private Q_SLOTS:
    void isOfferedForAMacroWithEvents();
    void startNamesTheMacroAndItsRepeat();
    void outputAppearsAsItComes();
    void outputIsBounded();
    void timelineMarksThePlayedEvent();
    void timelineMarksTheEventBehindAPause();
    void newTryForgetsTheOutput();
    void escapeStopsFirstAndClosesThen();
    void endIsShown_data();
    void endIsShown();
    void closingStops();
    void stopsWhenTheWindowIsLeft();
    void fieldTakesEveryKeyOfAMacro();
    void leavingTheFieldCloses_data();
    void leavingTheFieldCloses();
    void endsWithItsMacro_data();
    void endsWithItsMacro();
    void readerHearsTheBeginningAndTheEnd();
    void clicksInTheAreaAreReported_data();
    void clicksInTheAreaAreReported();
    void everyButtonHasItsNumber();
    void areaIsThereDuringARecordingOnly();
    void clicksElsewhereAreNotReported();
    void doubleClickIsTwoClicks();
    void everyPressGetsItsRelease_data();
    void everyPressGetsItsRelease();

private:
    [[nodiscard]] QPushButton *button(const char *name) const { return outlet<QPushButton>(QLatin1StringView(name)); }
    [[nodiscard]] MacroTrySheet *sheet() const { return outlet<MacroTrySheet>(u"mTryWindow"_s); }
    [[nodiscard]] MacroTimelineView *timeline() const { return outlet<MacroTimelineView>(u"mMacroTimelineView"_s); }
    [[nodiscard]] QString output() const { return outlet<QPlainTextEdit>(u"mTryOutput"_s)->toPlainText(); }
    [[nodiscard]] QString status() const { return outlet<StatusLine>(u"mTryStatus"_s)->text(); }
    /// Opens the sheet for the macro "B" and forgets the earlier calls.
    void open()
    {
        fill({u"A"_s, u"B"_s}, 1);
        button("mTryMacro")->click();
        QVERIFY(sheet() && sheet()->isUp());
        sheet()->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(sheet()));
        QTRY_VERIFY(button("mTryStart")->hasFocus());
        mDelegate->calls.clear();
    }
    void startRecording()
    {
        mWindow->resize(900, 500);
        mWindow->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(mWindow.get()));
        fill({u"A"_s}, 0);
        button("mRecordMacroDetails")->click();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        mDelegate->calls.clear();
    }
    [[nodiscard]] ButtonArea *area() const { return outlet<ButtonArea>(u"mButtonArea"_s); }
};

void MacrosTryTest::isOfferedForAMacroWithEvents()
{
    mDelegate->lines.clear();
    fill({u"A"_s}, 0);
    QVERIFY(!button("mTryMacro")->isEnabled());
    mController->updateSelectedMacroWithMacroDetails(threeEvents());
    QVERIFY(button("mTryMacro")->isEnabled());
    button("mRecordMacroDetails")->click();
    mController->recordEvents({{u"messagesArray"_s, threeEvents()}});
    QVERIFY(!button("mTryMacro")->isEnabled());
    mDelegate->lines = threeEvents();
    button("mRecordMacroDetails")->click();
    QVERIFY(button("mTryMacro")->isEnabled());
    mController->setControlsState(false);
    mController->refreshTableDisplay();
    QVERIFY(!button("mTryMacro")->isEnabled());
}

void MacrosTryTest::startNamesTheMacroAndItsRepeat()
{
    open();
    QVERIFY(outlet<QLabel>(u"mTryTitle"_s)->text().contains(u"“B”"_s));
    button("mTryStart")->click();
    QCOMPARE(mDelegate->calls, QStringList{u"try 1 1"_s});
    mController->endTry(TryEnd::finished);
    mDelegate->calls.clear();
    auto *repeat = outlet<PopUpButton>(u"mTryRepeat"_s);
    for (const auto &[title, value] : {std::pair{u"Play 10 times"_s, 10},
                                       {u"Repeat until released"_s, 255},
                                       {u"Repeat until pressed again"_s, 254}}) {
        int index = 0;
        while (index < repeat->numberOfItems() && repeat->itemTitleAtIndex(index) != title)
            ++index;
        QVERIFY2(repeat->itemAtIndex(index), qPrintable(title));
        repeat->itemAtIndex(index)->trigger();
        button("mTryStart")->click();
        QCOMPARE(mDelegate->calls, QStringList{u"try %1 1"_s.arg(value)});
        mController->endTry(TryEnd::finished);
        mDelegate->calls.clear();
    }
}

void MacrosTryTest::outputAppearsAsItComes()
{
    open();
    button("mTryStart")->click();
    mController->showTriedKeys({pressOfA});
    QCOMPARE(output(), u"0.020  Key Press A"_s);
    mController->showTriedKeys(
        {releaseOfA, {.event = -1, .timeUs = 1'500'000, .page = 9, .argument = 1, .isDown = false}});
    QCOMPARE(output(), u"0.020  Key Press A\n0.145  Key Release A\n1.500  Left Button up"_s);
}

void MacrosTryTest::outputIsBounded()
{
    open();
    button("mTryStart")->click();
    for (int count = 0; count < 20; ++count)
        mController->showTriedKeys(QList<TriedKey>(1000, pressOfA));
    mController->showTriedKeys({releaseOfA});
    const QStringList lines = output().split(u'\n');
    QVERIFY(lines.size() <= 500);
    QCOMPARE(lines.last(), u"0.145  Key Release A"_s);
}

void MacrosTryTest::timelineMarksThePlayedEvent()
{
    constexpr TriedKey ownRelease{.event = -1, .timeUs = 1'500'000, .page = 9, .argument = 1, .isDown = false};
    open();
    button("mTryStart")->click();
    mController->showTriedKeys({pressOfA});
    QCOMPARE(timeline()->playedEvent(), 0);
    mController->showTriedKeys({pressOfA, releaseOfA, ownRelease});
    QCOMPARE(timeline()->playedEvent(), 1);
    mController->showTriedKeys({ownRelease});
    QCOMPARE(timeline()->playedEvent(), 1);
    mController->endTry(TryEnd::finished);
    QCOMPARE(timeline()->playedEvent(), -1);
    button("mTryStart")->click();
    mController->showTriedKeys({releaseOfA});
    QCOMPARE(timeline()->playedEvent(), 1);
    button("mTryStop")->click();
    QCOMPARE(timeline()->playedEvent(), -1);
    mController->showTriedKeys({releaseOfA}); // too late
    QCOMPARE(timeline()->playedEvent(), -1);
}

void MacrosTryTest::timelineMarksTheEventBehindAPause()
{
    mDelegate->lines = {u"0.020 seconds delay\n"_s, u"Key Press A"_s, u"0.125 seconds delay\n"_s, u"Key Release A"_s};
    open();
    button("mTryStart")->click();
    TriedKey release = releaseOfA;
    release.event = 2; // the macro begins with a pause
    mController->showTriedKeys({release});
    QVERIFY(timeline()->playedEvent() >= 0);
    QVERIFY2(timeline()->eventText(timeline()->playedEvent()).contains(u"Key Release A"_s),
             qPrintable(timeline()->eventText(timeline()->playedEvent())));
}

void MacrosTryTest::newTryForgetsTheOutput()
{
    open();
    button("mTryStart")->click();
    mController->showTriedKeys({pressOfA});
    mController->endTry(TryEnd::finished);
    QVERIFY(!output().isEmpty()); // the user can still read it
    button("mTryStart")->click();
    QVERIFY(output().isEmpty());
}

void MacrosTryTest::escapeStopsFirstAndClosesThen()
{
    open();
    button("mTryStart")->click();
    mDelegate->calls.clear();
    QTest::keyClick(sheet(), Qt::Key_Escape);
    QCOMPARE(mDelegate->calls, QStringList{u"stopTry"_s});
    QVERIFY(sheet()->isUp());
    QVERIFY(!sheet()->isPlaying());
    QCOMPARE(status(), u"Stopped."_s);
    mController->showTriedKeys({releaseOfA}); // of a key that the macro held
    QCOMPARE(output(), u"0.145  Key Release A"_s);
    mController->endTry(TryEnd::finished); // too late
    QCOMPARE(status(), u"Stopped."_s);
    QTest::keyClick(sheet(), Qt::Key_Escape);
    QVERIFY(!sheet()->isUp());
    QCOMPARE(mDelegate->calls, QStringList{u"stopTry"_s});
}

void MacrosTryTest::endIsShown_data()
{
    QTest::addColumn<int>("end");
    QTest::addColumn<QString>("word");
    QTest::newRow("finished") << int(TryEnd::finished) << u"to its end"_s;
    QTest::newRow("changed") << int(TryEnd::changed) << u"changed"_s;
    QTest::newRow("limit") << int(TryEnd::limit) << u"10 minutes"_s;
    QTest::newRow("empty") << int(TryEnd::empty) << u"plays nothing"_s;
    QTest::newRow("too many") << int(TryEnd::tooMany) << u"Too many programs"_s;
    QTest::newRow("unavailable") << int(TryEnd::unavailable) << u"cannot play"_s;
}

void MacrosTryTest::endIsShown()
{
    QFETCH(int, end);
    QFETCH(QString, word);
    open();
    button("mTryStart")->click();
    QVERIFY(!button("mTryStart")->isEnabled());
    QVERIFY(button("mTryStop")->isEnabled());
    mController->endTry(TryEnd(end));
    QVERIFY2(status().contains(word), qPrintable(status()));
    QVERIFY(button("mTryStart")->isEnabled());
    QVERIFY(!button("mTryStop")->isEnabled());
    QVERIFY(button("mTryStart")->hasFocus()); // it was on Stop, which is disabled now
    QVERIFY(sheet()->isUp());
}

void MacrosTryTest::closingStops()
{
    open();
    button("mTryStart")->click();
    mDelegate->calls.clear();
    button("mTryClose")->click();
    QVERIFY(!sheet()->isUp());
    QCOMPARE(mDelegate->calls, QStringList{u"stopTry"_s});
}

void MacrosTryTest::stopsWhenTheWindowIsLeft()
{
    open();
    button("mTryStart")->click();
    mDelegate->calls.clear();
    QEvent left(QEvent::WindowDeactivate);
    QCoreApplication::sendEvent(sheet(), &left);
    QCOMPARE(mDelegate->calls, QStringList{u"stopTry"_s});
    QVERIFY(sheet()->isUp());
}

void MacrosTryTest::fieldTakesEveryKeyOfAMacro()
{
    open();
    auto *field = outlet<QPlainTextEdit>(u"mTryField"_s);
    field->setFocus();
    QTest::keyClicks(field, u"ab"_s);
    QTest::keyClick(field, Qt::Key_Tab);
    QTest::keyClick(field, Qt::Key_Return);
    QTest::keyClicks(field, u"c"_s);
    QCOMPARE(field->toPlainText(), u"ab\t\nc"_s);
    QVERIFY(field->hasFocus());
    QVERIFY(mDelegate->calls.isEmpty()); // no button was pressed
    QTest::keyClick(field, Qt::Key_Escape);
    QTRY_VERIFY(!sheet()->isUp());
}

void MacrosTryTest::leavingTheFieldCloses_data()
{
    QTest::addColumn<bool>("wasInField");
    QTest::addColumn<int>("reason");
    QTest::newRow("another window") << true << int(Qt::ActiveWindowFocusReason);
    QTest::newRow("click elsewhere") << true << int(Qt::MouseFocusReason);
    QTest::newRow("Tab from Start") << false << int(Qt::TabFocusReason);
}

void MacrosTryTest::leavingTheFieldCloses()
{
    QFETCH(bool, wasInField);
    QFETCH(int, reason);
    open();
    auto *from = wasInField ? outlet<QPlainTextEdit>(u"mTryField"_s) : static_cast<QWidget *>(button("mTryStart"));
    from->setFocus();
    QTRY_COMPARE(QApplication::focusWidget(), from);
    if (reason == Qt::ActiveWindowFocusReason)
        mWindow->activateWindow();
    outlet<QPlainTextEdit>(u"mTryOutput"_s)->setFocus(Qt::FocusReason(reason));
    if (reason == Qt::ActiveWindowFocusReason) {
        QFocusEvent out(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
        QCoreApplication::sendEvent(from, &out);
    }
    if (wasInField)
        QTRY_VERIFY(!sheet()->isUp());
    QCoreApplication::processEvents();
    QCOMPARE(sheet()->isUp(), !wasInField);
}

void MacrosTryTest::endsWithItsMacro_data()
{
    QTest::addColumn<QString>("change");
    for (const char *change : {"deleted", "renamed", "controls off", "another one before it"})
        QTest::newRow(change) << QString::fromLatin1(change);
}

void MacrosTryTest::endsWithItsMacro()
{
    QFETCH(QString, change);
    mDelegate->macros = numberedMacros({1, 2});
    mDelegate->refresh();
    list()->selectRow(1);
    button("mTryMacro")->click();
    button("mTryStart")->click();
    mDelegate->calls.clear();
    if (change == "controls off"_L1)
        mController->setControlsState(false);
    if (change == "deleted"_L1)
        mDelegate->macros = numberedMacros({1});
    if (change == "another one before it"_L1)
        mDelegate->macros = numberedMacros({3, 1, 2});
    if (change == "renamed"_L1) {
        QVariantMap macro = mDelegate->macros.at(1).toMap();
        macro[u"MacroName"_s] = u"Other"_s;
        mDelegate->macros[1] = macro;
    }
    mDelegate->refresh();
    const bool stays = change == "another one before it"_L1;
    QCOMPARE(sheet()->isUp(), stays);
    QCOMPARE(mDelegate->calls.contains(u"stopTry"_s), !stays);
}

void MacrosTryTest::readerHearsTheBeginningAndTheEnd()
{
    open();
    QStringList heard{status()};
    const auto listen = [&heard, this] {
        if (heard.last() != status())
            heard += status();
    };
    button("mTryStart")->click();
    listen();
    for (int count = 0; count < 1000; ++count) {
        mController->showTriedKeys({pressOfA, releaseOfA});
        listen();
    }
    mController->endTry(TryEnd::finished);
    listen();
    QCOMPARE(heard.size(), 3);
    QCOMPARE(outlet<StatusLine>(u"mTryStatus"_s)->accessibleName(), heard.last());
}

void MacrosTryTest::clicksInTheAreaAreReported_data()
{
    QTest::addColumn<int>("qtButton");
    QTest::addColumn<int>("number");
    QTest::newRow("left") << int(Qt::LeftButton) << 1;
    QTest::newRow("right") << int(Qt::RightButton) << 2;
    QTest::newRow("middle") << int(Qt::MiddleButton) << 3;
    QTest::newRow("back") << int(Qt::BackButton) << 4;
    QTest::newRow("forward") << int(Qt::ForwardButton) << 5;
    QTest::newRow("ninth") << int(Qt::ExtraButton6) << 9;
    QTest::newRow("tenth") << int(Qt::ExtraButton7) << 0;
}

void MacrosTryTest::clicksInTheAreaAreReported()
{
    QFETCH(int, qtButton);
    QFETCH(int, number);
    startRecording();
    QTest::mouseClick(area(), Qt::MouseButton(qtButton));
    if (number == 0)
        QCOMPARE(mDelegate->calls, QStringList());
    else
        QCOMPARE(mDelegate->calls, (QStringList{u"button %1 1"_s.arg(number), u"button %1 0"_s.arg(number)}));
}

void MacrosTryTest::everyButtonHasItsNumber()
{
    QCOMPARE(ButtonArea::numberOf(Qt::NoButton), 0);
    QList<int> numbers;
    for (quint32 bit = 1; bit <= quint32(Qt::MaxMouseButton); bit <<= 1) {
        if (const int number = ButtonArea::numberOf(Qt::MouseButton(bit)))
            numbers += number;
    }
    QCOMPARE(numbers, (QList<int>{1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

void MacrosTryTest::areaIsThereDuringARecordingOnly()
{
    mWindow->show();
    fill({u"A"_s}, 0);
    QVERIFY(area()->isHidden());
    button("mRecordMacroDetails")->click();
    QVERIFY(!area()->isHidden());
    QVERIFY(!area()->text().isEmpty());
    button("mRecordMacroDetails")->click();
    QVERIFY(area()->isHidden());
    button("mAddMacroDetails")->click();
    QVERIFY(!area()->isHidden());
}

void MacrosTryTest::clicksElsewhereAreNotReported()
{
    startRecording();
    for (QWidget *widget : mController->view()->findChildren<QWidget *>()) {
        if (widget == area() || !widget->isVisible() || widget == button("mRecordMacroDetails"))
            continue;
        QTest::mousePress(widget, Qt::RightButton);
        QTest::mouseRelease(widget, Qt::RightButton);
    }
    QVERIFY(!mDelegate->calls.join(u' ').contains(u"button"_s));
    QTest::mouseClick(button("mRecordMacroDetails"), Qt::LeftButton);
    QVERIFY(mDelegate->calls.contains(u"stop"_s));
    QVERIFY(!mDelegate->calls.join(u' ').contains(u"button"_s));
}

void MacrosTryTest::doubleClickIsTwoClicks()
{
    startRecording();
    QTest::mouseClick(area(), Qt::LeftButton);
    QTest::mouseDClick(area(), Qt::LeftButton); // Qt reports the second press in this form
    QTest::mouseRelease(area(), Qt::LeftButton);
    QCOMPARE(mDelegate->calls, (QStringList{u"button 1 1"_s, u"button 1 0"_s, u"button 1 1"_s, u"button 1 0"_s}));
}

void MacrosTryTest::everyPressGetsItsRelease_data()
{
    QTest::addColumn<QString>("loss");
    for (const char *loss : {"pointer leaves", "window is left", "recording stops", "area is disabled"})
        QTest::newRow(loss) << QString::fromLatin1(loss);
}

void MacrosTryTest::everyPressGetsItsRelease()
{
    QFETCH(QString, loss);
    startRecording();
    QTest::mousePress(area(), Qt::LeftButton);
    QTest::mousePress(area(), Qt::RightButton);
    QCOMPARE(mDelegate->calls, (QStringList{u"button 1 1"_s, u"button 2 1"_s}));
    mDelegate->calls.clear();
    if (loss == "pointer leaves"_L1) {
        const QPointF outside(-5, 3);
        QMouseEvent move(QEvent::MouseMove, outside, area()->mapToGlobal(outside), Qt::NoButton,
                         Qt::LeftButton | Qt::RightButton, Qt::NoModifier);
        QCoreApplication::sendEvent(area(), &move);
    }
    if (loss == "window is left"_L1) {
        QEvent left(QEvent::WindowDeactivate);
        QCoreApplication::sendEvent(area(), &left);
    }
    if (loss == "recording stops"_L1)
        mController->stopAllMacroRecording();
    if (loss == "area is disabled"_L1)
        area()->setEnabled(false);
    QStringList calls = mDelegate->calls.filter(u"button"_s);
    QCOMPARE(calls, (QStringList{u"button 2 0"_s, u"button 1 0"_s}));
    area()->setEnabled(true);
    QTest::mouseRelease(area(), Qt::LeftButton); // too late
    QCOMPARE(mDelegate->calls.filter(u"button"_s), calls);
}

QTEST_MAIN(MacrosTryTest)
#include "macrostrytest.moc"
