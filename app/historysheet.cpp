// SPDX-License-Identifier: MIT
#include "app/historysheet.h"

#include "app/statuswords.h"
#include "base/historykeys.h"
#include "base/text.h"
#include "keys/historywords.h"
#include "keys/keyminiature.h"
#include "platform/spacing.h"

#include <QDateTime>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;
using HistoryKeys::Key;

namespace {

enum Column { timeColumn, wordsColumn, authorColumn, stateColumn };

constexpr int indexRole = Qt::UserRole; ///< of an entry; a day has none
constexpr qsizetype mostOthersNamed = 5;

uint idOf(const QVariantMap &entry)
{
    return entry.value(HistoryKeys::id).toUInt();
}

QDateTime timeOf(const QVariantMap &entry)
{
    return QDateTime::fromMSecsSinceEpoch(entry.value(HistoryKeys::time).toLongLong());
}

QString authorOf(const QVariantMap &entry)
{
    struct Author
    {
        Key name;
        const char *textKey;
    };
    constexpr std::array authors{Author{HistoryKeys::authorConfigurator, "lkeyHistoryByWindow"},
                                 Author{HistoryKeys::authorKestractl, "lkeyHistoryByKestractl"},
                                 Author{HistoryKeys::authorKeyboard, "lkeyHistoryByKeyboard"},
                                 Author{HistoryKeys::authorClient, "lkeyHistoryByClient"}};
    const QString name = entry.value(HistoryKeys::author).toString();
    const auto author = std::ranges::find_if(authors, [&name](const Author &each) { return each.name == name; });
    return author == authors.end() ? QString() : localizedText(author->textKey);
}

QString stateOf(const QVariantMap &entry)
{
    const QString state = entry.value(HistoryKeys::state).toString();
    if (state == HistoryKeys::stateUndone)
        return localizedText("lkeyHistoryIsUndone");
    return state == HistoryKeys::stateOutOfReach ? localizedText("lkeyHistoryIsOutOfReach") : QString();
}

/// The change itself, also of an undo, a redo or a restoration.
QVariantMap changeOf(const QVariantMap &entry)
{
    const auto inside = entry.constFind(HistoryKeys::change);
    return inside == entry.cend() ? entry : inside->toMap();
}

/// Whether a change of this kind sets something to a value that the entry has.
bool setsValue(const QString &kind)
{
    constexpr std::array kinds{HistoryKeys::kindKey,     HistoryKeys::kindBrightness,     HistoryKeys::kindColor,
                               HistoryKeys::kindLight,   HistoryKeys::kindProfileDisplay, HistoryKeys::kindEffect,
                               HistoryKeys::kindGameMode};
    return std::ranges::find(kinds, kind) != kinds.end();
}

/// Whether a change of this kind may have set anything, and has no values.
bool mayHaveSetAnything(const QString &kind)
{
    constexpr std::array kinds{
        HistoryKeys::kindMacroAdded,    HistoryKeys::kindMacroRenamed, HistoryKeys::kindMacroRecorded,
        HistoryKeys::kindMacroChanged,  HistoryKeys::kindEventsAdded,  HistoryKeys::kindEventsRemoved,
        HistoryKeys::kindEventsChanged, HistoryKeys::kindDelaysSet,    HistoryKeys::kindProfileChosen};
    return !setsValue(kind) && std::ranges::find(kinds, kind) == kinds.end();
}

bool haveSameSubject(const QVariantMap &one, const QVariantMap &other)
{
    const auto areEqual = [&](Key key) { return one.value(key) == other.value(key); };
    return areEqual(HistoryKeys::kind) && areEqual(HistoryKeys::profile) && areEqual(HistoryKeys::key);
}

QLabel *wrappedLabel(const char *objectName)
{
    auto *label = new QLabel;
    label->setObjectName(QLatin1StringView(objectName));
    label->setTextFormat(Qt::PlainText); // names are in it
    label->setWordWrap(true);
    return label;
}

} // namespace

