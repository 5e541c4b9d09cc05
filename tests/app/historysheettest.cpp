// SPDX-License-Identifier: MIT
// The sheet with the history, in the real window with the real daemon.
#include "base/historykeys.h"
#include "base/settingskeys.h"
#include "base/textslocale.h"
#include "daemonlink/daemontransport.h"
#include "keys/keymapping.h"
#include "keys/keyminiature.h"
#include "macros/macrorecord.h"
#include "platform/sheet.h"
#include "platform/statusline.h"
#include "tests/app/hubfixture.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/fulldocument.h"
#include "tests/support/testmain.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <QTreeWidget>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

constexpr int keyA = 4, keyB = 5;
constexpr int wordsColumn = 1, authorColumn = 2, stateColumn = 3;

} // namespace

class HistorySheetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void emptyHistorySaysSo();
    void saysThatTheDaemonIsAbsent();
    void listsTheLatestFirstUnderItsDay();
    void namesWhoMadeTheChange();
    void findsByWordsAndAuthor();
    void showsBeforeAndAfterWithTheKeyLit();
    void showsEveryKeyOfAnEntry();
    void showsMacroEventsOfAnEntry();
    void saysWhatIsOutOfReach();
    void showsThePreviewAgainAfterAChangeInBetween();
    void restoresOneChangeAlone();
    void namesTheOtherChangesThatGoBack();
    void undoneChangeCannotBeRestored();
    void followsOtherClients();
    void forgetsOnlyAfterTheQuestion();
    void returnInTheListChangesNothing();
    void keyboardAloneRestoresAndCloses();
    void escapeCloses();

private:
    void openSheet();
    template <typename Widget> [[nodiscard]] Widget *find(const char *name) const
    {
        return mSheet->findChild<Widget *>(QLatin1StringView(name));
    }
    [[nodiscard]] QTreeWidget *list() const { return find<QTreeWidget>("mHistoryList"); }
    [[nodiscard]] QString text(const char *label) const { return find<QLabel>(label)->text(); }
    /// The words of the entries that the list shows, from the top.
    [[nodiscard]] QStringList shown(int column = wordsColumn) const;
    /// Selects the entry with these words.
    void select(const QString &words);
    [[nodiscard]] bool canRestore() const { return find<QPushButton>("mHistoryRestore")->isEnabled(); }
    /// The words of the parts of the selected entry: of each, those before and after.
    [[nodiscard]] QStringList parts() const;
    /// Calls the daemon's object as another client does, and handles no events meanwhile.
    static void callHistory(const QString &method, uint id);
    void assign(int code, KeyMappings::Assignment assignment) const;
    void disableKey(int code) const { assign(code, KeyMappings::Assignment::disabled); }
    [[nodiscard]] bool isMapped(int code) const
    {
        return KeyMappings::entryForKey(mHub->controller->currentProfileDict(), code).isMapped();
    }
    [[nodiscard]] QString status() const { return mHub->find<StatusLine>("mStatusLine")->text(); }

    HubResources mResources;
    std::unique_ptr<DaemonProcessFixture> mDaemon;
    std::unique_ptr<Hub> mHub;
    Sheet *mSheet = nullptr;
};

void HistorySheetTest::init()
{
    setReplyPollInterval(replyPollInterval);
    mDaemon = std::make_unique<DaemonProcessFixture>();
    QVERIFY(mDaemon->start());
    mHub = std::make_unique<Hub>();
    mHub->controller->initializeDevice();
    QVERIFY(QTest::qWaitForWindowExposed(mHub->window.get()));
}

void HistorySheetTest::cleanup()
{
    mHub.reset();
    mDaemon.reset();
}

void HistorySheetTest::openSheet()
{
    mHub->find<QToolButton>("mHistoryButton")->click();
    mSheet = mHub->find<Sheet>("mHistorySheet");
    QVERIFY(mSheet && mSheet->isUp());
}

