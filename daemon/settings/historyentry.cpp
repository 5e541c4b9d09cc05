// SPDX-License-Identifier: MIT
#include "daemon/settings/historyentry.h"

#include "base/propertylist.h"

#include <QtEndian>

namespace {

using Key = QLatin1StringView;

// Keys of the file: short, and never renamed.
constexpr Key idKey{"i"};
constexpr Key kindKey{"k"};
constexpr Key timeKey{"t"};
constexpr Key authorKey{"a"};
constexpr Key whatKey{"w"};
constexpr Key differenceKey{"d"};
constexpr Key targetKey{"x"};
constexpr Key joinsKey{"r"};
constexpr Key digestKey{"s"};

// The first byte of a frame
constexpr char plainMark = 'p';
constexpr char compressedMark = 'z';
constexpr qsizetype compressedFrom = 512; // bytes; smaller frames hardly shrink

/// Empty if the bytes claim to be larger than any property list: the memory would be allocated first.
QByteArray uncompressed(const QByteArray &bytes)
{
    const bool isPlausible = bytes.size() >= qsizetype(sizeof(quint32))
                             && qFromBigEndian<quint32>(bytes.constData()) <= PropertyList::maximumInputBytes;
    return isPlausible ? qUncompress(bytes) : QByteArray();
}

/// Empty if the frame cannot be read.
QVariantMap valuesIn(const QByteArray &frame)
{
    if (frame.isEmpty())
        return {};
    const QByteArray rest = frame.sliced(1);
    return PropertyList::read(frame.front() == compressedMark ? uncompressed(rest) : rest).value_or(QVariant()).toMap();
}

} // namespace

QByteArray HistoryEntry::toFrame() const
{
    QVariantMap values{
        {idKey, static_cast<qlonglong>(id)}, {timeKey, static_cast<qlonglong>(timeMs)}, {authorKey, author}};
    const auto addUnlessZero = [&values](Key key, qlonglong value) {
        if (value != 0)
            values.insert(key, value);
    };
    addUnlessZero(kindKey, static_cast<qlonglong>(kind));
    addUnlessZero(targetKey, target);
    addUnlessZero(joinsKey, joins);
    if (!what.isEmpty())
        values.insert(whatKey, what);
    if (!difference.isEmpty())
        values.insert(differenceKey, difference);
    if (digest) {
        QByteArray bytes(sizeof(quint64), Qt::Uninitialized);
        qToLittleEndian(*digest, bytes.data());
        values.insert(digestKey, bytes);
    }
    const std::optional<QByteArray> list = PropertyList::writeBinary(values);
    if (!list)
        return {};
    return list->size() < compressedFrom ? plainMark + *list : compressedMark + qCompress(*list, 1);
}

quint32 HistoryEntry::idOfFrame(const QByteArray &frame)
{
    const qlonglong id = valuesIn(frame).value(idKey).toLongLong();
    return id >= 0 && id <= maximumId ? static_cast<quint32>(id) : 0;
}

std::optional<HistoryEntry> HistoryEntry::fromFrame(const QByteArray &frame)
{
    const QVariantMap values = valuesIn(frame);
    const qlonglong kind = values.value(kindKey).toLongLong();
    const qlonglong id = values.value(idKey).toLongLong();
    const qlonglong timeMs = values.value(timeKey).toLongLong();
    const auto isId = [&values](Key key) {
        const qlonglong value = values.value(key).toLongLong();
        return value >= 0 && value <= maximumId;
    };
    if (!isId(idKey) || id == 0 || !isId(targetKey) || !isId(joinsKey) || timeMs < 0 || kind < 0
        || kind > static_cast<qlonglong>(Kind::gap))
        return {};
    HistoryEntry entry{.id = static_cast<quint32>(id),
                       .kind = static_cast<Kind>(kind),
                       .timeMs = timeMs,
                       .author = values.value(authorKey).toString(),
                       .what = values.value(whatKey).toMap(),
                       .difference = values.value(differenceKey).toMap(),
                       .target = static_cast<quint32>(values.value(targetKey).toLongLong()),
                       .joins = static_cast<quint32>(values.value(joinsKey).toLongLong()),
                       .digest = {}};
    if (const QByteArray digest = values.value(digestKey).toByteArray(); digest.size() == sizeof(quint64))
        entry.digest = qFromLittleEndian<quint64>(digest.constData());
    return entry;
}
