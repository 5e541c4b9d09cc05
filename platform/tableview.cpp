// SPDX-License-Identifier: MIT
#include "platform/tableview.h"

#include "platform/rowdrag.h"
#include "platform/rowsaccessibility.h"
#include "platform/tablecelldelegate.h"
#include "platform/tableviewmodel.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QShortcut>

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr Qt::KeyboardModifiers commandModifiers = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
constexpr std::chrono::milliseconds pauseInTyping(2000);

bool isKeyEquivalent(const QKeyEvent *event)
{
    // Tab with modifiers moves the focus and does not count as a command.
    return (event->modifiers() & (Qt::ControlModifier | Qt::MetaModifier)) && event->key() != Qt::Key_Tab
           && event->key() != Qt::Key_Backtab;
}

} // namespace

TableView::TableView(QWidget *parent) : QTableView(parent), mModel(new TableViewModel(this))
{
    RowsAccessibility::install(this);
    setModel(mModel);
    setItemDelegate(new TableCellDelegate(this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(DoubleClicked | EditKeyPressed);
    setTabKeyNavigation(false);
    setShowGrid(false);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setTextElideMode(Qt::ElideMiddle);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 10);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionsClickable(false);
}

void TableView::addColumn(const TableColumn &column)
{
    mModel->addColumn(column);
    const int position = mModel->columnCount() - 1;
    horizontalHeader()->setSectionResizeMode(position,
                                             column.stretches ? QHeaderView::Stretch : QHeaderView::ResizeToContents);
}

void TableView::setDataSource(TableViewDataSource *source)
{
    mSource = source;
    mModel->setSource(source);
    reloadData();
}

void TableView::setPlaceholderText(const QString &text)
{
    if (text == mPlaceholderText)
        return;
    mPlaceholderText = text;
    describePlaceholder();
    viewport()->update();
}

/// Makes the placeholder text readable for assistive tools while it can be seen.
void TableView::describePlaceholder()
{
    setAccessibleDescription(showsRows() ? QString() : mPlaceholderText);
}

void TableView::showOnly(std::function<bool(int row)> fits)
{
    mFits = std::move(fits);
    noteNumberOfRowsChanged();
    hideUnfitRows();
}

bool TableView::showsRows() const
{
    for (int row = 0; row < mModel->rowCount(); ++row) {
        if (!isRowHidden(row))
            return true;
    }
    return false;
}

void TableView::hideUnfitRows()
{
    const int selected = selectedRow();
    for (int row = 0; row < mModel->rowCount(); ++row) {
        const bool isHidden = mFits && row != selected && !mFits(row);
        if (isHidden != isRowHidden(row))
            setRowHidden(row, isHidden);
    }
    describePlaceholder();
    viewport()->update();
}

int TableView::numberOfRows()
{
    noteNumberOfRowsChanged();
    return mModel->rowCount();
}

void TableView::setAllowsSeveralRows(bool allows)
{
    setSelectionMode(allows ? ExtendedSelection : SingleSelection);
}

void TableView::setAllowsMovingRows(bool allows)
{
    delete std::exchange(mDrag, nullptr);
    if (allows)
        mDrag = new RowDrag(this,
                            [this](int place) { return mSource ? mSource->tableViewPlaceOfDrop(this, place) : place; });
}

void TableView::cancelDrag()
{
    if (mDrag)
        mDrag->cancel();
}

QList<int> TableView::selectedRows() const
{
    QList<int> rows;
    const QModelIndexList indexes = selectionModel()->selectedRows();
    for (const QModelIndex &index : indexes)
        rows += index.row();
    std::ranges::sort(rows);
    return rows;
}

int TableView::selectedRow() const
{
    const QList<int> rows = selectedRows();
    const int current = currentIndex().row();
    return rows.isEmpty() || rows.contains(current) ? (rows.isEmpty() ? -1 : current) : rows.first();
}

int TableView::editedRow() const
{
    return mEditor && mEditedIndex.isValid() ? mEditedIndex.row() : -1;
}

void TableView::noteNumberOfRowsChanged()
{
    const int count = mSource ? mSource->numberOfRowsInTableView(this) : 0;
    if (count == mModel->rowCount())
        return;
    const QScopedValueRollback quiet(mNotifies, false);
    const int selected = selectedRow();
    cancelDrag();
    abortEditing();
    mModel->setRowCount(count);
    describePlaceholder();
    // The base class moves the selection to a neighbour of a removed row; here the selection disappears with its row.
    if (selected >= count)
        clearSelection();
}

void TableView::reloadData()
{
    cancelDrag();
    abortEditing();
    noteNumberOfRowsChanged();
    mModel->refetchAll();
    if (mFits)
        hideUnfitRows();
}

void TableView::selectRow(int row, bool)
{
    if (row < 0 || row >= numberOfRows() || selectedRows() == QList{row})
        return;
    cancelDrag();
    abortEditing();
    const int column = qMax(0, currentIndex().column());
    selectionModel()->setCurrentIndex(mModel->index(row, column),
                                      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void TableView::selectRows(const QList<int> &rows)
{
    cancelDrag();
    abortEditing();
    const int count = numberOfRows();
    QList<int> existing = rows;
    existing.removeIf([count](int row) { return row < 0 || row >= count; });
    if (existing.isEmpty())
        return deselectAll();
    const int current = existing.last();
    std::ranges::sort(existing);
    // One range for neighbours: the model asks every range for every row.
    QItemSelection selection;
    for (qsizetype first = 0, next = 1; next <= existing.size(); ++next) {
        if (next < existing.size() && existing.at(next) <= existing.at(next - 1) + 1)
            continue;
        selection.append(
            QItemSelectionRange(mModel->index(existing.at(first), 0), mModel->index(existing.at(next - 1), 0)));
        first = next;
    }
    selectionModel()->setCurrentIndex(mModel->index(current, qMax(0, currentIndex().column())),
                                      QItemSelectionModel::NoUpdate);
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void TableView::deselectAll()
{
    cancelDrag();
    abortEditing();
    if (selectedRow() >= 0)
        clearSelection();
}

bool TableView::mayEdit(int row) const
{
    return row == selectedRow() && isEnabled() && isVisible() && isActiveWindow();
}

void TableView::editColumnRow(int column, int row, bool selectText)
{
    if (row < 0 || row >= numberOfRows() || column < 0 || column >= mModel->columnCount())
        return;
    const QModelIndex cell = mModel->index(row, column);
    if (!mayEdit(row) || mEditedIndex != cell)
        abortEditing();
    if (!mEditor) {
        scrollTo(cell);
        // Checks mayEdit(), like every other way to open an editor.
        if (!edit(cell, AllEditTriggers, nullptr) || !mEditor)
            return;
    }
    mEditor->setFocus();
    if (selectText)
        mEditor->selectAll();
    else
        mEditor->deselect();
}

void TableView::endEditing()
{
    if (!mEditor)
        return;
    const QScopedValueRollback byCall(mIsEndingEditByCall, true);
    const QPointer<QLineEdit> editor = mEditor;
    commitData(editor);
    if (editor)
        closeEditor(editor, QAbstractItemDelegate::NoHint);
}

void TableView::abortEditing()
{
    const QPointer<QLineEdit> editor = mEditor;
    setEditor(nullptr);
    if (!editor)
        return;
    const bool wasTypedInto = editor->hasFocus();
    closeEditor(editor, QAbstractItemDelegate::RevertModelCache);
    if (wasTypedInto && hasFocus())
        mTypedOn.setRemainingTime(pauseInTyping);
}

void TableView::scrollRowToVisible(int row)
{
    if (row >= 0 && row < numberOfRows())
        scrollTo(mModel->index(row, 0));
}

void TableView::closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint)
{
    // Tab ends the edit. The base class would continue with the next cell and thus select another row.
    const bool movesOn = hint == QAbstractItemDelegate::EditNextItem || hint == QAbstractItemDelegate::EditPreviousItem;
    QTableView::closeEditor(editor, movesOn ? QAbstractItemDelegate::NoHint : hint);
}

bool TableView::eventFilter(QObject *watched, QEvent *event)
{
    // Installed while a cell is edited, because a click does not move the focus everywhere in a window.
    if (mEditor && event->type() == QEvent::MouseButtonPress) {
        const auto *clicked = qobject_cast<QWidget *>(watched);
        if (clicked && clicked->window() == window() && clicked != mEditor && !mEditor->isAncestorOf(clicked))
            endEditing();
    }
    return QTableView::eventFilter(watched, event);
}

void TableView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::EnabledChange && !isEnabled()) {
        cancelDrag();
        abortEditing();
    }
    QTableView::changeEvent(event);
}

void TableView::hideEvent(QHideEvent *event)
{
    cancelDrag();
    abortEditing();
    QTableView::hideEvent(event);
}

void TableView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    // The base class would write the edit into the row that it leaves. Actions of the user have already written it.
    abortEditing();
    QAbstractItemView::currentChanged(current, previous); // QTableView would only report the cell, by another count
    RowsAccessibility::reportCurrent(this);
}

