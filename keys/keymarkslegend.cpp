// SPDX-License-Identifier: MIT
#include "keys/keymarkslegend.h"

#include "base/text.h"
#include "keys/keycap.h"
#include "platform/flowlayout.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

namespace {

enum class Sample { selectedKey, mark, fixedKey };

struct LegendRow
{
    const char *textKey;
    Sample sample;
    KeyMark mark;
};

constexpr LegendRow legendRows[] = {
    {"lkeyKeysLegendSelected", Sample::selectedKey, KeyMark::none},
    {"lkeySingleKey", Sample::mark, KeyMark::singleKey},
    {"lkeyMacro", Sample::mark, KeyMark::macro},
    {"lkeyProfile", Sample::mark, KeyMark::profile},
    {"lkeyLaunchProgram", Sample::mark, KeyMark::launchProgram},
    {"lkeyKeysLegendDisabled", Sample::mark, KeyMark::disabled},
    {"lkeyKeysNoAssignment", Sample::fixedKey, KeyMark::none},
};

constexpr int sampleSize = 20;
constexpr int markSize = 16;

class SampleWidget : public QWidget
{
public:
    explicit SampleWidget(const LegendRow &row) : mRow(row)
    {
        const int size = row.sample == Sample::mark ? markSize : sampleSize;
        setFixedSize(size, size);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        if (mRow.sample == Sample::mark) {
            paintKeyMark(painter, QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), mRow.mark, palette(), isEnabled());
            return;
        }
        KeycapState state;
        state.isSelectable = mRow.sample != Sample::fixedKey;
        state.isEnabled = isEnabled();
        state.isSelected = mRow.sample == Sample::selectedKey;
        paintKeycap(painter, rect(), sampleSize, state, palette());
    }

private:
    const LegendRow &mRow;
};

} // namespace

KeyMarksLegend::KeyMarksLegend(QWidget *parent) : QWidget(parent)
{
    constexpr int gap = 20;
    constexpr int rowGap = 4;
    constexpr int gapInside = 6;
    auto *layout = new FlowLayout(this, gap, rowGap);
    for (const LegendRow &row : legendRows) {
        auto *entry = new QWidget;
        auto *parts = new QHBoxLayout(entry);
        parts->setContentsMargins(0, 0, 0, 0);
        parts->setSpacing(gapInside);
        parts->addWidget(new SampleWidget(row));
        parts->addWidget(new QLabel(localizedText(row.textKey)));
        layout->addWidget(entry);
    }
}
