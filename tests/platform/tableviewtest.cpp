// SPDX-License-Identifier: MIT
#include "platform/tableview.h"
#include "platform/tablecelldelegate.h"
#include "tests/support/testmain.h"

#include <QAccessible>
#include <QImage>
#include <QLayout>
#include <QLineEdit>
#include <QMenu>
#include <QPixmap>
#include <QShortcut>
#include <QSignalSpy>
#include <QStringList>
#include <QTest>
#include <QTextDocument>
#include <QVBoxLayout>
#include <QWindow>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

/// Editable names with a check box each; records its calls.
class Source : public TableViewDataSource
{
public:
    struct Edit
    {
        QVariant value;
        QString column;
        int row;
    };

    int numberOfRowsInTableView(TableView *) override { return int(names.size()); }

    QVariant tableViewObjectValueForTableColumnRow(TableView *, const QString &column, int row) override
    {
        if (row >= names.size())
            return {};
        return column == "name"_L1 ? QVariant(names.at(row)) : QVariant(switches.value(row));
    }

    void tableViewSetObjectValueForTableColumnRow(TableView *, const QVariant &value, const QString &column,
                                                  int row) override
    {
        edits.append({value, column, row});
        if (onEdit)
            onEdit();
    }

    void tableViewSelectionDidChange(TableView *table) override { selections.append(table->selectedRow()); }

    std::optional<TableCell> tableViewDataCellForTableColumnRow(TableView *, const QString &column, int) override
    {
        return column == "switch"_L1 ? std::optional(TableCell::checkBox) : std::nullopt;
    }

    QIcon tableViewImageForTableColumnRow(TableView *, const QString &column, int row) override
    {
        return column == "name"_L1 && row == 1 ? image : QIcon();
    }

    QIcon image;
    QStringList names{u"Alpha"_s, u"Beta"_s, u"Gamma"_s};
    QHash<int, int> switches;
    QList<Edit> edits;
    QList<int> selections;
    std::function<void()> onEdit;
};

constexpr int nameColumn = 0;
constexpr int switchColumn = 1;
constexpr int fixedColumn = 2;

} // namespace

class TableViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void selectingByCallNotifiesOnce();
    void selectingTheSelectedRowAgainDoesNotNotify();
    void extendingReplacesTheOneSelectedRow();
    void rowThatDoesNotExistIsNotSelected();
    void deselectingNotifiesOnlyIfARowWasSelected();
    void selectingFindsRowsAddedSinceTheLastReload();
    void reloadingKeepsTheSelectionAndDoesNotNotify();
    void reloadingDropsASelectionWithoutARow();
    void clickingARowNotifies();
    void clickingBesideTheRowsDeselectsUnlessForbidden();
    void rightClickKeepsTheSelection();
    void editingOpensTheNamedCell_data();
    void editingOpensTheNamedCell();
    void editingKeepsTheSelection();
    void unselectedRowIsNotEdited();
    void cellsThatCannotBeEditedAreNotOpened();
    void disabledTableOpensNoEditor();
    void returnWritesTheText();
    void returnAlsoWritesAnUnchangedText();
    void escapeWritesNothing();
    void losingTheFocusWritesTheText();
    void selectingAnotherRowByCallDiscardsTheEdit();
    void clickingAnotherRowWritesTheText();
    void tabEndsTheEditWithoutSelectingAnotherRow();
    void endingByCallWritesOnlyAChangedText();
    void editingAnotherRowDiscardsTheFirstEdit();
    void deselectingEndsAnEdit();
    void disablingWritesNothing();
    void abortingWritesNothing();
    void toolTipsShowTheTextLiterally_data();
    void toolTipsShowTheTextLiterally();
    void namesCannotActOnTheTable();
    void actionsOfTheProgramDiscardTheEdit_data();
    void actionsOfTheProgramDiscardTheEdit();
    void clickOutsideFocusableControlsWritesTheText_data();
    void clickOutsideFocusableControlsWritesTheText();
    void otherWindowInFrontDiscardsTheEdit();
    void invisibleTableOpensNoEditor_data();
    void invisibleTableOpensNoEditor();
    void menuKeepsTheEdit();
    void furtherTypingChangesNothing_data();
    void furtherTypingChangesNothing();
    void movingEndsFurtherTyping_data();
    void movingEndsFurtherTyping();
    void editorOpensAgainAfterEachEnd();
    void reloadingEndsAnEditWithoutARow();
    void editIsWrittenOnceWhenWritingRefreshes();
    void clickingTheCheckBoxWritesTheOtherState_data();
    void clickingTheCheckBoxWritesTheOtherState();
    void clickingBesideTheCheckBoxWritesNothing();
    void spaceSwitchesTheCheckBox();
    void reportsCellsAndHeadingsToAssistiveTools();
    void showsAPictureBeforeTheText();
    void pictureOfASelectedRowStaysBrightWhenDisabled();
    void emptyTableShowsItsPlaceholder();
    void homeAndEndSelectTheFirstAndTheLastRow_data();
    void homeAndEndSelectTheFirstAndTheLastRow();
    void selectsSeveralRowsIfAllowed();
    void selectsSeveralRowsByCall();
    void showsTheRowsThatFit();
    void selectedRowIsAlwaysShown();
    void rowsDisappearWithAReloadAlone();
    void keysReachShownRowsAlone();
    void placeholderIsShownWithoutAShownRow();
    void focusAloneSelectsNoRow_data();
    void focusAloneSelectsNoRow();
    void keysStartAtTheFirstRowWithoutASelection();

