// SPDX-License-Identifier: MIT
#include "tests/support/drawncontrols.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QHash>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleOptionButton>
#include <QTabBar>
#include <QTableView>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

/// A text or an indicator on the screen: its control, and its part of the window.
struct ShownText
{
    const QWidget *widget;
    QString text;
    QRect area;
    bool isSelected = false; ///< drawn in the desktop's selection colours
};

QString described(const QWidget *widget, const QString &text)
{
    return u"%1 %2 \"%3\""_s.arg(QLatin1StringView(widget->metaObject()->className()), widget->objectName(), text);
}

/// Whether `label` shows all of its text at its current size.
bool isWholeLabel(const QLabel *label)
{
    if (label->text().isEmpty())
        return true;
    if (label->wordWrap())
        return label->heightForWidth(label->width()) <= label->height();
    return label->sizeHint().width() <= label->width();
}

QRect placeInWindow(const QWidget *widget, const QRect &area)
{
    return {widget->mapTo(widget->window(), area.topLeft()), area.size()};
}

/// Whether the widget is visible in its window. Unlike isVisibleTo(), excludes widgets that belong to another window.
bool isShownIn(const QWidget *widget, const QWidget *window)
{
    return widget->window() == window && widget->isVisible();
}

/// The part of a check box or radio button (`isIndicator`: its picture) or another button that contains its text.
QRect partOf(const QAbstractButton *button, bool isIndicator)
{
    QStyleOptionButton option;
    option.initFrom(button);
    option.text = button->text();
    const QStyle *style = button->style();
    if (qobject_cast<const QCheckBox *>(button))
        return style->subElementRect(isIndicator ? QStyle::SE_CheckBoxIndicator : QStyle::SE_CheckBoxContents, &option,
                                     button);
    if (qobject_cast<const QRadioButton *>(button))
        return style->subElementRect(isIndicator ? QStyle::SE_RadioButtonIndicator : QStyle::SE_RadioButtonContents,
                                     &option, button);
    if (qobject_cast<const QPushButton *>(button))
        return style->subElementRect(QStyle::SE_PushButtonContents, &option, button);
    return button->rect();
}

QList<ShownText> textsOfTables(QWidget *window)
{
    QList<ShownText> texts;
    for (const QTableView *table : window->findChildren<QTableView *>()) {
        const QAbstractItemModel *model = table->model();
        for (int row = 0; isShownIn(table, window) && row < model->rowCount(); ++row) {
            const QModelIndex index = model->index(row, 0);
            const QRect cell = table->visualRect(index).intersected(table->viewport()->rect());
            const QString text = index.data().toString();
            if (!text.isEmpty() && !cell.isEmpty() && table->isEnabled() && (index.flags() & Qt::ItemIsEnabled))
                texts.append(
                    {table, text, placeInWindow(table->viewport(), cell), table->selectionModel()->isSelected(index)});
        }
    }
    return texts;
}

/// The visible texts of the enabled controls of `window`.
QList<ShownText> shownTexts(QWidget *window)
{
    QList<ShownText> texts = textsOfTables(window);
    const auto add = [&](const QWidget *widget, const QString &text, const QRect &area) {
        if (!text.isEmpty() && widget->isEnabled() && isShownIn(widget, window))
            texts.append({widget, text, placeInWindow(widget, area), false});
    };
    for (const QLabel *label : window->findChildren<QLabel *>())
        add(label, label->text(), label->contentsRect());
    for (const QAbstractButton *button : window->findChildren<QAbstractButton *>())
        add(button, button->text(), partOf(button, false));
    for (const QLineEdit *edit : window->findChildren<QLineEdit *>())
        add(edit, edit->text(), edit->contentsRect());
    for (const QTabBar *bar : window->findChildren<QTabBar *>()) {
        constexpr QMargins frame(8, 5, 8, 4);
        for (int index = 0; index < bar->count(); ++index)
            add(bar, bar->tabText(index), bar->tabRect(index).marginsRemoved(frame));
    }
    return texts;
}

QRect inDots(const QRect &area)
{
    return {(QPointF(area.topLeft()) * pictureRatio).toPoint(), (QSizeF(area.size()) * pictureRatio).toSize()};
}

double linearLight(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &color)
{
    return 0.2126 * linearLight(color.redF()) + 0.7152 * linearLight(color.greenF())
           + 0.0722 * linearLight(color.blueF());
}

using ColorCounts = QHash<QRgb, int>;

ColorCounts colorsOf(const QImage &picture, const QRect &area)
{
    ColorCounts counts;
    const QRect dots = area.intersected(picture.rect());
    for (int y = dots.top(); y <= dots.bottom(); ++y) {
        for (int x = dots.left(); x <= dots.right(); ++x)
            ++counts[picture.pixel(x, y)];
    }
    return counts;
}

/// The contrast between `background` and the colour of `counts` that differs most from it. Ignores colours of only a
/// few dots, which are not strokes of a letter.
double greatestContrast(const ColorCounts &counts, QRgb background)
{
    constexpr int leastDots = 4;
    double greatest = 1;
    for (auto color = counts.cbegin(); color != counts.cend(); ++color) {
        if (color.value() >= leastDots)
            greatest = std::max(greatest, contrastRatio(QColor(background), QColor(color.key())));
    }
    return greatest;
}

/// The contrast of the desktop's own selection colours, less the loss at the edges of the letters.
double selectionContrast(const QWidget *widget)
{
    constexpr double lossOfEdges = 0.9;
    const QPalette &palette = widget->palette();
    return lossOfEdges * contrastRatio(palette.color(QPalette::Highlight), palette.color(QPalette::HighlightedText));
}

