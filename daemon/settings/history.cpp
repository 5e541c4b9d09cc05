// SPDX-License-Identifier: MIT
#include "daemon/settings/history.h"

#include "base/historykeys.h"
#include "base/qlcoreutility.h"
#include "base/settingskeys.h"
#include "daemon/settings/contentdigest.h"
#include "daemon/settings/differencekeys.h"
#include "daemon/settings/documentdifference.h"
#include "daemon/settings/recordtouch.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/system/logging.h"

#include <QDateTime>
#include <QDir>
#include <QStringList>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;
using DocumentDifference::Direction;
using Kind = HistoryEntry::Kind;

namespace {

/// The kinds of changes that a slider or a text field makes in many steps.
constexpr std::array joinedKinds{HistoryKeys::kindBrightness, HistoryKeys::kindColor, HistoryKeys::kindProfileRenamed,
                                 HistoryKeys::kindMacroRenamed};

QString kindOf(const QVariantMap &what)
{
    return what.value(HistoryKeys::kind).toString();
}

/// The places that a difference changes, without the values.
QStringList placesOf(const QVariantMap &difference, const QString &path = {})
{
    QStringList places;
    for (auto entry = difference.cbegin(); entry != difference.cend(); ++entry) {
        const QString place = path + u'/' + entry.key();
        const QVariantMap change = entry.value().toMap();
        places += place;
        places += placesOf(change.value(DifferenceKeys::dictionary).toMap(), place);
        for (const QVariant &element : change.value(DifferenceKeys::steps).toList()) {
            const QVariantMap step = element.toMap();
            const QString index = place + u'/' + step.value(DifferenceKeys::indexAfter).toString();
            places += index;
            places +=
                placesOf(step.value(DifferenceKeys::changed).toMap().value(DifferenceKeys::dictionary).toMap(), index);
        }
    }
    return places;
}

std::optional<quint64> digestOf(const QVariantMap &document)
{
    const std::optional<QByteArray> bytes = QlCoreUtility::convertDictionaryToData(document);
    return bytes ? std::optional(contentDigest(*bytes)) : std::nullopt;
}

constexpr qint64 dayMs = qint64{24} * 60 * 60 * 1000;

bool isChange(Kind kind)
{
    return kind == Kind::change;
}

HistoryEntry gapEntry()
{
    return {.kind = Kind::gap,
            .author = HistoryKeys::authorUnknown,
            .what = {{HistoryKeys::kind, QString(HistoryKeys::kindElsewhere)}}};
}

} // namespace

History::History(const QString &folder, const HistoryLimits &limits, QObject *parent)
    : QObject(parent), mLimits(limits), mLog(QDir(folder).filePath(u"history"_s)),
      mClock([] { return QDateTime::currentMSecsSinceEpoch(); })
{
}

void History::open(const QVariantMap &document, const std::function<QList<QByteArray>()> &copies)
{
    load();
    const qint64 now = mClock();
    const bool isFirstOfDay = see(now);
    dropOld(0);
    const std::optional<quint64> present = digestOf(document);
    if (mDigest && present && *mDigest != *present)
        catchUp(document, *present, copies());
    else if (isFirstOfDay && mDigest && firstKept(now - mLimits.ageMs) != mItems.begin())
        write({HistoryEntry{.id = mLastId + 1, .kind = Kind::nothing, .timeMs = now, .digest = mDigest}});
}

