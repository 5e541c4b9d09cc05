// SPDX-License-Identifier: MIT
#include "platform/flowlayout.h"

#include <algorithm>
#include <limits>

FlowLayout::FlowLayout(QWidget *parent, int gap, int rowGap, Rows rows)
    : QLayout(parent), mGap(gap), mRowGap(rowGap), mRows(rows)
{
    setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout() = default;

void FlowLayout::addItem(QLayoutItem *item)
{
    mItems.emplace_back(item);
}

QLayoutItem *FlowLayout::itemAt(int index) const
{
    return index >= 0 && index < count() ? mItems[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem *FlowLayout::takeAt(int index)
{
    if (index < 0 || index >= count())
        return nullptr;
    QLayoutItem *item = mItems[static_cast<std::size_t>(index)].release();
    mItems.erase(mItems.begin() + index);
    return item;
}

std::vector<FlowLayout::Row> FlowLayout::rowsIn(int width) const
{
    std::vector<Row> rows;
    for (const std::unique_ptr<QLayoutItem> &item : mItems) {
        const QSize size = item->sizeHint();
        if (item->isEmpty())
            continue;
        if (rows.empty() || rows.back().size.width() + mGap + size.width() > width)
            rows.push_back({});
        Row &row = rows.back();
        row.size.setWidth((row.items.empty() ? 0 : row.size.width() + mGap) + size.width());
        row.size.setHeight(std::max(row.size.height(), size.height()));
        row.items.push_back(item.get());
    }
    return rows;
}

QSize FlowLayout::withMargins(QSize size) const
{
    return size.grownBy(contentsMargins());
}

int FlowLayout::heightForWidth(int width) const
{
    const std::vector<Row> rows = rowsIn(width - withMargins({0, 0}).width());
    int height = mRowGap * std::max(0, static_cast<int>(rows.size()) - 1);
    for (const Row &row : rows)
        height += row.size.height();
    return withMargins({0, height}).height();
}

QSize FlowLayout::sizeHint() const
{
    const std::vector<Row> rows = rowsIn(std::numeric_limits<int>::max());
    return withMargins(rows.empty() ? QSize(0, 0) : rows.front().size);
}

QSize FlowLayout::minimumSize() const
{
    QSize size(0, 0);
    for (const std::unique_ptr<QLayoutItem> &item : mItems)
        size = size.expandedTo(item->minimumSize());
    return withMargins(size);
}

void FlowLayout::setGeometry(const QRect &area)
{
    QLayout::setGeometry(area);
    const QRect inside = area.marginsRemoved(contentsMargins());
    int top = inside.top();
    for (const Row &row : rowsIn(inside.width())) {
        const int room = mRows == Rows::centred ? std::max(0, inside.width() - row.size.width()) : 0;
        int left = inside.left() + room / 2;
        for (QLayoutItem *item : row.items) {
            const QSize size(item->sizeHint().width(), row.size.height());
            item->setGeometry(QRect(QPoint(left, top), size));
            left += size.width() + mGap;
        }
        top += row.size.height() + mRowGap;
    }
}
