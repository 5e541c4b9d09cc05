// SPDX-License-Identifier: MIT
#include "daemon/settings/historylog.h"

#include "base/propertylist.h"
#include "daemon/settings/contentdigest.h"
#include "daemon/system/logging.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace {

constexpr QByteArrayView fileHeader("QKhist1\n");
constexpr qsizetype frameHeaderBytes = sizeof(quint32) + sizeof(quint64);
constexpr mode_t privateFile = 0600;

QByteArray framed(const QByteArray &frame)
{
    char header[frameHeaderBytes];
    qToLittleEndian(static_cast<quint32>(frame.size()), header);
    qToLittleEndian(contentDigest(frame), header + sizeof(quint32));
    return QByteArray(header, frameHeaderBytes) + frame;
}

QByteArray joined(const QList<QByteArray> &frames)
{
    QByteArray bytes;
    for (const QByteArray &frame : frames)
        bytes += framed(frame);
    return bytes;
}

/// False, with errno, if not all bytes were written.
bool writeAll(int file, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t written = ::write(file, bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes = bytes.sliced(written);
    }
    return true;
}

} // namespace

qsizetype HistoryLog::sizeOf(const QByteArray &frame)
{
    return frameHeaderBytes + frame.size();
}

QList<QByteArray> HistoryLog::load()
{
    mSize = 0;
    mIsWhole = true;
    const Result<QByteArray> bytes = PropertyList::readFileBytes(mPath);
    if (!bytes) {
        mIsWhole = !QFileInfo::exists(mPath);
        if (!mIsWhole)
            qCWarning(lcSettings, "file: the history %s cannot be read: %s", qUtf8Printable(mPath),
                      qUtf8Printable(bytes.error().message));
        return {};
    }
    QByteArrayView rest(*bytes);
    QList<QByteArray> frames;
    if (rest.startsWith(fileHeader)) {
        rest = rest.sliced(fileHeader.size());
        while (rest.size() >= frameHeaderBytes) {
            const auto length = static_cast<qsizetype>(qFromLittleEndian<quint32>(rest.data()));
            const auto digest = qFromLittleEndian<quint64>(rest.data() + sizeof(quint32));
            if (length > rest.size() - frameHeaderBytes
                || contentDigest(rest.sliced(frameHeaderBytes, length)) != digest)
                break;
            frames += rest.sliced(frameHeaderBytes, length).toByteArray();
            rest = rest.sliced(frameHeaderBytes + length);
        }
        mSize = bytes->size() - rest.size();
    }
    mIsWhole = rest.isEmpty();
    if (!mIsWhole)
        qCWarning(lcSettings, "file: the history %s is damaged after %lld bytes: %lld bytes are lost",
                  qUtf8Printable(mPath), static_cast<long long>(mSize), static_cast<long long>(rest.size()));
    return frames;
}

bool HistoryLog::append(const QList<QByteArray> &frames)
{
    if (!mIsWhole || mSize == 0)
        return false;
    const int file = ::open(QFile::encodeName(mPath).constData(), O_WRONLY | O_APPEND | O_CLOEXEC | O_NOFOLLOW);
    if (file < 0)
        return false;
    struct stat status = {};
    const bool isOwn = ::fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size == mSize;
    const QByteArray bytes = joined(frames);
    const bool isWritten = isOwn && writeAll(file, bytes);
    if (isWritten)
        mSize += bytes.size();
    else if (isOwn)
        mIsWhole = ::ftruncate(file, mSize) == 0;
    ::close(file);
    return isWritten;
}

bool HistoryLog::rewrite(const QList<QByteArray> &frames)
{
    const QByteArray bytes = fileHeader.toByteArray() + joined(frames);
    // A new file needs no flush: without it, only the history is lost.
    const int created =
        ::open(QFile::encodeName(mPath).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, privateFile);
    bool isWritten = created >= 0 && writeAll(created, bytes);
    if (created >= 0) {
        ::close(created);
    } else if (errno == EEXIST) {
        isWritten = static_cast<bool>(PropertyList::writeFileAtomically(mPath, bytes));
        if (isWritten)
            ::chmod(QFile::encodeName(mPath).constData(), privateFile);
    }
    if (!isWritten)
        qCWarning(lcSettings, "file: the history %s cannot be written", qUtf8Printable(mPath));
    mSize = isWritten ? bytes.size() : 0;
    mIsWhole = isWritten;
    return isWritten;
}
