// SPDX-License-Identifier: MIT
// A list or tree of Qt, without a hierarchy, that assistive tools see as RowsAccessibility describes it. Main thread
// only.
#pragma once

#include "platform/rowsaccessibility.h"

#include <QAbstractItemView>

/// `View` is QListView, QTreeView or a class derived from them.
template <typename View> class RowsView : public View
{
public:
    explicit RowsView(QWidget *parent = nullptr) : View(parent) { RowsAccessibility::install(this); }

protected:
    // The functions of `View` would report the cells by another count.
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override
    {
        QAbstractItemView::currentChanged(current, previous);
        this->viewport()->update(); // a tree may show the focus in all columns
        RowsAccessibility::reportCurrent(this);
    }

    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override
    {
        QAbstractItemView::selectionChanged(selected, deselected);
        RowsAccessibility::reportSelection(this, selected, deselected);
    }
};
