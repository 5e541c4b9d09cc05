// SPDX-License-Identifier: MIT
// The sheet for choosing a keyboard, with the daemon's own bus object and made-up keyboards. A script replaces pkexec,
// which would ask for a password.
#include "app/keyboardchooser.h"
#include "app/attachedkeyboards.h"
#include "app/ruleprocess.h"
#include "app/servicestatus.h"
#include "base/daemonprotocol.h"
#include "base/devicekeys.h"
#include "base/text.h"
#include "daemon/keyboards/devicesadaptor.h"
#include "platform/messageport.h"
#include "tests/support/picturefolder.h"
#include "tests/support/scripteddevices.h"
#include "tests/support/testmain.h"
#include "tests/support/texts.h"

#include <QCheckBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

class KeyboardChooserTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void listsTheKeyboardsWithConnectionAndState();
    void followsTheKeyboards();
    void saysThatThereIsNone();
    void saysThatTheServiceIsNotThere();
    void usesTheSelectedKeyboard();
    void usesItByTheKeyboardAlone();
    void keyboardInUseCannotBeUsedAgain();
    void releasesTheKeyboardInUse();
    void showsTheStateOfEachChosenKeyboard();
    void usesAKeyboardBesideAnother();
    void releasesTheSelectedOneOfSeveral();
    void showsTheReasonOfARefusal();
    void showsTheRemedyOfEachObstacle_data();
    void showsTheRemedyOfEachObstacle();
    void showsTheCommandsWithoutAHelper();
    void installsTheRuleAndUsesTheKeyboard();
    void passwordThatIsNotEnteredChangesNothing_data();
    void passwordThatIsNotEnteredChangesNothing();
    void takesTheRightBackOnRequest();
    void keepsTheRightUnlessAsked();
    void otherSelectionMeanwhileIsNotUsed();
    void showsHowToGetTheKeyboardBack();
    void namesCannotControlTheSheet();
    void helperOfABuildFolderDoesNotCount();
    void everyWordFits_data();
    void everyWordFits();

private:
    void serve();
    void open();
    /// A helper that asks for no password, notes its arguments and ends with `exitCode` as soon as the file "go" is
    /// there.
    void installHelper(int exitCode, const QString &words = {});
    [[nodiscard]] QString calls() const; ///< the arguments of the helper's calls, a line each
    void letHelperGo();
    void select(int row) { mList->setCurrentItem(mList->topLevelItem(row)); }
    [[nodiscard]] QString cell(int row, int column) const { return mList->topLevelItem(row)->text(column); }
    [[nodiscard]] QString state() const { return mSheet->findChild<QLabel *>(u"mChooserState"_s)->text(); }
    [[nodiscard]] QString remedy() const { return mSheet->findChild<QLabel *>(u"mChooserRemedy"_s)->text(); }
    [[nodiscard]] QPlainTextEdit *remedyText() const
    {
        return mSheet->findChild<QPlainTextEdit *>(u"mChooserRemedyText"_s);
    }
    [[nodiscard]] QPushButton *button(const QString &name) const { return mSheet->findChild<QPushButton *>(name); }
    [[nodiscard]] bool isInUse(int index) const { return mDevices->devices().at(index).isInUse; }

    std::unique_ptr<QTemporaryDir> mFolder;
    std::unique_ptr<ScriptedDevices> mDevices;
    std::unique_ptr<DeviceChoice> mChoice;
    std::unique_ptr<DevicesObject> mObject;
    RuleProcess::Programs mPrograms;
    std::unique_ptr<QWidget> mWindow;
    std::unique_ptr<ServiceStatus> mService;
    std::unique_ptr<AttachedKeyboards> mKeyboards;
    std::unique_ptr<RuleProcess> mRules;
    std::unique_ptr<KeyboardChooser> mSheet;
    QTreeWidget *mList = nullptr;
};

namespace {

InputDevice refusedKeyboard(DeviceObstacle obstacle)
{
    InputDevice keyboard = ScriptedDevices::keyboard(3, u"S3"_s);
    keyboard.problem = u"A reason of the daemon."_s;
    keyboard.obstacle = obstacle;
    return keyboard;
}

} // namespace

