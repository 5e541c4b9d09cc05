// SPDX-License-Identifier: MIT
#include "platform/rowsaccessibility.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QHash>
#include <QHeaderView>
#include <QPointer>
#include <QTableView>
#include <QTreeView>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr char installedProperty[] = "hasAccessibleRows";
constexpr int headerRow = -1;

const QHeaderView *headerOf(const QAbstractItemView *view)
{
    if (const auto *table = qobject_cast<const QTableView *>(view))
        return table->horizontalHeader();
    const auto *tree = qobject_cast<const QTreeView *>(view);
    return tree ? tree->header() : nullptr;
}

/// A cell, or the heading of a column, which has the row `headerRow`.
class AccessibleCell : public QAccessibleInterface,
                       public QAccessibleTableCellInterface,
                       public QAccessibleActionInterface
{
public:
    AccessibleCell(QAbstractItemView *view, int row, int column) : mView(view), mRow(row), mColumn(column) {}

    [[nodiscard]] bool isHeader() const { return mRow == headerRow; }

    bool isValid() const override
    {
        return mView && mView->model() && mColumn < mView->model()->columnCount()
               && (isHeader() || mRow < mView->model()->rowCount());
    }
    QObject *object() const override { return nullptr; }
    QWindow *window() const override { return mView ? mView->window()->windowHandle() : nullptr; }
    QAccessibleInterface *parent() const override { return QAccessible::queryAccessibleInterface(mView); }
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    void setText(QAccessible::Text, const QString &) override {}

    QAccessible::Role role() const override
    {
        if (isHeader())
            return QAccessible::ColumnHeader;
        return mView && headerOf(mView) ? QAccessible::Cell : QAccessible::ListItem;
    }

    QString text(QAccessible::Text kind) const override
    {
        if (!isValid())
            return {};
        if (isHeader())
            return kind == QAccessible::Name ? mView->model()->headerData(mColumn, Qt::Horizontal).toString()
                                             : QString();
        if (kind == QAccessible::Description)
            return index().data(Qt::AccessibleDescriptionRole).toString();
        if (kind != QAccessible::Name)
            return {};
        const QString name = index().data(Qt::AccessibleTextRole).toString();
        return name.isEmpty() ? index().data(Qt::DisplayRole).toString() : name;
    }

    QRect rect() const override
    {
        if (!isValid())
            return {};
        const QHeaderView *header = isHeader() ? headerOf(mView) : nullptr;
        const QWidget *viewport = header ? header->viewport() : mView->viewport();
        const QRect place =
            header ? QRect(header->sectionViewportPosition(mColumn), 0, header->sectionSize(mColumn), header->height())
                   : mView->visualRect(index());
        return place.translated(viewport->mapToGlobal(QPoint()));
    }

    QAccessible::State state() const override
    {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        const QWidget *viewport = mView->viewport();
        const QRect shown = viewport->rect().translated(viewport->mapToGlobal(QPoint()));
        state.invisible = !mView->isVisible() || (!isHeader() && !shown.intersects(rect()));
        state.disabled = !mView->isEnabled();
        if (isHeader())
            return state;
        const Qt::ItemFlags flags = index().flags();
        state.selectable = flags.testFlag(Qt::ItemIsSelectable);
        state.focusable = state.selectable;
        state.selected = isSelected();
        state.focused = mView->hasFocus() && mView->isVisible() && mView->currentIndex() == index();
        state.editable = flags.testFlag(Qt::ItemIsEditable);
        state.checkable = flags.testFlag(Qt::ItemIsUserCheckable);
        state.checked = state.checkable && index().data(Qt::CheckStateRole).toInt() == Qt::Checked;
        return state;
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::TableCellInterface && !isHeader())
            return static_cast<QAccessibleTableCellInterface *>(this);
        if (type == QAccessible::ActionInterface && !isHeader())
            return static_cast<QAccessibleActionInterface *>(this);
        return nullptr;
    }

    // The table cell
    bool isSelected() const override { return mView && mView->selectionModel()->isSelected(index()); }
    QList<QAccessibleInterface *> rowHeaderCells() const override { return {}; }
    QList<QAccessibleInterface *> columnHeaderCells() const override;
    int columnIndex() const override { return mColumn; }
    int rowIndex() const override { return mRow; }
    int columnExtent() const override { return 1; }
    int rowExtent() const override { return 1; }
    QAccessibleInterface *table() const override { return parent(); }

    // The actions
    QStringList actionNames() const override
    {
        if (!isValid() || !mView->isEnabled())
            return {};
        QStringList names{pressAction()};
        if (index().flags().testFlag(Qt::ItemIsUserCheckable))
            names += toggleAction();
        return names;
    }
    QStringList keyBindingsForAction(const QString &) const override { return {}; }
    void doAction(const QString &action) override
    {
        if (!actionNames().contains(action))
            return;
        if (action == pressAction())
            mView->setCurrentIndex(index());
        else
            mView->model()->setData(index(), state().checked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    }

private:
    [[nodiscard]] QModelIndex index() const { return mView->model()->index(mRow, mColumn); }

    QPointer<QAbstractItemView> mView;
    int mRow;
    int mColumn;
};

