// SPDX-License-Identifier: MIT
#include "app/statusreporter.h"

#include "base/text.h"
#include "platform/statusline.h"
#include "tests/support/testmain.h"
#include "tests/support/texts.h"

#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Event = StatusReport::Event;

namespace {

const QString stateText = u"Service: not responding"_s;
const QString noAnswerText = u"The keyboard service did not respond."_s;
const QString waitText = u"Waiting for the keyboard service to respond…"_s;
const StatusReport noReply{.event = Event::noReply};

/// Notes the text of the line whenever it is painted.
class PaintedTexts : public QObject
{
public:
    explicit PaintedTexts(StatusLine &line) : mLine(line) { line.installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            texts += mLine.text();
        return false;
    }
    QStringList texts;

private:
    StatusLine &mLine;
};

} // namespace

class StatusReporterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void reportGivesWayToTheState();
    void reportGivesWayToTheNext();
    void stateDoesNotHideAReport();
    void laterSuccessEndsTheReport();
    void successOfTheSameActionLeavesTheReport();
    void waitIsPaintedFromWithin();
    void shortWaitIsNotShown();
    void shownWaitIsReportedAfterwards();
    void waitHidesAReportForItsTimeOnly();
    void timesAreThoseOfTheManual();

private:
    void make(StatusTimes times);

    std::unique_ptr<StatusLine> mLine;
    std::unique_ptr<StatusReporter> mReporter;
};

void StatusReporterTest::init()
{
    installTexts(textsFolder(), {u"en"_s});
    mLine = std::make_unique<StatusLine>();
    mLine->resize(600, 20);
    mLine->show();
    QVERIFY(QTest::qWaitForWindowExposed(mLine.get()));
    make({.untilWaitIsShown = 1h, .report = 1h});
}

void StatusReporterTest::make(StatusTimes times)
{
    mReporter = std::make_unique<StatusReporter>(times);
    mReporter->setLine(mLine.get());
    mReporter->setState({.service = StatusState::Service::silent});
    QCOMPARE(mLine->text(), stateText);
}

void StatusReporterTest::reportGivesWayToTheState()
{
    make({.untilWaitIsShown = 1h, .report = 1ms});
    mReporter->report(noReply);
    QCOMPARE(mLine->text(), noAnswerText);
    QTRY_COMPARE(mLine->text(), stateText);
}

void StatusReporterTest::reportGivesWayToTheNext()
{
    mReporter->report(noReply);
    mReporter->report({.event = Event::notAMacro, .subject = u"a"_s});
    QCOMPARE(mLine->text(), u"The file “a” is not a macro."_s);
}

void StatusReporterTest::stateDoesNotHideAReport()
{
    mReporter->report(noReply);
    mReporter->setState({.service = StatusState::Service::absent});
    QCOMPARE(mLine->text(), noAnswerText);
    QTRY_VERIFY((mReporter->changeSucceeded(), mLine->text() == u"Service: not running"_s));
}

void StatusReporterTest::laterSuccessEndsTheReport()
{
    mReporter->report(noReply);
    QTRY_VERIFY((mReporter->changeSucceeded(), mLine->text() == stateText));
}

void StatusReporterTest::successOfTheSameActionLeavesTheReport()
{
    mReporter->report({.event = Event::notAMacro, .subject = u"a"_s});
    QTRY_VERIFY((mReporter->changeSucceeded(), mLine->text() == stateText));
    mReporter->report(noReply); // a second one, after a first that the user has seen
    mReporter->changeSucceeded();
    QCOMPARE(mLine->text(), noAnswerText);
}

void StatusReporterTest::waitIsPaintedFromWithin()
{
    make({.untilWaitIsShown = 0ms, .report = 1h});
    const auto wasHandled = std::make_shared<bool>(false); // the call may come after the end of the test
    QMetaObject::invokeMethod(
        this, [wasHandled] { *wasHandled = true; }, Qt::QueuedConnection);
    PaintedTexts painted(*mLine);
    {
        StatusReporter::Wait wait(*mReporter);
        QCOMPARE(painted.texts, QStringList());
        wait();
        wait();
        QCOMPARE(painted.texts, QStringList{waitText});
        QVERIFY(!*wasHandled);
    }
    QCOMPARE(mLine->text(), stateText);
}

void StatusReporterTest::shortWaitIsNotShown()
{
    PaintedTexts painted(*mLine);
    StatusReporter::Wait wait(*mReporter);
    wait();
    wait.end();
    QCOMPARE(mLine->text(), stateText);
    QCOMPARE(painted.texts, QStringList());
}

void StatusReporterTest::shownWaitIsReportedAfterwards()
{
    make({.untilWaitIsShown = 0ms, .report = 1h});
    {
        StatusReporter::Wait wait(*mReporter);
        wait();
        QCOMPARE(mLine->text(), waitText);
        wait.end();
    }
    QCOMPARE(mLine->text(), u"The keyboard service took 1 s to respond."_s);
}

void StatusReporterTest::waitHidesAReportForItsTimeOnly()
{
    make({.untilWaitIsShown = 0ms, .report = 1h});
    mReporter->report(noReply);
    {
        StatusReporter::Wait wait(*mReporter);
        wait();
        QCOMPARE(mLine->text(), waitText);
    }
    QCOMPARE(mLine->text(), noAnswerText);
}

void StatusReporterTest::timesAreThoseOfTheManual()
{
    QCOMPARE(StatusTimes().untilWaitIsShown, 500ms);
    QCOMPARE(StatusTimes().report, 15s);
}

QTEST_MAIN(StatusReporterTest)
#include "statusreportertest.moc"
