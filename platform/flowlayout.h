// SPDX-License-Identifier: MIT
// A layout that wraps items into rows as words are wrapped into lines. Main thread only.
#pragma once

#include <QLayout>

#include <memory>
#include <vector>

class FlowLayout : public QLayout
{
public:
    enum class Rows { centred, fromTheLeft };

    /// `gap` is the distance between the items of a row, `rowGap` that between rows, in logical pixels.
    FlowLayout(QWidget *parent, int gap, int rowGap, Rows rows = Rows::centred);
    ~FlowLayout() override;

    void addItem(QLayoutItem *item) override;
    [[nodiscard]] int count() const override { return static_cast<int>(mItems.size()); }
    [[nodiscard]] QLayoutItem *itemAt(int index) const override;
    QLayoutItem *takeAt(int index) override;

    [[nodiscard]] Qt::Orientations expandingDirections() const override { return {}; }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    /// All items in one row.
    [[nodiscard]] QSize sizeHint() const override;
    /// The largest minimum width and the largest minimum height of the items.
    [[nodiscard]] QSize minimumSize() const override;
    void setGeometry(const QRect &area) override;

private:
    struct Row
    {
        std::vector<QLayoutItem *> items;
        QSize size;
    };

    [[nodiscard]] std::vector<Row> rowsIn(int width) const;
    [[nodiscard]] QSize withMargins(QSize size) const;

    std::vector<std::unique_ptr<QLayoutItem>> mItems;
    int mGap;
    int mRowGap;
    Rows mRows;
};