private:
    [[nodiscard]] QStringList shownNames() const;
    QLineEdit *editor() const;
    QPoint cellCentre(int row, int column) const;

    std::unique_ptr<QWidget> mWindow;
    std::unique_ptr<Source> mSource;
    TableView *mTable = nullptr;
    QLineEdit *mOther = nullptr;
};

void TableViewTest::init()
{
    mSource = std::make_unique<Source>();
    mWindow = std::make_unique<QWidget>();
    mTable = new TableView;
    mTable->addColumn({u"name"_s, u"Name"_s, TableCell::text, true, true});
    mTable->addColumn({u"switch"_s, u"Switch"_s});
    mTable->addColumn({u"fixed"_s, u"Fixed"_s});
    mTable->setDataSource(mSource.get());
    mOther = new QLineEdit;
    auto *layout = new QVBoxLayout(mWindow.get());
    layout->addWidget(mTable);
    layout->addWidget(mOther);
    mWindow->resize(500, 400);
    mWindow->show();
    QVERIFY(QTest::qWaitForWindowActive(mWindow.get()));
    mTable->setFocus();
}

void TableViewTest::cleanup()
{
    mTable->setDataSource(nullptr);
    mWindow.reset();
    mSource.reset();
}

QLineEdit *TableViewTest::editor() const
{
    const QList<QLineEdit *> editors = mTable->findChildren<QLineEdit *>(u"cellEditor"_s);
    for (QLineEdit *candidate : editors) {
        if (candidate->isVisible())
            return candidate;
    }
    return nullptr;
}

QPoint TableViewTest::cellCentre(int row, int column) const
{
    return mTable->visualRect(mTable->model()->index(row, column)).center();
}

void TableViewTest::selectingByCallNotifiesOnce()
{
    mTable->selectRow(1);
    QCOMPARE(mTable->selectedRow(), 1);
    QCOMPARE(mSource->selections, QList<int>{1});
}

void TableViewTest::selectingTheSelectedRowAgainDoesNotNotify()
{
    mTable->selectRow(1);
    mTable->selectRow(1, true);
    QCOMPARE(mSource->selections, QList<int>{1});
}

void TableViewTest::extendingReplacesTheOneSelectedRow()
{
    mTable->selectRow(0);
    mTable->selectRow(2, true);
    QCOMPARE(mTable->selectionModel()->selectedRows().size(), 1);
    QCOMPARE(mTable->selectedRow(), 2);
}

void TableViewTest::rowThatDoesNotExistIsNotSelected()
{
    mTable->selectRow(1);
    mTable->selectRow(3);
    mTable->selectRow(-1);
    QCOMPARE(mTable->selectedRow(), 1);
    QCOMPARE(mSource->selections, QList<int>{1});
}

void TableViewTest::deselectingNotifiesOnlyIfARowWasSelected()
{
    mTable->deselectAll();
    QVERIFY(mSource->selections.isEmpty());
    mTable->selectRow(1);
    mTable->deselectAll();
    QCOMPARE(mTable->selectedRow(), -1);
    QCOMPARE(mSource->selections, (QList<int>{1, -1}));
    mTable->selectRow(1);
    QCOMPARE(mSource->selections, (QList<int>{1, -1, 1}));
}

void TableViewTest::selectingFindsRowsAddedSinceTheLastReload()
{
    mSource->names.append(u"Delta"_s);
    mTable->selectRow(3);
    QCOMPARE(mTable->selectedRow(), 3);
}

void TableViewTest::reloadingKeepsTheSelectionAndDoesNotNotify()
{
    mTable->selectRow(1);
    mSource->selections.clear();
    mSource->names = QStringList{u"A"_s, u"B"_s, u"C"_s, u"D"_s};
    mTable->reloadData();
    QCOMPARE(mTable->selectedRow(), 1);
    QCOMPARE(mTable->model()->rowCount(), 4);
    QCOMPARE(mTable->model()->index(1, nameColumn).data().toString(), u"B"_s);
    mSource->names.removeLast();
    mTable->reloadData();
    QCOMPARE(mTable->selectedRow(), 1);
    QVERIFY(mSource->selections.isEmpty());
}

void TableViewTest::reloadingDropsASelectionWithoutARow()
{
    mTable->selectRow(2);
    mSource->selections.clear();
    mSource->names.removeLast();
    mTable->reloadData();
    QCOMPARE(mTable->selectedRow(), -1);
    QVERIFY(mSource->selections.isEmpty());
}

void TableViewTest::clickingARowNotifies()
{
    QTest::mouseClick(mTable->viewport(), Qt::LeftButton, {}, cellCentre(1, nameColumn));
    QCOMPARE(mSource->selections, QList<int>{1});
}

void TableViewTest::clickingBesideTheRowsDeselectsUnlessForbidden()
{
    const QPoint beside(20, mTable->viewport()->height() - 5);
    QVERIFY(!mTable->indexAt(beside).isValid());
    mTable->selectRow(1);
    QTest::mouseClick(mTable->viewport(), Qt::LeftButton, {}, beside);
    QCOMPARE(mTable->selectedRow(), -1);
    mTable->selectRow(1);
    mTable->setAllowsEmptySelection(false);
    QTest::mouseClick(mTable->viewport(), Qt::LeftButton, {}, beside);
    QCOMPARE(mTable->selectedRow(), 1);
    QTest::mouseClick(mTable->viewport(), Qt::LeftButton, Qt::ControlModifier, cellCentre(1, nameColumn));
    QCOMPARE(mTable->selectedRow(), 1);
    mTable->deselectAll();
    QCOMPARE(mTable->selectedRow(), -1);
}

