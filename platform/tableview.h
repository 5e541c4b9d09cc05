// SPDX-License-Identifier: MIT
// A table whose data source provides the rows and receives edits and all selection changes, including those by calls.
// The tab that shows it owns it. Main thread only.
#pragma once

#include <QDeadlineTimer>
#include <QIcon>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QTableView>
#include <QVariant>

#include <functional>
#include <optional>

class QLineEdit;
class RowDrag;
class TableView;
class TableViewModel;

enum class TableCell { text, checkBox };

struct TableColumn
{
    QString identifier; ///< names the column to the data source
    QString title;      ///< heading, and accessible name of its check boxes
    TableCell cell = TableCell::text;
    bool isEditable = false;
    bool stretches = false;
    Qt::Alignment alignment = Qt::AlignLeading | Qt::AlignVCenter;
};

/// Provides the rows of a table and receives its changes. One object may serve several tables.
class TableViewDataSource
{
public:
    virtual ~TableViewDataSource() = default;

    virtual int numberOfRowsInTableView(TableView *tableView) = 0;
    /// A text or a number; for a check-box cell a number, where 0 means off. Before reloadData(), the table may ask for
    /// a row that no longer exists; return an invalid value for it.
    virtual QVariant tableViewObjectValueForTableColumnRow(TableView *tableView, const QString &column, int row) = 0;
    /// An edit ended with a new text (QString), or the user clicked a check box (int 0 or 1).
    virtual void tableViewSetObjectValueForTableColumnRow(TableView *tableView, const QVariant &value,
                                                          const QString &column, int row) = 0;
    /// The selection changed, by the user or by a call. selectedRow() is up to date.
    virtual void tableViewSelectionDidChange(TableView *tableView) = 0;
    /// The kind of one cell; absent for that of the column.
    virtual std::optional<TableCell> tableViewDataCellForTableColumnRow(TableView *, const QString &, int)
    {
        return std::nullopt;
    }
    /// A picture before the text; null for none.
    virtual QIcon tableViewImageForTableColumnRow(TableView *, const QString &, int) { return {}; }
    /// A remark about one cell, in its tool tip and for screen readers; empty for none.
    virtual QString tableViewRemarkForTableColumnRow(TableView *, const QString &, int) { return {}; }

    // For a table with TableView::setAllowsMovingRows(). A place is the row before which the rows come; the number of
    // rows means at the end.
    /// The place that rows dropped at `place` would have, which the table shows during the drag.
    virtual int tableViewPlaceOfDrop(TableView *, int place) { return place; }
    /// The user has dropped the selected rows.
    virtual void tableViewMoveSelectedRows(TableView *, int) {}
};

/// Unless setAllowsSeveralRows() says otherwise, at most one row is selected. Only a text in that row can be edited.
/// Without a selected row, the focus is shown around the whole table. Actions of the user write an open edit: Return,
/// Tab, a click elsewhere in the window, and commands, which first call endEditing(). Escape discards it, as do calls
/// of the program (reloading, selecting, disabling, hiding, closing) and another window that comes to the front.
/// Further typing then changes nothing until Return, Escape, Tab, a click or a pause ends it.
class TableView : public QTableView
{
    Q_OBJECT

public:
    explicit TableView(QWidget *parent = nullptr);

    void addColumn(const TableColumn &column);
    /// The table does not own `source`, which must outlive the table or be removed with nullptr.
    void setDataSource(TableViewDataSource *source);
    /// Shown in the middle of the table while it shows no row.
    void setPlaceholderText(const QString &text);
    [[nodiscard]] QString placeholderText() const { return mPlaceholderText; }
    /// Whether the user can clear the selection by clicking; calls always can. True by default.
    void setAllowsEmptySelection(bool allows) { mAllowsEmptySelection = allows; }

    /// Whether the user can select several rows, with Shift, Ctrl and Ctrl+A. False by default.
    void setAllowsSeveralRows(bool allows);

    /// Whether the user can drag the selected rows, or the row below the mouse, to another place. A drag ends without a
    /// drop by Escape and by everything that discards an open edit. False by default.
    void setAllowsMovingRows(bool allows);

