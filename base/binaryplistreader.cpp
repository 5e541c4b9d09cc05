// SPDX-License-Identifier: MIT
#include "base/binaryplistreader.h"

#include "base/propertylistbudget.h"

#include <QDateTime>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <map>
#include <vector>

namespace {

constexpr qsizetype headerSize = 8;
constexpr qsizetype trailerSize = 32;

quint64 bigEndian(const char *from, int size)
{
    switch (size) { // the usual sizes need no loop
    case 1: return quint8(*from);
    case 2: return qFromBigEndian<quint16>(from);
    case 4: return qFromBigEndian<quint32>(from);
    case 8: return qFromBigEndian<quint64>(from);
    default: break;
    }
    quint64 value = 0;
    for (int i = 0; i < size; ++i)
        value = value << 8 | quint8(from[i]);
    return value;
}

QVariant integerVariant(qint64 value)
{
    const auto narrow = int(value);
    return narrow == value ? QVariant(narrow) : QVariant(qlonglong(value));
}

/// Decodes each object once and shares it with everything that refers to it. Two sums per object give the size of the
/// tree below it. A small file that expands to a huge tree is therefore refused without building the tree.
class Reader
{
public:
    explicit Reader(QByteArrayView data) : mData(data) {}

    std::optional<QVariant> read()
    {
        if (!readTrailer())
            return {};
        const Object *root = decode(mTop, 1);
        return root ? std::optional<QVariant>(root->value) : std::nullopt;
    }

private:
    enum class State : quint8 { untouched, beingDecoded, decoded };
    struct Object
    {
        QVariant value;
        quint32 nodes = 1;
        quint32 contentBytes = 0;
        quint16 height = 0; // nested containers, this one included
        State state = State::untouched;

        void takeOver(const Object &equal)
        {
            value = equal.value;
            nodes = equal.nodes;
            contentBytes = equal.contentBytes;
            height = equal.height;
        }
    };
    struct RecentContainer
    {
        QByteArrayView references;
        const Object *object = nullptr; // decoded
        bool isDictionary = false;
    };
    /// An object's bytes after its first one, cut to the area of objects.
    struct Cursor
    {
        const char *at;
        qsizetype left;
    };

    bool readTrailer()
    {
        if (mData.size() < headerSize + trailerSize || !mData.startsWith("bplist00"))
            return false;
        const char *trailer = mData.data() + mData.size() - trailerSize;
        mOffsetSize = quint8(trailer[6]);
        mReferenceSize = quint8(trailer[7]);
        const quint64 count = bigEndian(trailer + 8, 8);
        mTop = bigEndian(trailer + 16, 8);
        const quint64 tableStart = bigEndian(trailer + 24, 8);
        const auto tableEnd = quint64(mData.size() - trailerSize);
        if (mOffsetSize < 1 || mOffsetSize > 8 || mReferenceSize < 1 || mReferenceSize > 8)
            return false;
        if (count < 1 || count > PropertyList::maximumNodes || tableStart < quint64(headerSize) || tableStart > tableEnd
            || count * quint64(mOffsetSize) > tableEnd - tableStart)
            return false;
        mObjectsEnd = qsizetype(tableStart);
        mBytesLeft = mObjectsEnd - headerSize;
        mObjects.resize(count);
        return mBudget.takeNodes(1);
    }

    /// Returns the object with that number when it is valid at its place `depth` (1 for the root), otherwise null.
    Object *decode(quint64 number, int depth)
    {
        if (number >= mObjects.size())
            return nullptr;
        Object &object = mObjects[number];
        if (object.state == State::decoded)
            return depth + object.height - 1 <= PropertyList::maximumDepth ? &object : nullptr;
        if (object.state == State::beingDecoded) // contains itself
            return nullptr;
        object.state = State::beingDecoded;
        const quint64 offset = bigEndian(mData.data() + mObjectsEnd + qsizetype(number) * mOffsetSize, mOffsetSize);
        if (offset < quint64(headerSize) || offset >= quint64(mObjectsEnd)
            || !decodeAt(qsizetype(offset), object, depth))
            return nullptr;
        object.state = State::decoded;
        return &object;
    }

