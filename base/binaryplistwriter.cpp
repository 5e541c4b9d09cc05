// SPDX-License-Identifier: MIT
#include "base/binaryplistwriter.h"

#include "base/plistscalartable.h"
#include "base/propertylistbudget.h"

#include <QDateTime>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

namespace {

constexpr quint32 noObject = PlistScalarTable::noObject;

int bytesFor(quint64 value)
{
    return value <= 0xff ? 1 : value <= 0xffff ? 2 : value <= 0xffffffff ? 4 : 8;
}

/// Writes the low `size` bytes of `value`, most significant first. Returns their end.
inline char *putBigEndian(char *to, quint64 value, int size)
{
    for (int shift = (size - 1) * 8; shift >= 0; shift -= 8)
        *to++ = char(value >> shift);
    return to;
}

/// Does the same for each of `count` numbers; the size is a constant for the compiler.
template <typename Number, typename Source> char *putAllBigEndian(char *to, const Source *from, size_t count)
{
    for (size_t i = 0; i < count; ++i, to += sizeof(Number))
        qToBigEndian(Number(from[i]), to);
    return to;
}

template <typename Source> char *putAllBigEndian(char *to, const Source *from, size_t count, int size)
{
    switch (size) {
    case 1: return putAllBigEndian<quint8>(to, from, count);
    case 2: return putAllBigEndian<quint16>(to, from, count);
    case 4: return putAllBigEndian<quint32>(to, from, count);
    default: return putAllBigEndian<quint64>(to, from, count);
    }
}

/// Writes scalars while it walks the tree. Containers follow when the number of objects, and with it the size of a
/// reference, is known. An object's number is independent of its place in the file.
class Writer
{
public:
    std::optional<QByteArray> write(const QVariant &root)
    {
        mOutput.reserve(65536);
        mOutput.append("bplist00", 8);
        const quint32 top = addValue(root, 1);
        if (top == noObject)
            return {};
        const int referenceSize = bytesFor(mOffsets.size() - 1);
        writeContainers(referenceSize);
        writeOffsetsAndTrailer(referenceSize, top);
        if (mOutput.size() > PropertyList::maximumInputBytes)
            return {};
        return std::move(mOutput);
    }

private:
    struct Container
    {
        quint32 object;
        quint32 count;
        size_t firstReference;
        bool isDictionary;
    };
    /// A string of the tree; the tree outlives this object. Copies of one string often share their characters.
    struct RecentString
    {
        const QChar *data = nullptr;
        qsizetype size = 0;
        quint32 object = noObject;

        bool isEqual(const QString &text) const
        {
            return size == text.size()
                   && (data == text.constData()
                       || std::memcmp(data, text.constData(), size_t(size) * sizeof(QChar)) == 0);
        }
    };

    quint32 addValue(const QVariant &value, int depth)
    {
        if (!mBudget.takeNodes(1))
            return noObject;
        const void *data = value.constData();
        switch (value.typeId()) {
        case QMetaType::QVariantMap: return addDictionary(*static_cast<const QVariantMap *>(data), depth);
        case QMetaType::QVariantList: return addArray(*static_cast<const QVariantList *>(data), depth);
        case QMetaType::QStringList: return addArray(value.toList(), depth);
        case QMetaType::QString: return addString(*static_cast<const QString *>(data));
        case QMetaType::QByteArray: return addData(*static_cast<const QByteArray *>(data));
        case QMetaType::QDateTime: return addDate(*static_cast<const QDateTime *>(data));
        case QMetaType::Bool: return addBytes(*static_cast<const bool *>(data) ? "\x09" : "\x08", 1);
        case QMetaType::Double:
        case QMetaType::Float: return addReal(0x23, value.toDouble());
        case QMetaType::Int: return addInteger(*static_cast<const int *>(data));
        case QMetaType::LongLong: return addInteger(*static_cast<const qlonglong *>(data));
        case QMetaType::Long:
        case QMetaType::Short:
        case QMetaType::Char:
        case QMetaType::SChar: return addInteger(value.toLongLong());
        case QMetaType::UInt:
        case QMetaType::ULongLong:
        case QMetaType::ULong:
        case QMetaType::UShort:
        case QMetaType::UChar: return addUnsigned(value.toULongLong());
        default: return noObject;
        }
    }