void KeyboardChooserTest::init()
{
    installTexts(textsFolder(), {u"en"_s});
    mFolder = std::make_unique<QTemporaryDir>();
    mPrograms = {};
    mDevices = std::make_unique<ScriptedDevices>();
    InputDevice first = ScriptedDevices::keyboard(1, u"S1"_s);
    first.path = u"pci-0000:00:14.0-usb-0:2"_s;
    InputDevice second = ScriptedDevices::keyboard(2, u"aa:bb:cc:dd:ee:0f"_s);
    second.path.clear();
    mDevices->plug({first, second});
    mWindow = std::make_unique<QWidget>();
    mWindow->resize(900, 600);
    mWindow->show();
}

void KeyboardChooserTest::cleanup()
{
    mSheet.reset();
    mRules.reset();
    mKeyboards.reset();
    mWindow.reset();
    QDBusConnection::sessionBus().unregisterService(messagePortBusName(DaemonProtocol::requestPortName));
    QDBusConnection::sessionBus().unregisterObject(DeviceKeys::objectPath);
    mObject.reset();
    mChoice.reset();
    mDevices.reset();
}

void KeyboardChooserTest::serve()
{
    mChoice = std::make_unique<DeviceChoice>(mFolder->path());
    mObject = std::make_unique<DevicesObject>(*mDevices, *mChoice);
    QVERIFY(mObject->registerOn(QDBusConnection::sessionBus()));
    QVERIFY(QDBusConnection::sessionBus().registerService(messagePortBusName(DaemonProtocol::requestPortName)));
}

void KeyboardChooserTest::open()
{
    mService = std::make_unique<ServiceStatus>();
    mService->start();
    mKeyboards = std::make_unique<AttachedKeyboards>(*mService);
    mRules = std::make_unique<RuleProcess>(mPrograms);
    mSheet = std::make_unique<KeyboardChooser>(*mKeyboards, *mRules, mWindow.get());
    mList = mSheet->findChild<QTreeWidget *>(u"mChooserList"_s);
    mKeyboards->start();
    mSheet->show(mWindow.get());
    QTRY_VERIFY(mSheet->isVisible());
}