/// Takes the entries of the file. A gap replaces an entry that cannot be read.
void History::load()
{
    QList<std::pair<HistoryEntry, QByteArray>> unfinished; // of one write
    bool isGap = false;
    quint32 skippedId = 0;
    for (const QByteArray &frame : mLog.load()) {
        const std::optional<HistoryEntry> entry = HistoryEntry::fromFrame(frame);
        const quint32 before = unfinished.isEmpty() ? mLastId : unfinished.last().first.id;
        // A gap needs an id of its own.
        if (!entry || entry->id <= before + (isGap && unfinished.isEmpty() ? 1 : 0)) {
            qCWarning(lcSettings, "file: the history has an entry that cannot be read; it is lost");
            mLog.discard(); // the next write removes the entry
            skippedId = std::max(skippedId, entry ? entry->id : HistoryEntry::idOfFrame(frame));
            isGap = true;
            unfinished.clear();
            continue;
        }
        unfinished.append({*entry, frame});
        if (!entry->digest)
            continue;
        if (std::exchange(isGap, false)) {
            const HistoryEntry &next = unfinished.first().first;
            HistoryEntry gap = gapEntry();
            gap.id = next.id - 1;
            gap.timeMs = next.timeMs;
            gap.digest = mDigest;
            take(gap, gap.toFrame());
        }
        for (const auto &[finished, bytes] : std::as_const(unfinished))
            take(finished, bytes);
        mDigest = entry->digest;
        unfinished.clear();
    }
    mLastId = std::max(mLastId, skippedId);
    if (!unfinished.isEmpty())
        mLog.discard(); // the next entry would finish them
}

/// Adds the entry that a killed daemon has not written, or a gap.
void History::catchUp(const QVariantMap &document, quint64 digest, const QList<QByteArray> &copies)
{
    std::optional<HistoryEntry> missed = missedStep(document);
    for (const QByteArray &bytes : copies) {
        if (missed || contentDigest(bytes) != *mDigest)
            continue;
        const std::optional<QVariantMap> before = QlCoreUtility::convertDataToDictionary(bytes);
        if (!before)
            continue;
        missed = entryOf(*before, {.document = document, .cause = {.author = HistoryKeys::authorUnknown}});
    }
    if (!missed) {
        qCWarning(lcSettings, "file: the settings are not those that the history leads to; undo begins anew");
        missed = gapEntry();
    }
    missed->author = HistoryKeys::authorUnknown;
    missed->timeMs = mClock();
    missed->id = mLastId + 1;
    if (missed->kind == Kind::change && missed->difference.isEmpty())
        missed->kind = Kind::nothing;
    missed->digest = digest;
    write({*missed});
}

/// The undo or redo that leads from the last entry to `document`.
std::optional<HistoryEntry> History::missedStep(const QVariantMap &document) const
{
    const auto leadsHere = [&](quint32 id, Direction fromHere) {
        const std::optional<QVariantMap> difference = forwardDifference({.id = id});
        const std::optional<QVariantMap> before =
            difference ? DocumentDifference::applied(document, *difference, fromHere) : std::nullopt;
        return before && digestOf(*before) == mDigest;
    };
    if (!mUndo.empty() && leadsHere(mUndo.back(), Direction::forward))
        return HistoryEntry{.kind = Kind::undo, .target = mUndo.back()};
    if (!mRedo.empty() && leadsHere(mRedo.back(), Direction::back))
        return HistoryEntry{.kind = Kind::redo, .target = mRedo.back()};
    return {};
}

HistoryEntry History::entryOf(const QVariantMap &before, const StoredChange &change) const
{
    HistoryEntry entry{.kind = change.cause.kind,
                       .timeMs = mClock(),
                       .author = change.cause.author,
                       .what = change.cause.what,
                       .target = change.cause.target};
    if (!isChange(entry.kind))
        return entry;
    entry.difference = DocumentDifference::between(before, change.document);
    if (!entry.difference.isEmpty() && entry.what.isEmpty())
        entry.what = describedChange(before, change.document, entry.difference, change.cause.source);
    return entry;
}

void History::record(const QVariantMap &before, const QList<StoredChange> &changes, quint64 digest)
{
    QList<HistoryEntry> added;
    QVariantMap document = before;
    for (const StoredChange &change : changes) {
        HistoryEntry entry = entryOf(document, change);
        if (isChange(entry.kind) && !entry.difference.isEmpty() && added.isEmpty())
            join(entry, document, change);
        document = change.document;
        if (isChange(entry.kind) && entry.difference.isEmpty())
            continue;
        entry.id = mLastId + 1 + static_cast<quint32>(added.size());
        added += entry;
    }
    if (added.isEmpty() && (!mDigest || *mDigest == digest))
        return;
    if (added.isEmpty()) // "LastMacroID" alone has changed
        added += HistoryEntry{.id = mLastId + 1, .kind = Kind::nothing, .timeMs = mClock()};
    added.last().digest = digest;
    write(added);
}

