// SPDX-License-Identifier: MIT
// The keys that the daemon captures, as the tabs of the configurator read them. The macros tab's own controller takes
// the notifications for an edited event. The parser of the keys tab names the key of a single-key notification.
#include "base/qlcoreutility.h"
#include "daemon/devicedaemon.h"
#include "daemon/keyboards/virtual/virtualkeyboard.h"
#include "daemon/settings/settingsdocument.h"
#include "macros/eventparser.h"
#include "macros/keyboardmacroscontroller.h"
#include "tests/support/testmain.h"
#include "tests/support/texts.h"

#include <QApplication>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

class CapturedKeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(installEnglishTexts()); }
    void editedEventReadsTheLastKey_data();
    void editedEventReadsTheLastKey();
    void singleKeyIsSentUnchangedAfterItsCapture_data();
    void singleKeyIsSentUnchangedAfterItsCapture();
};

namespace {

/// A daemon with a virtual keyboard that captures keys; `captured` receives its notifications.
class CapturingDaemon
{
public:
    explicit CapturingDaemon(Command command)
    {
        mIsReady = bool(mStore.open());
        QObject::connect(&mKeyboard, &VirtualKeyboard::sent, &mKeyboard, [this](uint, uint usage, bool isDown) {
            sent += (isDown ? u'+' : u'-') + QString::number(usage);
        });
        DaemonServices services{
            .sendReply = [](const QString &, qint32, const QVariantMap &) {},
            .postNotification =
                [this](const QString &name, const QVariantMap &values) {
                    if (name.startsWith("SingleKeyEvent"_L1))
                        captured += values;
                },
            .watchClient = [](const QString &) {},
            .launchProgram = [](const QString &) {},
            .now = [] { return std::chrono::milliseconds(0); },
        };
        mDaemon = std::make_unique<DeviceDaemon>(mStore, mKeyboard, std::move(services),
                                                 SettingsDocument::completed(SettingsDocument::minimal()));
        request(command);
    }

    void request(Command command, QVariantMap values = {})
    {
        values.insert(DaemonProtocol::responsePortName, u"TestReplyPort"_s);
        mDaemon->handleMessage(static_cast<qint32>(command), QlCoreUtility::convertDictionaryToData(values));
    }

    /// Presses the keys one after the other and releases them.
    [[nodiscard]] bool type(const QList<int> &usages)
    {
        for (const int usage : usages)
            mIsReady = mIsReady && mKeyboard.press(7, uint(usage));
        mKeyboard.releaseAll();
        return mIsReady;
    }

    QList<QVariantMap> captured;
    QStringList sent; // "+4", "-4": keys that the computer received

private:
    QTemporaryDir mFolder;
    SettingsStore mStore{mFolder.path()};
    VirtualKeyboard mKeyboard;
    std::unique_ptr<DeviceDaemon> mDaemon;
    bool mIsReady = false;
};

} // namespace

void CapturedKeysTest::editedEventReadsTheLastKey_data()
{
    QTest::addColumn<QList<int>>("pressed");
    QTest::addColumn<QString>("shown");
    QTest::newRow("a key") << QList<int>{4} << u"A"_s;
    QTest::newRow("a key with a modifier") << QList<int>{225, 4} << u"A"_s;
    QTest::newRow("two keys") << QList<int>{4, 5} << u"B"_s;
    QTest::newRow("a modifier after another") << QList<int>{224, 225} << u"Left Shift"_s;
    for (int usage = HidUsage::firstModifier; usage <= HidUsage::lastKey; ++usage) {
        const QString name = eventParser::getStringWithHIDWithModifier(usage, 0);
        QTest::newRow(qPrintable(name + u" alone"_s)) << QList<int>{usage} << name;
    }
}

void CapturedKeysTest::editedEventReadsTheLastKey()
{
    QFETCH(QList<int>, pressed);
    CapturingDaemon daemon(Command::startEditHid);
    QVERIFY(daemon.type(pressed));
    QCOMPARE(daemon.captured.size(), pressed.size());
    KeyboardMacrosController tab;
    tab.awakeFromNib();
    for (const QVariantMap &values : std::as_const(daemon.captured))
        tab.singleKeyEvents(values);
    // The sheet that contains the field has no parent until it is shown.
    const QWidgetList widgets = QApplication::allWidgets();
    const auto field = std::ranges::find(widgets, u"mInputMacroEvent"_s, &QWidget::objectName);
    QVERIFY(field != widgets.end());
    QTEST(qobject_cast<QLineEdit *>(*field)->text(), "shown");
    QVERIFY(daemon.sent.isEmpty());
}

void CapturedKeysTest::singleKeyIsSentUnchangedAfterItsCapture_data()
{
    QTest::addColumn<QList<int>>("pressed");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QStringList>("sent");
    QTest::newRow("a key") << QList<int>{6} << u"C"_s << QStringList{u"+6"_s, u"-6"_s};
    QTest::newRow("with modifiers") << QList<int>{225, 224, 6} << u"Left Control + Left Shift + C"_s
                                    << QStringList{u"+224"_s, u"+225"_s, u"+6"_s, u"-6"_s, u"-224"_s, u"-225"_s};
    QTest::newRow("a modifier alone") << QList<int>{231} << u"Right Command"_s << QStringList{u"+231"_s, u"-231"_s};
    QTest::newRow("two modifiers") << QList<int>{224, 225} << u"Left Control + Left Shift"_s
                                   << QStringList{u"+224"_s, u"+225"_s, u"-225"_s, u"-224"_s};
}

/// The last captured key is stored in the way of the keys tab. Pressing the key sends the captured one.
void CapturedKeysTest::singleKeyIsSentUnchangedAfterItsCapture()
{
    QFETCH(QList<int>, pressed);
    CapturingDaemon daemon(Command::startSingleKeyRecording);
    QVERIFY(daemon.type(pressed));
    QVERIFY(!daemon.captured.isEmpty());
    const QVariantMap last = daemon.captured.constLast();
    const int key = last.value(DaemonProtocol::singleKey).toInt();
    const int modifiers = last.value(DaemonProtocol::singleKeyModifier).toInt();
    QTEST(eventParser::getStringWithHIDWithModifier(key, modifiers), "shown");
    daemon.request(Command::stopSingleKeyRecording);
    const QVariantMap entry{{u"command"_s, 16}, {u"param1"_s, key}, {u"param2"_s, modifiers}};
    daemon.request(Command::updateProfile,
                   {{u"ProfileID"_s, 0},
                    {u"DeviceSettingsDictionary"_s, QVariantMap{{u"Keys"_s, QVariantMap{{u"106"_s, entry}}}}}});
    QVERIFY(daemon.type({106}));
    QTEST(daemon.sent, "sent");
}

QTEST_MAIN(CapturedKeysTest)
#include "capturedkeystest.moc"
