// SPDX-License-Identifier: MIT
#include "daemon/frontapplication/frontapplicationwatch.h"
#include "tests/support/testmain.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

/// A source under the test's control: its start, its reports, its loss.
class ScriptedSource : public FrontApplicationSource
{
public:
    explicit ScriptedSource(const bool &isThere) : mIsThere(isThere) {}

    void start() override
    {
        if (mIsThere)
            Q_EMIT ready();
        else
            fail(u"not there"_s);
    }
    void tell(const QString &name)
    {
        Q_EMIT applicationChanged(name.isEmpty() ? FrontApplication{} : FrontApplication::named(name));
    }
    void lose() { fail(u"lost"_s); }
    [[nodiscard]] bool takesReportsOf(const QString &client) const override { return client != u":1.5"; }

private:
    const bool &mIsThere;
};

} // namespace

class FrontApplicationWatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { mWatch.reset(); }

    void firstSourceThatWorksIsUsed();
    void withoutASourceClientReportsApply();
    void sourceThatStartsLaterIsFound();
    void startDoesNotDisturbASource();
    void lostSourceIsReplaced();
    void lostSourceLeavesNothingInFront();
    void sameApplicationIsReportedOnce();
    void momentWithoutAWindowCausesNoChange();
    void momentWithoutAWindowLeavesNothingBehind();
    void lastingAbsenceOfAWindowIsReported();
    void everyLossOfAllSourcesIsLogged();
    void betterSourceReplacesTheOneInUse();
    void failureOfAReplacedSourceChangesNothing();
    void sourceDecidesWhichClientsReport();

private:
    FrontApplicationWatch::SourceKind kind(QLatin1StringView name, const bool &isThere)
    {
        return {name, [this, &isThere] {
                    auto source = std::make_unique<ScriptedSource>(isThere);
                    mSource = source.get();
                    return source;
                }};
    }
    QStringList names() const
    {
        QStringList result;
        for (const QList<QVariant> &arguments : *mChanges)
            result += arguments.first().value<FrontApplication>().name();
        return result;
    }

    bool mIsFirstThere = false;
    bool mIsSecondThere = false;
    QPointer<ScriptedSource> mSource; // the one in use
    std::unique_ptr<FrontApplicationWatch> mWatch;
    std::unique_ptr<QSignalSpy> mChanges;
    std::unique_ptr<QSignalSpy> mFound;
    std::unique_ptr<QSignalSpy> mMissing;
};

void FrontApplicationWatchTest::init()
{
    mIsFirstThere = mIsSecondThere = true;
    mWatch = std::make_unique<FrontApplicationWatch>(
        std::vector{kind("first"_L1, mIsFirstThere), kind("second"_L1, mIsSecondThere)});
    mChanges = std::make_unique<QSignalSpy>(mWatch.get(), &FrontApplicationWatch::applicationChanged);
    mFound = std::make_unique<QSignalSpy>(mWatch.get(), &FrontApplicationWatch::sourceFound);
    mMissing = std::make_unique<QSignalSpy>(mWatch.get(), &FrontApplicationWatch::sourceMissing);
}

void FrontApplicationWatchTest::firstSourceThatWorksIsUsed()
{
    mIsFirstThere = false;
    QCOMPARE(mWatch->sourceName(), u"none"_s);
    mWatch->start();
    QTRY_COMPARE(mWatch->sourceName(), u"second"_s);
    mSource->tell(u"game"_s);
    QCOMPARE(names(), QStringList{u"game"_s});
    QCOMPARE(mWatch->application().name(), u"game"_s);
}

void FrontApplicationWatchTest::withoutASourceClientReportsApply()
{
    mIsFirstThere = mIsSecondThere = false;
    mWatch->start();
    mWatch->report(FrontApplication::named(u"game"_s));
    QCOMPARE(names(), QStringList{u"game"_s});
    QCOMPARE(mWatch->sourceName(), u"none"_s);
}

void FrontApplicationWatchTest::sourceThatStartsLaterIsFound()
{
    mIsFirstThere = mIsSecondThere = false;
    mWatch->start();
    QVERIFY(mWatch->isTrying());
    QTRY_COMPARE(mMissing->size(), 1);
    QVERIFY(!mWatch->isTrying());
    mIsFirstThere = true;
    mWatch->start();
    QTRY_COMPARE(mWatch->sourceName(), u"first"_s);
    QCOMPARE(mFound->size(), 1);
    QCOMPARE(mMissing->size(), 1);
}

void FrontApplicationWatchTest::startDoesNotDisturbASource()
{
    mIsFirstThere = false;
    mWatch->start();
    mWatch->start(); // while the first one fails
    QTRY_COMPARE(mWatch->sourceName(), u"second"_s);
    mIsFirstThere = true;
    mSource->tell(u"game"_s);
    mWatch->start();
    QCOMPARE(mWatch->sourceName(), u"second"_s);
    QCOMPARE(mFound->size(), 1);
    QCOMPARE(mWatch->application().name(), u"game"_s);
}