/// Makes the entry of `change`, which came after `before`, replace the one before if both are part of one drag of a
/// slider, of one name, or of one deletion.
void History::join(HistoryEntry &entry, const QVariantMap &before, const StoredChange &change) const
{
    const QString kind = kindOf(entry.what);
    const bool isRepair = change.cause.source == ChangeSource::replacement;
    const bool isJoined = isRepair || std::ranges::find(joinedKinds, kind) != joinedKinds.end();
    if (!isJoined || mUndo.empty() || mItems.back().id != mUndo.back())
        return;
    const auto isPart = [&](const QString &earlier) {
        return isRepair ? earlier == HistoryKeys::kindProfileDeleted || earlier == HistoryKeys::kindMacroDeleted
                        : earlier == kind;
    };
    const std::optional<HistoryEntry> last = HistoryEntry::fromFrame(mItems.back().frame);
    if (!last || last->author != entry.author || !isPart(kindOf(last->what)) || entry.timeMs < last->timeMs
        || entry.timeMs - last->timeMs > mLimits.joiningMs)
        return;
    if (!isRepair && placesOf(last->difference) != placesOf(entry.difference))
        return;
    const QVariantMap &after = change.document;
    const auto start = DocumentDifference::applied(before, last->difference, Direction::back);
    if (!start)
        return;
    entry.joins = last->id;
    entry.difference = DocumentDifference::between(*start, after);
    if (entry.difference.isEmpty()) {
        entry.kind = Kind::nothing;
        entry.what.clear();
    } else {
        entry.what = describedChange(*start, after, entry.difference, ChangeSource::command);
    }
}

History::Found<quint32> History::joinSince(const QVariantMap &document, quint32 first, const QString &author)
{
    if (!find(first))
        return Refusal::unknown;
    if (first <= mGap)
        return Refusal::unreachable;
    for (auto item = std::ranges::lower_bound(mItems, first, {}, &Item::id); item != mItems.end(); ++item) {
        const std::optional<HistoryEntry> entry = HistoryEntry::fromFrame(item->frame);
        if (!entry || !isChange(entry->kind) || entry->author != author || !isInEffect(entry->id))
            return Refusal::outdated;
    }
    if (first == mUndo.back())
        return first; // it is the only one
    const auto path = pathSince(first);
    const auto before = path ? documentBefore(document, {.id = first}, *path) : std::nullopt;
    if (!before)
        return Refusal::unreachable;
    HistoryEntry joined = entryOf(*before, {.document = document, .cause = {.author = author}});
    joined.id = mLastId + 1;
    joined.joins = first;
    joined.digest = mDigest;
    if (joined.difference.isEmpty())
        joined.kind = Kind::nothing;
    else if (!fits(joined.toFrame()))
        return Refusal::invalid;
    write({joined});
    return joined.kind == Kind::nothing ? 0 : joined.id;
}

/// Whether an entry with these bytes is small enough to be kept.
bool History::fits(const QByteArray &frame) const
{
    return !frame.isEmpty() && HistoryLog::sizeOf(frame) <= mLimits.bytes / 2;
}

void History::write(const QList<HistoryEntry> &entries)
{
    QList<QByteArray> frames;
    for (HistoryEntry entry : entries) {
        QByteArray frame = entry.toFrame();
        if (!fits(frame)) {
            entry.kind = Kind::gap;
            entry.difference.clear();
            frame = entry.toFrame();
        }
        frames += frame;
        take(entry, frame);
        mDigest = entry.digest;
    }
    if (!mLog.append(frames))
        (void)compact(); // a new file, or one that is not as it was left
    dropOld(dayMs);      // not with each change: the file is written anew
    Q_EMIT changed();
}

