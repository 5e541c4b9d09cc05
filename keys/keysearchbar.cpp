// SPDX-License-Identifier: MIT
#include "keys/keysearchbar.h"

#include "base/text.h"
#include "platform/searchfield.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

constexpr int spareCharacters = 6; // for the button that clears the field

} // namespace

KeySearchBar::KeySearchBar(QWidget *parent) : QWidget(parent), mField(new SearchField), mResult(new QLabel)
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    mResult->setObjectName("mKeySearchResult"_L1);
    mField->setObjectName("mKeySearchField"_L1);
    mField->setAccessibleName(localizedText("lkeyKeysSearch"));
    mField->setPlaceholderText(localizedText("lkeyKeysSearch"));
    mField->setClearButtonEnabled(true);
    const QFontMetrics metrics = mField->fontMetrics();
    mField->setFixedWidth(metrics.horizontalAdvance(mField->placeholderText())
                          + metrics.averageCharWidth() * spareCharacters);
    mField->installEventFilter(this);
    layout->addWidget(mResult);
    layout->addWidget(mField);
    mPrevious = addStep("mKeySearchPrevious", Qt::LeftArrow, "lkeyKeysSearchPrevious");
    mNext = addStep("mKeySearchNext", Qt::RightArrow, "lkeyKeysSearchNext");
    connect(mField, &QLineEdit::textChanged, this, &KeySearchBar::queryChanged);
    connect(mPrevious, &QToolButton::clicked, this, &KeySearchBar::previousRequested);
    connect(mNext, &QToolButton::clicked, this, &KeySearchBar::nextRequested);
    setResult(0);
}

QToolButton *KeySearchBar::addStep(const char *objectName, Qt::ArrowType arrow, const char *textKey)
{
    auto *button = new QToolButton;
    button->setObjectName(QLatin1StringView(objectName));
    button->setArrowType(arrow);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setAccessibleName(localizedText(textKey));
    button->setToolTip(localizedText(textKey));
    layout()->addWidget(button);
    return button;
}

QString KeySearchBar::query() const
{
    return mField->text();
}

void KeySearchBar::setResult(qsizetype keyCount)
{
    const bool isSearching = !query().trimmed().isEmpty();
    mPrevious->setEnabled(keyCount > 0);
    mNext->setEnabled(keyCount > 0);
    QString text;
    if (isSearching && keyCount == 0)
        text = localizedText("lkeyKeysSearchNothing");
    else if (isSearching)
        text = localizedFormat("lkeyKeysSearchResult", {QString::number(keyCount)});
    if (text == mResult->text())
        return;
    mResult->setText(text);
    // Screen readers read the description of the field, where the focus is.
    mField->setAccessibleDescription(text);
}

void KeySearchBar::beginSearch()
{
    mField->setFocus(Qt::ShortcutFocusReason);
    mField->selectAll();
}

bool KeySearchBar::eventFilter(QObject *watched, QEvent *event)
{
    // The field leaves Return to the window, which would press a default button. An empty field leaves Escape to it.
    if (watched != mField || (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride))
        return QWidget::eventFilter(watched, event);
    const auto *key = static_cast<QKeyEvent *>(event);
    const bool isReturn = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    const bool isClearing = key->key() == Qt::Key_Escape && !query().isEmpty();
    if (!isReturn && !isClearing)
        return QWidget::eventFilter(watched, event);
    event->accept();
    if (event->type() == QEvent::ShortcutOverride)
        return true;
    if (isClearing)
        mField->clear();
    else if (key->modifiers() & Qt::ShiftModifier)
        Q_EMIT previousRequested();
    else
        Q_EMIT nextRequested();
    return true;
}
