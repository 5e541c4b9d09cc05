// SPDX-License-Identifier: MIT
// Changes that wait at the same time share one write.
#include "base/document.h"
#include "base/propertylist.h"
#include "base/qlcoreutility.h"
#include "daemon/requestqueue.h"
#include "tests/daemon/devicedaemonfixture.h"
#include "tests/support/filesizelimit.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QLoggingCategory>
#include <QRandomGenerator>
#include <QRegularExpression>

using namespace Qt::StringLiterals;
using namespace DaemonTestDocuments;

class SharedWriteTest : public DeviceDaemonFixture
{
    Q_OBJECT

private Q_SLOTS:
    void waitingChangesShareOneWrite();
    void eachClientGetsItsOwnDocument();
    void repliesAreSentAfterTheWrite();
    void eachChangeIsPostedAfterItsReply();
    void readingWaitsForTheChangesBeforeIt();
    void readingOfAnotherClientIsNotDelayedForLong();
    void refusedChangeAffectsNoOther();
    void changesThatCannotBeWrittenAreAllRefused();
    void changeTooLargeForTheDiskAffectsNoOther();
    void eventLoopRunsBetweenWrites();
    void groupHasTheSameEffectAsSingleChanges_data();
    void groupHasTheSameEffectAsSingleChanges();

private:
    static inline const QString a = u":1.1"_s;
    static inline const QString b = u":1.2"_s;

    static QVariantMap rename(const QString &name)
    {
        return {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, QVariantMap{{u"ProfileName"_s, name}}}};
    }
    /// Adds a request to the queue; the reply goes to the port "To" and the sender's last digit.
    void add(const QString &sender, Command command, QVariantMap request);
    void handleAll()
    {
        while (mDaemon->handleNextRequest(*mQueue)) {
        }
    }
    /// The number of writes of the document: each write but the first leaves a copy, of which three are kept.
    [[nodiscard]] qsizetype writeCount() const
    {
        return QDir(mTemporary->path()).entryList({u"settings.plist"_s, u"settings.plist.?"_s}).size();
    }
    [[nodiscard]] static QString firstName(const QVariantMap &document)
    {
        return Document(document).profiles().first().toMap().value(u"ProfileName"_s).toString();
    }
    [[nodiscard]] QStringList repliedNames() const;
    [[nodiscard]] QList<int> statuses() const;

    std::unique_ptr<RequestQueue> mQueue = std::make_unique<RequestQueue>();
};

void SharedWriteTest::add(const QString &sender, Command command, QVariantMap request)
{
    request.insert(u"ResponseMsgPortName"_s, u"To"_s + sender.back());
    QCOMPARE(mQueue->add(sender, {.number = static_cast<qint32>(command),
                                  .data = QlCoreUtility::convertDictionaryToData(request),
                                  .readAt = mNow}),
             Status::ok);
}

QStringList SharedWriteTest::repliedNames() const
{
    QStringList names;
    for (const Message &reply : mReplies)
        names += firstName(reply.values.value(u"ReturnDictionary"_s).toMap());
    return names;
}

QList<int> SharedWriteTest::statuses() const
{
    QList<int> result;
    for (const Message &reply : mReplies)
        result += reply.values.value(u"ReturnStatus"_s).toInt();
    return result;
}

void SharedWriteTest::waitingChangesShareOneWrite()
{
    for (const QString &name : {u"one"_s, u"two"_s, u"three"_s})
        add(a, Command::updateProfile, rename(name));
    QVERIFY(!mDaemon->handleNextRequest(*mQueue));
    QCOMPARE(writeCount(), 1);
    QCOMPARE(firstName(storedDocument()), u"three"_s);
    QCOMPARE(mReplies.size(), 3);
    add(a, Command::updateProfile, rename(u"four"_s));
    QVERIFY(!mDaemon->handleNextRequest(*mQueue));
    QCOMPARE(writeCount(), 2);
}

void SharedWriteTest::eachClientGetsItsOwnDocument()
{
    add(a, Command::updateProfile, rename(u"one"_s));
    add(b, Command::updateProfile, rename(u"two"_s));
    add(a, Command::updateProfile, rename(u"three"_s));
    handleAll();
    QCOMPARE(repliedNames(), QStringList({u"one"_s, u"two"_s, u"three"_s}));
    QCOMPARE(mReplies.at(0).to, u"To1"_s);
    QCOMPARE(mReplies.at(1).to, u"To2"_s);
    QCOMPARE(statuses(), QList<int>({0, 0, 0}));
}