void KeyboardChooserTest::installHelper(int exitCode, const QString &words)
{
    mPrograms = {.pkexec = mFolder->filePath(u"pkexec"_s), .helper = u"/helper"_s};
    QFile script(mPrograms.pkexec);
    QVERIFY(script.open(QIODevice::WriteOnly));
    script.write(u"#!/bin/sh\necho \"$@\" >> '%1/calls'\nuntil [ -e '%1/go' ]; do sleep 0.01; done\n"
                 "echo '%2'\nexit %3\n"_s.arg(mFolder->path(), words)
                     .arg(exitCode)
                     .toUtf8());
    script.close();
    QVERIFY(script.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
}

QString KeyboardChooserTest::calls() const
{
    QFile file(mFolder->filePath(u"calls"_s));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}

void KeyboardChooserTest::letHelperGo()
{
    QFile file(mFolder->filePath(u"go"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
}

void KeyboardChooserTest::listsTheKeyboardsWithConnectionAndState()
{
    QVERIFY(mDevices->use({u"1b2c:0002"_s}));
    serve();
    open();
    QTRY_COMPARE(mList->topLevelItemCount(), 2);
    QCOMPARE(cell(0, 0), u"Keyboard 1"_s);
    QCOMPARE(cell(0, 1), u"USB"_s);
    QCOMPARE(cell(0, 2), u"Can be used"_s);
    QCOMPARE(cell(1, 1), u"Bluetooth"_s);
    QCOMPARE(cell(1, 2), u"In use"_s);
    QCOMPARE(mList->currentItem(), mList->topLevelItem(1)); // the one in use
    QCOMPARE(state(), u"Keyboard 2: In use"_s);
    QVERIFY(mList->hasFocus());
}

void KeyboardChooserTest::followsTheKeyboards()
{
    serve();
    open();
    QTRY_COMPARE(mList->topLevelItemCount(), 2);
    select(1);
    mDevices->plug({ScriptedDevices::keyboard(7), mDevices->devices().at(1)});
    QTRY_COMPARE(cell(0, 0), u"Keyboard 7"_s);
    QCOMPARE(mList->currentItem(), mList->topLevelItem(1)); // the selection stays on its keyboard
    mDevices->plug({ScriptedDevices::keyboard(7)});
    QTRY_COMPARE(mList->topLevelItemCount(), 1);
    QCOMPARE(state(), u"Keyboard 7: Can be used"_s);
}

void KeyboardChooserTest::saysThatThereIsNone()
{
    mDevices->plug({});
    serve();
    open();
    QTRY_COMPARE(state(), u"No keyboard is plugged in."_s);
    QVERIFY(!button(u"mChooserUse"_s)->isEnabled());
    QVERIFY(!button(u"mChooserRelease"_s)->isEnabled());
}

void KeyboardChooserTest::saysThatTheServiceIsNotThere()
{
    open();
    QCOMPARE(state(), u"The keyboard service does not respond."_s);
    serve(); // and notices when it comes
    QTRY_COMPARE(mList->topLevelItemCount(), 2);
    QVERIFY(QDBusConnection::sessionBus().unregisterService(messagePortBusName(DaemonProtocol::requestPortName)));
    QTRY_COMPARE(state(), u"The keyboard service does not respond."_s);
    QCOMPARE(mList->topLevelItemCount(), 0);
}

void KeyboardChooserTest::usesTheSelectedKeyboard()
{
    serve();
    open();
    QTRY_COMPARE(mList->topLevelItemCount(), 2);
    select(1);
    button(u"mChooserUse"_s)->click();
    QTRY_VERIFY(isInUse(1));
    QVERIFY(!isInUse(0));
    QTRY_COMPARE(cell(1, 2), u"In use"_s);
    QVERIFY(mSheet->isVisible()); // shows how it went, and the way out
}

void KeyboardChooserTest::usesItByTheKeyboardAlone()
{
    serve();
    open();
    QTRY_COMPARE(mList->topLevelItemCount(), 2);
    QTest::keyClick(mList, Qt::Key_Down);
    QTest::keyClick(mList, Qt::Key_Return);
    QTRY_VERIFY(isInUse(1));
    QTest::keyClick(mSheet.get(), Qt::Key_Escape);
    QVERIFY(!mSheet->isVisible());
    QVERIFY(isInUse(1));
}

void KeyboardChooserTest::keyboardInUseCannotBeUsedAgain()
{
    QVERIFY(mDevices->use({u"1b2c:0001"_s}));
    serve();
    open();
    QTRY_COMPARE(mList->topLevelItemCount(), 2);
    QVERIFY(!button(u"mChooserUse"_s)->isEnabled());
    select(1);
    QVERIFY(button(u"mChooserUse"_s)->isEnabled());
}

void KeyboardChooserTest::releasesTheKeyboardInUse()
{
    QVERIFY(mDevices->use({u"1b2c:0001"_s}));
    serve();
    open();
    QTRY_VERIFY(button(u"mChooserRelease"_s)->isEnabled());
    button(u"mChooserRelease"_s)->click();
    QTRY_VERIFY(!isInUse(0));
    QTRY_VERIFY(!button(u"mChooserRelease"_s)->isEnabled());
    QTRY_COMPARE(cell(0, 2), u"Can be used"_s);
}

void KeyboardChooserTest::showsTheStateOfEachChosenKeyboard()
{
    mDevices->plug({ScriptedDevices::keyboard(1), ScriptedDevices::keyboard(2), ScriptedDevices::keyboard(3)});
    mDevices->setStates({DeviceState::waiting, DeviceState::suspended, DeviceState::released});
    serve();
    open();
    QTRY_COMPARE(mList->topLevelItemCount(), 3);
    QCOMPARE(cell(0, 2), u"Waits until no key is down"_s);
    QCOMPARE(cell(1, 2), u"Released by its keys"_s);
    QCOMPARE(cell(2, 2), u"Can be used"_s);
}

void KeyboardChooserTest::usesAKeyboardBesideAnother()
{
    serve();
    open();
    QTRY_COMPARE(mList->topLevelItemCount(), 2);
    auto *useAlso = mSheet->findChild<QCheckBox *>(u"mChooserUseAlso"_s);
    QVERIFY(!useAlso->isVisible()); // there is no other
    button(u"mChooserUse"_s)->click();
    QTRY_VERIFY(isInUse(0));
    QTRY_VERIFY(button(u"mChooserRelease"_s)->isEnabled());
    QVERIFY(!useAlso->isVisible());
    select(1);
    QVERIFY(useAlso->isVisible());
    useAlso->setChecked(true);
    button(u"mChooserUse"_s)->click();
    QTRY_VERIFY(isInUse(1));
    QVERIFY(isInUse(0));
    QTRY_COMPARE(cell(1, 2), u"In use"_s);
    QCOMPARE(cell(0, 2), u"In use"_s);
}

void KeyboardChooserTest::releasesTheSelectedOneOfSeveral()
{
    mDevices->plug({ScriptedDevices::keyboard(1), ScriptedDevices::keyboard(2), ScriptedDevices::keyboard(3)});
    QVERIFY(mDevices->use({u"1b2c:0001"_s, u"1b2c:0002"_s}));
    serve();
    open();
    QTRY_COMPARE(mList->topLevelItemCount(), 3);
    select(2);
    QVERIFY(!button(u"mChooserRelease"_s)->isEnabled()); // which one?
    select(1);
    button(u"mChooserRelease"_s)->click();
    QTRY_VERIFY(!isInUse(1));
    QVERIFY(isInUse(0));
    QTRY_COMPARE(cell(1, 2), u"Can be used"_s);
}

void KeyboardChooserTest::showsTheReasonOfARefusal()
{
    InputDevice taken = refusedKeyboard(DeviceObstacle::taken);
    mDevices->plug({taken});
    serve();
    open();
    QTRY_COMPARE(mList->topLevelItemCount(), 1);
    button(u"mChooserUse"_s)->click(); // the other program may have ended
    QTRY_COMPARE(state(), u"A reason of the daemon."_s);
}

void KeyboardChooserTest::showsTheRemedyOfEachObstacle_data()
{
    QTest::addColumn<DeviceObstacle>("obstacle");
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("remedy");
    QTest::addColumn<bool>("canBeUsed");
    QTest::newRow("another program") << DeviceObstacle::taken << u"Used by another program"_s
                                     << u"Quit the other program"_s << true;
    QTest::newRow("pointer") << DeviceObstacle::pointer << u"Cannot be used: also a pointer"_s
                             << u"take the pointer away"_s << false;
    QTest::newRow("another seat") << DeviceObstacle::elsewhere << u"Another user is active"_s
                                  << u"your session is the active one"_s << false;
    QTest::newRow("other") << DeviceObstacle::other << u"Cannot be used"_s << u"A reason of the daemon."_s << false;
}

void KeyboardChooserTest::showsTheRemedyOfEachObstacle()
{
    QFETCH(DeviceObstacle, obstacle);
    QFETCH(QString, state);
    QFETCH(QString, remedy);
    QFETCH(bool, canBeUsed);
    mDevices->plug({refusedKeyboard(obstacle)});
    serve();
    open();
    QTRY_COMPARE(mList->topLevelItemCount(), 1);
    QCOMPARE(cell(0, 2), state);
    QVERIFY2(this->remedy().contains(remedy), qPrintable(this->remedy()));
    QCOMPARE(button(u"mChooserUse"_s)->isEnabled(), canBeUsed);
    QVERIFY(!remedyText()->isVisible());
}

void KeyboardChooserTest::showsTheCommandsWithoutAHelper()
{
    mDevices->plug({refusedKeyboard(DeviceObstacle::noRight)});
    serve();
    open();
    QTRY_COMPARE(mList->topLevelItemCount(), 1);
    QCOMPARE(cell(0, 2), u"No access yet"_s);
    QVERIFY2(remedy().contains(u"two commands"_s) && remedy().contains(u"All programs"_s), qPrintable(remedy()));
    const QStringList commands = remedyText()->toPlainText().split(u'\n');
    QCOMPARE(commands.size(), 2);
    QVERIFY(commands.at(0).contains(
        u"kestractl device rule 1b2c:0003 | sudo tee /etc/udev/rules.d/70-quill-kestra-1b2c:0003.rules"_s));
    QVERIFY(commands.at(0).startsWith(QCoreApplication::applicationDirPath()));
    QVERIFY(commands.at(1).startsWith(u"sudo udevadm control --reload && sudo udevadm trigger"_s));
    QVERIFY(!button(u"mChooserUse"_s)->isEnabled());
    QVERIFY(!mSheet->findChild<QCheckBox *>(u"mChooserRemoveRule"_s)->isVisible());
    mDevices->plug({ScriptedDevices::keyboard(3, u"S3"_s)}); // after the user has run them
    QTRY_VERIFY(button(u"mChooserUse"_s)->isEnabled());
    QVERIFY(!remedyText()->isVisible());
}

void KeyboardChooserTest::installsTheRuleAndUsesTheKeyboard()
{
    installHelper(0);
    mDevices->plug({refusedKeyboard(DeviceObstacle::noRight)});
    serve();
    open();
    QTRY_VERIFY(button(u"mChooserUse"_s)->isEnabled());
    QVERIFY2(remedy().contains(u"All programs"_s), qPrintable(remedy()));
    QVERIFY2(remedyText()->toPlainText().contains(u"TAG+=\"uaccess\""_s), qPrintable(remedyText()->toPlainText()));
    button(u"mChooserUse"_s)->click();
    QTRY_COMPARE(calls(), u"--disable-internal-agent /helper /dev/input/event3"_s);
    QVERIFY2(state().contains(u"password"_s), qPrintable(state()));
    QVERIFY(!button(u"mChooserUse"_s)->isEnabled());
    mDevices->plug({ScriptedDevices::keyboard(3, u"S3"_s)});
    letHelperGo();
    QTRY_VERIFY(isInUse(0));
    QTRY_COMPARE(state(), u"Keyboard 3: In use"_s);
}

void KeyboardChooserTest::passwordThatIsNotEnteredChangesNothing_data()
{
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("text");
    QTest::newRow("dismissed") << 126 << u""_s << u"no password was entered"_s;
    QTest::newRow("not allowed, or no agent") << 127 << u""_s << u"not allowed"_s;
    QTest::newRow("refused by the helper")
        << 1 << u"the device is not a keyboard"_s << u"the device is not a keyboard"_s;
}

void KeyboardChooserTest::passwordThatIsNotEnteredChangesNothing()
{
    QFETCH(int, exitCode);
    QFETCH(QString, words);
    QFETCH(QString, text);
    installHelper(exitCode, words);
    mDevices->plug({refusedKeyboard(DeviceObstacle::noRight)});
    serve();
    open();
    QTRY_VERIFY(button(u"mChooserUse"_s)->isEnabled());
    letHelperGo();
    button(u"mChooserUse"_s)->click();
    QTRY_VERIFY2(state().contains(text), qPrintable(state()));
    QVERIFY(!isInUse(0));
    QVERIFY(button(u"mChooserUse"_s)->isEnabled()); // the user may try again
}

void KeyboardChooserTest::takesTheRightBackOnRequest()
{
    installHelper(0);
    letHelperGo();
    QVERIFY(mDevices->use({u"1b2c:0002"_s}));
    serve();
    open();
    QTRY_VERIFY(button(u"mChooserRelease"_s)->isEnabled());
    mSheet->findChild<QCheckBox *>(u"mChooserRemoveRule"_s)->setChecked(true);
    select(0); // the right of the keyboard in use is meant
    button(u"mChooserRelease"_s)->click();
    QTRY_COMPARE(calls(), u"--disable-internal-agent /helper --remove /dev/input/event2"_s);
    QVERIFY(!isInUse(1));
    QTRY_VERIFY(!mRules->isRunning());
    QVERIFY(!isInUse(0));
}

void KeyboardChooserTest::keepsTheRightUnlessAsked()
{
    installHelper(0);
    QVERIFY(mDevices->use({u"1b2c:0001"_s}));
    serve();
    open();
    QTRY_VERIFY(button(u"mChooserRelease"_s)->isEnabled());
    button(u"mChooserRelease"_s)->click();
    QTRY_VERIFY(!isInUse(0));
    QTRY_VERIFY(!button(u"mChooserRelease"_s)->isEnabled());
    QVERIFY(!mRules->isRunning());
    QCOMPARE(calls(), QString());
}

void KeyboardChooserTest::otherSelectionMeanwhileIsNotUsed()
{
    installHelper(0);
    mDevices->plug({refusedKeyboard(DeviceObstacle::noRight), ScriptedDevices::keyboard(1, u"S1"_s)});
    serve();
    open();
    QTRY_COMPARE(mList->topLevelItemCount(), 2);
    button(u"mChooserUse"_s)->click();
    QTRY_VERIFY(!calls().isEmpty());
    select(1);
    letHelperGo();
    QTRY_VERIFY(!mRules->isRunning());
    QTRY_COMPARE(state(), u"Keyboard 1: Can be used"_s);
    QVERIFY(!isInUse(0) && !isInUse(1));
}

void KeyboardChooserTest::showsHowToGetTheKeyboardBack()
{
    QVERIFY(mDevices->use({u"1b2c:0001"_s}));
    serve();
    open();
    const auto *wayOut = mSheet->findChild<QLabel *>(u"mChooserWayOut"_s);
    QVERIFY(wayOut->isVisible());
    for (const QString &key : {u"Backspace"_s, u"Escape"_s, u"Return"_s})
        QVERIFY(wayOut->text().contains(key));
}

void KeyboardChooserTest::namesCannotControlTheSheet()
{
    InputDevice keyboard = ScriptedDevices::keyboard(1, u"S1"_s);
    keyboard.name = u"<b>evil</b>\n\u202etxt"_s;
    mDevices->plug({keyboard});
    serve();
    open();
    QTRY_COMPARE(mList->topLevelItemCount(), 1);
    QVERIFY(!cell(0, 0).contains(u'\n') && !cell(0, 0).contains(QChar(0x202e)));
    QVERIFY(state().startsWith(u"<b>evil</b>"_s));
    QCOMPARE(mSheet->findChild<QLabel *>(u"mChooserState"_s)->textFormat(), Qt::PlainText);
}

void KeyboardChooserTest::helperOfABuildFolderDoesNotCount()
{
    QVERIFY(RuleProcess::installedPrograms().helper.isEmpty());
}

void KeyboardChooserTest::everyWordFits_data()
{
    QTest::addColumn<QString>("language");
    for (const QString &language : {u"en"_s, u"de"_s, u"fr"_s, u"es"_s, u"ja"_s, u"zh_Hans"_s})
        QTest::newRow(qPrintable(language)) << language;
}

/// Every word of the sheet is there, and no label is cut off, in every language.
void KeyboardChooserTest::everyWordFits()
{
    QFETCH(QString, language);
    installTexts(textsFolder(), {language});
    installHelper(0);
    mDevices->plug({refusedKeyboard(DeviceObstacle::noRight), ScriptedDevices::keyboard(1, u"S1"_s)});
    serve();
    open();
    QTRY_COMPARE(mList->topLevelItemCount(), 2);
    for (const QLabel *label : mSheet->findChildren<QLabel *>()) {
        if (!label->isVisible())
            continue;
        QVERIFY2(!label->text().isEmpty() && !label->text().contains(u"No Translation"_s), qPrintable(label->text()));
        QVERIFY2(label->height() >= label->heightForWidth(label->width()), qPrintable(label->text()));
    }
    for (const QAbstractButton *button : mSheet->findChildren<QAbstractButton *>()) {
        if (button->isVisible())
            QVERIFY2(button->width() >= button->minimumSizeHint().width(), qPrintable(button->text()));
    }
    QVERIFY(savePicture(pictureOf(mSheet.get(), nullptr, {}), u"keyboard-chooser"_s));
}

QTEST_MAIN(KeyboardChooserTest)
#include "keyboardchoosertest.moc"