/// Adds the entry to the list and to the order in which changes can be undone.
void History::take(const HistoryEntry &entry, const QByteArray &frame)
{
    mLastId = entry.id;
    see(entry.timeMs);
    while (entry.joins != 0 && !mItems.empty() && mItems.back().id >= entry.joins) {
        std::erase(mUndo, mItems.back().id);
        mItems.pop_back();
    }
    switch (entry.kind) {
    case Kind::change:
        mUndo.push_back(entry.id);
        mRedo.clear();
        break;
    case Kind::nothing:
        if (entry.joins != 0)
            mRedo.clear();
        return;
    case Kind::undo:
        if (std::erase(mUndo, entry.target) > 0)
            mRedo.push_back(entry.target);
        break;
    case Kind::redo:
        if (std::erase(mRedo, entry.target) > 0)
            mUndo.push_back(entry.target);
        break;
    case Kind::gap:
        mUndo.clear();
        mRedo.clear();
        mGap = entry.id;
        break;
    }
    mItems.push_back(
        {.id = entry.id, .kind = entry.kind, .timeMs = entry.timeMs, .target = entry.target, .frame = frame});
}

/// Notes that the clock has shown this time. True for the first time of a day.
bool History::see(qint64 timeMs)
{
    if (timeMs >= mSeenMs + dayMs) {
        mConfirmedMs = std::max(mConfirmedMs, mSeenMs);
        mSeenMs = timeMs;
        return true;
    }
    if (timeMs <= mSeenMs - dayMs)
        mConfirmedMs = std::max(mConfirmedMs, timeMs);
    return false;
}

/// The first entry that stays if those older than `oldestMs` go. The time of an entry may be wrong: one from the future
/// goes with an older one after it.
std::vector<History::Item>::iterator History::firstKept(qint64 oldestMs)
{
    const qint64 newestMs = std::max(mClock(), mConfirmedMs);
    const auto isFresh = [&](const Item &item) { return item.timeMs >= oldestMs && item.timeMs <= newestMs; };
    const auto fresh = std::ranges::find_if(mItems, isFresh);
    auto keep = fresh;
    while (keep != mItems.begin() && std::prev(keep)->timeMs > newestMs)
        --keep;
    return keep;
}

/// Keeps the history within its bounds. An entry is never shown after one that was dropped. Entries go by age when the
/// oldest is too old by `slackMs`, and the clock has said so on two days: one that jumps ahead deletes nothing.
void History::dropOld(qint64 slackMs)
{
    const qint64 oldestMs = mConfirmedMs - mLimits.ageMs;
    auto keep = firstKept(oldestMs - slackMs) == mItems.begin() ? mItems.begin() : firstKept(oldestMs);
    const bool isTooLarge = mLog.size() > mLimits.bytes;
    if (keep == mItems.begin() && !isTooLarge)
        return;
    if (isTooLarge) {
        qsizetype size = 0;
        auto first = mItems.end();
        while (first != keep && size + HistoryLog::sizeOf(std::prev(first)->frame) <= mLimits.bytes / 4 * 3)
            size += HistoryLog::sizeOf((--first)->frame);
        keep = first;
    }
    const auto isDropped = [&](quint32 id) { return keep == mItems.end() || id < keep->id; };
    std::erase_if(mUndo, isDropped);
    std::erase_if(mRedo, isDropped);
    mItems.erase(mItems.begin(), keep);
    (void)compact(); // logs a failure
}

/// Writes the file anew, with the entries of the list alone. The last frame keeps the digest, and the last id: no entry
/// ever gets the id of another one.
bool History::compact()
{
    QList<QByteArray> frames;
    for (const Item &item : mItems)
        frames += item.frame;
    if (mDigest && (mItems.empty() || mItems.back().id != mLastId))
        frames += HistoryEntry{.id = ++mLastId, .kind = Kind::nothing, .timeMs = mClock(), .digest = mDigest}.toFrame();
    return mLog.rewrite(frames);
}

bool History::clear()
{
    mItems.clear();
    mUndo.clear();
    mRedo.clear();
    const bool isCleared = compact();
    Q_EMIT changed();
    return isCleared;
}

const History::Item *History::find(quint32 id) const
{
    const auto found = std::ranges::lower_bound(mItems, id, {}, &Item::id);
    return found != mItems.end() && found->id == id ? &*found : nullptr;
}

bool History::isInEffect(quint32 id) const
{
    return std::ranges::find(mUndo, id) != mUndo.end();
}

