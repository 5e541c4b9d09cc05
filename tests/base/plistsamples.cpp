// SPDX-License-Identifier: MIT
#include "tests/base/plistsamples.h"

#include <QDateTime>
#include <QtEndian>

#include <algorithm>
#include <bit>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

unsigned below(std::mt19937 &random, unsigned bound)
{
    return unsigned(random() % bound);
}

QString randomString(std::mt19937 &random, bool isPortable)
{
    QString text;
    const unsigned kind = below(random, 4);
    const unsigned size = below(random, 40) == 0 ? 300 : below(random, 20);
    for (unsigned i = 0; i < size; ++i) {
        if (kind < 2)
            text += QChar(char16_t(u' ' + below(random, 95)));
        else if (kind == 2 || isPortable)
            text += QChar(char16_t(0xa0 + below(random, 0x3000)));
        else
            text += QChar(char16_t(below(random, 0x10000)));
    }
    if (kind == 2)
        text += u"\U0001f642"_s;
    return text;
}

QByteArray randomData(std::mt19937 &random)
{
    QByteArray data("");
    for (unsigned size = below(random, 40); size > 0; --size)
        data.append(char(below(random, 256)));
    return data;
}

QVariant randomInteger(std::mt19937 &random)
{
    static const QList<QVariant> edges{0,
                                       1,
                                       -1,
                                       255,
                                       256,
                                       65535,
                                       65536,
                                       std::numeric_limits<int>::max(),
                                       std::numeric_limits<int>::min(),
                                       qlonglong(1) << 31,
                                       -(qlonglong(1) << 31) - 1,
                                       qlonglong(0xffffffff),
                                       std::numeric_limits<qlonglong>::max(),
                                       std::numeric_limits<qlonglong>::min(),
                                       qulonglong(1) << 63,
                                       std::numeric_limits<qulonglong>::max()};
    return below(random, 2) ? edges[below(random, unsigned(edges.size()))] : QVariant(int(random()));
}

QVariant randomDate(std::mt19937 &random, bool isPortable)
{
    const qint64 seconds = qint64(random() / 2) - 500'000'000; // fits into 32 bits on either side of 2001
    return QDateTime::fromMSecsSinceEpoch(seconds * 1000 + (isPortable ? 0 : below(random, 1000)), Qt::UTC);
}

QVariant randomReal(std::mt19937 &random)
{
    static const QList<double> edges{0.0, -0.0, 0.1, 1.0, 1e300, -2.5e-300, std::numeric_limits<double>::infinity()};
    return below(random, 2) ? edges[below(random, unsigned(edges.size()))] : double(int(random())) / 1024.0;
}

} // namespace

QVariant randomTree(std::mt19937 &random, int depth, bool isPortable)
{
    switch (below(random, depth > 0 ? 12 : 6)) {
    case 0: return randomString(random, isPortable);
    case 1: return randomInteger(random);
    case 2: return randomReal(random);
    case 3: return below(random, 2) == 1;
    case 4: return randomData(random);
    case 5: return randomDate(random, isPortable);
    case 6:
    case 7:
    case 8: {
        QVariantList array;
        for (unsigned size = below(random, 8); size > 0; --size)
            array.append(randomTree(random, depth - 1, isPortable));
        return array;
    }
    default: {
        QVariantMap dictionary;
        for (unsigned size = below(random, 8); size > 0; --size)
            dictionary.insert(randomString(random, isPortable), randomTree(random, depth - 1, isPortable));
        return dictionary;
    }
    }
}

bool isSameTree(const QVariant &left, const QVariant &right)
{
    if (left.typeId() != right.typeId())
        return false;
    if (left.typeId() == QMetaType::QVariantList) {
        const QVariantList a = left.toList();
        const QVariantList b = right.toList();
        return std::equal(a.cbegin(), a.cend(), b.cbegin(), b.cend(), isSameTree);
    }
    if (left.typeId() == QMetaType::QVariantMap) {
        const QVariantMap a = left.toMap();
        const QVariantMap b = right.toMap();
        return a.keys() == b.keys() && std::equal(a.cbegin(), a.cend(), b.cbegin(), b.cend(), isSameTree);
    }
    if (left.typeId() == QMetaType::Double)
        return std::bit_cast<quint64>(left.toDouble()) == std::bit_cast<quint64>(right.toDouble());
    return left == right;
}

QByteArray bytes(std::initializer_list<int> values)
{
    QByteArray result;
    for (const int value : values)
        result.append(char(value));
    return result;
}

QByteArray binaryFile(const QList<QByteArray> &objects, quint64 top)
{
    QByteArray file("bplist00");
    QByteArray offsets;
    for (const QByteArray &object : objects) {
        const quint16 offset = qToBigEndian(quint16(file.size()));
        offsets.append(reinterpret_cast<const char *>(&offset), 2);
        file.append(object);
    }
    const auto tableStart = quint64(file.size());
    file += offsets + QByteArray(32, '\0');
    return withTrailer(file, 2, 1, quint64(objects.size()), top, tableStart);
}

QByteArray withTrailer(const QByteArray &file, int offsetSize, int referenceSize, quint64 objectCount, quint64 top,
                       quint64 tableStart)
{
    QByteArray changed = file;
    char *trailer = changed.data() + changed.size() - 32;
    trailer[6] = char(offsetSize);
    trailer[7] = char(referenceSize);
    qToBigEndian(objectCount, trailer + 8);
    qToBigEndian(top, trailer + 16);
    qToBigEndian(tableStart, trailer + 24);
    return changed;
}

QByteArray nestedPairs()
{
    constexpr int levels = 24;
    QList<QByteArray> objects;
    for (int i = 1; i <= levels; ++i)
        objects.append(bytes({0xa2, i, i}));
    objects.append(QByteArray::fromHex("1001"));
    return binaryFile(objects);
}