void TableView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QAbstractItemView::selectionChanged(selected, deselected); // as in currentChanged()
    RowsAccessibility::reportSelection(this, selected, deselected);
    if (selected.isEmpty() != deselected.isEmpty())
        viewport()->update(); // the frame of paintEvent() comes or goes
    const int row = selectedRow();
    if (row >= 0 && isRowHidden(row))
        showRow(row);
    if (!mNotifies || !mSource)
        return;
    mSource->tableViewSelectionDidChange(this);
    mIsSelectionTakenBack = selectedRow() != row;
}

void TableView::setSelection(const QRect &rect, QItemSelectionModel::SelectionFlags command)
{
    // The base class selects twice for one key. The second time must not repeat a selection that was reverted.
    if (!mIsSelectionTakenBack)
        QTableView::setSelection(rect, command);
}

QItemSelectionModel::SelectionFlags TableView::selectionCommand(const QModelIndex &index, const QEvent *event) const
{
    const QItemSelectionModel::SelectionFlags command = QTableView::selectionCommand(index, event);
    if (mAllowsEmptySelection || !event)
        return command;
    if (!index.isValid() || command.testFlag(QItemSelectionModel::Deselect)
        || command.testFlag(QItemSelectionModel::Toggle))
        return QItemSelectionModel::NoUpdate;
    return command;
}