    bool decodeAt(qsizetype offset, Object &object, int depth)
    {
        const auto marker = quint8(mData[offset]);
        Cursor cursor{mData.data() + offset + 1, mObjectsEnd - offset - 1};
        const int low = marker & 0x0f;
        switch (marker >> 4) {
        case 0x0: return decodeBoolean(low, object);
        case 0x1: return decodeInteger(cursor, low, object);
        case 0x2: return decodeReal(cursor, low, object);
        case 0x3: return low == 3 && decodeDate(cursor, object);
        case 0x4: return decodeData(cursor, low, object);
        case 0x5: return decodeAsciiString(cursor, low, object);
        case 0x6: return decodeUtf16String(cursor, low, object);
        case 0xa: return decodeContainer(cursor, low, false, object, depth);
        case 0xd: return decodeContainer(cursor, low, true, object, depth);
        default: return false; // UID, set and undefined types
        }
    }

    static bool decodeBoolean(int low, Object &object)
    {
        if (low != 0x8 && low != 0x9) // null and filler
            return false;
        object.value = low == 0x9;
        return true;
    }

    static bool decodeInteger(Cursor cursor, int low, Object &object)
    {
        if (low > 4 || cursor.left < qsizetype(1) << low)
            return false;
        if (low < 3) // shorter ones are unsigned
            object.value = integerVariant(qint64(bigEndian(cursor.at, 1 << low)));
        else if (low == 3)
            object.value = integerVariant(qint64(bigEndian(cursor.at, 8)));
        else
            return decodeWideInteger(bigEndian(cursor.at, 8), bigEndian(cursor.at + 8, 8), object);
        return true;
    }

    /// Sixteen bytes, signed: accepted if qlonglong or qulonglong can hold the value.
    static bool decodeWideInteger(quint64 high, quint64 low, Object &object)
    {
        const bool topBit = low >> 63;
        if (high == 0 && topBit)
            object.value = qulonglong(low);
        else if ((high == 0 && !topBit) || (high == ~quint64(0) && topBit))
            object.value = integerVariant(qint64(low));
        else
            return false;
        return true;
    }

    static bool decodeReal(Cursor cursor, int low, Object &object)
    {
        if ((low != 2 && low != 3) || cursor.left < qsizetype(1) << low)
            return false;
        object.value = low == 2 ? double(std::bit_cast<float>(quint32(bigEndian(cursor.at, 4))))
                                : std::bit_cast<double>(bigEndian(cursor.at, 8));
        return true;
    }

