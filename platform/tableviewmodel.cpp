// SPDX-License-Identifier: MIT
#include "platform/tableviewmodel.h"

#include "base/visibletext.h"

using namespace Qt::StringLiterals;

namespace {

/// A tool tip that shows `text` literally. Without the tag, it would show the escapes. Without the escapes, it would
/// interpret tags in the text.
QString toolTipOf(const QString &text)
{
    return text.isEmpty() ? QString() : u"<span style=\"white-space: pre-wrap\">%1</span>"_s.arg(text.toHtmlEscaped());
}

} // namespace

TableViewModel::TableViewModel(TableView *view) : QAbstractTableModel(view), mView(view) {}

TableCell TableViewModel::cellAt(const QModelIndex &index) const
{
    const TableColumn &column = mColumns.at(index.column());
    if (!mSource)
        return column.cell;
    return mSource->tableViewDataCellForTableColumnRow(mView, column.identifier, index.row()).value_or(column.cell);
}

int TableViewModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : mRowCount;
}

int TableViewModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(mColumns.size());
}

QVariant TableViewModel::objectValue(const QModelIndex &index) const
{
    if (!mSource)
        return {};
    return mSource->tableViewObjectValueForTableColumnRow(mView, mColumns.at(index.column()).identifier, index.row());
}

QString TableViewModel::shownText(const QModelIndex &index) const
{
    return visibleText(objectValue(index).toString(), u' ');
}

QString TableViewModel::remark(const QModelIndex &index) const
{
    if (!mSource)
        return {};
    return mSource->tableViewRemarkForTableColumnRow(mView, mColumns.at(index.column()).identifier, index.row());
}

QVariant TableViewModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const TableColumn &column = mColumns.at(index.column());
    const bool isCheckBox = cellAt(index) == TableCell::checkBox;
    switch (role) {
    case Qt::TextAlignmentRole: return int(column.alignment);
    case Qt::CheckStateRole:
        return isCheckBox ? QVariant(objectValue(index).toInt() != 0 ? Qt::Checked : Qt::Unchecked) : QVariant();
    case Qt::AccessibleTextRole: return isCheckBox ? column.title : shownText(index);
    case Qt::DisplayRole: return isCheckBox ? QVariant() : shownText(index);
    case Qt::EditRole: return isCheckBox ? QVariant() : objectValue(index);
    case Qt::DecorationRole: {
        const QIcon image =
            mSource ? mSource->tableViewImageForTableColumnRow(mView, column.identifier, index.row()) : QIcon();
        return image.isNull() ? QVariant() : QVariant(image);
    }
    case Qt::ToolTipRole:
        // A narrow column cuts off long names.
        return isCheckBox ? QVariant()
                          : QVariant(toolTipOf(QStringList{shownText(index), remark(index)}.join(u'\n').trimmed()));
    case Qt::AccessibleDescriptionRole: return remark(index);
    default: return {};
    }
}

QVariant TableViewModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= mColumns.size())
        return {};
    if (role == Qt::DisplayRole)
        return mColumns.at(section).title;
    if (role == Qt::TextAlignmentRole)
        return int(mColumns.at(section).alignment);
    return {};
}

Qt::ItemFlags TableViewModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags result = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (cellAt(index) == TableCell::checkBox)
        result |= Qt::ItemIsUserCheckable;
    else if (mColumns.at(index.column()).isEditable)
        result |= Qt::ItemIsEditable;
    return result;
}

void TableViewModel::addColumn(const TableColumn &column)
{
    const int position = int(mColumns.size());
    beginInsertColumns({}, position, position);
    mColumns.append(column);
    endInsertColumns();
}

void TableViewModel::setSource(TableViewDataSource *source)
{
    mSource = source;
}

void TableViewModel::setRowCount(int count)
{
    if (count > mRowCount) {
        beginInsertRows({}, mRowCount, count - 1);
        mRowCount = count;
        endInsertRows();
    } else if (count < mRowCount) {
        beginRemoveRows({}, count, mRowCount - 1);
        mRowCount = count;
        endRemoveRows();
    }
}

void TableViewModel::refetchAll()
{
    if (mRowCount > 0 && !mColumns.isEmpty())
        emit dataChanged(index(0, 0), index(mRowCount - 1, int(mColumns.size()) - 1));
}

bool TableViewModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!mSource || !index.isValid() || (role != Qt::EditRole && role != Qt::CheckStateRole))
        return false;
    const QString column = mColumns.at(index.column()).identifier;
    const QVariant newValue = role == Qt::CheckStateRole ? QVariant(value.toInt() == Qt::Unchecked ? 0 : 1) : value;
    const QPersistentModelIndex changed = index;
    mSource->tableViewSetObjectValueForTableColumnRow(mView, newValue, column, index.row());
    if (changed.isValid())
        emit dataChanged(changed, changed);
    return true;
}
