// SPDX-License-Identifier: MIT
// Holding Escape for a second returns the keys that a client captures to the computer.
#include "base/document.h"
#include "macros/macrorecord.h"
#include "tests/daemon/devicedaemonfixture.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int keyA = 4;
constexpr int keyEscape = 41;
constexpr int keyShift = 225;
constexpr int anotherKey = 20;

QVariantMap captured(int key, int modifiers = 0)
{
    return {{u"singleKey"_s, key}, {u"singleKeyModif"_s, modifiers}};
}

} // namespace

class DeviceDaemonEscapeTest : public DeviceDaemonFixture
{
    Q_OBJECT

private Q_SLOTS:
    void endsTheCapture_data();
    void endsTheCapture();
    void postsTheKeyBeforeEscapeAgain_data();
    void postsTheKeyBeforeEscapeAgain();
    void isNotPartOfTheRecording_data();
    void isNotPartOfTheRecording();
    void appliesToOneCapture_data();
    void appliesToOneCapture();
    void isAnOrdinaryKeyOnTheFly();

private:
    void startCapture(const QString &name);
    /// "+4" presses a key, "-4" releases it, "500" lets as many milliseconds pass.
    void play(const QStringList &steps);
    [[nodiscard]] bool areKeysCaptured();
};

void DeviceDaemonEscapeTest::startCapture(const QString &name)
{
    if (name == "recording"_L1)
        QCOMPARE(statusOf(Command::startMacroRecording, {{u"macroID"_s, 1}, {u"isAppendRecording"_s, 0}}), 0);
    else if (name == "single key"_L1)
        QCOMPARE(statusOf(Command::startSingleKeyRecording), 0);
    else
        QCOMPARE(statusOf(Command::startEditHid), 0);
}

void DeviceDaemonEscapeTest::play(const QStringList &steps)
{
    for (const QString &step : steps) {
        if (step.startsWith(u'+'))
            press(step.mid(1).toInt());
        else if (step.startsWith(u'-'))
            release(step.mid(1).toInt());
        else
            passTime(mNow + std::chrono::milliseconds(step.toInt()));
    }
}

bool DeviceDaemonEscapeTest::areKeysCaptured()
{
    mSent.clear();
    press(anotherKey);
    release(anotherKey);
    return mSent.isEmpty();
}

void DeviceDaemonEscapeTest::endsTheCapture_data()
{
    QTest::addColumn<QString>("capture");
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<bool>("isGivenBack");
    const QList<std::tuple<const char *, QStringList, bool>> rows{
        {"tapped", {u"+41"_s, u"50"_s, u"-41"_s, u"2000"_s}, false},
        {"held for a short time", {u"+41"_s, u"999"_s, u"-41"_s, u"2000"_s}, false},
        {"held, not yet long enough", {u"+41"_s, u"999"_s}, false},
        {"held", {u"+41"_s, u"1000"_s}, true},
        {"held and released", {u"+41"_s, u"1500"_s, u"-41"_s}, true},
        {"tapped, then held", {u"+41"_s, u"50"_s, u"-41"_s, u"50"_s, u"+41"_s, u"1000"_s}, true},
        {"held after another key", {u"+4"_s, u"-4"_s, u"+41"_s, u"1000"_s}, true},
        {"another key held", {u"+4"_s, u"2000"_s}, false},
        {"held with another key down", {u"+4"_s, u"+41"_s, u"2000"_s}, false},
        {"another key pressed meanwhile", {u"+41"_s, u"500"_s, u"+4"_s, u"2000"_s}, false},
        {"another key typed meanwhile", {u"+41"_s, u"500"_s, u"+4"_s, u"-4"_s, u"2000"_s}, false},
        {"another key released meanwhile", {u"+4"_s, u"+41"_s, u"500"_s, u"-4"_s, u"2000"_s}, false},
    };
    for (const QString &capture : {u"recording"_s, u"single key"_s, u"event"_s}) {
        for (const auto &[name, steps, isGivenBack] : rows)
            QTest::addRow("%s, %s", qPrintable(capture), name) << capture << steps << isGivenBack;
    }
}

void DeviceDaemonEscapeTest::endsTheCapture()
{
    QFETCH(QString, capture);
    QFETCH(QStringList, steps);
    QFETCH(bool, isGivenBack);
    startCapture(capture);
    play(steps);
    QCOMPARE(mSent, QStringList());
    QCOMPARE(areKeysCaptured(), !isGivenBack);
    QCOMPARE(mWatchedClient, isGivenBack ? QString() : client);
    mSent.clear();
    mKeyboard->releaseAll();
    QCOMPARE(mSent, QStringList()); // not even the release of Escape
    play({u"+41"_s, u"-41"_s});
    QCOMPARE(mSent, isGivenBack ? QStringList({u"+41"_s, u"-41"_s}) : QStringList());
}

void DeviceDaemonEscapeTest::postsTheKeyBeforeEscapeAgain_data()
{
    QTest::addColumn<QString>("capture");
    QTest::addColumn<QString>("notification");
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QList<QVariantMap>>("posted"); // after the earlier keys
    for (const auto &[capture, notification] :
         {std::pair{u"single key"_s, u"SingleKeyEvent271"_s}, std::pair{u"event"_s, u"SingleKeyEvent1048"_s}}) {
        const auto addRow = [&](const char *name, const QStringList &before, const QList<QVariantMap> &posted) {
            QTest::addRow("%s, %s", qPrintable(capture), name) << capture << notification << before << posted;
        };
        addRow("none before", {}, {captured(keyEscape)});
        addRow("one before", {u"+4"_s, u"-4"_s}, {captured(keyEscape), captured(keyA)});
        addRow("with a modifier", {u"+225"_s, u"+4"_s, u"-4"_s, u"-225"_s},
               {captured(keyEscape), captured(keyA, 0x02)});
        addRow("a modifier alone", {u"+225"_s, u"-225"_s}, {captured(keyEscape), captured(keyShift)});
        addRow("Escape tapped before", {u"+4"_s, u"-4"_s, u"+41"_s, u"-41"_s},
               {captured(keyEscape), captured(keyEscape)});
    }
}