QStringList HistorySheetTest::shown(int column) const
{
    QStringList texts;
    for (int row = 0; row < list()->topLevelItemCount(); ++row) {
        const QTreeWidgetItem *day = list()->topLevelItem(row);
        for (int place = 0; place < day->childCount(); ++place) {
            if (!day->isHidden() && !day->child(place)->isHidden())
                texts += day->child(place)->text(column);
        }
    }
    return texts;
}

void HistorySheetTest::select(const QString &words)
{
    QTRY_VERIFY(shown().contains(words));
    const QList<QTreeWidgetItem *> items = list()->findItems(words, Qt::MatchExactly | Qt::MatchRecursive, wordsColumn);
    QVERIFY(!items.isEmpty());
    list()->setCurrentItem(items.first());
    QTRY_VERIFY(!text("mHistoryEffect").isEmpty());
}

void HistorySheetTest::assign(int code, KeyMappings::Assignment assignment) const
{
    KeyboardMainController &hub = *mHub->controller;
    const QVariantMap keys = hub.currentProfileDict().value(SettingsKeys::keys).toMap();
    const QVariantMap changed = KeyMappings::withEntry(keys, QString::number(code), assignment, keyB, 0);
    hub.updateKeySettings({{SettingsKeys::keys, changed}});
}

QStringList HistorySheetTest::parts() const
{
    const auto *tree = find<QTreeWidget>("mHistoryParts");
    QStringList texts;
    for (int row = 0; row < tree->topLevelItemCount(); ++row)
        texts += {tree->topLevelItem(row)->text(0), tree->topLevelItem(row)->text(1)};
    return texts;
}

void HistorySheetTest::callHistory(const QString &method, uint id)
{
    QDBusMessage message = QDBusMessage::createMethodCall(messagePortBusName(DaemonProtocol::requestPortName),
                                                          HistoryKeys::objectPath, HistoryKeys::interfaceName, method);
    message.setArguments({id});
    const QDBusMessage reply = QDBusConnection::sessionBus().call(message);
    QVERIFY2(reply.type() == QDBusMessage::ReplyMessage, qPrintable(reply.errorMessage()));
}

void HistorySheetTest::emptyHistorySaysSo()
{
    openSheet();
    QCOMPARE(text("mHistoryWords"), u"No change is in the history yet."_s);
    QVERIFY(!canRestore());
    QVERIFY(!find<QPushButton>("mHistoryClear")->isEnabled());
}

void HistorySheetTest::saysThatTheDaemonIsAbsent()
{
    disableKey(keyA);
    openSheet();
    select(u"A: Disable key"_s);
    mDaemon->kill();
    QTRY_COMPARE(text("mHistoryWords"), u"The keyboard service did not respond."_s);
    QVERIFY(!canRestore());
    QVERIFY(mDaemon->start());
    QTRY_COMPARE(shown(), QStringList(u"A: Disable key"_s));
}

void HistorySheetTest::listsTheLatestFirstUnderItsDay()
{
    disableKey(keyA);
    disableKey(keyB);
    openSheet();
    QTRY_COMPARE(shown(), QStringList({u"B: Disable key"_s, u"A: Disable key"_s}));
    // The changes are from before and after midnight at worst.
    QVERIFY(list()->topLevelItemCount() <= 2);
    const QString day = textsLocale().toString(QDate::currentDate(), QLocale::LongFormat);
    QCOMPARE(list()->topLevelItem(0)->text(0), day);
    QVERIFY(list()->topLevelItem(0)->isExpanded());
}

void HistorySheetTest::namesWhoMadeTheChange()
{
    disableKey(keyA);
    QCOMPARE(mDaemon->callKeyboard(u"PressGameMode"_s), QString());
    openSheet();
    QTRY_COMPARE(shown(authorColumn), QStringList({u"the keyboard"_s, u"this window"_s}));
}