void TableViewTest::rightClickKeepsTheSelection()
{
    mTable->selectRow(0);
    QTest::mouseClick(mTable->viewport(), Qt::RightButton, {}, cellCentre(2, nameColumn));
    QCOMPARE(mTable->selectedRow(), 0);
}

void TableViewTest::editingOpensTheNamedCell_data()
{
    QTest::addColumn<bool>("selectsText");
    QTest::addColumn<QString>("selectedText");
    QTest::newRow("text selected") << true << u"Gamma"_s;
    QTest::newRow("text not selected") << false << QString();
}

void TableViewTest::editingOpensTheNamedCell()
{
    QFETCH(bool, selectsText);
    QFETCH(QString, selectedText);
    const QSignalSpy changes(mTable, &TableView::editedRowChanged);
    QCOMPARE(mTable->editedRow(), -1);
    mTable->selectRow(2);
    mTable->editColumnRow(nameColumn, 2, selectsText);
    QCOMPARE(mTable->editedRow(), 2);
    QCOMPARE(changes.size(), 1);
    QVERIFY(editor());
    QCOMPARE(editor()->text(), u"Gamma"_s);
    QCOMPARE(editor()->selectedText(), selectedText);
    QVERIFY(editor()->hasFocus());
}

void TableViewTest::editingKeepsTheSelection()
{
    mTable->selectRow(0);
    mTable->editColumnRow(nameColumn, 0, true);
    QCOMPARE(mTable->selectedRow(), 0);
    QCOMPARE(mSource->selections, QList<int>{0});
}

void TableViewTest::unselectedRowIsNotEdited()
{
    mTable->editColumnRow(nameColumn, 2, true);
    QCOMPARE(mTable->editedRow(), -1);
    mTable->selectRow(0);
    mTable->editColumnRow(nameColumn, 2, true);
    QCOMPARE(mTable->editedRow(), -1);
    QVERIFY(!editor());
    QCOMPARE(mTable->selectedRow(), 0);
    // An edit that is open in the selected row is discarded.
    mTable->editColumnRow(nameColumn, 0, true);
    QTest::keyClicks(editor(), u"New"_s);
    mTable->editColumnRow(nameColumn, 2, true);
    QCOMPARE(mTable->editedRow(), -1);
    QTRY_VERIFY(!editor());
    QVERIFY(mSource->edits.isEmpty());
}

void TableViewTest::cellsThatCannotBeEditedAreNotOpened()
{
    mTable->selectRow(0);
    mTable->editColumnRow(fixedColumn, 0, true);
    mTable->editColumnRow(switchColumn, 0, true);
    mTable->editColumnRow(nameColumn, 3, true);
    mTable->editColumnRow(nameColumn, -1, true);
    mTable->editColumnRow(7, 0, true);
    QCOMPARE(mTable->editedRow(), -1);
    QVERIFY(!editor());
}

void TableViewTest::disabledTableOpensNoEditor()
{
    mTable->selectRow(0);
    mTable->setEnabled(false);
    mTable->editColumnRow(nameColumn, 0, true);
    QCOMPARE(mTable->editedRow(), -1);
}

void TableViewTest::returnWritesTheText()
{
    mTable->selectRow(1);
    mTable->editColumnRow(nameColumn, 1, true);
    QTest::keyClicks(editor(), u"New"_s);
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_COMPARE(mSource->edits.size(), 1);
    QCOMPARE(mSource->edits.first().value, QVariant(u"New"_s));
    QCOMPARE(mSource->edits.first().column, u"name"_s);
    QCOMPARE(mSource->edits.first().row, 1);
    QCOMPARE(mTable->editedRow(), -1);
    QTRY_VERIFY(!editor());
}

void TableViewTest::returnAlsoWritesAnUnchangedText()
{
    mTable->selectRow(1);
    mTable->editColumnRow(nameColumn, 1, true);
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_COMPARE(mSource->edits.size(), 1);
    QCOMPARE(mSource->edits.first().value, QVariant(u"Beta"_s));
}

void TableViewTest::escapeWritesNothing()
{
    mTable->selectRow(1);
    mTable->editColumnRow(nameColumn, 1, true);
    QTest::keyClicks(editor(), u"New"_s);
    QTest::keyClick(editor(), Qt::Key_Escape);
    QTRY_VERIFY(!editor());
    QCOMPARE(mTable->editedRow(), -1);
    QVERIFY(mSource->edits.isEmpty());
}

void TableViewTest::losingTheFocusWritesTheText()
{
    mTable->selectRow(1);
    mTable->editColumnRow(nameColumn, 1, true);
    QTest::keyClicks(editor(), u"New"_s);
    mOther->setFocus();
    QTRY_COMPARE(mSource->edits.size(), 1);
    QCOMPARE(mSource->edits.first().value, QVariant(u"New"_s));
    QCOMPARE(mTable->editedRow(), -1);
}

void TableViewTest::selectingAnotherRowByCallDiscardsTheEdit()
{
    mTable->selectRow(1);
    mTable->editColumnRow(nameColumn, 1, true);
    QTest::keyClicks(editor(), u"New"_s);
    mTable->selectRow(0);
    QCOMPARE(mTable->editedRow(), -1);
    QTRY_VERIFY(!editor());
    QVERIFY(mSource->edits.isEmpty());
}

