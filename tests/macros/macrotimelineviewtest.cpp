// SPDX-License-Identifier: MIT
#include "macros/macrotimelineview.h"

#include "macros/eventparser.h"
#include "macros/macrorecord.h"
#include "macros/macrotimelineaccessibility.h"
#include "macros/macrotimelinepart.h"
#include "platform/contrast.h"
#include "tests/support/fulldocument.h"
#include "tests/support/picturefolder.h"
#include "tests/support/testmain.h"
#include "tests/support/texts.h"

#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTranslator>
#include <QWheelEvent>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

// Shift is held from 0 to 400 ms, H from 100 to 200 ms, the mouse button from 300 ms until the end.
const QStringList shownLines{u"Key Press Left Shift"_s,  u"0.100 seconds delay\n"_s, u"Key Press H"_s,
                             u"0.100 seconds delay\n"_s, u"Key Release H"_s,         u"0.100 seconds delay\n"_s,
                             u"Left Button down\n"_s,    u"0.100 seconds delay\n"_s, u"Key Release Left Shift"_s};
constexpr int pressH = 1, releaseH = 2, pressButton = 3, releaseShift = 4; // indexes of events
constexpr int rowOfReleaseH = 4, rowOfItsPause = 3;

QStringList longLines()
{
    return eventParser::getMessagesArray(MacroRecord::events(fullMacro(u"Long"_s, 1, MacroRecord::maximumEvents)));
}

} // namespace

class MacroTimelineViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    // Places
    void wholeMacroIsShownAtFirst();
    void zoomKeepsTheTimeBelowTheMouse();
    void zoomKeepsTheSelectedEventInItsPlace();
    void zoomEndsAtTheWholeMacro();
    void selectionScrollsToItsEvent();
    void longestPausesCanBeShown();

    // Pictures
    void barsAreWhereKeysAreDown_data() { addPalettes(); }
    void barsAreWhereKeysAreDown();
    void denseBarsAreOneShape();
    void keysLeftDownLookDifferent();
    void listsAreInTheLanguageOfTheUser();
    void selectionAndPlayheadAreDrawn();

    // The user
    void clickSelectsTheEvent_data();
    void clickSelectsTheEvent();
    void keysSelectEvents_data();
    void keysSelectEvents();
    void draggedEdgeChangesThePauseOnce();
    void draggedEdgeMovesAllLaterEvents();
    void dragEndsWithoutAChange_data();
    void dragEndsWithoutAChange();
    void pauseIsNeverNegative();
    void clickOnAnEdgeChangesNothing();
    void pausesThatCannotChange_data();
    void pausesThatCannotChange();
    void altAndArrowsChangeThePauseOnce();
    void changeWithKeysEndsWithTheFocus();
    void escapeDiscardsAChangeWithKeys();
    void selectionOfAnotherRowDiscardsAChange();

    // Assistive tools
    void summaryAndEventsAreInTheTree();
    void namesWhatIsLeftDown();
    void longMacroHasFewChildren();
    void selectedEventHasTheFocus();
    void childrenStayWithinOtherEvents();

private:
    static void addPalettes();
    [[nodiscard]] QPoint placeOf(int event) const { return mView->eventRect(event).center(); }
    [[nodiscard]] QImage picture() const;
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyPress(mView, key, modifiers); }
    void grabEdge(int event);
    void moveBy(int event, int pixels);
    void wheel(const QPoint &place, int steps);

    std::unique_ptr<QWidget> mWindow;
    MacroTimelineView *mView = nullptr;
    QLineEdit *mOther = nullptr;
};

void MacroTimelineViewTest::initTestCase()
{
    qputenv("QUILL_KESTRA_RESOURCES", qgetenv("KESTRA_BIN_DIR") + "/resources");
    QVERIFY(installEnglishTexts());
}

void MacroTimelineViewTest::init()
{
    wearPalette(false);
    mWindow = std::make_unique<QWidget>();
    mView = new MacroTimelineView(mWindow.get());
    mOther = new QLineEdit(mWindow.get());
    mView->setGeometry(0, 0, 700, 160);
    mOther->setGeometry(0, 170, 100, 30);
    mView->showEvents(shownLines, {});
    mWindow->resize(700, 210);
    mWindow->show();
    QVERIFY(QTest::qWaitForWindowActive(mWindow.get()));
    // As the tab does.
    connect(mView, &MacroTimelineView::rowChosen, mView, &MacroTimelineView::selectRow);
    mView->setFocus();
}