bool TableView::event(QEvent *event)
{
    if (event->type() == QEvent::FocusOut) {
        mTypedOn.setRemainingTime(0);
        cancelDrag();
    }
    if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (mDrag && mDrag->isDragging() && key->key() == Qt::Key_Escape) {
            if (event->type() == QEvent::KeyPress)
                mDrag->cancel();
            event->accept();
            return true;
        }
        if (!mTypedOn.hasExpired() && takesTypedOn(key)) {
            event->accept();
            return true;
        }
        if (isKeyEquivalent(key) && !isWindowCommand(key) && performKeyEquivalent(key)) {
            event->accept();
            return true;
        }
    }
    return QTableView::event(event);
}

/// Whether the key belongs to the text of a discarded edit. Any other handling of it would select a row, open an editor
/// or delete.
bool TableView::takesTypedOn(const QKeyEvent *key)
{
    const bool isEnd = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter || key->key() == Qt::Key_Escape;
    constexpr std::array withoutText{Qt::Key_Shift, Qt::Key_Left, Qt::Key_Right,
                                     Qt::Key_Home,  Qt::Key_End,  Qt::Key_Delete};
    const bool isOfText = !key->text().isEmpty() || std::ranges::find(withoutText, key->key()) != withoutText.end();
    if ((key->modifiers() & commandModifiers) || key->key() == Qt::Key_Tab || !(isEnd || isOfText)) {
        mTypedOn.setRemainingTime(0);
        return false;
    }
    const bool isEnded = isEnd && key->type() == QEvent::KeyPress;
    mTypedOn.setRemainingTime(isEnded ? 0ms : pauseInTyping);
    return true;
}

/// Whether a shortcut of the window itself has this key, such as that for quitting.
bool TableView::isWindowCommand(const QKeyEvent *key) const
{
    const auto shortcuts = window()->findChildren<QShortcut *>(Qt::FindDirectChildrenOnly);
    return std::ranges::any_of(shortcuts, [key](const QShortcut *shortcut) {
        return shortcut->isEnabled() && shortcut->context() == Qt::WindowShortcut
               && shortcut->key() == QKeySequence(key->keyCombination());
    });
}

bool TableView::performKeyEquivalent(const QKeyEvent *)
{
    return false;
}

bool TableView::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress && !isEnabled()) {
        // A disabled widget gets no mouse events, but its menu still opens to show its items.
        const auto *mouse = static_cast<QMouseEvent *>(event);
        if (mouse->button() == Qt::RightButton) {
            rightMouseDown(mouse->globalPosition().toPoint());
            return true;
        }
    }
    return QTableView::viewportEvent(event);
}

void TableView::mousePressEvent(QMouseEvent *event)
{
    mIsSelectionTakenBack = false;
    mTypedOn.setRemainingTime(0);
    if (event->button() == Qt::RightButton) {
        rightMouseDown(event->globalPosition().toPoint());
        return;
    }
    QTableView::mousePressEvent(event);
    const QPoint position = event->position().toPoint();
    const bool selectsMore = event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier);
    if (mDrag && event->button() == Qt::LeftButton && !selectsMore && indexAt(position).isValid())
        mDrag->press(position);
}

