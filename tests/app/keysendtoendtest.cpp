// SPDX-License-Identifier: MIT
// The complete path of every kind of assignment, once with the mouse and once with the keyboard alone: it is chosen in
// the real window, stored by the real daemon, shown to another client, and carried out by the pressed key.
#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "base/text.h"
#include "daemonlink/daemontransport.h"
#include "keys/keyboardkeyscontroller.h"
#include "keys/keybutton.h"
#include "platform/filepanels.h"
#include "platform/popupbutton.h"
#include "platform/sheet.h"
#include "tests/app/hubfixture.h"
#include "tests/support/applicationchoice.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/kestractlprocess.h"
#include "tests/support/sentrecorder.h"
#include "tests/support/testmain.h"
#include "tests/support/typing.h"

#include <QAction>
#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr uint keyboardPage = 7;
constexpr uint keyA = 4;
constexpr uint keyB = 5;
constexpr uint keyEscape = 41;
constexpr int defaultPosition = 0, singleKeyPosition = 1, macroPosition = 2, profilePosition = 3, programPosition = 4,
              disablePosition = 5;

QVariantMap entry(int command, const QVariant &param1, const QVariant &param2 = 0)
{
    return {{SettingsKeys::command, command}, {SettingsKeys::param1, param1}, {SettingsKeys::param2, param2}};
}

/// The factory settings with a second profile and two macros.
QVariantMap startDocument()
{
    const QString path = qEnvironmentVariable("KESTRA_BIN_DIR") + u"/resources/Kestra.plist"_s;
    QVariantMap document = PropertyList::readPropertyListFile(path).valueOr({}).value(u"Default Settings"_s).toMap();
    QVariantList profiles = document.value(SettingsKeys::profiles).toList();
    QVariantMap second = profiles.value(0).toMap();
    second.insert(SettingsKeys::profileName, u"Raid"_s);
    document.insert(SettingsKeys::profiles, profiles << second);
    document.insert(SettingsKeys::macros, QVariantList{QVariantMap{{SettingsKeys::macroName, u"Heal"_s}},
                                                       QVariantMap{{SettingsKeys::macroName, u"Burst"_s}}});
    return document;
}

/// The user's hand: it touches only what is on the screen.
class Hand
{
public:
    Hand(const Hub &hub, bool hasMouse) : mHub(hub), mHasMouse(hasMouse) {}

    [[nodiscard]] bool selectsKeyA();
    /// Item `position` of the pop-up button named `name`, or the item titled `record` of its sub-menu.
    [[nodiscard]] bool picks(const char *name, int position, const QString &record = {});
    [[nodiscard]] bool confirmsTheSheet();
    [[nodiscard]] bool choosesTheProgram(const QString &path);

private:
    [[nodiscard]] bool reaches(const QWidget *widget);
    [[nodiscard]] bool picksFrom(QMenu *menu, QAction *item, bool opensSubMenu);

    const Hub &mHub;
    bool mHasMouse;
};

bool Hand::selectsKeyA()
{
    if (mHasMouse) {
        QTest::mouseClick(mHub.find<QWidget>("mA"), Qt::LeftButton);
        return true;
    }
    // The tab order reaches the keys at the selected one, Escape; the arrow keys lead from there.
    if (!reaches(mHub.find<QWidget>("mESC")))
        return false;
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Right})
        QTest::keyClick(QApplication::focusWidget(), key);
    return true;
}

bool Hand::reaches(const QWidget *widget)
{
    constexpr int moreThanThereAreStops = 40;
    for (int stop = 0; stop < moreThanThereAreStops && QApplication::focusWidget() != widget; ++stop)
        QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : mHub.window.get(), Qt::Key_Tab);
    return QApplication::focusWidget() == widget;
}

bool Hand::picks(const char *name, int position, const QString &record)
{
    auto *popUp = mHub.find<PopUpButton>(name);
    if (mHasMouse) {
        QTest::mouseClick(popUp, Qt::LeftButton);
    } else {
        if (!reaches(popUp))
            return false;
        QTest::keyClick(popUp, Qt::Key_Space);
    }
    if (!QTest::qWaitFor([&] { return popUp->popUpMenu()->isVisible(); }))
        return false;
    if (!picksFrom(popUp->popUpMenu(), popUp->itemAtIndex(position), !record.isEmpty()))
        return false;
    if (record.isEmpty())
        return true;
    QMenu *submenu = popUp->submenuAtIndex(position);
    if (!QTest::qWaitFor([&] { return submenu->isVisible(); }))
        return false;
    for (QAction *item : submenu->actions())
        if (menuItemTitle(item) == record)
            return picksFrom(submenu, item, false);
    return false;
}

