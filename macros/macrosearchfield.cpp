// SPDX-License-Identifier: MIT
#include "macros/macrosearchfield.h"

#include "base/text.h"

#include <QKeyEvent>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isReturn(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

} // namespace

MacroSearchField::MacroSearchField(QWidget *parent) : SearchField(parent)
{
    setObjectName("mMacroSearch"_L1);
    setPlaceholderText(localizedText("lkeyMacroSearch"));
    setAccessibleName(localizedText("lkeyMacroSearch"));
    setClearButtonEnabled(true);
}

bool MacroSearchField::isSearching() const
{
    return !text().trimmed().isEmpty();
}

bool MacroSearchField::fits(const QString &name) const
{
    const QStringList words = text().split(u' ', Qt::SkipEmptyParts);
    return std::ranges::all_of(words,
                               [&name](const QString &word) { return name.contains(word, Qt::CaseInsensitive); });
}

void MacroSearchField::setResult(int count)
{
    QString result;
    if (isSearching())
        result = count == 0 ? localizedText("lkeyMacroSearchNothing")
                            : localizedFormat("lkeyMacroSearchResult", {QString::number(count)});
    setAccessibleDescription(result);
    setToolTip(result);
}

void MacroSearchField::beginSearch()
{
    setFocus(Qt::ShortcutFocusReason);
    selectAll();
}

bool MacroSearchField::takes(const QKeyEvent &event) const
{
    return isReturn(event) || event.key() == Qt::Key_Down || (event.key() == Qt::Key_Escape && !text().isEmpty());
}

bool MacroSearchField::event(QEvent *event)
{
    // Otherwise Return would press a default button of the window, and Escape would be a shortcut of it.
    if (event->type() == QEvent::ShortcutOverride && takes(*static_cast<QKeyEvent *>(event))) {
        event->accept();
        return true;
    }
    return SearchField::event(event);
}

void MacroSearchField::keyPressEvent(QKeyEvent *event)
{
    if (!takes(*event))
        return SearchField::keyPressEvent(event);
    event->accept();
    if (isReturn(*event))
        Q_EMIT stepRequested(event->modifiers().testFlag(Qt::ShiftModifier) ? -1 : 1);
    else if (event->key() == Qt::Key_Down)
        Q_EMIT listRequested();
    else
        clear();
}