QList<ShownText> indicatorsOfTables(QWidget *window)
{
    QList<ShownText> indicators;
    for (const QTableView *table : window->findChildren<QTableView *>()) {
        const QAbstractItemModel *model = table->model();
        if (!isShownIn(table, window) || !table->isEnabled())
            continue;
        const QStyle *style = table->style();
        const QSize size(style->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, table),
                         style->pixelMetric(QStyle::PM_IndicatorHeight, nullptr, table));
        for (int row = 0; row < model->rowCount(); ++row) {
            for (int column = 0; column < model->columnCount(); ++column) {
                const QModelIndex index = model->index(row, column);
                if (!(index.flags() & Qt::ItemIsUserCheckable))
                    continue;
                const QRect box =
                    QStyle::alignedRect(table->layoutDirection(), Qt::AlignCenter, size, table->visualRect(index));
                indicators.append({table, u"row %1"_s.arg(row), placeInWindow(table->viewport(), box),
                                   table->selectionModel()->isSelected(index)});
            }
        }
    }
    return indicators;
}

/// The visible indicators of the enabled check boxes and radio buttons of `window`.
QList<ShownText> shownIndicators(QWidget *window)
{
    QList<ShownText> indicators = indicatorsOfTables(window);
    for (const QAbstractButton *button : window->findChildren<QAbstractButton *>()) {
        const bool hasIndicator = qobject_cast<const QCheckBox *>(button) || qobject_cast<const QRadioButton *>(button);
        if (hasIndicator && button->isEnabled() && isShownIn(button, window))
            indicators.append({button, button->text(), placeInWindow(button, partOf(button, true)), false});
    }
    return indicators;
}

QRgb commonest(const ColorCounts &counts)
{
    const auto most = std::ranges::max_element(counts);
    return most == counts.cend() ? 0 : counts.key(*most);
}

} // namespace

QStringList cutTexts(const QWidget *root)
{
    QStringList result;
    for (const QLabel *label : root->findChildren<QLabel *>()) {
        if (label->isVisibleTo(root) && !isWholeLabel(label))
            result.append(described(label, label->text()));
    }
    for (const QAbstractButton *button : root->findChildren<QAbstractButton *>()) {
        // Keycaps adapt their legends to their size and have no text.
        if (button->isVisibleTo(root) && !button->text().isEmpty()
            && button->minimumSizeHint().width() > button->width())
            result.append(described(button, button->text()));
    }
    for (const QComboBox *box : root->findChildren<QComboBox *>()) {
        if (box->isVisibleTo(root) && box->sizeHint().width() > box->width())
            result.append(described(box, box->currentText()));
    }
    for (const QTabBar *bar : root->findChildren<QTabBar *>()) {
        for (int index = 0; bar->isVisibleTo(root) && index < bar->count(); ++index) {
            const bool isInside = bar->rect().contains(bar->tabRect(index));
            if (!isInside || bar->fontMetrics().horizontalAdvance(bar->tabText(index)) > bar->tabRect(index).width())
                result.append(described(bar, bar->tabText(index)));
        }
    }
    for (const QTableView *table : root->findChildren<QTableView *>()) {
        const QHeaderView *header = table->horizontalHeader();
        for (int column = 0; header->isVisibleTo(root) && column < header->count(); ++column) {
            if (header->sectionSizeHint(column) > header->sectionSize(column))
                result.append(described(table, table->model()->headerData(column, Qt::Horizontal).toString()));
        }
    }
    return result;
}

double contrastRatio(const QColor &one, const QColor &other)
{
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QImage drawn(QWidget *widget)
{
    QImage picture((QSizeF(widget->size()) * pictureRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(pictureRatio);
    picture.fill(widget->palette().color(QPalette::Window));
    widget->render(&picture);
    return picture;
}

QStringList faintTexts(QWidget *window, double leastContrast)
{
    const QImage picture = drawn(window);
    QStringList faults;
    for (const ShownText &shown : shownTexts(window)) {
        const ColorCounts colors = colorsOf(picture, inDots(shown.area));
        const double contrast = greatestContrast(colors, commonest(colors));
        const double least =
            shown.isSelected ? std::min(leastContrast, selectionContrast(shown.widget)) : leastContrast;
        if (contrast < least)
            faults += described(shown.widget, shown.text) + u" has the contrast %1"_s.arg(contrast);
    }
    return faults;
}

QStringList faintIndicators(QWidget *window, double leastContrast)
{
    constexpr int dotsBeside = 4;
    const QImage picture = drawn(window);
    QStringList faults;
    for (const ShownText &indicator : shownIndicators(window)) {
        const QRect area = inDots(indicator.area);
        const QRgb background = picture.pixel(area.right() + dotsBeside, area.center().y());
        const double contrast = greatestContrast(colorsOf(picture, area), background);
        const double least =
            indicator.isSelected ? std::min(leastContrast, selectionContrast(indicator.widget)) : leastContrast;
        if (contrast < least)
            faults +=
                described(indicator.widget, indicator.text) + u" has an indicator with the contrast %1"_s.arg(contrast);
    }
    return faults;
}

QImage drawnWithSheet(QWidget *window, QWidget *sheet)
{
    constexpr int distanceFromTop = 60;
    QImage picture = drawn(window);
    if (sheet && sheet->isWindow()) { // otherwise the window has drawn it
        const QPoint position((window->width() - sheet->width()) / 2, distanceFromTop);
        QPainter painter(&picture);
        painter.drawImage(position, drawn(sheet));
        painter.setPen(sheet->palette().color(QPalette::WindowText));
        painter.drawRect(QRect(position, sheet->size()).adjusted(-1, -1, 0, 0));
    }
    return picture;
}