bool Hand::picksFrom(QMenu *menu, QAction *item, bool opensSubMenu)
{
    if (mHasMouse) {
        QTest::mouseMove(menu, menu->actionGeometry(item).center());
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(item).center());
        return true;
    }
    for (qsizetype step = 0; step < menu->actions().size() && menu->activeAction() != item; ++step)
        QTest::keyClick(menu, Qt::Key_Down);
    if (menu->activeAction() != item)
        return false;
    QTest::keyClick(menu, opensSubMenu ? Qt::Key_Right : Qt::Key_Return);
    return true;
}

bool Hand::confirmsTheSheet()
{
    auto *sheet = mHub.find<Sheet>("mSingleKeyWindow");
    if (mHasMouse) {
        QTest::mouseClick(mHub.find<QPushButton>("mSingleKeyOK"), Qt::LeftButton);
    } else {
        // Until the window knows the keyboard, it types nothing, and a short Escape cancels the sheet.
        const auto *label = mHub.find<QLabel>("mSingleKeyInputLabel");
        const auto *hint = mHub.find<QLabel>("mSingleKeyHint");
        if (!QTest::qWaitFor([label] { return label->text() != localizedText("lkeySingleKeyInput"); }))
            return false;
        if (hint->isVisible() && !Typing::holdUntil(Typing::escape, [hint] { return !hint->isVisible(); }))
            return false;
        Typing::tap(Typing::enter);
    }
    return !sheet->isVisible() && !sheet->isUp();
}

bool Hand::choosesTheProgram(const QString &path)
{
    if (!chooseOtherApplication())
        return false;
    OpenPanel *panel = mHub.controller->keysController()->openPanel();
    if (!panel || !QTest::qWaitForWindowActive(panel))
        return false;
    if (!mHasMouse) {
        if (!QTest::qWaitFor([&] { return panel->isAncestorOf(QApplication::focusWidget()); }))
            return false;
        QTest::keyClicks(QApplication::focusWidget(), path);
        // The list of completions may take the first Return.
        for (int press = 0; press < 2 && panel->isVisible(); ++press)
            QTest::keyClick(QApplication::activePopupWidget() ? QApplication::activePopupWidget()
                                                              : QApplication::focusWidget(),
                            Qt::Key_Return);
        return !panel->isVisible();
    }
    const QFileInfo file(path);
    panel->setDirectory(file.path());
    auto *list = panel->findChild<QListView *>(u"listView"_s);
    QModelIndex row;
    const auto isListed = [&] {
        const QModelIndexList found = list->model()->match(list->model()->index(0, 0, list->rootIndex()),
                                                           Qt::DisplayRole, file.fileName(), 1, Qt::MatchExactly);
        row = found.value(0);
        return row.isValid() && list->visualRect(row).isValid();
    };
    if (!QTest::qWaitFor(isListed))
        return false;
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(row).center());
    QTest::mouseClick(panel->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Open), Qt::LeftButton);
    return !panel->isVisible();
}

} // namespace

class KeysEndToEndTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void restoresTheDefaultKey_data() { addHands(); }
    void restoresTheDefaultKey();
    void assignsASingleKeyWithModifiers_data() { addHands(); }
    void assignsASingleKeyWithModifiers();
    void heldEscapeEndsTheCapture();
    void assignsAMacroWithItsPlayback_data() { addHands(); }
    void assignsAMacroWithItsPlayback();
    void assignsAProfileSwitch_data() { addHands(); }
    void assignsAProfileSwitch();
    void assignsAProgram_data() { addHands(); }
    void assignsAProgram();
    void disablesAKey_data() { addHands(); }
    void disablesAKey();
    void capturedKeysReachOnlyTheSheet_data();
    void capturedKeysReachOnlyTheSheet();

private:
    static void addHands();
    void openWindow();
    /// kestractl's description of the key A, without its name.
    QString wordsOfA();
    /// The entry of A in the first profile, as the settings file has it.
    [[nodiscard]] QVariantMap storedEntryOfA() const;
    /// The keys that the computer receives when A is pressed and released.
    QStringList sentByA();
    [[nodiscard]] KeyButton *buttonA() const { return mHub->find<KeyButton>("mA"); }
    [[nodiscard]] PopUpButton *assignment() const { return mHub->find<PopUpButton>("mAssignFunction"); }

    HubResources mResources;
    QTemporaryDir mPrograms;
    std::unique_ptr<DaemonProcessFixture> mDaemon;
    std::unique_ptr<Hub> mHub;
};