void SharedWriteTest::repliesAreSentAfterTheWrite()
{
    QStringList stored;
    mOnReply = [&] { stored += firstName(storedDocument()); };
    for (const QString &name : {u"one"_s, u"two"_s})
        add(a, Command::updateProfile, rename(name));
    handleAll();
    QCOMPARE(stored, QStringList({u"two"_s, u"two"_s}));
}

void SharedWriteTest::eachChangeIsPostedAfterItsReply()
{
    QList<qsizetype> postedBefore;
    mOnReply = [&] { postedBefore += mNotifications.size(); };
    add(a, Command::updateProfile, rename(u"one"_s));
    add(b, Command::updateProfile, rename(u"one"_s)); // changes nothing
    add(b, Command::updateProfile, rename(u"two"_s));
    handleAll();
    QCOMPARE(postedBefore, QList<qsizetype>({0, 1, 1}));
    QCOMPARE(mNotifications.size(), 2);
    QCOMPARE(mNotifications.first().values.value(u"Source App"_s), QVariant(u"To1"_s));
    QCOMPARE(mNotifications.last().values.value(u"Source App"_s), QVariant(u"To2"_s));
}

void SharedWriteTest::readingWaitsForTheChangesBeforeIt()
{
    add(a, Command::updateProfile, rename(u"one"_s));
    add(a, Command::readSettings, {});
    add(a, Command::updateProfile, rename(u"two"_s));
    handleAll();
    QCOMPARE(mReplies.size(), 3);
    QCOMPARE(firstName(mReplies.at(1).values.value(u"AllDevSettings"_s).toMap()), u"one"_s);
    QCOMPARE(writeCount(), 2);
}

void SharedWriteTest::readingOfAnotherClientIsNotDelayedForLong()
{
    for (int count = 0; count < 60; ++count)
        add(a, Command::updateProfile, rename(QString::number(count)));
    add(b, Command::readSettings, {});
    QVERIFY(mDaemon->handleNextRequest(*mQueue));
    QVERIFY(mDaemon->handleNextRequest(*mQueue));
    QCOMPARE(mReplies.constLast().to, u"To2"_s);
    handleAll();
}

void SharedWriteTest::refusedChangeAffectsNoOther()
{
    add(a, Command::updateProfile, rename(u"one"_s));
    add(a, Command::deleteProfile, {{u"ProfileID"_s, 9}});
    add(a, Command::updateProfile, {});
    add(a, Command::updateProfile, rename(u"two"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"index out of range"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"malformed request"_s));
    handleAll();
    QCOMPARE(statuses(), QList<int>({0, 3, 2, 0}));
    QCOMPARE(firstName(storedDocument()), u"two"_s);
    QCOMPARE(writeCount(), 1);
}

void SharedWriteTest::changesThatCannotBeWrittenAreAllRefused()
{
    const QVariantMap before = mDaemon->document();
    for (const QString &name : {u"one"_s, u"two"_s})
        add(a, Command::updateProfile, rename(name));
    {
        const FileSizeLimit fullDisk(16);
        QLoggingCategory::setFilterRules(u"kestra.*=false"_s);
        handleAll();
        QLoggingCategory::setFilterRules(QString());
    }
    QCOMPARE(statuses(), QList<int>({6, 6}));
    QCOMPARE(repliedNames(), QStringList({u"A"_s, u"A"_s}));
    QCOMPARE(mDaemon->document(), before);
    QVERIFY(mNotifications.isEmpty());
    add(a, Command::updateProfile, rename(u"three"_s)); // the disk has room again
    handleAll();
    QCOMPARE(firstName(storedDocument()), u"three"_s);
}