void TableViewTest::clickingAnotherRowWritesTheText()
{
    mTable->selectRow(1);
    mTable->editColumnRow(nameColumn, 1, true);
    QTest::keyClicks(editor(), u"New"_s);
    QTest::mouseClick(mTable->viewport(), Qt::LeftButton, {},
                      mTable->visualRect(mTable->model()->index(0, nameColumn)).center());
    QTRY_VERIFY(!editor());
    QCOMPARE(mSource->edits.size(), 1);
    QCOMPARE(mSource->edits.first().row, 1);
    QCOMPARE(mSource->edits.first().value, QVariant(u"New"_s));
    QCOMPARE(mTable->selectedRow(), 0);
}

void TableViewTest::tabEndsTheEditWithoutSelectingAnotherRow()
{
    mTable->selectRow(0);
    mTable->editColumnRow(nameColumn, 0, true);
    QTest::keyClick(editor(), Qt::Key_Tab);
    QTRY_VERIFY(!editor());
    QCOMPARE(mTable->selectedRow(), 0);
    QCOMPARE(mTable->editedRow(), -1);
    QCOMPARE(mSource->edits.size(), 1);
}

void TableViewTest::endingByCallWritesOnlyAChangedText()
{
    mTable->selectRow(1);
    mTable->editColumnRow(nameColumn, 1, true);
    mTable->endEditing();
    QVERIFY(mSource->edits.isEmpty());
    QCOMPARE(mTable->editedRow(), -1);
    mTable->selectRow(1);
    mTable->editColumnRow(nameColumn, 1, true);
    QTest::keyClicks(editor(), u"New"_s);
    mTable->endEditing();
    QCOMPARE(mSource->edits.size(), 1);
    QCOMPARE(mSource->edits.first().value, QVariant(u"New"_s));
}

void TableViewTest::editingAnotherRowDiscardsTheFirstEdit()
{
    mTable->selectRow(0);
    mTable->editColumnRow(nameColumn, 0, true);
    QTest::keyClicks(editor(), u"New"_s);
    mTable->selectRow(2);
    mTable->editColumnRow(nameColumn, 2, false);
    QVERIFY(mSource->edits.isEmpty());
    QCOMPARE(mTable->editedRow(), 2);
    QCOMPARE(editor()->text(), u"Gamma"_s);
}

void TableViewTest::deselectingEndsAnEdit()
{
    mTable->selectRow(1);
    mTable->editColumnRow(nameColumn, 1, true);
    mTable->deselectAll();
    QCOMPARE(mTable->editedRow(), -1);
    QVERIFY(mSource->edits.isEmpty());
}

void TableViewTest::disablingWritesNothing()
{
    mTable->selectRow(1);
    mTable->editColumnRow(nameColumn, 1, true);
    QTest::keyClicks(editor(), u"New"_s);
    mTable->setEnabled(false);
    QTRY_VERIFY(!editor());
    QCOMPARE(mTable->editedRow(), -1);
    QVERIFY(mSource->edits.isEmpty());
}

void TableViewTest::abortingWritesNothing()
{
    mTable->selectRow(1);
    mTable->editColumnRow(nameColumn, 1, true);
    QTest::keyClicks(editor(), u"New"_s);
    mTable->abortEditing();
    QCOMPARE(mTable->editedRow(), -1);
    QTRY_VERIFY(!editor());
    QVERIFY(mSource->edits.isEmpty());
}

void TableViewTest::toolTipsShowTheTextLiterally_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"Work", "R&D", "a < b", "<b>bold</b>", "&lt;", "two  blanks"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TableViewTest::toolTipsShowTheTextLiterally()
{
    QFETCH(QString, name);
    mSource->names[0] = name;
    const QString toolTip = mTable->model()->index(0, nameColumn).data(Qt::ToolTipRole).toString();
    QTextDocument shown;
    // The same decision as in a tool tip.
    if (Qt::mightBeRichText(toolTip))
        shown.setHtml(toolTip);
    else
        shown.setPlainText(toolTip);
    QCOMPARE(shown.toPlainText(), name);
    mSource->names[0].clear();
    QCOMPARE(mTable->model()->index(0, nameColumn).data(Qt::ToolTipRole).toString(), QString());
}

void TableViewTest::namesCannotActOnTheTable()
{
    mSource->names[0] = u"two\nlines \u202eright"_s;
    const QModelIndex index = mTable->model()->index(0, nameColumn);
    const QString shown = u"two lines  right"_s;
    QCOMPARE(index.data(Qt::DisplayRole).toString(), shown);
    QCOMPARE(index.data(Qt::AccessibleTextRole).toString(), shown);
    QVERIFY(index.data(Qt::ToolTipRole).toString().contains(shown));
    QCOMPARE(index.data(Qt::EditRole).toString(), mSource->names[0]); // an edit changes only what the user types
}

void TableViewTest::actionsOfTheProgramDiscardTheEdit_data()
{
    QTest::addColumn<std::function<void(TableView *)>>("act");
    const auto add = [](const char *name, std::function<void(TableView *)> act) { QTest::newRow(name) << act; };
    add("fetching anew", [](TableView *table) { table->reloadData(); });
    add("selecting another row", [](TableView *table) { table->selectRow(0); });
    add("deselecting", [](TableView *table) { table->deselectAll(); });
    add("disabling", [](TableView *table) { table->setEnabled(false); });
    add("disabling the window", [](TableView *table) { table->window()->setEnabled(false); });
    add("hiding", [](TableView *table) { table->hide(); });
    add("closing the window", [](TableView *table) { table->window()->close(); });
    add("another current cell", [](TableView *table) { table->setCurrentIndex(table->model()->index(2, 0)); });
}

