// SPDX-License-Identifier: MIT
// The part of KeyboardKeysController that makes the picture work like a keyboard: the menu of a key and the search.
#include "keys/keyboardkeyscontroller.h"

#include "base/text.h"
#include "keys/keyboardpicture.h"
#include "keys/keylayout.h"
#include "keys/keynames.h"
#include "keys/keysearch.h"
#include "keys/keysearchbar.h"
#include "platform/popupbutton.h"

#include <QShortcut>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

struct ExtraKey
{
    int code;
    const char *textKey;
    QLatin1StringView ownCode; ///< the key whose code it has
};

constexpr ExtraKey extraKeys[] = {
    {106, "lkeyKeysMKeyInfo", "F15"_L1},   {107, "lkeyKeysMKeyInfo", "F16"_L1},
    {108, "lkeyKeysMKeyInfo", "F17"_L1},   {109, "lkeyKeysMKeyInfo", "F18"_L1},
    {110, "lkeyKeysMKeyInfo", "F19"_L1},   {111, "lkeyKeysTKeyInfo", "F20"_L1},
    {112, "lkeyKeysTKeyInfo", "F21"_L1},   {113, "lkeyKeysTKeyInfo", "F22"_L1},
    {114, "lkeyKeysTKeyInfo", "F23"_L1},   {146, "lkeyKeysTKeyInfo", "LANG3"_L1},
    {147, "lkeyKeysTKeyInfo", "LANG4"_L1}, {140, "lkeyKeysTKeyInfo", "International6"_L1},
};

} // namespace

void KeyboardKeysController::connectPicture()
{
    for (const KeyRow &row : KeyLayout::selectableKeys()) {
        KeyButton *key = mPicture->button(row.outlet);
        connect(key, &KeyButton::menuRequested, this,
                [this, key](const QPoint &position) { openAssignmentMenu(key, position); });
    }
    connectSelection();
    connect(mPicture, &KeyboardPicture::legendsChanged, this, [this] {
        showKeyNames();
        updateDescriptions();
        showSelectedKeys();
    });
    connect(mSearchBar, &KeySearchBar::queryChanged, this, &KeyboardKeysController::showSearchResult);
    connect(mSearchBar, &KeySearchBar::nextRequested, this, [this] { stepThroughSearch(1); });
    connect(mSearchBar, &KeySearchBar::previousRequested, this, [this] { stepThroughSearch(-1); });
    auto *find = new QShortcut(QKeySequence(QKeySequence::Find), mView);
    connect(find, &QShortcut::activated, mSearchBar, &KeySearchBar::beginSearch);
}

QString KeyboardKeysController::shownKeyName(int code) const
{
    const KeyRow *row = KeyLayout::rowForCode(code);
    if (!row)
        return {};
    const KeyButton *key = mPicture->button(row->outlet);
    const QString name = ::keyName(code);
    return key->legend() == key->shape().legend ? name : localizedFormat("lkeyKeysLayoutName", {key->legend(), name});
}

QString KeyboardKeysController::extraKeyInfo(int code) const
{
    const auto key = std::ranges::find(extraKeys, code, &ExtraKey::code);
    return key == std::end(extraKeys) ? QString() : localizedFormat(key->textKey, {key->ownCode});
}

void KeyboardKeysController::showKeyNames()
{
    for (const KeyRow &row : KeyLayout::selectableKeys())
        mPicture->button(row.outlet)->setAccessibleName(shownKeyName(row.code));
}

void KeyboardKeysController::openAssignmentMenu(KeyButton *key, const QPoint &position)
{
    if (!key->isEnabled())
        return;
    if (key->isAlsoSelected())
        Q_EMIT key->additionRequested(); // keeps the selection
    else if (key != mCurrentButton)
        key->click();
    mAssignFunction->openMenuAt(position);
}

void KeyboardKeysController::showSearchResult()
{
    mFoundKeys.clear();
    if (!mSearchBar->query().isEmpty()) {
        QList<KeySearchEntry> entries;
        for (const KeyRow &row : KeyLayout::selectableKeys()) {
            const KeyButton *button = mPicture->button(row.outlet);
            KeySearchEntry entry{row.code, usualKeyNames(row.code), {}};
            entry.names << button->legend();
            if (!button->upperLegend().isEmpty())
                entry.names << button->upperLegend();
            if (button->mark() != KeyMark::none)
                entry.assignment << button->accessibleDescription();
            if (button->mark() == KeyMark::disabled)
                entry.assignment << localizedText("lkeyKeysLegendDisabled");
            entries << entry;
        }
        mFoundKeys = keysFitting(mSearchBar->query(), entries);
    }
    for (const KeyRow &row : KeyLayout::selectableKeys())
        mPicture->button(row.outlet)->setFound(mFoundKeys.contains(row.code));
    mSearchBar->setResult(mFoundKeys.size());
}

void KeyboardKeysController::stepThroughSearch(int step)
{
    if (mFoundKeys.isEmpty())
        return;
    const qsizetype count = mFoundKeys.size();
    const qsizetype current = mFoundKeys.indexOf(selectedCode());
    const qsizetype next = current < 0 ? (step > 0 ? 0 : count - 1) : (current + step + count) % count;
    if (const KeyRow *row = KeyLayout::rowForCode(mFoundKeys[next]))
        mPicture->button(row->outlet)->click();
}