/// The difference that the step has made; absent if it is not known.
std::optional<QVariantMap> History::forwardDifference(const Step &step) const
{
    const Item *item = find(step.id);
    const std::optional<HistoryEntry> entry = item ? HistoryEntry::fromFrame(item->frame) : std::nullopt;
    if (!entry || !isChange(entry->kind))
        return {};
    return step.isForward ? entry->difference : DocumentDifference::reversed(entry->difference);
}

/// The steps after the entry `id`, without those that were taken back meanwhile. Absent if there is a gap.
std::optional<std::vector<History::Step>> History::pathSince(quint32 id) const
{
    std::vector<Step> path;
    const auto add = [&path](const Step &step) {
        if (!path.empty() && path.back() == Step{.id = step.id, .isForward = !step.isForward})
            path.pop_back();
        else
            path.push_back(step);
    };
    for (auto item = std::ranges::upper_bound(mItems, id, {}, &Item::id); item != mItems.end(); ++item) {
        switch (item->kind) {
        case Kind::change: add({.id = item->id}); break;
        case Kind::undo: add({.id = item->target, .isForward = false}); break;
        case Kind::redo: add({.id = item->target}); break;
        case Kind::nothing: break;
        case Kind::gap: return {};
        }
    }
    return path;
}

/// The step that the entry has made; absent if it has made none.
std::optional<History::Step> History::stepOf(const Item &item)
{
    switch (item.kind) {
    case Kind::change: return Step{.id = item.id};
    case Kind::undo: return Step{.id = item.target, .isForward = false};
    case Kind::redo: return Step{.id = item.target};
    case Kind::nothing:
    case Kind::gap: break;
    }
    return {};
}

/// The same, if it is still in effect.
std::optional<History::Step> History::stepInEffect(const Item &item) const
{
    const std::optional<Step> step = stepOf(item);
    return step && isInEffect(step->id) == step->isForward ? step : std::nullopt;
}

std::optional<QVariantMap> History::documentBefore(const QVariantMap &document, const Step &step,
                                                   const std::vector<Step> &path) const
{
    std::optional<QVariantMap> earlier = document;
    const auto goBack = [&](const Step &done) {
        const std::optional<QVariantMap> difference = earlier ? forwardDifference(done) : std::nullopt;
        earlier = difference ? DocumentDifference::applied(*earlier, *difference, Direction::back) : std::nullopt;
    };
    std::for_each(path.rbegin(), path.rend(), goBack);
    goBack(step);
    return earlier;
}

std::optional<QVariantMap> History::documentWithout(const QVariantMap &document, const Step &step,
                                                    const std::vector<Step> &path) const
{
    std::optional<QVariantMap> difference = forwardDifference(step);
    for (const Step &later : path) {
        const std::optional<QVariantMap> across = difference ? forwardDifference(later) : std::nullopt;
        difference = across ? RecordTouch::movedAcross(*difference, *across) : std::nullopt;
    }
    if (!difference)
        return {};
    const auto without = DocumentDifference::applied(document, *difference, Direction::back);
    if (!without)
        return {};
    const QVariantMap whole = SettingsDocument::completed(*without);
    return SettingsDocument::validate(whole) ? std::optional(whole) : std::nullopt;
}

History::Found<History::Target> History::undoTarget(const QVariantMap &document, quint32 id) const
{
    const Item *item = find(id);
    if (!item)
        return Refusal::unknown;
    if (id <= mGap)
        return Refusal::unreachable;
    if (mUndo.empty() || mUndo.back() != id)
        return Refusal::outdated;
    const std::optional<QVariantMap> earlier = documentBefore(document, {.id = id}, {});
    if (!earlier)
        return Refusal::unreachable;
    if (!SettingsDocument::validate(*earlier))
        return Refusal::invalid;
    return Target{.document = *earlier, .cause = {.author = {}, .kind = Kind::undo, .target = id}};
}

History::Found<History::Target> History::redoTarget(const QVariantMap &document, quint32 id) const
{
    const Item *item = find(id);
    if (!item)
        return Refusal::unknown;
    if (mRedo.empty() || mRedo.back() != id)
        return Refusal::outdated;
    const std::optional<QVariantMap> later = documentBefore(document, {.id = id, .isForward = false}, {});
    if (!later)
        return Refusal::unreachable;
    if (!SettingsDocument::validate(*later))
        return Refusal::invalid;
    return Target{.document = *later, .cause = {.author = {}, .kind = Kind::redo, .target = id}};
}

