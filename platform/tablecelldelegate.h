// SPDX-License-Identifier: MIT
// Draws the cells of a TableView and edits them in place. Only TableView owns and uses it.
#pragma once

#include <QStyledItemDelegate>

class TableView;

class TableCellDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit TableCellDelegate(TableView *view);

    /// The rectangle of the check box, in the middle of the cell rectangle `cell`.
    [[nodiscard]] QRect checkBoxRect(const QRect &cell) const;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void destroyEditor(QWidget *editor, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;
    bool eventFilter(QObject *editor, QEvent *event) override;

private:
    TableView *mView;
};