    /// Asks the data source, so the number is correct even before reloadData().
    [[nodiscard]] int numberOfRows();
    [[nodiscard]] int selectedRow() const;         ///< -1 for none; of several, the current one or else the first
    [[nodiscard]] QList<int> selectedRows() const; ///< ascending
    [[nodiscard]] int editedRow() const;           ///< -1 for none

    /// Fetches everything again and discards an open edit. The selection stays if its row still exists. Does not
    /// notify.
    void reloadData();
    /// Selects `row`, notifies the data source and discards an open edit. Ignores a row that does not exist or is
    /// already selected alone. Extending the selection replaces it.
    void selectRow(int row, bool extendingSelection = false);
    /// Selects these rows, the last one as the current one, and notifies. Rows that do not exist are left out.
    void selectRows(const QList<int> &rows);
    /// Discards an open edit and notifies if a row was selected.
    void deselectAll();
    /// Opens the text of a cell in the selected row for editing and gives it the focus. In any other row, or while the
    /// table is disabled, hidden or in an inactive window, it only discards an open edit: the written text would reach
    /// the record of the selected row, which is a different one. Opens nothing for a cell that does not exist or cannot
    /// be edited.
    void editColumnRow(int column, int row, bool selectText);
    /// Ends an open edit and writes it if the user changed the text.
    void endEditing();
    /// Ends an open edit without writing it.
    void abortEditing();
    void scrollRowToVisible(int row);

    /// Shows only the rows that `fits` accepts; without a function, all rows. Rows keep their numbers. The selected row
    /// is always shown: no command applies to a record that the user does not see. The function is asked now and at
    /// each reloadData(). Until then no row disappears, so a click never moves the rows below the pointer.
    void showOnly(std::function<bool(int row)> fits);
    [[nodiscard]] bool showsRows() const; ///< at least one

Q_SIGNALS:
    /// An edit began or ended; editedRow() is up to date.
    void editedRowChanged();

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    void setSelection(const QRect &rect, QItemSelectionModel::SelectionFlags command) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index, const QEvent *event) const override;
    bool viewportEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    /// Home and End select the first and the last row that is shown.
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

    /// Called when the user presses a key combination with Control or Meta while the table has the focus. Returning
    /// true consumes it. Shortcuts whose parent is the window come before the table. While a text is edited, neither
    /// they nor mnemonics act.
    virtual bool performKeyEquivalent(const QKeyEvent *event);

    /// Called for a right click at `globalPosition`, even in a disabled table, and for the menu key. Never changes the
    /// selection.
    virtual void rightMouseDown(const QPoint &globalPosition);

private:
    friend class TableCellDelegate;

    void describePlaceholder();
    void hideUnfitRows();
    void cancelDrag();
    void noteNumberOfRowsChanged();
    [[nodiscard]] bool mayEdit(int row) const;
    [[nodiscard]] bool takesTypedOn(const QKeyEvent *key);
    [[nodiscard]] bool isWindowCommand(const QKeyEvent *key) const;
    void editingBegan(QLineEdit *editor, const QModelIndex &index);
    void editorDestroyed(const QWidget *editor);
    void setEditor(QLineEdit *editor);
    /// Moves the current cell, which receives the keys, to the selected row. The cell stays behind when the data source
    /// reverts a selection.
    void makeSelectedRowCurrent();
    /// Without a selected row, no cell is the current one: the keys then start at the first row.
    void leaveUnselectedRow();
    /// True once for each edit that must be written.
    bool takeEdit(const QLineEdit *editor);

    TableViewModel *mModel = nullptr;
    TableViewDataSource *mSource = nullptr;
    RowDrag *mDrag = nullptr; ///< absent unless the user can move rows
    QPointer<QLineEdit> mEditor;
    QPersistentModelIndex mEditedIndex;
    QString mPlaceholderText;
    std::function<bool(int row)> mFits; ///< empty: all rows do
    bool mAllowsEmptySelection = true;
    bool mNotifies = true;
    bool mIsEndingEditByCall = false;
    bool mIsSelectionTakenBack = false; ///< by the data source, since the last press of a key or button
    QDeadlineTimer mTypedOn;            ///< until then, typing belongs to a discarded edit
};