void TableViewTest::actionsOfTheProgramDiscardTheEdit()
{
    QFETCH(std::function<void(TableView *)>, act);
    mTable->selectRow(1);
    mTable->editColumnRow(nameColumn, 1, true);
    QTest::keyClicks(editor(), u"New"_s);
    act(mTable);
    QCOMPARE(mTable->editedRow(), -1);
    QTRY_VERIFY(!editor());
    QVERIFY(mSource->edits.isEmpty());
}

void TableViewTest::clickOutsideFocusableControlsWritesTheText_data()
{
    QTest::addColumn<bool>("isEnabled");
    QTest::newRow("a label") << true;
    QTest::newRow("something disabled") << false;
}

void TableViewTest::clickOutsideFocusableControlsWritesTheText()
{
    QFETCH(bool, isEnabled);
    auto *place = new QWidget;
    place->setFixedHeight(40);
    place->setEnabled(isEnabled);
    mWindow->layout()->addWidget(place);
    QTRY_VERIFY(place->isVisible());
    mTable->selectRow(1);
    mTable->editColumnRow(nameColumn, 1, true);
    QTest::keyClicks(editor(), u"New"_s);
    QTest::mouseClick(editor(), Qt::LeftButton);
    QCOMPARE(mTable->editedRow(), 1);
    // Through the window, like the display: a disabled widget receives no event itself.
    QTest::mouseClick(mWindow->windowHandle(), Qt::LeftButton, {}, place->geometry().center());
    QCOMPARE(mTable->editedRow(), -1);
    QCOMPARE(mSource->edits.size(), 1);
    QCOMPARE(mSource->edits.first().value, QVariant(u"New"_s));
}

void TableViewTest::otherWindowInFrontDiscardsTheEdit()
{
    mTable->selectRow(1);
    mTable->editColumnRow(nameColumn, 1, true);
    QTest::keyClicks(editor(), u"New"_s);
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QTRY_COMPARE(mTable->editedRow(), -1);
    QTRY_VERIFY(!editor());
    QVERIFY(mSource->edits.isEmpty());
    // The window is inactive now.
    mTable->editColumnRow(nameColumn, 1, true);
    QCOMPARE(mTable->editedRow(), -1);
    QVERIFY(!editor());
}

void TableViewTest::invisibleTableOpensNoEditor_data()
{
    QTest::addColumn<bool>("isVisible");
    QTest::addColumn<bool>("isEnabled");
    QTest::newRow("hidden") << false << true;
    QTest::newRow("disabled") << true << false;
}

void TableViewTest::invisibleTableOpensNoEditor()
{
    QFETCH(bool, isVisible);
    QFETCH(bool, isEnabled);
    mTable->selectRow(1);
    mTable->setVisible(isVisible);
    mTable->setEnabled(isEnabled);
    mTable->editColumnRow(nameColumn, 1, true);
    QCOMPARE(mTable->editedRow(), -1);
    QVERIFY(mTable->findChildren<QLineEdit *>(u"cellEditor"_s).isEmpty());
    mTable->show();
    mTable->setEnabled(true);
    mTable->editColumnRow(nameColumn, 1, true);
    QCOMPARE(mTable->editedRow(), 1);
}

void TableViewTest::menuKeepsTheEdit()
{
    mTable->selectRow(1);
    mTable->editColumnRow(nameColumn, 1, true);
    QTest::keyClicks(editor(), u"New"_s);
    QMenu menu(mWindow.get());
    menu.addAction(u"Command"_s);
    menu.popup(mWindow->mapToGlobal(QPoint(10, 10)));
    QTRY_VERIFY(menu.isVisible());
    QTest::mouseClick(&menu, Qt::LeftButton, {}, QPoint(1, 1));
    menu.close();
    QCOMPARE(mTable->editedRow(), 1);
    mTable->endEditing(); // the first action of the command
    QCOMPARE(mSource->edits.size(), 1);
}

void TableViewTest::furtherTypingChangesNothing_data()
{
    QTest::addColumn<int>("end");
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Escape") << int(Qt::Key_Escape);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
}

void TableViewTest::furtherTypingChangesNothing()
{
    QFETCH(int, end);
    QShortcut deletion(Qt::Key_Delete, mTable);
    deletion.setContext(Qt::WidgetShortcut);
    QShortcut renaming(Qt::Key(end), mTable);
    renaming.setContext(Qt::WidgetShortcut);
    const QSignalSpy deletions(&deletion, &QShortcut::activated);
    const QSignalSpy renamings(&renaming, &QShortcut::activated);
    mTable->selectRow(1);
    mTable->editColumnRow(nameColumn, 1, true);
    QTest::keyClicks(editor(), u"Half"_s);
    mTable->reloadData();
    QVERIFY(mTable->hasFocus());
    QTest::keyClicks(mTable, u"Gamma"_s); // a row that begins with the text
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Home, Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_Space})
        QTest::keyClick(mTable, key);
    QTest::keyClick(mTable, Qt::Key(end));
    QCOMPARE(mTable->selectedRow(), 1);
    QCOMPARE(mTable->editedRow(), -1);
    QVERIFY(mSource->edits.isEmpty());
    QCOMPARE(deletions.size(), 0);
    QCOMPARE(renamings.size(), 0);
    // From now on the table receives the keys again.
    QTest::keyClick(mTable, Qt::Key(end));
    QTest::keyClick(mTable, Qt::Key_Delete);
    QTest::keyClicks(mTable, u"Ga"_s);
    QCOMPARE(renamings.size(), 1);
    QCOMPARE(deletions.size(), 1);
    QCOMPARE(mTable->selectedRow(), 2);
}