void FrontApplicationWatchTest::lostSourceIsReplaced()
{
    mWatch->start();
    QCOMPARE(mWatch->sourceName(), u"first"_s);
    mIsFirstThere = false;
    QTest::ignoreMessage(QtWarningMsg, "desktop: first: lost");
    mSource->lose();
    QTRY_COMPARE(mWatch->sourceName(), u"second"_s);
    mIsSecondThere = false;
    QTest::ignoreMessage(QtWarningMsg, "desktop: second: lost");
    mSource->lose();
    QTRY_COMPARE(mMissing->size(), 1);
    QCOMPARE(mWatch->sourceName(), u"none"_s);
}

void FrontApplicationWatchTest::lostSourceLeavesNothingInFront()
{
    mWatch->start();
    mSource->tell(u"game"_s);
    mIsFirstThere = mIsSecondThere = false;
    QTest::ignoreMessage(QtWarningMsg, "desktop: first: lost");
    mSource->lose();
    QTRY_COMPARE(names(), QStringList({u"game"_s, QString()}));
}

void FrontApplicationWatchTest::sameApplicationIsReportedOnce()
{
    mWatch->start();
    mSource->tell(u"game"_s);
    mSource->tell(u"game"_s);
    mWatch->report(FrontApplication::named(u"game"_s));
    QCOMPARE(names(), QStringList{u"game"_s});
}

void FrontApplicationWatchTest::momentWithoutAWindowCausesNoChange()
{
    mWatch->start();
    mSource->tell(u"game"_s);
    mSource->tell({});
    mSource->tell(u"editor"_s);
    mSource->tell({});
    QTRY_COMPARE(mChanges->size(), 3);
    QCOMPARE(names(), QStringList({u"game"_s, u"editor"_s, QString()}));
}

void FrontApplicationWatchTest::momentWithoutAWindowLeavesNothingBehind()
{
    mWatch->start();
    mSource->tell(u"game"_s);
    mSource->tell({});
    mSource->tell(u"editor"_s);
    // It expires after the watch's own timer would have, if that had continued.
    QTimer later;
    later.setSingleShot(true);
    const QSignalSpy ranOut(&later, &QTimer::timeout);
    later.start(100);
    QTRY_COMPARE(ranOut.size(), 1);
    QCOMPARE(names(), QStringList({u"game"_s, u"editor"_s}));
}

void FrontApplicationWatchTest::everyLossOfAllSourcesIsLogged()
{
    const auto log = "no source reports the application in front: profiles follow reports of clients alone";
    mIsFirstThere = mIsSecondThere = false;
    QTest::ignoreMessage(QtInfoMsg, log);
    mWatch->start();
    QTRY_COMPARE(mMissing->size(), 1);
    mIsFirstThere = true;
    QTest::ignoreMessage(QtInfoMsg, "first reports the application in front");
    mWatch->start();
    QCOMPARE(mFound->size(), 1);
    mIsFirstThere = false;
    QTest::ignoreMessage(QtWarningMsg, "desktop: first: lost");
    QTest::ignoreMessage(QtInfoMsg, log);
    mSource->lose();
    QTRY_COMPARE(mMissing->size(), 2);
}

void FrontApplicationWatchTest::lastingAbsenceOfAWindowIsReported()
{
    mWatch->start();
    mSource->tell(u"game"_s);
    mSource->tell({});
    QCOMPARE(mWatch->application().name(), u"game"_s); // not yet
    // The watch allows a tenth of a second for a change of windows; the rest is for a busy machine.
    QTRY_VERIFY_WITH_TIMEOUT(mWatch->application().isNone(), 2000);
}

void FrontApplicationWatchTest::betterSourceReplacesTheOneInUse()
{
    mIsFirstThere = false;
    mWatch->start();
    QTRY_COMPARE(mWatch->sourceName(), u"second"_s);
    mSource->tell(u"game"_s);
    mIsFirstThere = true;
    mWatch->startOver();
    QTRY_COMPARE(mWatch->sourceName(), u"first"_s);
    QCOMPARE(names(), QStringList{u"game"_s}); // stays in front
}

void FrontApplicationWatchTest::failureOfAReplacedSourceChangesNothing()
{
    mIsFirstThere = false;
    mWatch->start();
    QTRY_COMPARE(mWatch->sourceName(), u"second"_s);
    mSource->tell(u"game"_s);
    mSource->lose(); // the watch learns of it later
    mIsFirstThere = true;
    mWatch->startOver();
    QTRY_COMPARE(mWatch->sourceName(), u"first"_s);
    mSource->tell(u"other"_s);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(mFound->size(), 2);
    QCOMPARE(mWatch->application().name(), u"other"_s);
}

void FrontApplicationWatchTest::sourceDecidesWhichClientsReport()
{
    QSignalSpy reports(mWatch.get(), &FrontApplicationWatch::clientReported);
    QVERIFY(mWatch->reportBy(u":1.5"_s, FrontApplication::named(u"game"_s))); // no source yet
    mWatch->start();
    QTRY_COMPARE(mWatch->sourceName(), u"first"_s);
    QVERIFY(!mWatch->reportBy(u":1.5"_s, FrontApplication::named(u"other"_s)));
    QVERIFY(mWatch->reportBy(u":1.6"_s, FrontApplication::named(u"third"_s)));
    QCOMPARE(names(), QStringList({u"game"_s, u"third"_s}));
    QCOMPARE(reports, QList<QVariantList>({{u":1.5"_s}, {u":1.6"_s}}));
}

QTEST_GUILESS_MAIN(FrontApplicationWatchTest)
#include "frontapplicationwatchtest.moc"