void KeysEndToEndTest::addHands()
{
    QTest::addColumn<bool>("hasMouse");
    QTest::newRow("with the mouse") << true;
    QTest::newRow("with the keyboard") << false;
}

void KeysEndToEndTest::init()
{
    setReplyPollInterval(replyPollInterval);
    mDaemon = std::make_unique<DaemonProcessFixture>();
    QVERIFY(mDaemon->store(startDocument()));
    QVERIFY(mDaemon->start());
}

void KeysEndToEndTest::cleanup()
{
    mHub.reset();
    mDaemon.reset();
}

void KeysEndToEndTest::openWindow()
{
    mHub = std::make_unique<Hub>();
    QVERIFY(mHub->openInFront());
}

QString KeysEndToEndTest::wordsOfA()
{
    const QString words = runKestractl({u"key"_s, u"A"_s}).text().trimmed();
    return words.startsWith("A: "_L1) ? words.sliced(3) : u"kestractl printed \"%1\""_s.arg(words);
}

QVariantMap KeysEndToEndTest::storedEntryOfA() const
{
    const QString path = mDaemon->settingsFolder() + u"/settings.plist"_s;
    const QVariantMap document = PropertyList::readPropertyListFile(path).valueOr({});
    const QVariantMap first = document.value(SettingsKeys::profiles).toList().value(0).toMap();
    return first.value(SettingsKeys::keys).toMap().value(u"4"_s).toMap();
}

QStringList KeysEndToEndTest::sentByA()
{
    SentRecorder recorder;
    // B comes last, so all keys of A have arrived when B is released.
    for (const uint key : {keyA, keyB}) {
        mDaemon->callKeyboard(u"Press"_s, {keyboardPage, key});
        mDaemon->callKeyboard(u"Release"_s, {keyboardPage, key});
    }
    if (!QTest::qWaitFor([&] { return recorder.sent().contains(u"-7:5"_s); }))
        return {u"B was not received"_s};
    QStringList sent = recorder.sent();
    sent.removeAll(u"+7:5"_s);
    sent.removeAll(u"-7:5"_s);
    return sent;
}

void KeysEndToEndTest::restoresTheDefaultKey()
{
    QFETCH(bool, hasMouse);
    QCOMPARE(runKestractl({u"key"_s, u"A"_s, u"disable"_s}).exitCode, 0);
    openWindow();
    Hand hand(*mHub, hasMouse);
    QCOMPARE(buttonA()->mark(), KeyMark::disabled);
    QVERIFY(hand.selectsKeyA());
    QCOMPARE(assignment()->indexOfSelectedItem(), disablePosition);
    QVERIFY(hand.picks("mAssignFunction", defaultPosition));
    QCOMPARE(assignment()->titleOfSelectedItem(), u"Default key"_s);
    QCOMPARE(buttonA()->mark(), KeyMark::none);
    QCOMPARE(wordsOfA(), u"default key"_s);
    QCOMPARE(storedEntryOfA(), entry(45, 4));
    QCOMPARE(sentByA(), QStringList({u"+7:4"_s, u"-7:4"_s}));
}

void KeysEndToEndTest::assignsASingleKeyWithModifiers()
{
    QFETCH(bool, hasMouse);
    openWindow();
    Hand hand(*mHub, hasMouse);
    QVERIFY(hand.selectsKeyA());
    QVERIFY(hand.picks("mAssignFunction", singleKeyPosition));
    auto *sheet = mHub->find<Sheet>("mSingleKeyWindow");
    QVERIFY(QTest::qWaitForWindowActive(sheet));
    SentRecorder whileCapturing;
    for (const uint key : {224u, 225u, 6u})
        QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {keyboardPage, key}), QString());
    QTRY_COMPARE(mHub->find<QLineEdit>("mSingleKeyInput")->text(), u"Left Control + Left Shift + C"_s);
    for (const uint key : {6u, 225u, 224u})
        QCOMPARE(mDaemon->callKeyboard(u"Release"_s, {keyboardPage, key}), QString());
    QVERIFY(hand.confirmsTheSheet());
    QCOMPARE(whileCapturing.sent(), QStringList());
    QCOMPARE(assignment()->indexOfSelectedItem(), singleKeyPosition);
    QCOMPARE(assignment()->titleOfSelectedItem(), u"Single key: Left Control + Left Shift + C"_s);
    QCOMPARE(buttonA()->mark(), KeyMark::singleKey);
    QCOMPARE(wordsOfA(), u"single key Left Control + Left Shift + C"_s);
    QCOMPARE(storedEntryOfA(), entry(16, 6, 3));
    QCOMPARE(sentByA(), QStringList({u"+7:224"_s, u"+7:225"_s, u"+7:6"_s, u"-7:6"_s, u"-7:224"_s, u"-7:225"_s}));
}

