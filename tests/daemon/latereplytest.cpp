// SPDX-License-Identifier: MIT
// A client waits for a reply for about 6 s. It would take a later reply for the answer to its next request.
#include "base/document.h"
#include "tests/daemon/devicedaemonfixture.h"
#include "tests/support/testmain.h"

#include "base/qlcoreutility.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace DaemonTestDocuments;

Q_DECLARE_METATYPE(std::optional<std::chrono::microseconds>)

class LateReplyTest : public DeviceDaemonFixture
{
    Q_OBJECT

private Q_SLOTS:
    void replyIsSentWhileItsClientWaits_data();
    void replyIsSentWhileItsClientWaits();
    void changeIsPostedInTheNameOfItsClient();
    void changeWithoutAReplyIsPostedByTheDaemon();
    void changeWithoutAReplyPortKeepsTheNameOfItsClient();
    void readingInTimePostsNothing();
    void lateReadingOfTheDocumentIsPostedByTheDaemon();
    void lateReadingOfAnythingElsePostsNothing();
    void captureWithoutAReplyEnds_data();
    void captureWithoutAReplyEnds();
    void refusedCaptureEndsNoOtherCapture();

private:
    using Age = std::optional<std::chrono::microseconds>;

    /// Sends a request that the daemon read `age` ago; absent: one that waited for a suspended daemon.
    void sendOld(Age age, Command command, QVariantMap request, const QString &port = client);

    static QVariantMap rename()
    {
        return {{u"ProfileID"_s, 0},
                {u"Source App"_s, u"some.client"_s},
                {u"DeviceSettingsDictionary"_s, QVariantMap{{u"ProfileName"_s, u"New"_s}}}};
    }
    static void expectWarning() { QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"too late for a reply"_s)); }
};

void LateReplyTest::sendOld(Age age, Command command, QVariantMap request, const QString &port)
{
    mNow = 1h;
    if (!port.isEmpty())
        request.insert(u"ResponseMsgPortName"_s, port);
    mDaemon->handleMessage({.number = static_cast<qint32>(command),
                            .data = QlCoreUtility::convertDictionaryToData(request),
                            .readAt = age ? Age(mNow - *age) : Age()});
}

void LateReplyTest::replyIsSentWhileItsClientWaits_data()
{
    QTest::addColumn<Command>("command");
    QTest::addColumn<Age>("age");
    QTest::addColumn<bool>("isSent");
    QTest::newRow("at once") << Command::readSettings << Age(0s) << true;
    QTest::newRow("after 5 s") << Command::readSettings << Age(5s) << true;
    QTest::newRow("later") << Command::readSettings << Age(5s + 1us) << false;
    QTest::newRow("much later") << Command::readSettings << Age(10min) << false;
    QTest::newRow("waited for a daemon that stood still") << Command::readSettings << Age() << false;
    QTest::newRow("opening after 6 s") << Command::openDevice << Age(6s) << true;
    QTest::newRow("opening later") << Command::openDevice << Age(6s + 1us) << false;
    QTest::newRow("opening a daemon that stood still") << Command::openDevice << Age() << false;
    QTest::newRow("a change later") << Command::removeAllEvents << Age(6s) << false;
    QTest::newRow("the end of a recording later") << Command::stopMacroRecording << Age(6s) << false;
    QTest::newRow("the end of a capture later") << Command::stopSingleKeyRecording << Age(6s) << false;
}

void LateReplyTest::replyIsSentWhileItsClientWaits()
{
    QFETCH(Command, command);
    QFETCH(Age, age);
    QFETCH(bool, isSent);
    if (!isSent)
        expectWarning();
    sendOld(age, command, {{u"macroID"_s, 0}});
    QCOMPARE(mReplies.size(), isSent ? 1 : 0);
}

void LateReplyTest::changeIsPostedInTheNameOfItsClient()
{
    sendOld(5s, Command::updateProfile, rename());
    QCOMPARE(mReplies.size(), 1);
    QCOMPARE(notification(u"Profile Updated 271"_s), (QVariantMap{{u"Source App"_s, u"some.client"_s}}));
}

void LateReplyTest::changeWithoutAReplyIsPostedByTheDaemon()
{
    expectWarning();
    sendOld(5500ms, Command::updateProfile, rename());
    QVERIFY(mReplies.isEmpty());
    QCOMPARE(notification(u"Profile Updated 271"_s), (QVariantMap{{u"Source App"_s, u"QuillKestraDaemon"_s}}));
    QCOMPARE(Document(storedDocument()).activeProfile().value(u"ProfileName"_s), QVariant(u"New"_s));
}

void LateReplyTest::changeWithoutAReplyPortKeepsTheNameOfItsClient()
{
    sendOld({}, Command::updateProfile, rename(), {});
    QVERIFY(mReplies.isEmpty());
    QCOMPARE(notification(u"Profile Updated 271"_s), (QVariantMap{{u"Source App"_s, u"some.client"_s}}));
}

void LateReplyTest::readingInTimePostsNothing()
{
    sendOld(5s, Command::readSettings, {});
    QVERIFY(mNotifications.isEmpty());
}

// Otherwise a window that reads another client's change and gets no reply would keep showing the old document.
void LateReplyTest::lateReadingOfTheDocumentIsPostedByTheDaemon()
{
    expectWarning();
    sendOld({}, Command::readSettings, {});
    QCOMPARE(notification(u"Profile Updated 271"_s), (QVariantMap{{u"Source App"_s, u"QuillKestraDaemon"_s}}));
}

void LateReplyTest::lateReadingOfAnythingElsePostsNothing()
{
    expectWarning();
    sendOld({}, Command::readMacroLines, {{u"IndexOfMacroSequence"_s, 0}});
    QVERIFY(mNotifications.isEmpty());
}

void LateReplyTest::captureWithoutAReplyEnds_data()
{
    QTest::addColumn<Command>("command");
    QTest::addColumn<Age>("age");
    QTest::addColumn<bool>("isCaptured");
    for (const Command command :
         {Command::startMacroRecording, Command::startEditHid, Command::startSingleKeyRecording}) {
        const int number = static_cast<int>(command);
        QTest::addRow("%d in time", number) << command << Age(5s) << true;
        QTest::addRow("%d too late", number) << command << Age(5500ms) << false;
        QTest::addRow("%d of a daemon that stood still", number) << command << Age() << false;
    }
}

void LateReplyTest::captureWithoutAReplyEnds()
{
    QFETCH(Command, command);
    QFETCH(Age, age);
    QFETCH(bool, isCaptured);
    if (!isCaptured)
        expectWarning();
    sendOld(age, command, {{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}});
    press(5);
    release(5);
    QCOMPARE(mSent, isCaptured ? QStringList() : QStringList({u"+5"_s, u"-5"_s}));
    QCOMPARE(mWatchedClient, isCaptured ? client : QString());
}

void LateReplyTest::refusedCaptureEndsNoOtherCapture()
{
    send(Command::startSingleKeyRecording);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"index out of range"_s));
    expectWarning();
    sendOld({}, Command::startMacroRecording, {{u"macroID"_s, 9}, {u"isAppendRecording"_s, 0}}, u"Another"_s);
    press(5);
    QCOMPARE(mSent, QStringList());
    QCOMPARE(mWatchedClient, client);
}

QTEST_GUILESS_MAIN(LateReplyTest)
#include "latereplytest.moc"