void HistorySheetTest::findsByWordsAndAuthor()
{
    disableKey(keyA);
    QCOMPARE(mDaemon->callKeyboard(u"PressGameMode"_s), QString());
    openSheet();
    QTRY_COMPARE(shown().size(), 2);
    auto *search = find<QLineEdit>("mHistorySearch");
    search->setText(u"disable"_s);
    QCOMPARE(shown(), QStringList(u"A: Disable key"_s));
    QCOMPARE(text("mHistoryWords"), u"A: Disable key"_s);
    search->setText(u"the keyboard"_s);
    QCOMPARE(shown(), QStringList(u"Game mode on"_s));
    search->setText(u"nothing has this text"_s);
    QCOMPARE(shown(), QStringList());
    QVERIFY(!canRestore());
    search->clear();
    QCOMPARE(shown().size(), 2);
}

void HistorySheetTest::showsBeforeAndAfterWithTheKeyLit()
{
    assign(keyA, KeyMappings::Assignment::singleKey);
    disableKey(keyB);
    disableKey(keyA);
    openSheet();
    select(u"A: Disable key"_s);
    QCOMPARE(text("mHistoryWords"), u"A: Disable key"_s);
    QTRY_COMPARE(parts(), QStringList({u"A: Single key (B)"_s, u"A: Disable key"_s}));
    auto *picture = find<KeyMiniature>("mHistoryPicture");
    QVERIFY(picture->isVisible());
    QCOMPARE(picture->litKeys(), QList<int>{keyA});
    QCOMPARE(picture->accessibleName(), u"A"_s);
}

void HistorySheetTest::showsEveryKeyOfAnEntry()
{
    assign(keyA, KeyMappings::Assignment::singleKey);
    QVariantMap keys = mHub->controller->currentProfileDict().value(SettingsKeys::keys).toMap();
    for (const int code : {keyA, keyB})
        keys = KeyMappings::withEntry(keys, QString::number(code), KeyMappings::Assignment::disabled, 0, 0);
    mHub->controller->updateKeySettings({{SettingsKeys::keys, keys}}); // several keys at once
    openSheet();
    QTRY_VERIFY(!shown().isEmpty());
    select(shown().constFirst());
    QTRY_COMPARE(parts(),
                 QStringList({u"A: Single key (B)"_s, u"A: Disable key"_s, u"B: Default key"_s, u"B: Disable key"_s}));
    auto *picture = find<KeyMiniature>("mHistoryPicture");
    QVERIFY(picture->isVisible());
    QCOMPARE(picture->litKeys(), QList<int>({keyA, keyB}));
    QCOMPARE(picture->accessibleName(), u"A, B"_s);
}

void HistorySheetTest::showsMacroEventsOfAnEntry()
{
    const QVariantList events{
        MacroRecord::eventRecord({.command = MacroRecord::keyDown, .argument = keyA}),
        MacroRecord::eventRecord({.command = MacroRecord::keyUp, .delayMs = 30, .argument = keyA})};
    mHub->controller->addMacroWithSettings(MacroRecord::withEvents({{SettingsKeys::macroName, u"Heal"_s}}, events));
    QVERIFY(mDaemon->request(
        Command::setDelay,
        {{DaemonProtocol::macroId, 0}, {DaemonProtocol::sequenceIndex, 1}, {DaemonProtocol::delay, 80}}));
    openSheet();
    select(u"Macro Heal: 1 delay set"_s);
    QTRY_COMPARE(parts(), QStringList({u"Macro Heal, event 2: A released after 30 ms"_s,
                                       u"Macro Heal, event 2: A released after 80 ms"_s}));
    QVERIFY(!find<KeyMiniature>("mHistoryPicture")->isVisible());
}

void HistorySheetTest::saysWhatIsOutOfReach()
{
    disableKey(keyA);
    mDaemon->kill();
    QDir folder(mDaemon->settingsFolder());
    for (const QString &name : folder.entryList({u"settings*.plist*"_s}, QDir::Files))
        QVERIFY(folder.remove(name));
    QVERIFY(mDaemon->store(fullDocument()));
    QVERIFY(mDaemon->start());
    openSheet();
    select(u"A: Disable key"_s);
    QTRY_COMPARE(text("mHistoryPartsNote"),
                 u"The state before is not known: the settings were replaced in another way since."_s);
    QVERIFY(find<QLabel>("mHistoryPartsNote")->isVisible());
    QVERIFY(!find<QTreeWidget>("mHistoryParts")->isVisible());
    QVERIFY(!canRestore());
}