HistorySheet::HistorySheet(HistoryStatus &history, QWidget *parent)
    : Sheet(parent), mHistory(history), mSearch(new QLineEdit), mList(new QTreeWidget),
      mWords(wrappedLabel("mHistoryWords")), mBefore(wrappedLabel("mHistoryBefore")),
      mEffect(wrappedLabel("mHistoryEffect")), mPicture(new KeyMiniature),
      mRestore(new QPushButton(localizedText("lkeyHistoryRestore"))),
      mClear(new QPushButton(localizedText("lkeyHistoryClear")))
{
    setObjectName("mHistorySheet"_L1);
    setWindowTitle(localizedText("lkeyHistoryTitle"));
    mSearch->setObjectName("mHistorySearch"_L1);
    mSearch->setPlaceholderText(localizedText("lkeyHistorySearch"));
    mSearch->setAccessibleName(localizedText("lkeyHistorySearch"));
    mSearch->setClearButtonEnabled(true);
    mList->setObjectName("mHistoryList"_L1);
    mList->setAccessibleName(localizedText("lkeyHistoryTitle"));
    mList->setAllColumnsShowFocus(true);
    mList->setHeaderLabels({localizedText("lkeyHistoryTime"), localizedText("lkeyHistoryChange"),
                            localizedText("lkeyHistoryAuthor"), localizedText("lkeyHistoryState")});
    mList->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    mList->header()->setSectionResizeMode(wordsColumn, QHeaderView::Stretch);
    mList->header()->setStretchLastSection(false);
    mPicture->setObjectName("mHistoryPicture"_L1);
    QSizePolicy keepsPlace = mPicture->sizePolicy();
    keepsPlace.setRetainSizeWhenHidden(true); // the list must not jump
    mPicture->setSizePolicy(keepsPlace);
    mRestore->setObjectName("mHistoryRestore"_L1);
    mClear->setObjectName("mHistoryClear"_L1);
    auto *close = new QPushButton(localizedText("lkeyClose"));
    close->setObjectName("mHistoryClose"_L1);
    // Return in the list must not delete or restore anything.
    for (QPushButton *button : {mClear, mRestore})
        button->setAutoDefault(false);

    auto *words = new QVBoxLayout;
    words->addWidget(mBefore);
    words->addWidget(mWords);
    words->addWidget(mEffect);
    words->addStretch();
    auto *details = new QHBoxLayout;
    details->setSpacing(Spacing::normal);
    details->addLayout(words, 1);
    details->addWidget(mPicture, 0, Qt::AlignTop);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(mClear);
    buttons->addStretch();
    buttons->addWidget(close);
    buttons->addWidget(mRestore);
    auto *layout = new QVBoxLayout(this);
    layout->setSpacing(Spacing::normal);
    layout->addWidget(mSearch);
    layout->addWidget(mList, 1);
    layout->addLayout(details);
    layout->addLayout(buttons);
    setMinimumSize(760, 460);
    setCancelButton(close);

    connect(&mHistory, &HistoryStatus::listChanged, this, [this] {
        if (isUp())
            read();
    });
    connect(mSearch, &QLineEdit::textChanged, this, &HistorySheet::search);
    connect(mList, &QTreeWidget::currentItemChanged, this, &HistorySheet::showSelected);
    connect(mRestore, &QPushButton::clicked, this, [this] {
        if (const QVariantMap *entry = selected())
            Q_EMIT restoreRequested(*entry);
    });
    connect(mClear, &QPushButton::clicked, this, &HistorySheet::askToClear);
    connect(close, &QPushButton::clicked, this, [this] { endSheet(); });
    showSelected();
}

void HistorySheet::show(QWidget *window)
{
    beginSheet(window);
    mList->setFocus();
    read();
}

void HistorySheet::say(const QString &words)
{
    mEffect->setText(words);
}

void HistorySheet::setCanRestore(bool canRestore)
{
    mCanRestore = canRestore;
    showButtons();
}

void HistorySheet::read()
{
    mPreviewed = 0; // what is shown may no longer be the effect
    showButtons();
    mHistory.list(this, [this](const std::optional<QList<QVariantMap>> &entries) {
        mIsAnswered = entries.has_value();
        QList<QVariantMap> latestFirst = entries.value_or(QList<QVariantMap>());
        std::ranges::reverse(latestFirst);
        fill(latestFirst);
    });
}

void HistorySheet::fill(const QList<QVariantMap> &entries)
{
    const QVariantMap *current = selected();
    const uint currentId = current ? idOf(*current) : 0;
    mEntries = entries;
    {
        const QSignalBlocker blocker(mList);
        mList->clear();
        QTreeWidgetItem *day = nullptr;
        QDate date;
        for (qsizetype index = 0; index < mEntries.size(); ++index) {
            const QVariantMap &entry = mEntries.at(index);
            const QDateTime time = timeOf(entry);
            if (!day || time.date() != date) {
                date = time.date();
                day = new QTreeWidgetItem(mList, {QLocale().toString(date, QLocale::LongFormat)});
                day->setFirstColumnSpanned(true);
                day->setFlags(Qt::ItemIsEnabled);
                day->setExpanded(true);
            }
            const QString words = historyWords(entry);
            auto *item = new QTreeWidgetItem(
                day, {QLocale().toString(time.time(), QLocale::ShortFormat), words, authorOf(entry), stateOf(entry)});
            item->setData(timeColumn, indexRole, index);
            item->setToolTip(wordsColumn, u"<p>"_s + words.toHtmlEscaped() + u"</p>"_s);
            if (idOf(entry) == currentId)
                mList->setCurrentItem(item);
        }
    }
    search();
    showSelected();
}

