// SPDX-License-Identifier: MIT
#include "daemon/settings/contentdigest.h"

#include <QtEndian>

#include <algorithm>
#include <bit>
#include <cstring>

// Multiplications by odd constants and rotations spread each word over all bits.
quint64 contentDigest(QByteArrayView bytes)
{
    constexpr quint64 spread = 0x9e3779b97f4a7c15;
    constexpr quint64 mix = 0xff51afd7ed558ccd;
    quint64 digest = static_cast<quint64>(bytes.size()) * spread;
    while (!bytes.isEmpty()) {
        char word[8] = {};
        const qsizetype length = std::min<qsizetype>(bytes.size(), sizeof word);
        std::memcpy(word, bytes.data(), static_cast<std::size_t>(length));
        digest = std::rotl(digest ^ (qFromLittleEndian<quint64>(word) * spread), 29) * mix;
        bytes = bytes.sliced(length);
    }
    digest ^= digest >> 32;
    return digest * spread;
}