void SharedWriteTest::changeTooLargeForTheDiskAffectsNoOther()
{
    add(a, Command::updateProfile, rename(u"one"_s));
    const QVariantMap large{{u"ProfileName"_s, QString(100'000, u'x')}};
    add(b, Command::updateProfile, {{u"ProfileID"_s, 1}, {u"DeviceSettingsDictionary"_s, large}});
    add(a, Command::updateProfile, rename(u"two"_s));
    {
        const FileSizeLimit disk(50'000);
        QLoggingCategory::setFilterRules(u"kestra.*=false"_s);
        handleAll();
        QLoggingCategory::setFilterRules(QString());
    }
    QCOMPARE(statuses(), QList<int>({0, 6, 0}));
    QCOMPARE(repliedNames(), QStringList({u"one"_s, u"one"_s, u"two"_s}));
    QCOMPARE(firstName(storedDocument()), u"two"_s);
}

void SharedWriteTest::eventLoopRunsBetweenWrites()
{
    for (int count = 0; count < 60; ++count)
        add(a, Command::updateProfile, rename(QString::number(count)));
    QVERIFY(mDaemon->handleNextRequest(*mQueue));
    QVERIFY(mReplies.size() < 60);
    QVERIFY(mReplies.size() > 1);
    // Events in between are respected: the waiting changes apply to the document of that moment.
    press(58); // switches to B
    QCOMPARE(Document(mDaemon->document()).activeProfileIndex(), 1);
    handleAll();
    QCOMPARE(mReplies.size(), 60);
    QCOMPARE(Document(mDaemon->document()).activeProfileIndex(), 1);
    QCOMPARE(firstName(storedDocument()), u"59"_s);
}

void SharedWriteTest::groupHasTheSameEffectAsSingleChanges_data()
{
    QTest::addColumn<int>("seed");
    for (int seed = 1; seed <= 10; ++seed)
        QTest::addRow("%d", seed) << seed;
}

// Property: random changes have the same replies, notifications and documents, in use and on the disk, whether they are
// carried out one by one or share their writes. An application is in front, so profiles also switch automatically.
void SharedWriteTest::groupHasTheSameEffectAsSingleChanges()
{
    QFETCH(int, seed);
    QLoggingCategory::setFilterRules(u"kestra.*=false"_s);
    QRandomGenerator random{static_cast<quint32>(seed)};
    const auto appInfo = [](const QString &application) {
        return QVariantMap{{u"AppInfo"_s, QVariantMap{{u"identifier"_s, application}}}, {u"AutoSwitchOn"_s, 1}};
    };
    QList<std::pair<Command, QVariantMap>> requests;
    for (int count = 0; count < 50; ++count) {
        const QVariant index = random.bounded(4);
        switch (random.bounded(7)) {
        case 0: requests.append({Command::addProfile, {{u"DeviceSettingsDictionary"_s, profile(u"New"_s)}}}); break;
        case 1: requests.append({Command::deleteProfile, {{u"ProfileID"_s, index}}}); break;
        case 2: requests.append({Command::switchProfile, {{u"ProfileID"_s, index}}}); break;
        case 3:
            requests.append({Command::updateProfile,
                             {{u"ProfileID"_s, index},
                              {u"DeviceSettingsDictionary"_s, appInfo(random.bounded(2) ? u"game"_s : u"none"_s)}}});
            break;
        case 4: requests.append({Command::updateProfile, rename(QString::number(random.bounded(3)))}); break;
        case 5: requests.append({Command::addMacro, {{u"MacroContents"_s, macro(u"M"_s, 4)}}}); break;
        default: requests.append({Command::deleteMacro, {{u"macroID"_s, index}}}); break;
        }
    }
    struct Result
    {
        QVariantMap document;
        QVariantMap stored;
        QList<Message> replies;
        QList<Message> notifications;
    };
    const auto carryOut = [&](bool isTogether) {
        mReplies.clear();
        mNotifications.clear();
        start(startDocument());
        mDaemon->setFrontApplication(FrontApplication::named(u"game"_s));
        for (const auto &[command, request] : std::as_const(requests)) {
            add(a, command, request);
            if (!isTogether)
                handleAll();
        }
        handleAll();
        return Result{mDaemon->document(), storedDocument(), mReplies, mNotifications};
    };
    const Result oneByOne = carryOut(false);
    const Result together = carryOut(true);
    QLoggingCategory::setFilterRules(QString());
    QCOMPARE(together.document, oneByOne.document);
    QCOMPARE(together.stored, oneByOne.stored);
    QCOMPARE(together.replies.size(), requests.size());
    for (qsizetype index = 0; index < requests.size(); ++index)
        QCOMPARE(together.replies.at(index).values, oneByOne.replies.at(index).values);
    QCOMPARE(together.notifications.size(), oneByOne.notifications.size());
}

QTEST_GUILESS_MAIN(SharedWriteTest)
#include "sharedwritetest.moc"