void TableViewTest::movingEndsFurtherTyping_data()
{
    QTest::addColumn<std::function<void(TableView *)>>("move");
    const auto add = [](const char *name, std::function<void(TableView *)> move) { QTest::newRow(name) << move; };
    add("a command's key", [](TableView *table) {
        table->selectRow(0);
        QTest::keyClick(table, Qt::Key_X, Qt::AltModifier);
    });
    add("up", [](TableView *table) { QTest::keyClick(table, Qt::Key_Up); });
    add("click", [](TableView *table) {
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                          table->visualRect(table->model()->index(0, nameColumn)).center());
    });
    add("Tab and back", [](TableView *table) {
        table->selectRow(0);
        QTest::keyClick(table, Qt::Key_Tab);
        table->setFocus();
    });
    add("F2", [](TableView *table) {
        QTest::keyClick(table, Qt::Key_F2);
        QVERIFY(table->editedRow() >= 0);
        QTest::keyClick(table->findChild<QLineEdit *>(u"cellEditor"_s), Qt::Key_Escape);
        table->selectRow(0);
        table->setFocus();
    });
}

void TableViewTest::movingEndsFurtherTyping()
{
    QFETCH(std::function<void(TableView *)>, move);
    mTable->selectRow(1);
    mTable->editColumnRow(nameColumn, 1, true);
    mTable->reloadData();
    QTRY_VERIFY(mTable->findChildren<QLineEdit *>(u"cellEditor"_s).isEmpty());
    move(mTable);
    QTRY_COMPARE(mTable->selectedRow(), 0);
    QTest::keyClicks(mTable, u"Ga"_s);
    QCOMPARE(mTable->selectedRow(), 2);
}

void TableViewTest::editorOpensAgainAfterEachEnd()
{
    mTable->selectRow(1);
    for (const auto end : {&TableView::abortEditing, &TableView::endEditing, &TableView::reloadData}) {
        mTable->editColumnRow(nameColumn, 1, true);
        QCOMPARE(mTable->editedRow(), 1);
        (mTable->*end)();
        QCOMPARE(mTable->editedRow(), -1);
    }
    mTable->editColumnRow(nameColumn, 1, true);
    QTest::keyClicks(editor(), u"New"_s);
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_COMPARE(mSource->edits.size(), 1);
}

void TableViewTest::reloadingEndsAnEditWithoutARow()
{
    mTable->selectRow(2);
    mTable->editColumnRow(nameColumn, 2, true);
    QTest::keyClicks(editor(), u"New"_s);
    mSource->names.removeLast();
    mTable->reloadData();
    QCOMPARE(mTable->editedRow(), -1);
    QTRY_VERIFY(!editor());
    QVERIFY(mSource->edits.isEmpty());
    mTable->selectRow(0);
    mTable->editColumnRow(nameColumn, 0, true);
    QCOMPARE(mTable->editedRow(), 0);
}

void TableViewTest::editIsWrittenOnceWhenWritingRefreshes()
{
    mTable->selectRow(1);
    mSource->onEdit = [this] {
        mTable->deselectAll();
        mTable->reloadData();
        mTable->selectRow(0);
        mTable->endEditing();
    };
    mTable->selectRow(1);
    mTable->editColumnRow(nameColumn, 1, true);
    QTest::keyClicks(editor(), u"New"_s);
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_VERIFY(!editor());
    QCOMPARE(mSource->edits.size(), 1);
    QCOMPARE(mTable->selectedRow(), 0);
}

void TableViewTest::clickingTheCheckBoxWritesTheOtherState_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    QTest::newRow("off to on") << 0 << 1;
    QTest::newRow("on to off") << 1 << 0;
}

void TableViewTest::clickingTheCheckBoxWritesTheOtherState()
{
    QFETCH(int, before);
    QFETCH(int, after);
    mSource->switches[2] = before;
    mTable->reloadData();
    QTest::mouseClick(mTable->viewport(), Qt::LeftButton, {}, cellCentre(2, switchColumn));
    QCOMPARE(mSource->edits.size(), 1);
    QCOMPARE(mSource->edits.first().value, QVariant(after));
    QCOMPARE(mSource->edits.first().column, u"switch"_s);
    QCOMPARE(mSource->edits.first().row, 2);
}

void TableViewTest::clickingBesideTheCheckBoxWritesNothing()
{
    mTable->setColumnWidth(switchColumn, 120);
    const QRect cell = mTable->visualRect(mTable->model()->index(2, switchColumn));
    QTest::mouseClick(mTable->viewport(), Qt::LeftButton, {}, cell.topLeft() + QPoint(2, 2));
    QVERIFY(mSource->edits.isEmpty());
    QCOMPARE(mTable->selectedRow(), 2);
}

void TableViewTest::spaceSwitchesTheCheckBox()
{
    mTable->setCurrentIndex(mTable->model()->index(0, switchColumn));
    QTest::keyClick(mTable, Qt::Key_Space);
    QCOMPARE(mSource->edits.size(), 1);
    QCOMPARE(mSource->edits.first().value, QVariant(1));
}

void TableViewTest::reportsCellsAndHeadingsToAssistiveTools()
{
    mSource->switches[1] = 1;
    mTable->reloadData();
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(mTable);
    QVERIFY(interface && interface->tableInterface());
    QAccessibleTableInterface *table = interface->tableInterface();
    QCOMPARE(table->rowCount(), 3);
    QCOMPARE(table->columnDescription(nameColumn), u"Name"_s);
    QCOMPARE(table->cellAt(1, nameColumn)->text(QAccessible::Name), u"Beta"_s);
    QCOMPARE(table->cellAt(1, switchColumn)->text(QAccessible::Name), u"Switch"_s);
    QVERIFY(table->cellAt(1, switchColumn)->state().checked);
    QVERIFY(!table->cellAt(0, switchColumn)->state().checked);
}