void DeviceDaemonEscapeTest::postsTheKeyBeforeEscapeAgain()
{
    QFETCH(QString, capture);
    QFETCH(QString, notification);
    QFETCH(QStringList, before);
    QFETCH(QList<QVariantMap>, posted);
    startCapture(capture);
    play({u"+5"_s, u"-5"_s}); // of an earlier capture
    startCapture(capture);
    play(before);
    mNotifications.clear();
    play({u"+41"_s, u"1000"_s, u"-41"_s});
    QCOMPARE(mNotifications.size(), posted.size());
    for (qsizetype index = 0; index < posted.size(); ++index) {
        QCOMPARE(mNotifications.at(index).to, notification);
        QCOMPARE(mNotifications.at(index).values, posted.at(index));
    }
    QCOMPARE(statusOf(Command::stopSingleKeyRecording), 0); // a later stop by the client itself
}

void DeviceDaemonEscapeTest::isNotPartOfTheRecording_data()
{
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QStringList>("lines");
    const QStringList tapOfA{u"Key Press A"_s, u"0.015 seconds delay\n"_s, u"Key Release A"_s};
    const QStringList held{u"200"_s, u"+41"_s, u"1000"_s};
    QTest::newRow("after other keys") << QStringList{u"+4"_s, u"15"_s, u"-4"_s} + held << tapOfA;
    QTest::newRow("released") << QStringList{u"+4"_s, u"15"_s, u"-4"_s} + held + QStringList{u"-41"_s} << tapOfA;
    QTest::newRow("tapped before") << QStringList{u"+41"_s, u"15"_s, u"-41"_s} + held
                                   << QStringList{u"Key Press Escape"_s, u"0.015 seconds delay\n"_s,
                                                  u"Key Release Escape"_s};
    // Nothing was recorded, so the macro remains unchanged.
    QTest::newRow("alone") << held << QStringList{u"Key Press Z"_s};
}

void DeviceDaemonEscapeTest::isNotPartOfTheRecording()
{
    QFETCH(QStringList, steps);
    QFETCH(QStringList, lines);
    const QVariantMap request{{u"macroID"_s, 1}, {u"isAppendRecording"_s, 0}};
    const QVariantMap event = MacroRecord::eventRecord({.command = MacroRecord::keyDown, .argument = 29});
    QVariantMap document = mDaemon->document();
    QVariantList macros = Document(document).macros();
    macros[1] = MacroRecord::withEvents(macros.at(1).toMap(), {event});
    document.insert(u"Macros"_s, macros);
    start(document);
    QCOMPARE(statusOf(Command::startMacroRecording, request), 0);
    play(steps);
    QVERIFY(!areKeysCaptured());
    QCOMPARE(statusOf(Command::stopMacroRecording), 0); // the client's own stop finds it stopped
    QCOMPARE(statusOf(Command::saveRecordedEvents, request), 0);
    QCOMPARE(replyTo(Command::readMacroLines, {{u"IndexOfMacroSequence"_s, 1}})
                 .values.value(u"MacroSequences"_s)
                 .toStringList(),
             lines);
}

void DeviceDaemonEscapeTest::appliesToOneCapture_data()
{
    QTest::addColumn<QString>("event");
    QTest::addColumn<bool>("isCapturing");
    QTest::newRow("keyboard removed") << u"removal"_s << false;
    QTest::newRow("client gone") << u"vanished"_s << false;
    QTest::newRow("stopped") << u"stop"_s << false;
    QTest::newRow("another capture") << u"capture"_s << true;
}

void DeviceDaemonEscapeTest::appliesToOneCapture()
{
    QFETCH(QString, event);
    QFETCH(bool, isCapturing);
    startCapture(u"single key"_s);
    play({u"+4"_s, u"-4"_s, u"+41"_s, u"500"_s});
    QVERIFY(mDaemonWakeTime.has_value());
    if (event == "removal"_L1)
        mKeyboard->remove();
    else if (event == "vanished"_L1)
        mDaemon->clientVanished(client);
    else if (event == "stop"_L1)
        QCOMPARE(statusOf(Command::stopSingleKeyRecording), 0);
    else
        startCapture(u"event"_s);
    QVERIFY(!mDaemonWakeTime.has_value());
    mNotifications.clear();
    mDaemon->wake(); // a wake-up that was on its way
    passTime(mNow + 2s);
    QCOMPARE(takeNotificationNames(), QStringList());
    if (!mKeyboard->isAttached())
        mKeyboard->attach();
    QCOMPARE(areKeysCaptured(), isCapturing);
}

void DeviceDaemonEscapeTest::isAnOrdinaryKeyOnTheFly()
{
    pressMacroKey();
    play({u"+41"_s, u"2000"_s, u"-41"_s});
    QCOMPARE(mSent, QStringList({u"+41"_s, u"-41"_s}));
    QVERIFY(!mDaemonWakeTime.has_value());
    pressMacroKey();
    QVERIFY(areKeysCaptured()); // from now on this key plays the macro
    const QVariantList events = MacroRecord::events(Document(mDaemon->document()).macros().last().toMap());
    QCOMPARE(events.size(), 2);
    QCOMPARE(MacroRecord::eventFields(events.first().toMap()).argument, keyEscape);
}

QTEST_GUILESS_MAIN(DeviceDaemonEscapeTest)
#include "devicedaemonescapetest.moc"
