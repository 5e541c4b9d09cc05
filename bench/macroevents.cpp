// SPDX-License-Identifier: MIT
// The time that a user waits for a macro of maximum length: from the click on its name, over the bus and through the
// real daemon, to its painted lines; then for scrolling, editing, recording and the timeline. Run it on a private bus:
//   QT_QPA_PLATFORM=offscreen dbus-run-session -- build/release/bin/bench_macroevents
#include "base/daemonprotocol.h"
#include "base/settingskeys.h"
#include "bench/benchprogram.h"
#include "macros/keyboardmacroscontroller.h"
#include "macros/macrorecord.h"
#include "macros/macrotimelineview.h"
#include "platform/tableview.h"
#include "tests/support/fulldocument.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int macrosTabIndex = 2;
constexpr int rowsOfLongMacro = 2 * MacroRecord::maximumEvents - 1;

/// The full document with two long macros at the start of its list.
QVariantMap documentWithLongMacros()
{
    QVariantMap document = fullDocument();
    QVariantList macros = document.value(SettingsKeys::macros).toList();
    macros.prepend(fullMacro(u"Longest"_s, 101, MacroRecord::maximumEvents));
    macros.prepend(fullMacro(u"Long"_s, 100, MacroRecord::maximumEvents));
    document.insert(SettingsKeys::macros, macros);
    return document;
}

struct MacrosTab : BenchProgram
{
    MacrosTab() : BenchProgram(documentWithLongMacros())
    {
        controller.selectTabAtIndex(macrosTabIndex);
        QApplication::processEvents();
        list = controller.macrosController()->macroTableView();
        events = controller.macrosController()->macroDetailsTableView();
        timeline = window.findChild<MacroTimelineView *>();
    }

    void click(int row) const
    {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualRect(list->model()->index(row, 0)).center());
        QApplication::processEvents(); // paints the lines
    }

    TableView *list = nullptr;
    TableView *events = nullptr;
    MacroTimelineView *timeline = nullptr;
};

void clickMacroAndShowItsLines(benchmark::State &state)
{
    const MacrosTab tab;
    int row = 0;
    for (auto _ : state) {
        tab.click(row);
        row = 1 - row;
    }
    if (tab.events->numberOfRows() != rowsOfLongMacro)
        state.SkipWithError("the lines are not there");
}

void scrollOnePage(benchmark::State &state)
{
    const MacrosTab tab;
    tab.click(0);
    QScrollBar *bar = tab.events->verticalScrollBar();
    for (auto _ : state) {
        bar->setValue(bar->value() + bar->pageStep() > bar->maximum() ? 0 : bar->value() + bar->pageStep());
        QApplication::processEvents();
    }
    if (bar->maximum() < 1000)
        state.SkipWithError("there is nothing to scroll");
}

/// The part of the click that the timeline takes: its lanes and bars from the lines, and its picture.
void showTheTimeline(benchmark::State &state)
{
    const MacrosTab tab;
    tab.click(0);
    const QStringList lines = tab.controller.macrosController()->macroDetailsArray();
    const QVariantList events = MacroRecord::events(tab.controller.macrosArray().at(0).toMap());
    for (auto _ : state) {
        tab.timeline->showEvents(lines, events);
        tab.timeline->viewport()->repaint();
    }
    if (tab.timeline->timeline().eventCount() != MacroRecord::maximumEvents)
        state.SkipWithError("the timeline has other events");
}

/// One picture for each step of the wheel, from the whole macro to the largest scale and back.
void zoomTheTimeline(benchmark::State &state)
{
    const MacrosTab tab;
    tab.click(0);
    MacroTimelineView *timeline = tab.timeline;
    bool isZoomingIn = true;
    for (auto _ : state) {
        const double before = timeline->timelineLayout().pixelsPerMs;
        isZoomingIn ? timeline->zoomIn() : timeline->zoomOut();
        timeline->viewport()->repaint();
        if (timeline->timelineLayout().pixelsPerMs == before)
            isZoomingIn = !isZoomingIn;
    }
}