/// The children are the headings, the cells in view from the first to the last, and the editor of a cell.
class AccessibleRows : public QAccessibleWidget, public QAccessibleTableInterface
{
public:
    explicit AccessibleRows(QAbstractItemView *view)
        : QAccessibleWidget(view, headerOf(view) ? QAccessible::Table : QAccessible::List)
    {
    }
    ~AccessibleRows() override { forgetCells(); }

    int childCount() const override
    {
        return headings() + int(rowsInView().size()) * columnCount() + int(editors().size());
    }

    QAccessibleInterface *child(int index) const override
    {
        if (index < 0 || columnCount() == 0)
            return nullptr;
        if (index < headings())
            return cell(headerRow, index);
        index -= headings();
        const QList<int> rows = rowsInView();
        const int cells = int(rows.size()) * columnCount();
        if (index < cells)
            return cell(rows.at(index / columnCount()), index % columnCount());
        QWidget *editor = editors().value(index - cells);
        return editor ? QAccessible::queryAccessibleInterface(editor) : nullptr;
    }

    int indexOfChild(const QAccessibleInterface *child) const override
    {
        if (!child)
            return -1;
        const QList<int> rows = rowsInView();
        const int cells = int(rows.size()) * columnCount();
        if (child->object())
            return placeOfEditor(child, headings() + cells);
        const auto *one = dynamic_cast<const AccessibleCell *>(child);
        if (!one || one->parent() != this)
            return -1;
        if (one->isHeader())
            return headings() > 0 ? one->columnIndex() : -1;
        const auto row = rows.indexOf(one->rowIndex());
        return row >= 0 ? headings() + int(row) * columnCount() + one->columnIndex() : -1;
    }

    QAccessibleInterface *childAt(int x, int y) const override
    {
        const QModelIndex index = view()->indexAt(view()->viewport()->mapFromGlobal(QPoint(x, y)));
        return index.isValid() ? cell(index.row(), index.column()) : nullptr;
    }

    QAccessibleInterface *focusChild() const override
    {
        const QModelIndex current = view()->currentIndex();
        if (view()->hasFocus() && current.isValid())
            return cell(current.row(), current.column());
        return QAccessibleWidget::focusChild();
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::TableInterface)
            return static_cast<QAccessibleTableInterface *>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    // The table: all rows, in view or not
    QAccessibleInterface *caption() const override { return nullptr; }
    QAccessibleInterface *summary() const override { return nullptr; }
    QAccessibleInterface *cellAt(int row, int column) const override
    {
        const bool isThere = row >= 0 && row < rowCount() && column >= 0 && column < columnCount();
        return isThere ? cell(row, column) : nullptr;
    }
    int rowCount() const override { return view()->model() ? view()->model()->rowCount() : 0; }
    int columnCount() const override { return view()->model() ? view()->model()->columnCount() : 0; }
    QString columnDescription(int column) const override
    {
        return view()->model()->headerData(column, Qt::Horizontal).toString();
    }
    QString rowDescription(int) const override { return {}; }
    QList<QAccessibleInterface *> selectedCells() const override
    {
        QList<QAccessibleInterface *> cells;
        for (const QModelIndex &index : view()->selectionModel()->selectedIndexes())
            cells += cell(index.row(), index.column());
        return cells;
    }
    int selectedCellCount() const override { return int(view()->selectionModel()->selectedIndexes().size()); }
    QList<int> selectedRows() const override
    {
        QList<int> rows;
        for (const QModelIndex &index : view()->selectionModel()->selectedRows())
            rows += index.row();
        return rows;
    }
    int selectedRowCount() const override { return int(selectedRows().size()); }
    QList<int> selectedColumns() const override { return {}; }
    int selectedColumnCount() const override { return 0; }
    bool isRowSelected(int row) const override { return view()->selectionModel()->isRowSelected(row); }
    bool isColumnSelected(int) const override { return false; }
    bool selectRow(int row) override
    {
        const QAccessibleInterface *first = cellAt(row, 0);
        if (!first || !view()->isEnabled())
            return false;
        view()->setCurrentIndex(view()->model()->index(row, 0));
        return isRowSelected(row);
    }
    bool selectColumn(int) override { return false; }
    bool unselectRow(int) override { return false; }
    bool unselectColumn(int) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent *event) override
    {
        if (event->modelChangeType() != QAccessibleTableModelChangeEvent::DataChanged)
            forgetCells();
    }

    [[nodiscard]] QAccessibleInterface *cell(int row, int column) const
    {
        const std::pair place(row, column);
        if (const auto known = mCells.constFind(place); known != mCells.constEnd())
            return QAccessible::accessibleInterface(*known);
        auto *one = new AccessibleCell(view(), row, column);
        mCells.insert(place, QAccessible::registerAccessibleInterface(one));
        return one;
    }

