// SPDX-License-Identifier: MIT
// The sheet with the history, in the real window with the real daemon.
#include "base/settingskeys.h"
#include "daemonlink/daemontransport.h"
#include "keys/keymapping.h"
#include "keys/keyminiature.h"
#include "platform/sheet.h"
#include "platform/statusline.h"
#include "tests/app/hubfixture.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/testmain.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
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
    void showsNoBeforeThatItDoesNotKnow();
    void restoresOneChangeAlone();
    void namesTheOtherChangesThatGoBack();
    void undoneChangeCannotBeRestored();
    void followsOtherClients();
    void forgetsOnlyAfterTheQuestion();
    void returnInTheListChangesNothing();
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
    const QString day = QLocale().toString(QDate::currentDate(), QLocale::LongFormat);
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
    QCOMPARE(text("mHistoryWords"), u"After: A: Disable key"_s);
    QCOMPARE(text("mHistoryBefore"), u"Before: A: Single key (B)"_s);
    auto *picture = find<KeyMiniature>("mHistoryPicture");
    QVERIFY(picture->isVisible());
    QCOMPARE(picture->litKeys(), QList<int>{keyA});
    QCOMPARE(picture->accessibleName(), u"A"_s);
}

void HistorySheetTest::showsNoBeforeThatItDoesNotKnow()
{
    assign(keyA, KeyMappings::Assignment::singleKey);
    QVariantMap keys = mHub->controller->currentProfileDict().value(SettingsKeys::keys).toMap();
    for (const int code : {keyA, keyB})
        keys.remove(QString::number(code));
    keys = KeyMappings::withEntry(keys, u"6"_s, KeyMappings::Assignment::disabled, 0, 0);
    mHub->controller->updateKeySettings({{SettingsKeys::keys, keys}}); // several keys at once
    disableKey(keyA);
    openSheet();
    select(u"A: Disable key"_s);
    QCOMPARE(text("mHistoryWords"), u"A: Disable key"_s);
    QVERIFY(!find<QLabel>("mHistoryBefore")->isVisible());
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
    find<QPushButton>("mHistoryClear")->click();
    mSheet->findChild<QPushButton *>(u"alertAlternativeButton"_s)->click();
    QTRY_COMPARE(shown(), QStringList());
    QTRY_COMPARE(status(), u"The history and the daily backups are deleted."_s);
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

void HistorySheetTest::escapeCloses()
{
    openSheet();
    QTRY_COMPARE(QApplication::activeWindow(), mSheet);
    QTest::keyClick(mSheet, Qt::Key_Escape);
    QVERIFY(!mSheet->isUp());
}

QTEST_MAIN(HistorySheetTest)
#include "historysheettest.moc"