void TableView::mouseMoveEvent(QMouseEvent *event)
{
    if (!mDrag || !mDrag->move(event))
        QTableView::mouseMoveEvent(event);
}

void TableView::mouseReleaseEvent(QMouseEvent *event)
{
    const RowDrag::Release release = mDrag ? mDrag->release(event) : RowDrag::Release();
    if (release.isOfDrag) {
        setState(NoState);
        if (release.place && mSource)
            mSource->tableViewMoveSelectedRows(this, *release.place);
        return;
    }
    QTableView::mouseReleaseEvent(event);
    makeSelectedRowCurrent();
}

void TableView::focusInEvent(QFocusEvent *event)
{
    QTableView::focusInEvent(event); // makes the first cell the current one
    leaveUnselectedRow();
}

void TableView::leaveUnselectedRow()
{
    if (selectedRow() < 0)
        selectionModel()->clearCurrentIndex();
}

QModelIndex TableView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    // The base class moves to the first and the last cell of the row.
    if ((action != MoveHome && action != MoveEnd) || !showsRows())
        return QTableView::moveCursor(action, modifiers);
    const int step = action == MoveHome ? 1 : -1;
    int row = action == MoveHome ? 0 : mModel->rowCount() - 1;
    while (isRowHidden(row))
        row += step;
    return mModel->index(row, qMax(0, currentIndex().column()));
}

void TableView::keyPressEvent(QKeyEvent *event)
{
    mIsSelectionTakenBack = false;
    leaveUnselectedRow();
    QTableView::keyPressEvent(event);
    makeSelectedRowCurrent();
}

void TableView::makeSelectedRowCurrent()
{
    const int row = selectedRow();
    if (row >= 0 && currentIndex().isValid() && currentIndex().row() != row)
        selectionModel()->setCurrentIndex(mModel->index(row, currentIndex().column()), QItemSelectionModel::NoUpdate);
}

void TableView::contextMenuEvent(QContextMenuEvent *event)
{
    if (event->reason() == QContextMenuEvent::Keyboard)
        rightMouseDown(viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft()));
}

void TableView::rightMouseDown(const QPoint &) {}

void TableView::paintEvent(QPaintEvent *event)
{
    QTableView::paintEvent(event);
    // Like the styles, shows the focus only to users of the keyboard.
    if (hasFocus() && selectedRow() < 0 && window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
        constexpr int width = 2;
        QPainter painter(viewport());
        painter.setPen(QPen(palette().color(QPalette::Highlight), width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        painter.drawRect(viewport()->rect().adjusted(width / 2, width / 2, -width / 2, -width / 2));
    }
    if (mDrag && mDrag->isDragging()) {
        QPainter painter(viewport());
        mDrag->paint(painter);
    }
    if (mPlaceholderText.isEmpty() || showsRows())
        return;
    constexpr int margin = 16;
    QPainter painter(viewport());
    QColor color = palette().color(QPalette::Text); // not every palette has a colour for placeholders
    color.setAlphaF(0.6f);
    painter.setPen(color);
    painter.drawText(viewport()->rect().adjusted(margin, margin, -margin, -margin), Qt::AlignCenter | Qt::TextWordWrap,
                     mPlaceholderText);
}

void TableView::editingBegan(QLineEdit *editor, const QModelIndex &index)
{
    mTypedOn.setRemainingTime(0);
    mEditedIndex = index;
    setEditor(editor);
}

void TableView::setEditor(QLineEdit *editor)
{
    if (mEditor == editor)
        return;
    mEditor = editor;
    if (editor)
        QCoreApplication::instance()->installEventFilter(this);
    else
        QCoreApplication::instance()->removeEventFilter(this);
    emit editedRowChanged();
}

void TableView::editorDestroyed(const QWidget *editor)
{
    if (mEditor == editor)
        setEditor(nullptr);
}

bool TableView::takeEdit(const QLineEdit *editor)
{
    if (editor != mEditor)
        return false;
    // If the program has selected another row in the meantime, the text would reach that row's record.
    const bool isOfSelectedRow = mEditedIndex.isValid() && mEditedIndex.row() == selectedRow();
    const bool isWritten = isEnabled() && isOfSelectedRow && (!mIsEndingEditByCall || editor->isModified());
    // Cleared first: writing may reload the table or start another edit.
    setEditor(nullptr);
    return isWritten;
}
