// SPDX-License-Identifier: MIT
#include "platform/tablecelldelegate.h"

#include "platform/indicatoroutline.h"
#include "platform/tableview.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

bool isCheckBox(const QModelIndex &index)
{
    return index.flags().testFlag(Qt::ItemIsUserCheckable);
}

} // namespace

TableCellDelegate::TableCellDelegate(TableView *view) : QStyledItemDelegate(view), mView(view) {}

QRect TableCellDelegate::checkBoxRect(const QRect &cell) const
{
    const QStyle *style = mView->style();
    const QSize size(style->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, mView),
                     style->pixelMetric(QStyle::PM_IndicatorHeight, nullptr, mView));
    return QStyle::alignedRect(mView->layoutDirection(), Qt::AlignCenter, size, cell);
}

void TableCellDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    if (!isCheckBox(index)) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const Qt::CheckState checkState = cell.checkState;
    cell.features &= ~QStyleOptionViewItem::HasCheckIndicator;
    cell.text.clear();
    const QStyle *style = mView->style();
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, mView);
    cell.rect = checkBoxRect(option.rect);
    cell.state &= ~QStyle::State_HasFocus;
    cell.state |= checkState == Qt::Checked ? QStyle::State_On : QStyle::State_Off;
    style->drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &cell, painter, mView);
    // On a dark base some styles draw an empty box in the base colour.
    const bool isSelected = cell.state.testFlag(QStyle::State_Selected);
    painter->setPen(
        IndicatorOutline::colorBeside(cell.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text)));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(cell.rect.adjusted(0, 0, -1, -1));
}

void TableCellDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    const bool isSelected = option->state.testFlag(QStyle::State_Selected);
    // The current cell keeps its place after its row has been deselected, but must not look selected.
    if (!isSelected)
        option->state &= ~QStyle::State_HasFocus;
    if (option->icon.isNull() || !isSelected || option->state.testFlag(QStyle::State_Enabled))
        return;
    // A selected row of a disabled table keeps its bright text, but its picture would be dark.
    QIcon icon;
    icon.addPixmap(option->icon.pixmap(option->decorationSize, mView->devicePixelRatioF(), QIcon::Selected),
                   QIcon::Disabled);
    option->icon = icon;
}

QWidget *TableCellDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &index) const
{
    if (!mView->mayEdit(index.row()))
        return nullptr;
    auto *editor = new QLineEdit(parent);
    editor->setObjectName("cellEditor"_L1);
    editor->setAutoFillBackground(true);
    editor->setAccessibleName(index.model()->headerData(index.column(), Qt::Horizontal, Qt::DisplayRole).toString());
    editor->setText(index.data(Qt::EditRole).toString());
    mView->editingBegan(editor, index);
    return editor;
}

void TableCellDelegate::destroyEditor(QWidget *editor, const QModelIndex &index) const
{
    mView->editorDestroyed(editor);
    QStyledItemDelegate::destroyEditor(editor, index);
}

void TableCellDelegate::setEditorData(QWidget *, const QModelIndex &) const
{
    // The editor got its text when it was created; reloading the table must not overwrite what the user types.
}

void TableCellDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    auto *lineEdit = qobject_cast<QLineEdit *>(editor);
    if (lineEdit && mView->takeEdit(lineEdit))
        model->setData(index, lineEdit->text(), Qt::EditRole);
}

bool TableCellDelegate::eventFilter(QObject *editor, QEvent *event)
{
    // The base class would write the text, whatever the user does in the other window.
    if (event->type() == QEvent::FocusOut && static_cast<QFocusEvent *>(event)->reason() == Qt::ActiveWindowFocusReason)
        mView->abortEditing();
    if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        // The editor would enter the letter of a mnemonic.
        const bool isMnemonic = key->modifiers() == Qt::AltModifier && key->key() < Qt::Key_Escape;
        const bool isCommand = event->type() == QEvent::ShortcutOverride && mView->isWindowCommand(key);
        // Either would act on the list whose text is being edited.
        if (isMnemonic || isCommand) {
            event->accept();
            return true;
        }
    }
    return QStyledItemDelegate::eventFilter(editor, event);
}

bool TableCellDelegate::editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                                    const QModelIndex &index)
{
    if (!isCheckBox(index))
        return QStyledItemDelegate::editorEvent(event, model, option, index);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease: {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        if (mouse->button() != Qt::LeftButton || !checkBoxRect(option.rect).contains(mouse->position().toPoint()))
            return false;
        if (event->type() != QEvent::MouseButtonRelease)
            return true;
        break;
    }
    case QEvent::KeyPress: {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key != Qt::Key_Space && key != Qt::Key_Select)
            return false;
        break;
    }
    default: return false;
    }
    const bool isOn = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    return model->setData(index, int(isOn ? Qt::Unchecked : Qt::Checked), Qt::CheckStateRole);
}
