// SPDX-License-Identifier: MIT
#include "app/historysheet.h"

#include "app/statuswords.h"
#include "base/historykeys.h"
#include "base/text.h"
#include "base/textslocale.h"
#include "keys/historywords.h"
#include "keys/keyminiature.h"
#include "platform/spacing.h"

#include <QDateTime>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <initializer_list>
#include <utility>

using namespace Qt::StringLiterals;
using HistoryKeys::Key;

namespace {

enum Column { timeColumn, wordsColumn, authorColumn, stateColumn };

constexpr int indexRole = Qt::UserRole; ///< of an entry; a day has none
constexpr qsizetype mostOthersNamed = 5;
constexpr int partsHeight = 110; ///< of a header and about four rows

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
    return author == authors.end() ? u"–"_s : localizedText(author->textKey);
}

QString stateOf(const QVariantMap &entry)
{
    const QString state = entry.value(HistoryKeys::state).toString();
    if (state == HistoryKeys::stateUndone)
        return localizedText("lkeyHistoryIsUndone");
    return state == HistoryKeys::stateOutOfReach ? localizedText("lkeyHistoryIsOutOfReach") : QString();
}

QLabel *wrappedLabel(const char *objectName)
{
    auto *label = new QLabel;
    label->setObjectName(QLatin1StringView(objectName));
    label->setTextFormat(Qt::PlainText); // names are in it
    label->setWordWrap(true);
    return label;
}

void showNote(QLabel *label, const QString &words)
{
    label->setText(words);
    label->show();
}

} // namespace

HistorySheet::HistorySheet(HistoryStatus &history, QWidget *parent)
    : Sheet(parent), mHistory(history), mSearch(new QLineEdit), mList(new QTreeWidget),
      mWords(wrappedLabel("mHistoryWords")), mParts(new QTreeWidget), mPartsNote(wrappedLabel("mHistoryPartsNote")),
      mEffect(wrappedLabel("mHistoryEffect")), mNotice(wrappedLabel("mHistoryNotice")), mPicture(new KeyMiniature),
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
    mParts->setObjectName("mHistoryParts"_L1);
    mParts->setAccessibleName(localizedText("lkeyHistoryParts"));
    mParts->setRootIsDecorated(false);
    mParts->setAllColumnsShowFocus(true);
    mParts->setHeaderLabels({localizedText("lkeyHistoryBefore"), localizedText("lkeyHistoryAfter")});
    mParts->header()->setSectionResizeMode(QHeaderView::Stretch);
    mParts->setFixedHeight(partsHeight);
    mNotice->hide();
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
    words->addWidget(mWords);
    words->addWidget(mParts);
    words->addWidget(mPartsNote);
    words->addWidget(mEffect);
    words->addWidget(mNotice);
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
    QWidget *previous = mSearch;
    for (QWidget *next : std::initializer_list<QWidget *>{mList, mParts, mRestore, mClear, close})
        setTabOrder(std::exchange(previous, next), next);
    setMinimumSize(760, 560);
    setCancelButton(close);

    connect(&mHistory, &HistoryStatus::listChanged, this, [this] {
        if (isUp())
            read();
    });
    connect(mSearch, &QLineEdit::textChanged, this, &HistorySheet::search);
    connect(mList, &QTreeWidget::currentItemChanged, this, [this] {
        mNotice->clear();
        mNotice->hide();
        showSelected();
    });
    connect(mRestore, &QPushButton::clicked, this, [this] {
        mList->setFocus(); // otherwise the focus goes to the next button, because this one is disabled meanwhile
        if (const QVariantMap *entry = selected())
            Q_EMIT restoreRequested(*entry, mNewest);
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
    showNote(mNotice, words);
    showSelected();
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
                day = new QTreeWidgetItem(mList, {textsLocale().toString(date, QLocale::LongFormat)});
                day->setFirstColumnSpanned(true);
                day->setFlags(Qt::ItemIsEnabled);
                day->setExpanded(true);
            }
            const QString words = historyWords(entry);
            auto *item = new QTreeWidgetItem(day, {textsLocale().toString(time.time(), QLocale::ShortFormat), words,
                                                   authorOf(entry), stateOf(entry)});
            item->setData(timeColumn, indexRole, index);
            if (item->text(stateColumn).isEmpty()) // usual, and therefore not shown; but a screen reader reads the cell
                item->setData(stateColumn, Qt::AccessibleTextRole, localizedText("lkeyHistoryIsDone"));
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

void HistorySheet::showSelected()
{
    const QVariantMap *entry = selected();
    mPreviewed = 0;
    showButtons();
    mEffect->clear();
    mParts->clear();
    mPartsNote->hide();
    mPicture->setVisible(false);
    mParts->setVisible(entry);
    if (!entry) {
        const char *reasonKey = !mIsAnswered         ? "lkeyStatusNoReply"
                                : mEntries.isEmpty() ? "lkeyHistoryEmpty"
                                                     : "lkeyHistoryNothingSelected";
        mWords->setText(localizedText(reasonKey));
        return;
    }
    mWords->setText(historyWords(*entry));
    const uint id = idOf(*entry);
    mHistory.show(id, this, [this, id](const HistoryParts &parts, const QString &error) {
        const QVariantMap *now = selected();
        if (!now || idOf(*now) != id)
            return;
        if (error.isEmpty())
            return showParts(parts);
        mParts->hide();
        showNote(mPartsNote, localizedFormat("lkeyHistoryPartsUnknown", {StatusWords::ofHistoryError(error)}));
    });
    mHistory.preview(id, this, [this, id](const HistoryStatus::Outcome &outcome) {
        const QVariantMap *now = selected();
        if (!now || idOf(*now) != id)
            return;
        mPreviewed = outcome.error.isEmpty() ? id : 0;
        mNewest = outcome.newest;
        showPreview(outcome);
        showButtons();
    });
}

void HistorySheet::showParts(const HistoryParts &parts)
{
    mParts->clear();
    QList<int> codes;
    for (const QVariantMap &part : parts.list) {
        const HistoryPartWords words = historyPartWords(part);
        auto *item = new QTreeWidgetItem(mParts, {words.before.isEmpty() ? u"–"_s : words.before, words.after});
        for (int column = 0; column < item->columnCount(); ++column)
            item->setToolTip(column, u"<p>"_s + item->text(column).toHtmlEscaped() + u"</p>"_s);
        const int code = part.value(HistoryKeys::key).toInt();
        if (part.contains(HistoryKeys::key) && !codes.contains(code)) // it may be one of several profiles
            codes += code;
    }
    mPicture->setLitKeys(codes);
    mPicture->setVisible(!codes.isEmpty());
    mParts->setVisible(!parts.list.isEmpty());
    if (parts.count > parts.list.size())
        showNote(mPartsNote, localizedFormat("lkeyHistoryMoreParts",
                                             {QString::number(parts.count), QString::number(parts.list.size())}));
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