void HistorySheetTest::showsThePreviewAgainAfterAChangeInBetween()
{
    disableKey(keyA);
    disableKey(keyB);
    callHistory(u"Undo"_s, 2);
    openSheet();
    select(u"A: Disable key"_s);
    QTRY_COMPARE(text("mHistoryEffect"), u"“Restore” takes back this change alone."_s);
    QTRY_VERIFY(canRestore());
    callHistory(u"Redo"_s, 2); // the window does not hear of it before the click
    find<QPushButton>("mHistoryRestore")->click();
    QTRY_COMPARE(text("mHistoryEffect"), u"“Restore” also takes back a later change: B: Disable key"_s);
    QTRY_VERIFY(text("mHistoryNotice").startsWith(u"Not taken back: A: Disable key."_s));
    QVERIFY(find<QLabel>("mHistoryNotice")->isVisible());
    QTRY_VERIFY(isMapped(keyA) && isMapped(keyB));
    QTRY_VERIFY(canRestore());
    find<QPushButton>("mHistoryRestore")->click();
    QTRY_VERIFY(!isMapped(keyA) && !isMapped(keyB));
}

void HistorySheetTest::restoresOneChangeAlone()
{
    disableKey(keyA);
    mHub->controller->addMacroWithSettings({{SettingsKeys::macroName, u"Heal"_s}});
    openSheet();
    select(u"A: Disable key"_s);
    QTRY_COMPARE(text("mHistoryEffect"), u"“Restore” takes back this change alone."_s);
    QTRY_VERIFY(canRestore());
    find<QPushButton>("mHistoryRestore")->click();
    QTRY_COMPARE(status(), u"Taken back: A: Disable key"_s);
    QTRY_VERIFY(!isMapped(keyA));
    QCOMPARE(mHub->controller->macrosArray().size(), 1);
    QTRY_COMPARE(shown().constFirst(), u"Taken back: A: Disable key"_s);
    QVERIFY(mSheet->isUp());
}

void HistorySheetTest::namesTheOtherChangesThatGoBack()
{
    disableKey(keyA);
    disableKey(keyB);
    openSheet();
    select(u"A: Disable key"_s);
    QTRY_COMPARE(text("mHistoryEffect"), u"“Restore” also takes back a later change: B: Disable key"_s);
    QTRY_VERIFY(canRestore());
    find<QPushButton>("mHistoryRestore")->click();
    QTRY_VERIFY(!isMapped(keyA) && !isMapped(keyB));
}

void HistorySheetTest::undoneChangeCannotBeRestored()
{
    disableKey(keyA);
    auto *button = mHub->find<QToolButton>("mUndoButton");
    QTRY_VERIFY(button->isEnabled());
    button->click();
    QTRY_COMPARE(status(), u"Undone: A: Disable key"_s);
    openSheet();
    select(u"A: Disable key"_s);
    QTRY_COMPARE(text("mHistoryEffect"),
                 u"This change cannot be taken back: the change has been taken back already."_s);
    QVERIFY(!canRestore());
    QCOMPARE(shown(stateColumn).constLast(), u"taken back"_s);
}

void HistorySheetTest::followsOtherClients()
{
    disableKey(keyA);
    openSheet();
    select(u"A: Disable key"_s);
    QCOMPARE(mDaemon->callKeyboard(u"PressGameMode"_s), QString());
    QTRY_COMPARE(shown(), QStringList({u"Game mode on"_s, u"A: Disable key"_s}));
    QCOMPARE(list()->currentItem()->text(wordsColumn), u"A: Disable key"_s);
}