void KeysEndToEndTest::heldEscapeEndsTheCapture()
{
    openWindow();
    Hand hand(*mHub, false);
    QVERIFY(hand.selectsKeyA());
    QVERIFY(hand.picks("mAssignFunction", singleKeyPosition));
    QVERIFY(QTest::qWaitForWindowActive(mHub->find<Sheet>("mSingleKeyWindow")));
    const auto *shown = mHub->find<QLineEdit>("mSingleKeyInput");
    SentRecorder recorder;
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {keyboardPage, keyB}), QString());
    QCOMPARE(mDaemon->callKeyboard(u"Release"_s, {keyboardPage, keyB}), QString());
    QTRY_COMPARE(shown->text(), u"B"_s);
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {keyboardPage, keyEscape}), QString());
    QTRY_COMPARE(shown->text(), u"Escape"_s);
    QTRY_COMPARE(shown->text(), u"B"_s); // after a second, because Escape then ends only the capture
    QCOMPARE(mDaemon->callKeyboard(u"Release"_s, {keyboardPage, keyEscape}), QString());
    QTRY_VERIFY(!mHub->find<QLabel>("mSingleKeyHint")->isVisible()); // the window knows
    // The window receives the Return that the computer receives now.
    constexpr uint keyReturn = 40;
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {keyboardPage, keyReturn}), QString());
    QCOMPARE(mDaemon->callKeyboard(u"Release"_s, {keyboardPage, keyReturn}), QString());
    QTRY_COMPARE(recorder.sent(), QStringList({u"+7:40"_s, u"-7:40"_s}));
    QVERIFY(hand.confirmsTheSheet());
    QCOMPARE(storedEntryOfA(), entry(16, keyB, 0));
}

void KeysEndToEndTest::assignsAMacroWithItsPlayback()
{
    QFETCH(bool, hasMouse);
    openWindow();
    Hand hand(*mHub, hasMouse);
    QVERIFY(hand.selectsKeyA());
    QVERIFY(hand.picks("mAssignFunction", macroPosition, u"Burst"_s));
    QCOMPARE(assignment()->indexOfSelectedItem(), macroPosition);
    QCOMPARE(assignment()->titleOfSelectedItem(), u"Macro: Burst"_s);
    QCOMPARE(buttonA()->mark(), KeyMark::macro);
    QCOMPARE(wordsOfA(), u"macro Burst, once"_s);
    QCOMPARE(storedEntryOfA(), entry(10, 1, 1));
    const auto *playback = mHub->find<PopUpButton>("mMacroPlaybackPopUp");
    QVERIFY(playback->isVisible());
    QCOMPARE(playback->titleOfSelectedItem(), u"Play once"_s);

    QVERIFY(hand.picks("mMacroPlaybackPopUp", 1));
    QCOMPARE(playback->titleOfSelectedItem(), u"Repeat until released"_s);
    QCOMPARE(assignment()->titleOfSelectedItem(), u"Macro: Burst"_s);
    QCOMPARE(wordsOfA(), u"macro Burst, until released"_s);
    QCOMPARE(storedEntryOfA(), entry(10, 1, 255));
}

void KeysEndToEndTest::assignsAProfileSwitch()
{
    QFETCH(bool, hasMouse);
    openWindow();
    Hand hand(*mHub, hasMouse);
    QVERIFY(hand.selectsKeyA());
    QVERIFY(hand.picks("mAssignFunction", profilePosition, u"Raid"_s));
    QCOMPARE(assignment()->indexOfSelectedItem(), profilePosition);
    QCOMPARE(assignment()->titleOfSelectedItem(), u"Switch profile: Raid"_s);
    QCOMPARE(buttonA()->mark(), KeyMark::profile);
    QCOMPARE(wordsOfA(), u"profile Raid"_s);
    QCOMPARE(storedEntryOfA(), entry(17, 1));
    QCOMPARE(sentByA(), QStringList());
    QTRY_COMPARE(mHub->find<QLabel>("mProfileNameLabel")->text(), u"Raid"_s);
    QCOMPARE(wordsOfA(), u"default key"_s); // of the profile Raid
    QTRY_COMPARE(assignment()->titleOfSelectedItem(), u"Default key"_s);
    QCOMPARE(buttonA()->mark(), KeyMark::none);
}

