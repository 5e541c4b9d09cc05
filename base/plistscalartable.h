// SPDX-License-Identifier: MIT
// Finds the equal scalars of a binary property list. Belongs to the writer of one file, on one thread.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QHashFunctions>

#include <vector>

/// Object numbers of the scalars written so far, found by their encoded bytes. The first byte contains the type, so 1,
/// true and 1.0 are never taken for each other. Open addressing, at most half full.
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

    /// Returns the entry whose bytes in `output` equal those from `start` to the end, or a free one to fill.
    Entry &find(const QByteArray &output, qsizetype start)
    {
        if ((mUsed + 1) * 2 > mEntries.size())
            grow();
        const QByteArrayView bytes = QByteArrayView(output).sliced(start);
        // Seeded: a file made to collide must not make its saving slow.
        const size_t hash = qHashBits(bytes.data(), size_t(bytes.size()), mSeed);
        for (size_t at = hash;; ++at) {
            Entry &entry = mEntries[at & (mEntries.size() - 1)];
            if (entry.object == noObject) {
                entry.hash = hash;
                entry.start = start;
                entry.length = bytes.size();
                ++mUsed;
                return entry;
            }
            if (entry.hash == hash && QByteArrayView(output).sliced(entry.start, entry.length) == bytes)
                return entry;
        }
    }

private:
    void grow()
    {
        std::vector<Entry> larger(mEntries.size() * 4);
        for (const Entry &entry : mEntries) {
            if (entry.object == noObject)
                continue;
            size_t at = entry.hash & (larger.size() - 1);
            while (larger[at].object != noObject)
                at = (at + 1) & (larger.size() - 1);
            larger[at] = entry;
        }
        mEntries.swap(larger);
    }

    size_t mSeed = QHashSeed::globalSeed();
    size_t mUsed = 0;
    std::vector<Entry> mEntries = std::vector<Entry>(1024);
};
