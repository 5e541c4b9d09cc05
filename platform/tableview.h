// SPDX-License-Identifier: MIT
// A table whose rows come from a data source that is also told of edits and of selection changes, whoever made them.
// The tab that shows it owns it. Main thread only.
#pragma once

#include <QDeadlineTimer>
#include <QIcon>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QTableView>
#include <QVariant>

#include <optional>

class QLineEdit;
class TableView;
class TableViewModel;

enum class TableCell { text, checkBox };

struct TableColumn
{
    QString identifier; ///< what the data source is asked with
    QString title;      ///< heading, and the accessible name of a check box in it
    TableCell cell = TableCell::text;
    bool isEditable = false;
    bool stretches = false;
    Qt::Alignment alignment = Qt::AlignLeading | Qt::AlignVCenter;
};

/// Where a table gets its rows, and whom it tells. One object may serve several tables.
class TableViewDataSource
{
public:
    virtual ~TableViewDataSource() = default;

    virtual int numberOfRowsInTableView(TableView *tableView) = 0;
    /// A text or a number; for a check-box cell a number, 0 meaning off. A row may be out of date until reloadData():
    /// answer an invalid value for one that is gone.
    virtual QVariant tableViewObjectValueForTableColumnRow(TableView *tableView, const QString &column, int row) = 0;
    /// An edit ended with a new text (QString), or a check box was clicked (int 0 or 1).
    virtual void tableViewSetObjectValueForTableColumnRow(TableView *tableView, const QVariant &value,
                                                          const QString &column, int row) = 0;
    /// The selection changed, by the user or by a call. selectedRow() is up to date.
    virtual void tableViewSelectionDidChange(TableView *tableView) = 0;
    /// The cell to use at one place; absent means the column's own.
    virtual std::optional<TableCell> tableViewDataCellForTableColumnRow(TableView *, const QString &, int)
    {
        return std::nullopt;
    }
    /// A picture before the text; null for none.
    virtual QIcon tableViewImageForTableColumnRow(TableView *, const QString &, int) { return {}; }
};

/// Shows one selected row at most, and edits a text in that row alone. What the person does writes an open edit:
/// Return, Tab, a click elsewhere in the window, and endEditing(), which a command of the person's calls first. Escape,
/// whatever the program does with the table (fetching it anew, selecting, disabling, hiding, closing), and another
/// window that comes to the front discard it. What is typed on then changes nothing, until Return, Escape, Tab, a click
/// or a pause ends it.
class TableView : public QTableView
{
    Q_OBJECT

public:
    explicit TableView(QWidget *parent = nullptr);

    void addColumn(const TableColumn &column);
    /// Not owned; it must outlive the table or be taken away with nullptr.
    void setDataSource(TableViewDataSource *source);
    /// Shown in the middle of the table while it has no rows.
    void setPlaceholderText(const QString &text);
    [[nodiscard]] QString placeholderText() const { return mPlaceholderText; }
    /// Whether the user can click the selection away. Calls always can. True at first.
    void setAllowsEmptySelection(bool allows) { mAllowsEmptySelection = allows; }

    /// Asks the data source, so it is right even before reloadData().
    [[nodiscard]] int numberOfRows();
    [[nodiscard]] int selectedRow() const; ///< -1 for none
    [[nodiscard]] int editedRow() const;   ///< -1 for none

    /// Fetches everything anew and discards an open edit. The selection stays where its row still exists; no
    /// notification.
    void reloadData();
    /// Selects `row` and notifies if that changed anything, and discards an open edit. A row that does not exist or is
    /// selected already is ignored. With one row at most selected, extending the selection replaces it.
    void selectRow(int row, bool extendingSelection = false);
    /// Notifies if a row was selected. Discards an open edit.
    void deselectAll();
    /// Opens the text of a cell in the selected row for editing and makes it first responder. Asked for a row that is
    /// not selected, or while the table is disabled, hidden or in a window that is not active, it opens none and
    /// discards an open edit: what is written reaches the selected row's record, which would be another one. Does
    /// nothing for a cell that does not exist or cannot be edited.
    void editColumnRow(int column, int row, bool selectText);
    /// Ends an open edit, and writes it if the person changed the text.
    void endEditing();
    /// Ends an open edit without writing it.
    void abortEditing();
    void scrollRowToVisible(int row);

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
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

    /// A key combination with Control or Meta was pressed while the table has the focus. True consumes it.
    virtual bool performKeyEquivalent(const QKeyEvent *event);

    /// A right click at `globalPosition`, in a disabled table too, or the menu key. It never changes the selection.
    virtual void rightMouseDown(const QPoint &globalPosition);

private:
    friend class TableCellDelegate;

    void noteNumberOfRowsChanged();
    [[nodiscard]] bool mayEdit(int row) const;
    [[nodiscard]] bool takesTypedOn(const QKeyEvent *key);
    void editingBegan(QLineEdit *editor, const QModelIndex &index);
    void editorDestroyed(const QWidget *editor);
    void setEditor(QLineEdit *editor);
    /// A selection that the data source has taken back leaves the current cell, to which the keys go, behind.
    void makeSelectedRowCurrent();
    /// True once for each edit that is to be written.
    bool takeEdit(const QLineEdit *editor);

    TableViewModel *mModel = nullptr;
    TableViewDataSource *mSource = nullptr;
    QPointer<QLineEdit> mEditor;
    QPersistentModelIndex mEditedIndex;
    QString mPlaceholderText;
    bool mAllowsEmptySelection = true;
    bool mNotifies = true;
    bool mIsEndingEditByCall = false;
    bool mIsSelectionTakenBack = false; ///< by the data source, since the key or the button was pressed
    QDeadlineTimer mTypedOn;            ///< until then what is typed belongs to an edit that was discarded
};