History::Found<History::Target> History::restoreTarget(const QVariantMap &document, quint32 id) const
{
    const Item *item = find(id);
    if (!item)
        return Refusal::unknown;
    const auto path = pathSince(id);
    if (!path || item->kind == Kind::gap)
        return Refusal::unreachable;
    const std::optional<Step> step = stepInEffect(*item);
    if (!step)
        return Refusal::notInEffect;
    Target target{.cause = {.author = {},
                            .what = {{HistoryKeys::kind, QString(HistoryKeys::kindRestore)},
                                     {HistoryKeys::target, static_cast<int>(id)}}}};
    std::optional<QVariantMap> restored = documentWithout(document, *step, *path);
    target.isAlone = restored.has_value();
    if (!restored) {
        restored = documentBefore(document, *step, *path);
        for (auto later = path->rbegin(); later != path->rend(); ++later)
            target.others += later->id;
    }
    if (!restored)
        return Refusal::unreachable;
    if (!SettingsDocument::validate(*restored))
        return Refusal::invalid;
    target.document = *restored;
    return target;
}

History::Found<ChangeParts> History::partsOf(const QVariantMap &document, quint32 id) const
{
    const Item *item = find(id);
    if (!item)
        return Refusal::unknown;
    const auto path = pathSince(id);
    const std::optional<Step> step = stepOf(*item);
    const std::optional<QVariantMap> difference = path && step ? forwardDifference(*step) : std::nullopt;
    const std::optional<QVariantMap> before = difference ? documentBefore(document, *step, *path) : std::nullopt;
    const std::optional<QVariantMap> after =
        before ? DocumentDifference::applied(*before, *difference, Direction::forward) : std::nullopt;
    if (!after)
        return Refusal::unreachable;
    return changeParts(*before, *after, *difference);
}

QVariantMap History::shown(const Item &item) const
{
    const HistoryEntry entry = HistoryEntry::fromFrame(item.frame).value_or(HistoryEntry());
    QVariantMap values = entry.what;
    values.insert(HistoryKeys::id, entry.id);
    values.insert(HistoryKeys::time, static_cast<qlonglong>(entry.timeMs));
    values.insert(HistoryKeys::author, entry.author);
    if (entry.kind == Kind::undo || entry.kind == Kind::redo) {
        values.insert(HistoryKeys::kind,
                      QString(entry.kind == Kind::undo ? HistoryKeys::kindUndo : HistoryKeys::kindRedo));
        values.insert(HistoryKeys::target, entry.target);
    }
    if (values.contains(HistoryKeys::target)) {
        const quint32 target = values.value(HistoryKeys::target).toUInt();
        values.insert(HistoryKeys::target, target);
        if (const Item *meant = target < item.id ? find(target) : nullptr)
            values.insert(HistoryKeys::change, HistoryEntry::fromFrame(meant->frame).value_or(HistoryEntry()).what);
    }
    const bool isUndone = isChange(entry.kind) && !isInEffect(entry.id);
    const HistoryKeys::Key state = entry.id <= mGap ? HistoryKeys::stateOutOfReach
                                   : isUndone       ? HistoryKeys::stateUndone
                                                    : HistoryKeys::stateDone;
    values.insert(HistoryKeys::state, QString(state));
    if (!mUndo.empty() && mUndo.back() == entry.id)
        values.insert(HistoryKeys::next, QString(HistoryKeys::nextUndo));
    else if (!mRedo.empty() && mRedo.back() == entry.id)
        values.insert(HistoryKeys::next, QString(HistoryKeys::nextRedo));
    return values;
}

QList<QVariantMap> History::entries() const
{
    QList<QVariantMap> list;
    for (const Item &item : mItems)
        list += shown(item);
    return list;
}

QList<QVariantMap> History::nextEntries() const
{
    QList<QVariantMap> list;
    for (const std::vector<quint32> *next : {&mUndo, &mRedo}) {
        if (const Item *item = next->empty() ? nullptr : find(next->back()))
            list += shown(*item);
    }
    return list;
}
