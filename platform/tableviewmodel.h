// SPDX-License-Identifier: MIT
// The rows of a TableView, fetched from its data source when they are shown. Only TableView owns and uses it.
#pragma once

#include "platform/tableview.h"

#include <QAbstractTableModel>
#include <QList>

class TableViewModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit TableViewModel(TableView *view);

    [[nodiscard]] TableCell cellAt(const QModelIndex &index) const;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    void addColumn(const TableColumn &column);
    void setSource(TableViewDataSource *source);
    /// Adds or removes rows at the end.
    void setRowCount(int count);
    /// Makes the view fetch every cell again.
    void refetchAll();
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

private:
    [[nodiscard]] QVariant objectValue(const QModelIndex &index) const;
    /// The value as text without characters that a label would obey: names come from other people's files.
    [[nodiscard]] QString shownText(const QModelIndex &index) const;
    [[nodiscard]] QString remark(const QModelIndex &index) const;

    TableView *mView;
    TableViewDataSource *mSource = nullptr;
    QList<TableColumn> mColumns;
    int mRowCount = 0;
};