void TableViewTest::showsAPictureBeforeTheText()
{
    const auto picture = [this](int row, int column) {
        return mTable->model()->index(row, column).data(Qt::DecorationRole);
    };
    QVERIFY(!picture(1, nameColumn).isValid());
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::red);
    mSource->image = QIcon(pixmap);
    QCOMPARE(picture(1, nameColumn).value<QIcon>().cacheKey(), mSource->image.cacheKey());
    QVERIFY(!picture(0, nameColumn).isValid());
    QVERIFY(!picture(1, fixedColumn).isValid());
}

void TableViewTest::pictureOfASelectedRowStaysBrightWhenDisabled()
{
    const auto filled = [](Qt::GlobalColor color) {
        QPixmap pixmap(16, 16);
        pixmap.fill(color);
        return pixmap;
    };
    mSource->image.addPixmap(filled(Qt::red), QIcon::Normal);
    mSource->image.addPixmap(filled(Qt::green), QIcon::Selected);
    mSource->image.addPixmap(filled(Qt::blue), QIcon::Disabled);
    const auto colorOfPicture = [this] {
        const QRect cell = mTable->visualRect(mTable->model()->index(1, nameColumn));
        return mTable->viewport()->grab(cell).toImage().pixelColor(10, cell.height() / 2);
    };
    mTable->setEnabled(false);
    QCOMPARE(colorOfPicture(), QColor(Qt::blue));
    mTable->selectRow(1);
    QCOMPARE(colorOfPicture(), QColor(Qt::green));
}

void TableViewTest::emptyTableShowsItsPlaceholder()
{
    const auto dots = [this] {
        const QImage image = mTable->viewport()->grab().toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                count += image.pixel(x, y) != image.pixel(0, 0);
        }
        return count;
    };
    mSource->names.clear();
    mTable->reloadData();
    QCOMPARE(dots(), 0);
    mTable->setPlaceholderText(u"Nothing here"_s);
    QVERIFY(dots() > 20);
    mSource->names = {u"Alpha"_s};
    mTable->reloadData();
    const int withPlaceholder = dots();
    mTable->setPlaceholderText({});
    QCOMPARE(withPlaceholder, dots()); // not drawn over rows
}

void TableViewTest::homeAndEndSelectTheFirstAndTheLastRow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("selected");
    QTest::newRow("Home") << 1 << int(Qt::Key_Home) << 0;
    QTest::newRow("End") << 1 << int(Qt::Key_End) << 2;
    QTest::newRow("Home without a selection") << -1 << int(Qt::Key_Home) << 0;
    QTest::newRow("End without a selection") << -1 << int(Qt::Key_End) << 2;
}

