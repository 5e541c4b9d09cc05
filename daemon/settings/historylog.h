// SPDX-License-Identifier: MIT
// The file with the history of the settings: frames that are appended and never changed. Owned by the History; the
// thread of the settings.
//
// The file begins with "QKhist1\n". A frame is its length (32 bits), the contentDigest() of its bytes (64 bits), both
// little-endian, and the bytes. A daemon that is killed, or a full disk, leaves at most a torn frame at the end.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

class HistoryLog
{
public:
    explicit HistoryLog(const QString &path) : mPath(path) {}

    /// The bytes of all frames up to the first that is damaged; empty without a file. Logs damage. The
    /// next write removes the frames behind it.
    [[nodiscard]] QList<QByteArray> load();

    /// Frames that were loaded cannot be used: the next append() fails, and rewrite() must be called.
    void discard() { mIsWhole = false; }

    /// Adds frames with one write and without a flush. False if the file is not as this log has left it, or if the
    /// write failed; the file is then unchanged, or rewrite() must be called.
    [[nodiscard]] bool append(const QList<QByteArray> &frames);
    /// Replaces the file, which is private, by one with these frames. False, and logged, on failure.
    [[nodiscard]] bool rewrite(const QList<QByteArray> &frames);

    /// Bytes of the file.
    [[nodiscard]] qsizetype size() const { return mSize; }

    /// Bytes that a frame takes in the file.
    [[nodiscard]] static qsizetype sizeOf(const QByteArray &frame);

private:
    QString mPath;
    qsizetype mSize = 0;  // of the file as last read or written; 0 without one
    bool mIsWhole = true; // no damage after mSize
};