void MacroTimelineViewTest::cleanup()
{
    mWindow.reset();
}

void MacroTimelineViewTest::addPalettes()
{
    QTest::addColumn<bool>("isDark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

QImage MacroTimelineViewTest::picture() const
{
    QImage image(mView->viewport()->size(), QImage::Format_RGB32);
    mView->viewport()->render(&image);
    return image;
}

void MacroTimelineViewTest::grabEdge(int event)
{
    QTest::mousePress(mView->viewport(), Qt::LeftButton, {}, placeOf(event));
}

void MacroTimelineViewTest::moveBy(int event, int pixels)
{
    // QTest::mouseMove() would not report the pressed button.
    const QPoint place = placeOf(event) + QPoint(pixels, 0);
    QMouseEvent move(QEvent::MouseMove, place, mView->viewport()->mapToGlobal(place), Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(mView->viewport(), &move);
}

void MacroTimelineViewTest::wheel(const QPoint &place, int steps)
{
    QWheelEvent event(place, mView->viewport()->mapToGlobal(place), {}, QPoint(0, 120 * steps), Qt::NoButton,
                      Qt::ControlModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(mView->viewport(), &event);
}

void MacroTimelineViewTest::wholeMacroIsShownAtFirst()
{
    const auto isWhole = [this] {
        const QRect area = mView->timelineLayout().barsArea();
        const double end = mView->timelineLayout().xOfTime(400);
        return mView->timelineLayout().xOfTime(0) >= area.left() && end <= area.right() && end > area.right() - 60;
    };
    QVERIFY(isWhole());
    QCOMPARE(mView->horizontalScrollBar()->maximum(), 0);
    mView->resize(400, 160);
    QVERIFY(isWhole());
    QCOMPARE(mView->horizontalScrollBar()->maximum(), 0);
}

void MacroTimelineViewTest::zoomKeepsTheTimeBelowTheMouse()
{
    const QPoint place(500, 50);
    const double timeMs = mView->timelineLayout().timeOfX(place.x());
    const double scale = mView->timelineLayout().pixelsPerMs;
    wheel(place, 2);
    QVERIFY(mView->timelineLayout().pixelsPerMs > 1.5 * scale);
    QVERIFY(std::abs(mView->timelineLayout().xOfTime(timeMs) - place.x()) <= 1);
    wheel(place, -1);
    QVERIFY(mView->timelineLayout().pixelsPerMs < 1.5 * scale);
    QVERIFY(std::abs(mView->timelineLayout().xOfTime(timeMs) - place.x()) <= 1);
}

void MacroTimelineViewTest::zoomKeepsTheSelectedEventInItsPlace()
{
    mView->selectRow(rowOfReleaseH);
    const int x = placeOf(releaseH).x();
    press(Qt::Key_Plus);
    QVERIFY(mView->horizontalScrollBar()->maximum() > 0);
    QVERIFY(std::abs(placeOf(releaseH).x() - x) <= 1);
}

void MacroTimelineViewTest::zoomEndsAtTheWholeMacro()
{
    const double whole = mView->timelineLayout().pixelsPerMs;
    press(Qt::Key_Minus);
    QCOMPARE(mView->timelineLayout().pixelsPerMs, whole);
    for (int step = 0; step < 30; ++step)
        press(Qt::Key_Plus);
    QCOMPARE(mView->timelineLayout().pixelsPerMs, MacroTimelineLayout::largestScale);
    press(Qt::Key_0);
    QCOMPARE(mView->timelineLayout().pixelsPerMs, whole);
    press(Qt::Key_Plus);
    press(Qt::Key_Minus);
    QCOMPARE(mView->timelineLayout().pixelsPerMs, whole);
    mView->resize(400, 160); // the whole macro is shown again, also in a view of another size
    QVERIFY(mView->timelineLayout().pixelsPerMs < whole);
    QCOMPARE(mView->horizontalScrollBar()->maximum(), 0);
}

void MacroTimelineViewTest::selectionScrollsToItsEvent()
{
    mView->showEvents(longLines(), {});
    for (int step = 0; step < 12; ++step)
        press(Qt::Key_Plus);
    for (const int event : {9'999, 0, 5'000}) {
        mView->selectRow(2 * event);
        QVERIFY2(mView->timelineLayout().barsArea().contains(placeOf(event)), qPrintable(QString::number(event)));
    }
}

void MacroTimelineViewTest::longestPausesCanBeShown()
{
    QStringList lines{u"Key Press A"_s};
    for (int event = 1; event < 2'000; ++event)
        lines += {u"2147483.647 seconds delay\n"_s, event % 2 == 1 ? u"Key Release A"_s : u"Key Press A"_s};
    mView->showEvents(lines, {});
    for (int step = 0; step < 100; ++step)
        press(Qt::Key_Plus);
    mView->selectRow(int(lines.size()) - 1);
    QVERIFY(mView->timelineLayout().barsArea().contains(placeOf(1'999)));
    QVERIFY(!picture().isNull());
    press(Qt::Key_0);
    QVERIFY(!picture().isNull());
}

void MacroTimelineViewTest::barsAreWhereKeysAreDown()
{
    QFETCH(bool, isDark);
    wearPalette(isDark);
    QCoreApplication::processEvents(); // a changed palette reaches the widgets by events
    const QImage image = picture();
    const MacroTimelineLayout &layout = mView->timelineLayout();
    const auto colorAt = [&](int lane, double timeMs) {
        return image.pixelColor(int(layout.xOfTime(timeMs)), layout.yOfLane(lane) + layout.laneHeight / 2);
    };
    const QList<QColor> grounds{colorAt(0, 410), colorAt(1, 50)};
    for (const double timeMs : {10.0, 390.0})
        QVERIFY(colorAt(0, timeMs) != grounds.at(0));
    for (const double timeMs : {110.0, 190.0})
        QVERIFY(colorAt(1, timeMs) != grounds.at(1));
    for (const double timeMs : {90.0, 210.0, 350.0})
        QCOMPARE(colorAt(1, timeMs), grounds.at(1));
    // The outline of a bar has the contrast of a shape.
    const QColor outline = image.pixelColor(int(layout.xOfTime(150)), layout.yOfLane(1) + 3);
    QVERIFY2(Contrast::ratio(outline, grounds.at(1)) >= 3, qPrintable(outline.name()));
}

void MacroTimelineViewTest::denseBarsAreOneShape()
{
    // A key that is down half of the time, many times in each pixel: its lane is filled.
    QStringList lines{u"Key Press A"_s};
    for (int event = 1; event < 10'000; ++event)
        lines += {u"0.010 seconds delay\n"_s, event % 2 == 1 ? u"Key Release A"_s : u"Key Press A"_s};
    mView->showEvents(lines, {});
    const QImage image = picture();
    const MacroTimelineLayout &layout = mView->timelineLayout();
    const int y = layout.yOfLane(0) + layout.laneHeight / 2;
    const QRgb color = image.pixel(int(layout.xOfTime(0)) + 1, y);
    QVERIFY(color != image.pixel(layout.namesWidth + 1, y));
    for (int x = int(layout.xOfTime(0)) + 1; x < int(layout.xOfTime(99'900)); ++x)
        QCOMPARE(image.pixel(x, y), color);
}

void MacroTimelineViewTest::listsAreInTheLanguageOfTheUser()
{
    QTranslator table;
    QVERIFY(table.load(qEnvironmentVariable("KESTRA_BIN_DIR") + u"/resources/texts/ja.qm"_s));
    QVERIFY(QCoreApplication::installTranslator(&table));
    const QStringList lines{u"Key Press A"_s, u"0.010 seconds delay\n"_s, u"Key Press B"_s};
    MacroTimelinePart part;
    part.showEvents(1, lines, {});
    QVERIFY2(part.view()->summary().contains(u"A、B"_s), qPrintable(part.view()->summary()));
    QVERIFY2(mView->scaleText().contains(u'、'), qPrintable(mView->scaleText()));
    const QString notice = part.findChild<QLabel *>(u"mMacroTimelineNotice"_s)->text();
    QVERIFY2(notice.contains(u"A、B"_s), qPrintable(notice));
}

void MacroTimelineViewTest::keysLeftDownLookDifferent()
{
    // The same place in the same lane, with and without the release of the button at its end.
    const QImage open = picture();
    mView->showEvents(shownLines + QStringList{u"0.000 seconds delay\n"_s, u"Left Button up\n"_s}, {});
    const QImage closed = picture();
    const MacroTimelineLayout &layout = mView->timelineLayout();
    const auto colors = [&](const QImage &image) {
        QSet<QRgb> found;
        for (int y = layout.yOfLane(2) + 5; y < layout.yOfLane(2) + layout.laneHeight - 5; ++y)
            found += image.pixel(int(layout.xOfTime(350)), y);
        return found;
    };
    QCOMPARE(colors(closed).size(), 1);
    QVERIFY(colors(open).size() > 1); // hatched
    // It has no end, also behind the last event.
    const int behind = int(layout.xOfTime(400)) + 10;
    const int y = layout.yOfLane(2) + 3;
    QVERIFY(open.pixel(behind, y) != closed.pixel(behind, y));
}

void MacroTimelineViewTest::selectionAndPlayheadAreDrawn()
{
    const QImage before = picture();
    const auto differsAt = [&](double timeMs) {
        const QPoint place(int(std::round(mView->timelineLayout().xOfTime(timeMs))), mView->viewport()->height() - 3);
        return picture().pixel(place) != before.pixel(place);
    };
    mView->selectRow(rowOfReleaseH);
    QVERIFY(differsAt(200));
    QVERIFY(!differsAt(150));
    mView->selectRow(rowOfItsPause);
    QVERIFY(differsAt(150));
    QVERIFY(!differsAt(250));
    mView->selectRow(-1);
    QVERIFY(!differsAt(150));
    mView->setPlayhead(pressButton);
    QVERIFY(differsAt(300));
    mView->clearPlayhead();
    QVERIFY(!differsAt(300));
    mView->setPlayhead(99); // no event of this macro
    QCOMPARE(mView->playedEvent(), -1);
}

void MacroTimelineViewTest::clickSelectsTheEvent_data()
{
    QTest::addColumn<int>("lane");
    QTest::addColumn<double>("timeMs");
    QTest::addColumn<int>("row");
    QTest::newRow("the press") << 1 << 100.0 << 2;
    QTest::newRow("the bar") << 1 << 150.0 << 2;
    QTest::newRow("the release") << 1 << 200.0 << 4;
    QTest::newRow("a key that is left down") << 2 << 390.0 << 6;
    QTest::newRow("beside the bar") << 1 << 300.0 << -1;
    QTest::newRow("below the lanes") << 3 << 100.0 << -1;
}

void MacroTimelineViewTest::clickSelectsTheEvent()
{
    QFETCH(int, lane);
    QFETCH(double, timeMs);
    const MacroTimelineLayout &layout = mView->timelineLayout();
    const QPoint place(int(std::round(layout.xOfTime(timeMs))), layout.yOfLane(lane) + layout.laneHeight / 2);
    QTest::mouseClick(mView->viewport(), Qt::LeftButton, {}, place);
    QTEST(mView->selectedRow(), "row");
}

void MacroTimelineViewTest::keysSelectEvents_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("to");
    QTest::newRow("right") << 2 << Qt::Key_Right << 4;
    QTest::newRow("right from a pause") << 3 << Qt::Key_Right << 4;
    QTest::newRow("right at the end") << 8 << Qt::Key_Right << 8;
    QTest::newRow("right without a selection") << -1 << Qt::Key_Right << 0;
    QTest::newRow("left") << 4 << Qt::Key_Left << 2;
    QTest::newRow("left from a pause") << 3 << Qt::Key_Left << 2;
    QTest::newRow("left at the start") << 0 << Qt::Key_Left << 0;
    QTest::newRow("home") << 6 << Qt::Key_Home << 0;
    QTest::newRow("end") << 0 << Qt::Key_End << 8;
}

void MacroTimelineViewTest::keysSelectEvents()
{
    QFETCH(int, from);
    QFETCH(Qt::Key, key);
    mView->selectRow(from);
    press(key);
    QTEST(mView->selectedRow(), "to");
}

void MacroTimelineViewTest::draggedEdgeChangesThePauseOnce()
{
    QSignalSpy chosen(mView, &MacroTimelineView::pauseChosen);
    const double pixelsPerMs = mView->timelineLayout().pixelsPerMs;
    const QPoint from = placeOf(releaseH);
    grabEdge(releaseH);
    QCOMPARE(mView->selectedRow(), rowOfReleaseH);
    for (const int pixels : {10, 60, 31}) {
        const QPoint place = from + QPoint(pixels, 0);
        QMouseEvent move(QEvent::MouseMove, place, mView->viewport()->mapToGlobal(place), Qt::NoButton, Qt::LeftButton,
                         {});
        QCoreApplication::sendEvent(mView->viewport(), &move);
        QVERIFY(mView->isChangingPause());
    }
    QCOMPARE(chosen.size(), 0);
    QTest::mouseRelease(mView->viewport(), Qt::LeftButton, {}, from + QPoint(31, 0));
    QCOMPARE(chosen.size(), 1);
    QCOMPARE(chosen.at(0).at(0).toInt(), rowOfItsPause);
    QCOMPARE(chosen.at(0).at(1).toInt(), 100 + int(std::round(31 / pixelsPerMs)));
    QVERIFY(!mView->isChangingPause());
}

void MacroTimelineViewTest::draggedEdgeMovesAllLaterEvents()
{
    const int before = placeOf(pressH).x();
    const int edge = placeOf(releaseH).x();
    const int later = placeOf(releaseShift).x();
    grabEdge(releaseH);
    moveBy(releaseH, 40);
    QCOMPARE(placeOf(pressH).x(), before);
    QVERIFY(std::abs(placeOf(releaseH).x() - edge - 40) <= 1);
    QVERIFY(std::abs(placeOf(releaseShift).x() - later - 40) <= 1);
    QTest::keyClick(mView, Qt::Key_Escape);
    QCOMPARE(placeOf(releaseH).x(), edge);
    QCOMPARE(placeOf(releaseShift).x(), later);
}

void MacroTimelineViewTest::dragEndsWithoutAChange_data()
{
    QTest::addColumn<int>("end");
    QTest::newRow("Escape") << 0;
    QTest::newRow("other events") << 1;
    QTest::newRow("disabled") << 2;
    QTest::newRow("hidden") << 3;
    QTest::newRow("not editable") << 4;
    QTest::newRow("focus") << 5;
}

void MacroTimelineViewTest::dragEndsWithoutAChange()
{
    QFETCH(int, end);
    QSignalSpy chosen(mView, &MacroTimelineView::pauseChosen);
    grabEdge(releaseH);
    moveBy(releaseH, 40);
    QVERIFY(mView->isChangingPause());
    switch (end) {
    case 0: QTest::keyClick(mView, Qt::Key_Escape); break;
    case 1: mView->showEvents(shownLines.mid(0, 5), {}); break;
    case 2: mView->setEnabled(false); break;
    case 3: mView->hide(); break;
    case 4: mView->setEditable(false); break;
    default: mOther->setFocus(); break;
    }
    QVERIFY(!mView->isChangingPause());
    moveBy(pressH, 80);
    QTest::mouseRelease(mView->viewport(), Qt::LeftButton, {}, placeOf(pressH));
    QVERIFY(!mView->isChangingPause());
    QCOMPARE(chosen.size(), 0);
}

void MacroTimelineViewTest::pauseIsNeverNegative()
{
    QSignalSpy chosen(mView, &MacroTimelineView::pauseChosen);
    const QPoint from = placeOf(releaseH);
    grabEdge(releaseH);
    moveBy(releaseH, -from.x());
    QCOMPARE(placeOf(releaseH).x(), placeOf(pressH).x());
    QTest::mouseRelease(mView->viewport(), Qt::LeftButton, {}, from - QPoint(from.x(), 0));
    QCOMPARE(chosen.value(0), (QVariantList{rowOfItsPause, 0}));
}

void MacroTimelineViewTest::clickOnAnEdgeChangesNothing()
{
    QSignalSpy chosen(mView, &MacroTimelineView::pauseChosen);
    grabEdge(releaseH);
    moveBy(releaseH, 1);
    QTest::mouseRelease(mView->viewport(), Qt::LeftButton, {}, placeOf(releaseH) + QPoint(1, 0));
    QCOMPARE(chosen.size(), 0);
    // Nor does a drag back to where it began.
    const QPoint from = placeOf(releaseH);
    grabEdge(releaseH);
    moveBy(releaseH, 50);
    const QPoint place = from;
    QMouseEvent move(QEvent::MouseMove, place, mView->viewport()->mapToGlobal(place), Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(mView->viewport(), &move);
    QTest::mouseRelease(mView->viewport(), Qt::LeftButton, {}, place);
    QCOMPARE(chosen.size(), 0);
}

void MacroTimelineViewTest::pausesThatCannotChange_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("isEditable");
    QTest::newRow("the first event has none") << 0 << true;
    QTest::newRow("nothing selected") << -1 << true;
    QTest::newRow("not editable") << rowOfReleaseH << false;
}

void MacroTimelineViewTest::pausesThatCannotChange()
{
    QFETCH(int, row);
    QFETCH(bool, isEditable);
    mView->setEditable(isEditable);
    mView->selectRow(row);
    press(Qt::Key_Right, Qt::AltModifier);
    QVERIFY(!mView->isChangingPause());
    if (row < 0)
        return;
    const int event = mView->selectedEvent();
    grabEdge(event);
    moveBy(event, 50);
    QVERIFY(!mView->isChangingPause());
}

void MacroTimelineViewTest::altAndArrowsChangeThePauseOnce()
{
    QSignalSpy chosen(mView, &MacroTimelineView::pauseChosen);
    mView->selectRow(rowOfItsPause);
    for (int step = 0; step < 3; ++step)
        press(Qt::Key_Right, Qt::AltModifier);
    press(Qt::Key_Left, Qt::AltModifier);
    QCOMPARE(mView->changedPause(), u"120 ms"_s);
    QCOMPARE(chosen.size(), 0);
    QTest::keyRelease(mView, Qt::Key_Alt);
    QCOMPARE(chosen.size(), 1);
    QCOMPARE(chosen.at(0), (QVariantList{rowOfItsPause, 120}));
    // Not below nothing.
    for (int step = 0; step < 20; ++step)
        press(Qt::Key_Left, Qt::AltModifier);
    QTest::keyRelease(mView, Qt::Key_Alt);
    QCOMPARE(chosen.value(1), (QVariantList{rowOfItsPause, 0}));
}

void MacroTimelineViewTest::changeWithKeysEndsWithTheFocus()
{
    QSignalSpy chosen(mView, &MacroTimelineView::pauseChosen);
    mView->selectRow(rowOfReleaseH);
    press(Qt::Key_Right, Qt::AltModifier);
    mOther->setFocus();
    QCOMPARE(chosen.value(0), (QVariantList{rowOfItsPause, 110}));
    QVERIFY(!mView->isChangingPause());
}

void MacroTimelineViewTest::escapeDiscardsAChangeWithKeys()
{
    QSignalSpy chosen(mView, &MacroTimelineView::pauseChosen);
    mView->selectRow(rowOfReleaseH);
    const int x = placeOf(releaseH).x();
    press(Qt::Key_Right, Qt::AltModifier);
    QVERIFY(placeOf(releaseH).x() > x);
    press(Qt::Key_Escape);
    QCOMPARE(placeOf(releaseH).x(), x);
    QTest::keyRelease(mView, Qt::Key_Alt);
    QCOMPARE(chosen.size(), 0);
}

void MacroTimelineViewTest::selectionOfAnotherRowDiscardsAChange()
{
    QSignalSpy chosen(mView, &MacroTimelineView::pauseChosen);
    mView->selectRow(rowOfReleaseH);
    press(Qt::Key_Right, Qt::AltModifier);
    mView->selectRow(rowOfItsPause); // of the same event
    QVERIFY(mView->isChangingPause());
    mView->selectRow(0);
    QVERIFY(!mView->isChangingPause());
    QTest::keyRelease(mView, Qt::Key_Alt);
    QCOMPARE(chosen.size(), 0);
}

void MacroTimelineViewTest::summaryAndEventsAreInTheTree()
{
    QAccessibleInterface *tree = QAccessible::queryAccessibleInterface(mView);
    QVERIFY(tree);
    QCOMPARE(tree->text(QAccessible::Name), u"Timeline"_s);
    QCOMPARE(tree->text(QAccessible::Description),
             u"Events: 5. Duration: 0.400 s. Keys and buttons: Left Shift, H, Left Button. "
             "Still down at the end: Left Button."_s);
    QStringList names;
    for (int child = 0; child < tree->childCount(); ++child) {
        QAccessibleInterface *one = tree->child(child);
        QCOMPARE(tree->indexOfChild(one), child);
        QCOMPARE(one->parent(), tree);
        QVERIFY(!one->state().invisible);
        names += one->text(QAccessible::Name);
    }
    QCOMPARE(names.mid(1),
             (QStringList{u"Left Shift"_s, u"H"_s, u"Left Button"_s, u"Key Press Left Shift, at 0.000 s, after 0 ms"_s,
                          u"Key Press H, at 0.100 s, after 100 ms"_s, u"Key Release H, at 0.200 s, after 100 ms"_s,
                          u"Left Button down, at 0.300 s, after 100 ms\nThis press has no release."_s,
                          u"Key Release Left Shift, at 0.400 s, after 100 ms"_s}));
    QVERIFY(names.first().startsWith("0.0"_L1));
    const QPoint place = mView->viewport()->mapToGlobal(placeOf(releaseH));
    QVERIFY(tree->childAt(place.x(), place.y()));
    QCOMPARE(tree->childAt(place.x(), place.y())->text(QAccessible::Name), names.at(6));
}

void MacroTimelineViewTest::namesWhatIsLeftDown()
{
    const QString noRelease = u"This press has no release."_s, noPress = u"This release has no press."_s;
    mView->showEvents({u"Key Press A"_s, u"0.010 seconds delay\n"_s, u"Key Release B"_s, u"0.010 seconds delay\n"_s,
                       u"Key Press C"_s, u"0.010 seconds delay\n"_s, u"Key Release C"_s},
                      {});
    QVERIFY2(mView->eventText(0).endsWith(noRelease), qPrintable(mView->eventText(0)));
    QVERIFY2(mView->eventText(1).endsWith(noPress), qPrintable(mView->eventText(1)));
    for (const int paired : {2, 3})
        QVERIFY(!mView->eventText(paired).contains(noRelease) && !mView->eventText(paired).contains(noPress));
    QVERIFY2(mView->summary().endsWith(u"Still down at the end: A."_s), qPrintable(mView->summary()));
    // The keys of a recording are still to be released.
    mView->setWatched(true);
    QVERIFY(!mView->eventText(0).contains(noRelease));
    QVERIFY(!mView->summary().contains(u"Still down"_s));
}

void MacroTimelineViewTest::longMacroHasFewChildren()
{
    mView->showEvents(longLines(), {});
    QAccessibleInterface *tree = QAccessible::queryAccessibleInterface(mView);
    mView->selectRow(2 * 7'000);
    const int most = 1 + mView->timeline().lanes + MacroTimelineAccessibility::mostEvents;
    QVERIFY(tree->childCount() > MacroTimelineAccessibility::mostEvents);
    QVERIFY(tree->childCount() <= most);
    // The selected event and its neighbours are among them.
    QVERIFY(tree->focusChild());
    const int selected = tree->indexOfChild(tree->focusChild());
    QVERIFY(selected > 0 && selected < tree->childCount() - 1);
    QCOMPARE(tree->child(selected)->text(QAccessible::Name), mView->eventText(7'000));
    QCOMPARE(tree->child(selected + 1)->text(QAccessible::Name), mView->eventText(7'001));
}

void MacroTimelineViewTest::selectedEventHasTheFocus()
{
    QAccessibleInterface *tree = QAccessible::queryAccessibleInterface(mView);
    mView->selectRow(rowOfReleaseH);
    QVERIFY(tree->focusChild());
    QVERIFY(tree->focusChild()->state().focused);
    QVERIFY(tree->focusChild()->state().selected);
    mOther->setFocus();
    QVERIFY(!tree->focusChild());
    // An event can be selected through the tree.
    QAccessibleInterface *event = tree->child(tree->childCount() - 1);
    QVERIFY(event->actionInterface());
    event->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(mView->selectedEvent(), releaseShift);
}

void MacroTimelineViewTest::childrenStayWithinOtherEvents()
{
    QAccessibleInterface *tree = QAccessible::queryAccessibleInterface(mView);
    QAccessibleInterface *last = tree->child(tree->childCount() - 1);
    QVERIFY(last->isValid());
    mView->showEvents(shownLines.mid(0, 3), {});
    QVERIFY(!last->isValid());
    QVERIFY(last->state().invalid);
    QCOMPARE(last->text(QAccessible::Name), QString());
    QCOMPARE(last->rect(), QRect());
    QCOMPARE(tree->childCount(), 1 + 2 + 2);
}

QTEST_MAIN(MacroTimelineViewTest)
#include "macrotimelineviewtest.moc"