    static bool decodeDate(Cursor cursor, Object &object)
    {
        if (cursor.left < 8)
            return false;
        const auto seconds = std::bit_cast<double>(bigEndian(cursor.at, 8));
        if (!(std::abs(seconds) <= PropertyList::maximumDateSeconds)) // also not a number
            return false;
        static const QDateTime epoch(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
        object.value = epoch.addMSecs(std::llround(seconds * 1000.0));
        return true;
    }

    /// Reads an object's count and moves the cursor past it. False unless that many units of `unit` bytes follow. No
    /// other object can take the same bytes: sharing them would make a small file a lot of work.
    bool takeCount(Cursor &cursor, int low, qsizetype unit, qsizetype &count)
    {
        quint64 value = quint64(low);
        if (low == 0x0f) {
            if (cursor.left < 1 || quint8(*cursor.at) >> 4 != 1 || (*cursor.at & 0x0f) > 3)
                return false;
            const int size = 1 << (*cursor.at & 0x0f);
            if (cursor.left < 1 + size)
                return false;
            value = bigEndian(cursor.at + 1, size);
            cursor = {cursor.at + 1 + size, cursor.left - 1 - size};
        }
        if (value > quint64(cursor.left / unit))
            return false;
        count = qsizetype(value);
        mBytesLeft -= count * unit;
        return mBytesLeft >= 0;
    }

    bool takeContent(Object &object, qsizetype bytes)
    {
        object.contentBytes = quint32(bytes);
        return mBudget.takeContent(quint64(bytes));
    }

    bool decodeData(Cursor cursor, int low, Object &object)
    {
        qsizetype count = 0;
        if (!takeCount(cursor, low, 1, count) || !takeContent(object, count))
            return false;
        object.value = QByteArray(cursor.at, count);
        return true;
    }

    bool decodeAsciiString(Cursor cursor, int low, Object &object)
    {
        qsizetype count = 0;
        if (!takeCount(cursor, low, 1, count) || !takeContent(object, 2 * count))
            return false;
        if (std::any_of(cursor.at, cursor.at + count, [](char c) { return quint8(c) >= 0x80; }))
            return false;
        object.value = QString::fromLatin1(cursor.at, count);
        return true;
    }

    bool decodeUtf16String(Cursor cursor, int low, Object &object)
    {
        qsizetype count = 0;
        if (!takeCount(cursor, low, 2, count) || !takeContent(object, 2 * count))
            return false;
        QString text(count, Qt::Uninitialized);
        qFromBigEndian<char16_t>(cursor.at, count, text.data());
        object.value = text;
        return true;
    }

    quint64 reference(Cursor cursor, qsizetype index) const
    {
        return bigEndian(cursor.at + index * mReferenceSize, mReferenceSize);
    }

    /// Containers with the same references have the same value. The entries of most keys are alike in all profiles, so
    /// this saves most of the work and of the memory.
    bool decodeContainer(Cursor cursor, int low, bool isDictionary, Object &object, int depth)
    {
        const qsizetype unit = (isDictionary ? 2 : 1) * qsizetype(mReferenceSize);
        qsizetype count = 0;
        if (depth > PropertyList::maximumDepth || !takeCount(cursor, low, unit, count)
            || !mBudget.takeNodes(quint64(count) * (isDictionary ? 2 : 1)))
            return false;
        const QByteArrayView references(cursor.at, count * unit);
        RecentContainer &recent = mRecentContainers[recentIndex(references)];
        if (recent.object && recent.isDictionary == isDictionary && recent.references == references) {
            object.takeOver(*recent.object);
            return depth + object.height - 1 <= PropertyList::maximumDepth;
        }
        object.height = 1;
        if (!(isDictionary ? decodeEntries(cursor, count, object, depth)
                           : decodeElements(cursor, count, object, depth)))
            return false;
        recent = {references, &object, isDictionary};
        return true;
    }

    bool decodeElements(Cursor cursor, qsizetype count, Object &object, int depth)
    {
        QVariantList array;
        array.reserve(count);
        for (qsizetype i = 0; i < count; ++i) {
            const Object *element = decode(reference(cursor, i), depth + 1);
            if (!element || !addSizes(object, *element))
                return false;
            array.append(element->value);
        }
        object.value = array;
        return true;
    }

    bool decodeEntries(Cursor cursor, qsizetype count, Object &object, int depth)
    {
        std::map<QString, QVariant> entries;
        for (qsizetype i = 0; i < count; ++i) {
            const Object *key = decode(reference(cursor, i), depth + 1);
            if (!key || key->value.typeId() != QMetaType::QString || !addSizes(object, *key))
                return false;
            const Object *value = decode(reference(cursor, count + i), depth + 1);
            if (!value || !addSizes(object, *value))
                return false;
            // Most files hold their keys in order; then the hint makes the insertion cheap.
            const size_t size = entries.size();
            const auto entry = entries.emplace_hint(entries.cend(), stringOf(*key), value->value);
            if (entries.size() == size)
                entry->second = value->value; // the last of equal keys applies
        }
        object.value = QVariantMap(std::move(entries));
        return true;
    }

    /// Returns a place in mRecentContainers, chosen by the last references, which are the values of a dictionary. It is
    /// only a cache: a collision does no harm.
    static size_t recentIndex(QByteArrayView references)
    {
        const qsizetype length = std::min<qsizetype>(references.size(), 8);
        return (bigEndian(references.data() + references.size() - length, int(length)) * 0x9e3779b97f4a7c15U)
               >> (64 - recentBits);
    }

    static const QString &stringOf(const Object &object)
    {
        return *static_cast<const QString *>(object.value.constData());
    }

    static bool addSizes(Object &container, const Object &element)
    {
        container.nodes += element.nodes;
        container.contentBytes += element.contentBytes;
        container.height = std::max(container.height, quint16(element.height + 1));
        return container.nodes <= PropertyList::maximumNodes
               && container.contentBytes <= PropertyList::maximumContentBytes;
    }

    static constexpr int recentBits = 10;

    QByteArrayView mData;
    qsizetype mObjectsEnd = 0; // where the offset table starts
    qsizetype mBytesLeft = 0;  // bytes of the objects that strings, data and containers have not taken yet
    int mOffsetSize = 0;
    int mReferenceSize = 0;
    quint64 mTop = 0;
    std::vector<Object> mObjects;
    std::array<RecentContainer, 1 << recentBits> mRecentContainers;
    PropertyListBudget mBudget; // counts each object once: bounds the work
};

} // namespace

bool isBinaryPropertyList(QByteArrayView data)
{
    return data.startsWith("bplist");
}

std::optional<QVariant> readBinaryPropertyList(QByteArrayView data)
{
    return Reader(data).read();
}
