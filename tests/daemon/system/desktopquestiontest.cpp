// SPDX-License-Identifier: MIT
// A question to the user with a simulated notification service on a private bus.
#include "daemon/system/desktopquestion.h"
#include "tests/support/notificationservice.h"
#include "tests/support/testmain.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

class DesktopQuestionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void showsTheBubbleWithItsButtons();
    void reportsThePressedButton();
    void reportsADismissedBubble();
    void answerBeforeTheServicesReplyIsNotLost();
    void missingServiceMakesItImpossible();
    void serviceWithoutButtonsMakesItImpossible();
    void anotherProgramCannotAnswer();
    void otherBubblesAreIgnored();
    void closeRemovesTheBubble();
    void closeBeforeTheServicesReplyRemovesTheBubble();
    void endOfTheServiceDismissesTheBubble();

private:
    void show() { mQuestion->show({.summary = u"Allow?"_s, .body = u"Why"_s, .buttons = {u"yes"_s, u"Yes!"_s}}); }

    std::unique_ptr<NotificationService> mService;
    std::unique_ptr<DesktopQuestion> mQuestion;
    std::unique_ptr<QSignalSpy> mShown;
    std::unique_ptr<QSignalSpy> mPressed;
    std::unique_ptr<QSignalSpy> mDismissed;
    std::unique_ptr<QSignalSpy> mImpossible;
};

void DesktopQuestionTest::init()
{
    mService = std::make_unique<NotificationService>();
    mQuestion = std::make_unique<DesktopQuestion>(QDBusConnection::sessionBus());
    mShown = std::make_unique<QSignalSpy>(mQuestion.get(), &DesktopQuestion::shown);
    mPressed = std::make_unique<QSignalSpy>(mQuestion.get(), &DesktopQuestion::pressed);
    mDismissed = std::make_unique<QSignalSpy>(mQuestion.get(), &DesktopQuestion::dismissed);
    mImpossible = std::make_unique<QSignalSpy>(mQuestion.get(), &DesktopQuestion::impossible);
}

void DesktopQuestionTest::cleanup()
{
    mQuestion.reset();
    mService.reset();
}

void DesktopQuestionTest::showsTheBubbleWithItsButtons()
{
    show();
    QTRY_COMPARE(mShown->size(), 1);
    const NotificationService::Bubble bubble = mService->bubbles.value(0);
    QCOMPARE(bubble.summary, u"Allow?"_s);
    QCOMPARE(bubble.body, u"Why"_s);
    QCOMPARE(bubble.actions, (QStringList{u"yes"_s, u"Yes!"_s}));
    QCOMPARE(bubble.expireMs, 0); // stays
    QCOMPARE(bubble.hints.value(u"urgency"_s), QVariant::fromValue(uchar(2)));
}

void DesktopQuestionTest::reportsThePressedButton()
{
    show();
    QTRY_COMPARE(mShown->size(), 1);
    mService->press(u"yes"_s);
    QTRY_COMPARE(mPressed->size(), 1);
    QCOMPARE(mPressed->first().value(0).toString(), u"yes"_s);
    QTRY_COMPARE(mService->closed, QList<uint>{mService->lastId()}); // some services keep it
    mService->dismiss();
    mService->press(u"yes"_s);
    show();
    QTRY_COMPARE(mShown->size(), 2);
    QCOMPARE(mPressed->size(), 1);
    QCOMPARE(mDismissed->size(), 0);
}

void DesktopQuestionTest::reportsADismissedBubble()
{
    show();
    QTRY_COMPARE(mShown->size(), 1);
    mService->dismiss();
    QTRY_COMPARE(mDismissed->size(), 1);
    QCOMPARE(mPressed->size(), 0);
}

void DesktopQuestionTest::answerBeforeTheServicesReplyIsNotLost()
{
    mService->hold();
    show();
    QTRY_COMPARE(mService->bubbles.size(), 1);
    mService->answerWithSignalFirst(u"yes"_s);
    QTRY_COMPARE(mPressed->size(), 1);
    QCOMPARE(mShown->size(), 1);
}

void DesktopQuestionTest::missingServiceMakesItImpossible()
{
    mService.reset();
    show();
    QTRY_COMPARE(mImpossible->size(), 1);
    QCOMPARE(mImpossible->first().value(0).value<DesktopQuestion::Obstacle>(), DesktopQuestion::Obstacle::noService);
}

void DesktopQuestionTest::serviceWithoutButtonsMakesItImpossible()
{
    mService->capabilities = QStringList{u"body"_s};
    show();
    QTRY_COMPARE(mImpossible->size(), 1);
    QCOMPARE(mImpossible->first().value(0).value<DesktopQuestion::Obstacle>(), DesktopQuestion::Obstacle::noButtons);
    QVERIFY(mService->bubbles.isEmpty());
}

void DesktopQuestionTest::anotherProgramCannotAnswer()
{
    show();
    QTRY_COMPARE(mShown->size(), 1);
    QDBusConnection other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"other"_s);
    QDBusMessage forged = QDBusMessage::createSignal(u"/org/freedesktop/Notifications"_s, NotificationService::name(),
                                                     u"ActionInvoked"_s);
    forged.setArguments({mService->lastId(), u"yes"_s});
    QVERIFY(other.send(forged));
    // The bus keeps the order of one sender: the signal came before the answer to this call.
    other.call(
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/"_s, u"org.freedesktop.DBus.Peer"_s, u"Ping"_s));
    mService->dismiss();
    QTRY_COMPARE(mDismissed->size(), 1);
    QCOMPARE(mPressed->size(), 0);
    QDBusConnection::disconnectFromBus(u"other"_s);
}

void DesktopQuestionTest::otherBubblesAreIgnored()
{
    show();
    QTRY_COMPARE(mShown->size(), 1);
    mService->pressOf(mService->lastId() + 1, u"yes"_s);
    mService->dismiss();
    QTRY_COMPARE(mDismissed->size(), 1);
    QCOMPARE(mPressed->size(), 0);
}

void DesktopQuestionTest::closeRemovesTheBubble()
{
    show();
    QTRY_COMPARE(mShown->size(), 1);
    mQuestion->close();
    QTRY_COMPARE(mService->closed, QList<uint>{mService->lastId()});
    mQuestion->close();
    mService->press(u"yes"_s);
    show();
    QTRY_COMPARE(mShown->size(), 2);
    QCOMPARE(mPressed->size(), 0);
    QCOMPARE(mService->closed.size(), 1);
}

void DesktopQuestionTest::closeBeforeTheServicesReplyRemovesTheBubble()
{
    mService->hold();
    show();
    QTRY_COMPARE(mService->bubbles.size(), 1);
    mQuestion->close();
    mService->answer();
    QTRY_COMPARE(mService->closed, QList<uint>{mService->lastId()});
    QCOMPARE(mShown->size(), 0);
}

void DesktopQuestionTest::endOfTheServiceDismissesTheBubble()
{
    show();
    QTRY_COMPARE(mShown->size(), 1);
    mService.reset();
    QTRY_COMPARE(mDismissed->size(), 1);
}

QTEST_GUILESS_MAIN(DesktopQuestionTest)
#include "desktopquestiontest.moc"