void HistorySheet::search()
{
    const QString text = mSearch->text().trimmed();
    QTreeWidgetItem *first = nullptr;
    for (int row = 0; row < mList->topLevelItemCount(); ++row) {
        QTreeWidgetItem *day = mList->topLevelItem(row);
        bool isAnyShown = false;
        for (int place = 0; place < day->childCount(); ++place) {
            QTreeWidgetItem *item = day->child(place);
            const bool isFound = item->text(wordsColumn).contains(text, Qt::CaseInsensitive)
                                 || item->text(authorColumn).contains(text, Qt::CaseInsensitive);
            item->setHidden(!isFound);
            isAnyShown = isAnyShown || isFound;
            if (isFound && !first)
                first = item;
        }
        day->setHidden(!isAnyShown);
    }
    const QTreeWidgetItem *current = mList->currentItem();
    if (!current || current->isHidden() || !current->data(timeColumn, indexRole).isValid())
        mList->setCurrentItem(first);
}

const QVariantMap *HistorySheet::selected() const
{
    const QTreeWidgetItem *item = mList->currentItem();
    const QVariant index = item ? item->data(timeColumn, indexRole) : QVariant();
    return index.isValid() && index.toLongLong() < mEntries.size() ? &mEntries.at(index.toLongLong()) : nullptr;
}

/// An entry has the values after the change. Those before are in the latest earlier change of the same thing, unless a
/// change in between may have set them. Empty if unknown.
QString HistorySheet::wordsBefore(const QVariantMap &entry) const
{
    if (!setsValue(entry.value(HistoryKeys::kind).toString()))
        return {};
    for (const QVariantMap &earlier : mEntries) {
        if (idOf(earlier) >= idOf(entry))
            continue;
        if (haveSameSubject(earlier, entry))
            return historyWords(earlier);
        if (mayHaveSetAnything(earlier.value(HistoryKeys::kind).toString()))
            return {};
    }
    return {};
}

void HistorySheet::showSelected()
{
    const QVariantMap *entry = selected();
    mPreviewed = 0;
    showButtons();
    mEffect->clear();
    mPicture->setVisible(false);
    if (!entry) {
        const char *reasonKey = !mIsAnswered         ? "lkeyStatusNoReply"
                                : mEntries.isEmpty() ? "lkeyHistoryEmpty"
                                                     : "lkeyHistoryNothingSelected";
        mWords->setText(localizedText(reasonKey));
        mBefore->setVisible(false);
        return;
    }
    const QString before = wordsBefore(*entry);
    mWords->setText(before.isEmpty() ? historyWords(*entry)
                                     : localizedFormat("lkeyHistoryAfter", {historyWords(*entry)}));
    mBefore->setText(localizedFormat("lkeyHistoryBefore", {before}));
    mBefore->setVisible(!before.isEmpty());
    const QVariantMap change = changeOf(*entry);
    if (change.value(HistoryKeys::kind).toString() == HistoryKeys::kindKey) {
        mPicture->setLitKeys({change.value(HistoryKeys::key).toInt()});
        mPicture->setVisible(true);
    }
    const uint id = idOf(*entry);
    mHistory.preview(id, this, [this, id](const HistoryStatus::Outcome &outcome) {
        const QVariantMap *now = selected();
        if (!now || idOf(*now) != id)
            return;
        mPreviewed = outcome.error.isEmpty() ? id : 0;
        showPreview(outcome);
        showButtons();
    });
}

void HistorySheet::showPreview(const HistoryStatus::Outcome &outcome)
{
    if (!outcome.error.isEmpty())
        return mEffect->setText(
            localizedFormat("lkeyHistoryCannotRestore", {StatusWords::ofHistoryError(outcome.error)}));
    if (outcome.isAlone)
        return mEffect->setText(localizedText("lkeyHistoryAlone"));
    QStringList others;
    for (const uint id : outcome.others) {
        if (others.size() == mostOthersNamed) {
            others += u"…"_s;
            break;
        }
        const auto other = std::ranges::find(mEntries, id, idOf);
        if (other != mEntries.end())
            others += historyWords(*other);
    }
    if (outcome.others.size() == 1)
        return mEffect->setText(localizedFormat("lkeyHistoryNotAloneOne", {others.join(QString())}));
    mEffect->setText(
        localizedFormat("lkeyHistoryNotAlone", {QString::number(outcome.others.size()), others.join(u"  ·  "_s)}));
}

void HistorySheet::showButtons()
{
    const QVariantMap *entry = selected();
    mRestore->setEnabled(mCanRestore && entry && idOf(*entry) == mPreviewed);
    mClear->setEnabled(!mEntries.isEmpty());
}

void HistorySheet::askToClear()
{
    const AlertTexts texts{localizedText("lkeyHistoryClearTitle"), localizedText("lkeyHistoryClearDesc"),
                           localizedText("lkeyCancel"), localizedText("lkeyHistoryClearNow")};
    showAlert(texts, this, [this](int returnCode) {
        if (returnCode == alertSecondButtonReturn)
            Q_EMIT clearRequested();
    });
}