    quint32 addDictionary(const QVariantMap &dictionary, int depth)
    {
        const auto count = size_t(dictionary.size());
        if (!mBudget.takeNodes(count))
            return noObject;
        const std::optional<Container> container = addContainer(count, true, depth);
        if (!container)
            return noObject;
        size_t at = container->firstReference;
        for (auto entry = dictionary.cbegin(); entry != dictionary.cend(); ++entry, ++at) {
            const quint32 key = addString(entry.key());
            const quint32 value = key == noObject ? noObject : addValue(entry.value(), depth + 1);
            if (value == noObject)
                return noObject;
            mReferences[at] = key;
            mReferences[at + count] = value;
        }
        return container->object;
    }

    quint32 addArray(const QVariantList &array, int depth)
    {
        const std::optional<Container> container = addContainer(size_t(array.size()), false, depth);
        if (!container)
            return noObject;
        size_t at = container->firstReference;
        for (const QVariant &element : array) {
            const quint32 value = addValue(element, depth + 1);
            if (value == noObject)
                return noObject;
            mReferences[at++] = value;
        }
        return container->object;
    }

    std::optional<Container> addContainer(size_t count, bool isDictionary, int depth)
    {
        if (depth > PropertyList::maximumDepth || count > PropertyList::maximumNodes)
            return {};
        const Container container{quint32(mOffsets.size()), quint32(count), mReferences.size(), isDictionary};
        mContainers.push_back(container);
        mOffsets.push_back(0);
        mReferences.resize(mReferences.size() + (isDictionary ? 2 * count : count));
        return container;
    }

    /// Returns a place in mRecentStrings, chosen by a few of the characters. It is only a cache: a collision does no
    /// harm.
    static size_t recentIndex(const QString &text)
    {
        const auto size = size_t(text.size());
        if (size == 0)
            return 0;
        const QChar *c = text.constData();
        const quint32 mixed = c[0].unicode() * 0x9e3779b1U ^ c[size / 2].unicode() * 0x85ebca6bU
                              ^ c[size - 1].unicode() * 0xc2b2ae35U ^ quint32(size) * 0x27d4eb2fU;
        return mixed >> (32 - recentBits);
    }