/// One picture for each move of the mouse that drags an edge in the middle of the whole macro.
void dragInTheTimeline(benchmark::State &state)
{
    const MacrosTab tab;
    tab.click(0);
    MacroTimelineView *timeline = tab.timeline;
    QWidget *viewport = timeline->viewport();
    const int edge = MacroRecord::maximumEvents / 2;
    timeline->selectRow(2 * edge);
    const QPoint from = timeline->eventRect(edge).center();
    QTest::mousePress(viewport, Qt::LeftButton, {}, from);
    int step = 0;
    for (auto _ : state) {
        const QPoint place = from + QPoint(5 + ++step % 100, 0);
        QMouseEvent move(QEvent::MouseMove, place, viewport->mapToGlobal(place), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(viewport, &move);
        viewport->repaint();
    }
    if (!timeline->isChangingPause())
        state.SkipWithError("nothing is dragged");
    QTest::keyClick(timeline, Qt::Key_Escape);
}

void setOneDelay(benchmark::State &state)
{
    MacrosTab tab;
    tab.click(0);
    int delayMs = 0;
    for (auto _ : state) {
        tab.controller.setNewDelayAtMacroEventIndexForMacroAtIndex(++delayMs % 1000, 1, 0);
        tab.controller.getMacroDetailsForMacroAtIndex(0);
        QApplication::processEvents();
    }
    const QString line = tab.controller.macrosController()->macroDetailsArray().at(1);
    if (line != u"%1 seconds delay\n"_s.arg(delayMs % 1000 / 1000.0, 0, 'f', 3))
        state.SkipWithError("the delay did not come back");
}

/// A change after which the daemon sends the whole document, with all the events of both macros.
void renameAndReload(benchmark::State &state)
{
    MacrosTab tab;
    tab.click(0);
    const QStringList names{u"Long"_s, u"Also long"_s};
    qsizetype next = 0;
    for (auto _ : state) {
        next = 1 - next;
        tab.controller.renameMacroAtIndexWithNewName(0, names.at(next));
        QApplication::processEvents();
    }
    if (MacroRecord::name(tab.controller.macrosArray().at(0).toMap()) != names.at(next))
        state.SkipWithError("the name did not come back");
}

void showOneRecordedEvent(benchmark::State &state)
{
    const MacrosTab tab;
    tab.click(0);
    KeyboardMacrosController *macros = tab.controller.macrosController();
    macros->clickAddMacroDetails(nullptr);
    for (auto _ : state) {
        macros->recordEvents(
            {{DaemonProtocol::messagesArray, QVariantList{u"0.020 seconds delay\n"_s, u"Key Press A"_s}}});
        QApplication::processEvents();
    }
    if (tab.events->selectedRow() != tab.events->numberOfRows() - 1 || tab.events->numberOfRows() <= rowsOfLongMacro)
        state.SkipWithError("the recorded lines are not there");
}

BENCHMARK(clickMacroAndShowItsLines)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(20)->Repetitions(5);
// The reply port and the bus have threads of their own.
BENCHMARK(clickMacroAndShowItsLines)
    ->Name("clickMacroOnAllThreads")
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Iterations(20)
    ->Repetitions(5);
BENCHMARK(scrollOnePage)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(200)->Repetitions(5);
BENCHMARK(showTheTimeline)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(20)->Repetitions(5);
BENCHMARK(zoomTheTimeline)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(200)->Repetitions(5);
BENCHMARK(dragInTheTimeline)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(200)->Repetitions(5);
BENCHMARK(setOneDelay)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(20)->Repetitions(5);
BENCHMARK(renameAndReload)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(20)->Repetitions(5);
BENCHMARK(showOneRecordedEvent)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(200)->Repetitions(5);

} // namespace