private:
    [[nodiscard]] QAbstractItemView *view() const { return static_cast<QAbstractItemView *>(object()); }

    [[nodiscard]] int headings() const
    {
        const QHeaderView *header = headerOf(view());
        return header && !header->isHidden() ? columnCount() : 0;
    }

    /// Like the view itself, asks for the places of the rows alone, not for their contents.
    [[nodiscard]] QList<int> rowsInView() const
    {
        QList<int> rows;
        const QModelIndex first = view()->indexAt(QPoint(0, 0));
        const int bottom = view()->viewport()->height();
        for (int row = first.row(); first.isValid() && row < rowCount(); ++row) {
            const QRect place = view()->visualRect(view()->model()->index(row, 0));
            if (place.top() >= bottom)
                break;
            if (!place.isEmpty()) // that of a hidden row is empty
                rows += row;
        }
        return rows;
    }

    [[nodiscard]] QList<QWidget *> editors() const
    {
        QList<QWidget *> shown = view()->viewport()->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
        shown.removeIf([](const QWidget *widget) { return widget->isHidden(); });
        return shown;
    }

    [[nodiscard]] int placeOfEditor(const QAccessibleInterface *child, int before) const
    {
        const auto place = editors().indexOf(qobject_cast<QWidget *>(child->object()));
        return place < 0 ? -1 : before + int(place);
    }

    void forgetCells()
    {
        for (const QAccessible::Id id : std::as_const(mCells))
            QAccessible::deleteAccessibleInterface(id);
        mCells.clear();
    }

    mutable QHash<std::pair<int, int>, QAccessible::Id> mCells; // the requested ones, by row and column
};

QList<QAccessibleInterface *> AccessibleCell::columnHeaderCells() const
{
    const QHeaderView *header = mView ? headerOf(mView) : nullptr;
    auto *rows = static_cast<AccessibleRows *>(parent());
    return header && !header->isHidden() && rows ? QList<QAccessibleInterface *>{rows->cell(headerRow, mColumn)}
                                                 : QList<QAccessibleInterface *>();
}

QAccessibleInterface *interfaceOf(const QString &, QObject *object)
{
    auto *view = qobject_cast<QAbstractItemView *>(object);
    return view && view->property(installedProperty).toBool() ? new AccessibleRows(view) : nullptr;
}

void report(QAbstractItemView *view, const QModelIndex &index, QAccessible::Event kind)
{
    QAccessibleInterface *rows = QAccessible::queryAccessibleInterface(view);
    if (!rows || !index.isValid())
        return;
    QAccessibleEvent event(static_cast<AccessibleRows *>(rows)->cell(index.row(), index.column()), kind);
    QAccessible::updateAccessibility(&event);
}

} // namespace

void RowsAccessibility::install(QAbstractItemView *view)
{
    static const bool isInstalled = (QAccessible::installFactory(interfaceOf), true);
    Q_UNUSED(isInstalled)
    // A QTreeWidget gets its model, and reports it to a tool, before it can be installed: it has an interface of Qt.
    if (QAccessible::isActive())
        QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(QAccessible::queryAccessibleInterface(view)));
    view->setProperty(installedProperty, true);
}

void RowsAccessibility::reportCurrent(QAbstractItemView *view)
{
    if (QAccessible::isActive() && view->hasFocus() && view->isVisible())
        report(view, view->currentIndex(), QAccessible::Focus);
}

void RowsAccessibility::reportSelection(QAbstractItemView *view, const QItemSelection &selected,
                                        const QItemSelection &deselected)
{
    if (!QAccessible::isActive() || !view->isVisible())
        return;
    const auto firstOf = [](const QItemSelection &selection) {
        return selection.isEmpty() ? QModelIndex() : QModelIndex(selection.first().topLeft());
    };
    report(view, firstOf(selected), QAccessible::SelectionAdd);
    report(view, firstOf(deselected), QAccessible::SelectionRemove);
}