void HistorySheetTest::forgetsOnlyAfterTheQuestion()
{
    disableKey(keyA);
    openSheet();
    select(u"A: Disable key"_s);
    find<QPushButton>("mHistoryClear")->click();
    auto *alert = mSheet->findChild<Sheet *>(u"alert"_s);
    QVERIFY(alert && alert->isUp());
    QTRY_COMPARE(QApplication::activeWindow(), alert);
    QTest::keyClick(alert, Qt::Key_Return); // the default button must be the harmless one
    QTRY_VERIFY(!mSheet->findChild<Sheet *>(u"alert"_s));
    QCOMPARE(shown(), QStringList(u"A: Disable key"_s));
    const auto backups = [this] {
        return QDir(mDaemon->settingsFolder()).entryList({u"settings-*.plist"_s}, QDir::Files).size();
    };
    QCOMPARE(backups(), 1);
    find<QPushButton>("mHistoryClear")->click();
    mSheet->findChild<QPushButton *>(u"alertAlternativeButton"_s)->click();
    QTRY_COMPARE(shown(), QStringList());
    QTRY_COMPARE(status(), u"The history, the daily backups and the previous versions of the settings are deleted."_s);
    QCOMPARE(backups(), 0);
    QVERIFY(isMapped(keyA));
    QTRY_VERIFY(!mHub->find<QToolButton>("mUndoButton")->isEnabled());
}

void HistorySheetTest::returnInTheListChangesNothing()
{
    disableKey(keyA);
    openSheet();
    select(u"A: Disable key"_s);
    QTRY_VERIFY(canRestore());
    QTRY_COMPARE(QApplication::activeWindow(), mSheet);
    list()->setFocus();
    QTest::keyClick(list(), Qt::Key_Return);
    QVERIFY(!mSheet->findChild<Sheet *>(u"alert"_s));
    QCOMPARE(shown(), QStringList(u"A: Disable key"_s));
    QVERIFY(isMapped(keyA));
}

void HistorySheetTest::keyboardAloneRestoresAndCloses()
{
    disableKey(keyA);
    disableKey(keyB);
    const auto press = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
    auto *button = mHub->find<QToolButton>("mHistoryButton");
    button->setFocus(Qt::TabFocusReason);
    QTRY_VERIFY(button->hasFocus());
    press(Qt::Key_Space);
    mSheet = mHub->find<Sheet>("mHistorySheet");
    QVERIFY(mSheet && mSheet->isUp());
    QTRY_COMPARE(QApplication::activeWindow(), mSheet);
    QTRY_COMPARE(text("mHistoryWords"), u"B: Disable key"_s);
    QVERIFY(list()->hasFocus());
    press(Qt::Key_Down);
    QCOMPARE(text("mHistoryWords"), u"A: Disable key"_s);
    QTRY_VERIFY(canRestore());
    QTRY_COMPARE(parts(), QStringList({u"A: Default key"_s, u"A: Disable key"_s}));
    QStringList visited;
    for (int count = 0; count < 6; ++count) {
        press(Qt::Key_Tab);
        visited += QApplication::focusWidget()->objectName();
    }
    QCOMPARE(visited, QStringList({u"mHistoryParts"_s, u"mHistoryRestore"_s, u"mHistoryClear"_s, u"mHistoryClose"_s,
                                   u"mHistorySearch"_s, u"mHistoryList"_s}));
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    press(Qt::Key_Space);
    QTRY_VERIFY(!isMapped(keyA) && !isMapped(keyB));
    QTRY_COMPARE(text("mHistoryNotice"), u"Taken back: A: Disable key"_s);
    QVERIFY(list()->hasFocus());
    press(Qt::Key_Escape);
    QVERIFY(!mSheet->isUp());
}

void HistorySheetTest::escapeCloses()
{
    openSheet();
    QTRY_COMPARE(QApplication::activeWindow(), mSheet);
    QTest::keyClick(mSheet, Qt::Key_Escape);
    QVERIFY(!mSheet->isUp());
}

QTEST_MAIN(HistorySheetTest)
#include "historysheettest.moc"
