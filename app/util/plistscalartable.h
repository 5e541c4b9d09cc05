// SPDX-License-Identifier: MIT
// Finds the equal scalars of a binary property list. Belongs to the writer of one file, on one thread.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QHashFunctions>

#include <vector>

/// Object numbers of the scalars written so far, found by their encoded bytes: the first byte tells the types apart,
/// so 1, true and 1.0 are never taken for each other. Open addressing, at most half full.
class PlistScalarTable
{
public:
    static constexpr quint32 noObject = 0xffffffff;

    struct Entry
    {
        size_t hash = 0;
        qsizetype start = 0;
        qsizetype length = 0;
        quint32 object = noObject;
    };

    /// The entry whose bytes in `output` equal those from `start` to the end, or a free one to be filled.
    Entry &find(const QByteArray &output, qsizetype start)
    {
        if ((m_used + 1) * 2 > m_entries.size())
            grow();
        const QByteArrayView bytes = QByteArrayView(output).sliced(start);
        // Seeded: a file made to collide must not make saving it slow.
        const size_t hash = qHashBits(bytes.data(), size_t(bytes.size()), m_seed);
        for (size_t at = hash;; ++at) {
            Entry &entry = m_entries[at & (m_entries.size() - 1)];
            if (entry.object == noObject) {
                entry.hash = hash;
                entry.start = start;
                entry.length = bytes.size();
                ++m_used;
                return entry;
            }
            if (entry.hash == hash && QByteArrayView(output).sliced(entry.start, entry.length) == bytes)
                return entry;
        }
    }

private:
    void grow()
    {
        std::vector<Entry> larger(m_entries.size() * 4);
        for (const Entry &entry : m_entries) {
            if (entry.object == noObject)
                continue;
            size_t at = entry.hash & (larger.size() - 1);
            while (larger[at].object != noObject)
                at = (at + 1) & (larger.size() - 1);
            larger[at] = entry;
        }
        m_entries.swap(larger);
    }

    size_t m_seed = QHashSeed::globalSeed();
    size_t m_used = 0;
    std::vector<Entry> m_entries = std::vector<Entry>(1024);
};