void KeysEndToEndTest::assignsAProgram()
{
    QFETCH(bool, hasMouse);
    const QString trace = mPrograms.filePath(hasMouse ? u"mouse"_s : u"keyboard"_s);
    const QString program = QFileInfo(mPrograms.path()).canonicalFilePath() + u"/Notes.desktop"_s;
    const QString content = u"[Desktop Entry]\nType=Application\nName=Notes\nExec=touch %1\n"_s.arg(trace);
    QVERIFY(PropertyList::writeFileAtomically(program, content.toUtf8()));
    openWindow();
    Hand hand(*mHub, hasMouse);
    QVERIFY(hand.selectsKeyA());
    QVERIFY(hand.picks("mAssignFunction", programPosition));
    QVERIFY(hand.choosesTheProgram(program));
    QCOMPARE(assignment()->indexOfSelectedItem(), programPosition);
    QCOMPARE(assignment()->titleOfSelectedItem(), u"Launch program: Notes"_s);
    QCOMPARE(buttonA()->mark(), KeyMark::launchProgram);
    QCOMPARE(wordsOfA(), u"program "_s + program);
    QCOMPARE(storedEntryOfA(), entry(46, program, QString()));
    QVERIFY(!QFile::exists(trace));
    QCOMPARE(sentByA(), QStringList());
    QTRY_VERIFY(QFile::exists(trace));
}

void KeysEndToEndTest::disablesAKey()
{
    QFETCH(bool, hasMouse);
    openWindow();
    Hand hand(*mHub, hasMouse);
    QVERIFY(hand.selectsKeyA());
    QVERIFY(hand.picks("mAssignFunction", disablePosition));
    QCOMPARE(assignment()->titleOfSelectedItem(), u"Disable key"_s);
    QCOMPARE(buttonA()->mark(), KeyMark::disabled);
    QCOMPARE(wordsOfA(), u"disabled"_s);
    QCOMPARE(storedEntryOfA(), entry(20, 0));
    QCOMPARE(sentByA(), QStringList());
}

void KeysEndToEndTest::capturedKeysReachOnlyTheSheet_data()
{
    QTest::addColumn<uint>("key");
    QTest::addColumn<QString>("name");
    QTest::newRow("Return") << 40u << u"Return"_s;
    QTest::newRow("Escape") << 41u << u"Escape"_s;
    QTest::newRow("Space") << 44u << u"Space"_s;
    QTest::newRow("Tab") << 43u << u"Tab"_s;
    QTest::newRow("Numpad Enter") << 88u << u"Numpad Enter"_s;
}

void KeysEndToEndTest::capturedKeysReachOnlyTheSheet()
{
    QFETCH(uint, key);
    QFETCH(QString, name);
    openWindow();
    Hand hand(*mHub, true);
    QVERIFY(hand.selectsKeyA());
    QVERIFY(hand.picks("mAssignFunction", singleKeyPosition));
    SentRecorder recorder;
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {keyboardPage, key}), QString());
    QTRY_COMPARE(mHub->find<QLineEdit>("mSingleKeyInput")->text(), name);
    QCOMPARE(mDaemon->callKeyboard(u"Release"_s, {keyboardPage, key}), QString());
    QVERIFY(mHub->find<Sheet>("mSingleKeyWindow")->isVisible());
    QVERIFY(hand.confirmsTheSheet());
    QCOMPARE(storedEntryOfA(), entry(16, key));
    // Capturing has ended, and only later keys reach the computer.
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {keyboardPage, keyB}), QString());
    QCOMPARE(mDaemon->callKeyboard(u"Release"_s, {keyboardPage, keyB}), QString());
    QTRY_COMPARE(recorder.sent(), QStringList({u"+7:5"_s, u"-7:5"_s}));
}

QTEST_MAIN(KeysEndToEndTest)
#include "keysendtoendtest.moc"