    quint32 addString(const QString &text)
    {
        if (!mBudget.takeContent(quint64(text.size()) * 2))
            return noObject;
        RecentString &recent = mRecentStrings[recentIndex(text)];
        if (recent.object != noObject && recent.isEqual(text))
            return recent.object;
        const qsizetype start = mOutput.size();
        const bool isAscii = std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() < 0x80; });
        appendMarker(isAscii ? 0x50 : 0x60, quint64(text.size()));
        const qsizetype content = mOutput.size();
        mOutput.resize(content + text.size() * (isAscii ? 1 : 2));
        char *to = mOutput.data() + content;
        if (isAscii)
            std::transform(text.cbegin(), text.cend(), to, [](QChar c) { return char(c.unicode()); });
        else
            qToBigEndian<char16_t>(text.utf16(), text.size(), to);
        recent = {text.constData(), text.size(), internFrom(start)};
        return recent.object;
    }

    quint32 addData(const QByteArray &data)
    {
        if (!mBudget.takeContent(quint64(data.size())))
            return noObject;
        const qsizetype start = mOutput.size();
        appendMarker(0x40, quint64(data.size()));
        mOutput.append(data);
        return internFrom(start);
    }

    quint32 addDate(const QDateTime &date)
    {
        if (!date.isValid())
            return noObject;
        static const qint64 epochMs = QDateTime(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC).toMSecsSinceEpoch();
        const double seconds = double(date.toMSecsSinceEpoch() - epochMs) / 1000.0;
        return std::abs(seconds) <= PropertyList::maximumDateSeconds ? addReal(0x33, seconds) : noObject;
    }

    quint32 addReal(char marker, double value)
    {
        std::array<char, 9> bytes{marker};
        putBigEndian(bytes.data() + 1, std::bit_cast<quint64>(value), 8);
        return addBytes(bytes.data(), bytes.size());
    }

    quint32 addInteger(qint64 value)
    {
        if (value >= 0)
            return addUnsigned(quint64(value));
        std::array<char, 9> bytes{0x13};
        putBigEndian(bytes.data() + 1, quint64(value), 8);
        return addBytes(bytes.data(), bytes.size());
    }

    quint32 addUnsigned(quint64 value)
    {
        if (value < mSmallIntegers.size() && mSmallIntegers[value] != noObject)
            return mSmallIntegers[value];
        // Readers take eight bytes as signed, so a value that needs the top bit takes sixteen.
        const int size = value > quint64(std::numeric_limits<qint64>::max()) ? 16 : bytesFor(value);
        std::array<char, 17> bytes{};
        bytes[0] = char(0x10 | std::countr_zero(unsigned(size)));
        putBigEndian(bytes.data() + 1 + std::max(size - 8, 0), value, std::min(size, 8));
        const quint32 object = addBytes(bytes.data(), size + 1);
        if (value < mSmallIntegers.size())
            mSmallIntegers[value] = object;
        return object;
    }

    quint32 addBytes(const char *bytes, qsizetype length)
    {
        const qsizetype start = mOutput.size();
        mOutput.append(bytes, length);
        return internFrom(start);
    }

    /// Returns the object number of the scalar encoded from `start` to the end of the output, or of an equal one if
    /// there is one.
    quint32 internFrom(qsizetype start)
    {
        PlistScalarTable::Entry &entry = mScalars.find(mOutput, start);
        if (entry.object != noObject) {
            mOutput.truncate(start);
            return entry.object;
        }
        entry.object = quint32(mOffsets.size());
        mOffsets.push_back(quint64(start));
        return entry.object;
    }

    void appendMarker(int kind, quint64 count)
    {
        std::array<char, 10> bytes{};
        mOutput.append(bytes.data(), putMarker(bytes.data(), kind, count) - bytes.data());
    }

    /// Writes the first byte of an object with a count, and the count itself if it does not fit into that byte.
    static char *putMarker(char *to, int kind, quint64 count)
    {
        if (count < 15) {
            *to++ = char(kind | int(count));
            return to;
        }
        const int size = bytesFor(count);
        *to++ = char(kind | 0x0f);
        *to++ = char(0x10 | std::countr_zero(unsigned(size)));
        return putBigEndian(to, count, size);
    }

    void writeContainers(int referenceSize)
    {
        constexpr qsizetype markerBound = 10;
        const qsizetype start = mOutput.size();
        mOutput.resize(start + qsizetype(mContainers.size()) * markerBound
                       + qsizetype(mReferences.size()) * referenceSize);
        char *const begin = mOutput.data();
        char *to = begin + start;
        for (const Container &container : mContainers) {
            mOffsets[container.object] = quint64(to - begin);
            to = putMarker(to, container.isDictionary ? 0xd0 : 0xa0, container.count);
            const size_t count = (container.isDictionary ? 2 : 1) * size_t(container.count);
            to = putAllBigEndian(to, mReferences.data() + container.firstReference, count, referenceSize);
        }
        mOutput.truncate(to - begin);
    }

    void writeOffsetsAndTrailer(int referenceSize, quint32 top)
    {
        constexpr qsizetype trailerSize = 32;
        const qsizetype tableStart = mOutput.size();
        const int offsetSize = bytesFor(*std::max_element(mOffsets.cbegin(), mOffsets.cend()));
        mOutput.resize(tableStart + qsizetype(mOffsets.size()) * offsetSize + trailerSize);
        char *to = mOutput.data() + tableStart;
        to = putAllBigEndian(to, mOffsets.data(), mOffsets.size(), offsetSize);
        to = std::fill_n(to, 6, '\0');
        *to++ = char(offsetSize);
        *to++ = char(referenceSize);
        to = putBigEndian(to, mOffsets.size(), 8);
        to = putBigEndian(to, top, 8);
        putBigEndian(to, quint64(tableStart), 8);
    }

    static constexpr int recentBits = 9;

    PropertyListBudget mBudget;
    QByteArray mOutput;
    std::vector<quint64> mOffsets; // one per object
    std::vector<Container> mContainers;
    std::vector<quint32> mReferences; // of all containers; a dictionary's keys precede its values
    PlistScalarTable mScalars;
    std::array<RecentString, 1 << recentBits> mRecentStrings;
    std::array<quint32, 256> mSmallIntegers = [] {
        std::array<quint32, 256> none{};
        none.fill(noObject);
        return none;
    }();
};

} // namespace

std::optional<QByteArray> writeBinaryPropertyList(const QVariant &root)
{
    return Writer().write(root);
}
