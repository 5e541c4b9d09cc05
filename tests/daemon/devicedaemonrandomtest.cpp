// SPDX-License-Identifier: MIT
// Random use and random messages.
#include "base/qlcoreutility.h"
#include "tests/daemon/devicedaemonfixture.h"
#include "tests/support/reason.h"
#include "tests/support/testmain.h"

#include <QLoggingCategory>
#include <QRandomGenerator>

using namespace Qt::StringLiterals;
using namespace DaemonTestDocuments;

class DeviceDaemonRandomTest : public DeviceDaemonFixture
{
    Q_OBJECT

private Q_SLOTS:
    void randomUseLeavesNoKeyDown();
    void randomMessagesLeaveTheDaemonAliveAndTheDocumentValid();
};

// Property of the complete path from the keyboard to the computer: no sequence of keys, clients and plugging leaves a
// key down.
void DeviceDaemonRandomTest::randomUseLeavesNoKeyDown()
{
    QLoggingCategory::setFilterRules(u"kestra.*=false"_s);
    QRandomGenerator random(30);
    const QList<int> keys{4, 5, 58, 225, 227};
    const auto randomKeys = [&] {
        QVariantMap mappings;
        for (const int key : keys) {
            const int command = QList<int>{45, 16, 20, 17, 10}.at(random.bounded(5));
            mappings.insert(QString::number(key), command == 10
                                                      ? macroEntry(random.bounded(3), random.bounded(253, 256))
                                                      : keyEntry(command, random.bounded(8)));
        }
        return QVariantMap{{u"Keys"_s, mappings}};
    };
    startWithMacros();
    for (int step = 0; step < 3000; ++step) {
        switch (random.bounded(30)) {
        case 14: send(Command::removeAllEvents, {{u"macroID"_s, random.bounded(3)}}); break;
        case 10:
            send(Command::addMacro, {{u"MacroContents"_s, macro(u"Another"_s, uint(4 + random.bounded(2)))}});
            send(Command::deleteMacro, {{u"macroID"_s, random.bounded(2)}});
            break;
        case 11:
        case 12:
        case 13: passTime(mNow + std::chrono::microseconds(random.bounded(40'000))); break;
        case 0:
            send(Command::updateProfile,
                 {{u"ProfileID"_s, random.bounded(2)}, {u"DeviceSettingsDictionary"_s, randomKeys()}});
            break;
        case 1: send(Command::switchProfile, {{u"ProfileID"_s, random.bounded(2)}}); break;
        case 2: (void)mKeyboard->pressGameMode(); break;
        case 3: send(Command::startSingleKeyRecording); break;
        case 4:
        case 5: send(Command::stopSingleKeyRecording); break;
        case 6: mKeyboard->remove(); break;
        case 7:
        case 8: mKeyboard->attach(); break;
        case 9: (void)mKeyboard->pressMacroKey(); break;
        default: {
            const auto key = static_cast<uint>(keys.at(random.bounded(int(keys.size()))));
            (void)(random.bounded(2) == 0 ? mKeyboard->press(7, key) : mKeyboard->release(7, key));
        }
        }
        QVERIFY(mKeyboard->isAttached() || mKeyboard->sentKeys().isEmpty());
    }
    QLoggingCategory::setFilterRules(QString());
    QVERIFY(mSent.size() > 100);
    mKeyboard->attach();
    mKeyboard->releaseAll();
    send(Command::switchProfile, {{u"ProfileID"_s, 0}});
    send(Command::switchProfile, {{u"ProfileID"_s, 1}}); // one of the two stops the macros
    QVERIFY(mKeyboard->sentKeys().isEmpty());
    QVERIFY(!mWakeTime);
}

// Random input: any command, any bytes, with keys and plugging in between.
void DeviceDaemonRandomTest::randomMessagesLeaveTheDaemonAliveAndTheDocumentValid()
{
    QLoggingCategory::setFilterRules(u"kestra.*=false"_s);
    QRandomGenerator random(271);
    const QStringList keys{u"ProfileID"_s,
                           u"DeviceSettingsDictionary"_s,
                           u"AllProfiles"_s,
                           u"macroID"_s,
                           u"isAppendRecording"_s,
                           u"sequenceIdx"_s,
                           u"sequence"_s,
                           u"MacroContents"_s,
                           u"MacroName"_s,
                           u"delay"_s,
                           u"HasNoDelay"_s,
                           u"DefaultQlPlistPath"_s,
                           u"ResponseMsgPortName"_s,
                           u"Source App"_s,
                           u"ProductID"_s};
    const auto value = [&]() -> QVariant {
        switch (random.bounded(7)) {
        case 0: return random.bounded(-2, 4);
        case 1: return random.bounded(2) == 1;
        case 2: return random.generateDouble();
        case 3: return u"text"_s;
        case 4: return QVariantMap{{u"MacroName"_s, u"x"_s}, {u"macroID"_s, 0}};
        case 5: return QVariantList{profile(u"x"_s)};
        default: return QByteArray("\0\1", 2);
        }
    };
    for (int round = 0; round < 3000; ++round) {
        const qint32 command = random.bounded(-2, 45);
        QVariantMap request;
        for (int count = random.bounded(8); count > 0; --count)
            request.insert(keys.at(random.bounded(int(keys.size()))), value());
        QByteArray data = QlCoreUtility::convertDictionaryToData(request).value();
        if (random.bounded(4) == 0)
            data[random.bounded(int(data.size()))] = static_cast<char>(random.bounded(256));
        mDaemon->handleMessage(command, data);
        const auto usage = static_cast<uint>(random.bounded(4, 60));
        (void)(random.bounded(2) ? mKeyboard->press(7, usage) : mKeyboard->release(7, usage));
        if (random.bounded(100) == 0)
            random.bounded(2) ? mKeyboard->remove() : mKeyboard->attach();
        const QString problem = reasonOf(SettingsDocument::validate(mDaemon->document()));
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }
    QLoggingCategory::setFilterRules(QString());
    QCOMPARE(storedDocument(), mDaemon->document());
    mKeyboard->remove();
    QVERIFY(mKeyboard->sentKeys().isEmpty());
}

QTEST_GUILESS_MAIN(DeviceDaemonRandomTest)
#include "devicedaemonrandomtest.moc"