void TableViewTest::homeAndEndSelectTheFirstAndTheLastRow()
{
    QFETCH(int, row);
    QFETCH(int, key);
    if (row >= 0)
        mTable->selectionModel()->setCurrentIndex(mTable->model()->index(row, switchColumn),
                                                  QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    QTest::keyClick(mTable, Qt::Key(key));
    QTEST(mTable->selectedRow(), "selected");
    QCOMPARE(mTable->currentIndex().row(), mTable->selectedRow());
    if (row >= 0)
        QCOMPARE(mTable->currentIndex().column(), switchColumn); // Home and End keep the column
}

void TableViewTest::selectsSeveralRowsIfAllowed()
{
    const auto clickRow = [this](int row, Qt::KeyboardModifiers modifiers) {
        QTest::mouseClick(mTable->viewport(), Qt::LeftButton, modifiers, cellCentre(row, nameColumn));
    };
    clickRow(0, {});
    clickRow(2, Qt::ControlModifier);
    QCOMPARE(mTable->selectedRows(), QList<int>{2});
    mTable->setAllowsSeveralRows(true);
    clickRow(0, Qt::ControlModifier);
    QCOMPARE(mTable->selectedRows(), (QList<int>{0, 2}));
    QCOMPARE(mTable->selectedRow(), 0); // the one clicked last
    clickRow(0, Qt::ControlModifier);
    QCOMPARE(mTable->selectedRows(), QList<int>{2});
    QCOMPARE(mTable->selectedRow(), 2);
    clickRow(2, {});
    clickRow(0, Qt::ShiftModifier);
    QCOMPARE(mTable->selectedRows(), (QList<int>{0, 1, 2}));
    clickRow(1, {});
    QCOMPARE(mTable->selectedRows(), QList<int>{1});
    QTest::keyClick(mTable, Qt::Key_Down, Qt::ShiftModifier);
    QCOMPARE(mTable->selectedRows(), (QList<int>{1, 2}));
    // A call selects one row alone, also one of several.
    mTable->selectRow(2);
    QCOMPARE(mTable->selectedRows(), QList<int>{2});
    QCOMPARE(mSource->selections.last(), 2);
}

void TableViewTest::selectsSeveralRowsByCall()
{
    mTable->setAllowsSeveralRows(true);
    mTable->selectRows({2, 0, 7, -1});
    QCOMPARE(mTable->selectedRows(), (QList<int>{0, 2}));
    QCOMPARE(mTable->selectedRow(), 0);
    mTable->reloadData();
    QCOMPARE(mTable->selectedRows(), (QList<int>{0, 2}));
    mSource->names.removeLast();
    mTable->reloadData();
    QCOMPARE(mTable->selectedRows(), QList<int>{0});
    mTable->selectRows({});
    QCOMPARE(mTable->selectedRow(), -1);
}

QStringList TableViewTest::shownNames() const
{
    QStringList names;
    for (int row = 0; row < mTable->model()->rowCount(); ++row) {
        if (!mTable->isRowHidden(row))
            names += mTable->model()->index(row, nameColumn).data().toString();
    }
    return names;
}

void TableViewTest::showsTheRowsThatFit()
{
    mTable->showOnly([this](int row) { return mSource->names.at(row).contains(u'm'); });
    QCOMPARE(shownNames(), QStringList{u"Gamma"_s});
    mSource->names = {u"Emma"_s, u"Beta"_s, u"Gamma"_s, u"Emil"_s};
    mTable->reloadData();
    QCOMPARE(shownNames(), (QStringList{u"Emma"_s, u"Gamma"_s, u"Emil"_s}));
    // The rows keep their numbers.
    QCOMPARE(mTable->numberOfRows(), 4);
    QTest::mouseClick(mTable->viewport(), Qt::LeftButton, {}, cellCentre(2, nameColumn));
    QCOMPARE(mSource->selections, QList<int>{2});
    mTable->showOnly({});
    QCOMPARE(shownNames(), mSource->names);
}

void TableViewTest::selectedRowIsAlwaysShown()
{
    mTable->selectRow(1);
    mTable->showOnly([](int row) { return row == 0; });
    QCOMPARE(shownNames(), (QStringList{u"Alpha"_s, u"Beta"_s}));
    QCOMPARE(mTable->selectedRow(), 1);
    mTable->selectRow(2);
    QVERIFY(!mTable->isRowHidden(2));
    QCOMPARE(mTable->selectedRow(), 2);
    mTable->deselectAll();
    mTable->reloadData();
    QCOMPARE(shownNames(), QStringList{u"Alpha"_s});
}

void TableViewTest::rowsDisappearWithAReloadAlone()
{
    mTable->selectRow(1);
    mTable->showOnly([](int row) { return row == 2; });
    // The row above the clicked one no longer fits and is no longer selected.
    const QPoint gamma = cellCentre(2, nameColumn);
    QTest::mouseClick(mTable->viewport(), Qt::LeftButton, {}, gamma);
    QCOMPARE(mTable->selectedRow(), 2);
    QCOMPARE(cellCentre(2, nameColumn), gamma);
    mTable->reloadData();
    QCOMPARE(shownNames(), QStringList{u"Gamma"_s});
}

void TableViewTest::keysReachShownRowsAlone()
{
    mSource->names = {u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s};
    mTable->reloadData();
    mTable->showOnly([](int row) { return row == 1 || row == 3; });
    QTest::keyClick(mTable, Qt::Key_Home);
    QCOMPARE(mTable->selectedRow(), 1);
    QTest::keyClick(mTable, Qt::Key_Down);
    QCOMPARE(mTable->selectedRow(), 3);
    QTest::keyClick(mTable, Qt::Key_Down);
    QCOMPARE(mTable->selectedRow(), 3);
    QTest::keyClick(mTable, Qt::Key_Up);
    QCOMPARE(mTable->selectedRow(), 1);
    QTest::keyClick(mTable, Qt::Key_End);
    QCOMPARE(mTable->selectedRow(), 3);
}

void TableViewTest::placeholderIsShownWithoutAShownRow()
{
    mTable->setPlaceholderText(u"Nothing fits"_s);
    mTable->showOnly([](int row) { return row == 0; });
    QVERIFY(mTable->showsRows());
    QCOMPARE(mTable->accessibleDescription(), QString());
    mTable->showOnly([](int) { return false; });
    QVERIFY(!mTable->showsRows());
    QCOMPARE(mTable->accessibleDescription(), u"Nothing fits"_s);
    mTable->showOnly({});
    QVERIFY(mTable->showsRows());
    QCOMPARE(mTable->accessibleDescription(), QString());
}

void TableViewTest::focusAloneSelectsNoRow_data()
{
    QTest::addColumn<int>("row");
    QTest::newRow("never selected") << -1;
    QTest::newRow("deselected by call") << 0;
}

void TableViewTest::focusAloneSelectsNoRow()
{
    QFETCH(int, row);
    mSource->names = {u"Same"_s, u"Other"_s, u"Same"_s};
    mTable->reloadData();
    mTable->selectRow(row);
    mOther->setFocus();
    QTest::keyClick(mOther, Qt::Key_Backtab);
    mTable->deselectAll();
    QVERIFY(mTable->hasFocus());
    QCOMPARE(mTable->selectedRow(), -1);
    // Rows 0 and 2 have the same text and background. The focus of a cell would tint one of them.
    const QImage picture = mTable->viewport()->grab().toImage();
    const auto inner = [&](int at) {
        return picture.copy(mTable->visualRect(mTable->model()->index(at, nameColumn)).adjusted(3, 3, -3, -3));
    };
    QCOMPARE(inner(0), inner(2));
    // The focus is visible around the table.
    mOther->setFocus();
    QVERIFY(mTable->viewport()->grab().toImage() != picture);
}

void TableViewTest::keysStartAtTheFirstRowWithoutASelection()
{
    mTable->selectRow(1);
    mTable->deselectAll();
    QTest::keyClick(mTable, Qt::Key_Down);
    QCOMPARE(mTable->selectedRow(), 0);
    mTable->deselectAll();
    mSource->edits.clear();
    QTest::keyClick(mTable, Qt::Key_F2);
    QTest::keyClick(mTable, Qt::Key_Space);
    QVERIFY(!editor());
    QVERIFY(mSource->edits.isEmpty());
}

QTEST_MAIN(TableViewTest)
#include "tableviewtest.moc"
