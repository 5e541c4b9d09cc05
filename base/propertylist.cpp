// SPDX-License-Identifier: MIT
#include "base/propertylist.h"

#include "base/binaryplistreader.h"
#include "base/binaryplistwriter.h"
#include "base/oldstyleplistreader.h"
#include "base/regularfile.h"
#include "base/xmlplistreader.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringDecoder>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

/// Returns the text of `data` in the encoding of its byte order mark, or in UTF-8 without one. Absent when `data` is
/// not in that encoding.
std::optional<QString> decodedText(QByteArrayView data)
{
    const auto encoding = QStringConverter::encodingForData(data);
    QStringDecoder decoder(encoding.value_or(QStringConverter::Utf8));
    QString text = decoder.decode(data);
    return decoder.hasError() ? std::nullopt : std::optional<QString>(std::move(text));
}

std::optional<QVariant> readText(QByteArrayView data)
{
    // Only bytes without a byte order mark can be in an encoding that the XML declaration names.
    const QByteArrayView start = data.first(std::min<qsizetype>(data.size(), 256));
    if (!QStringConverter::encodingForData(data) && isXmlPropertyList(QString::fromLatin1(start)))
        return readXmlPropertyList(data);
    const std::optional<QString> text = decodedText(data);
    if (!text)
        return {};
    return isXmlPropertyList(*text) ? readXmlPropertyList(*text) : readOldStylePropertyList(*text);
}

/// Makes a rename inside `folder` survive a power loss. Also succeeds if the file system cannot flush folders: nothing
/// else can be done then.
Result<void> flushFolder(const QString &folder)
{
    const int descriptor = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return Error{qt_error_string(errno)};
    const int error = ::fsync(descriptor) == 0 ? 0 : errno;
    ::close(descriptor);
    if (error != 0 && error != EINVAL && error != ENOTSUP)
        return Error{qt_error_string(error)};
    return {};
}

} // namespace

std::optional<QByteArray> PropertyList::writeBinary(const QVariant &root)
{
    return writeBinaryPropertyList(root);
}

std::optional<QVariant> PropertyList::read(QByteArrayView data)
{
    if (data.isEmpty() || data.size() > maximumInputBytes)
        return {};
    return isBinaryPropertyList(data) ? readBinaryPropertyList(data) : readText(data);
}

Result<QByteArray> PropertyList::readFileBytes(const QString &path)
{
    QFile file(path);
    if (const Result<void> opened = openRegularFile(file); !opened)
        return opened.error();
    // Some regular files, such as those of the system's state, do not report their size, so the limit applies to the
    // bytes read.
    QByteArray data = readUpTo(file, maximumInputBytes + 1);
    if (file.error() != QFileDevice::NoError)
        return Error{file.errorString()};
    return data;
}

Result<QVariantMap, PropertyList::ReadError> PropertyList::readPropertyListFile(const QString &path)
{
    const Result<QByteArray> data = readFileBytes(path);
    if (!data)
        return ReadError{data.error(), ReadError::Cause::unreadable};
    const std::optional<QVariant> root = read(*data);
    if (!root || root->typeId() != QMetaType::QVariantMap)
        return ReadError{{u"it is not a property list with a dictionary"_s}, ReadError::Cause::noDictionary};
    return root->toMap();
}

Result<void> PropertyList::writeFileAtomically(const QString &path, const QByteArray &data)
{
    QSaveFile file(path); // flushes the new file to the disk before it renames it
    // Unbuffered: with a buffer, Qt takes the short write on a disk that fills up for a whole one. The next write
    // reports the reason.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return Error{file.errorString()};
    for (qsizetype done = 0; done < data.size();) {
        const qint64 written = file.write(data.constData() + done, data.size() - done);
        if (written <= 0)
            return Error{file.errorString()};
        done += written;
    }
    if (!file.commit())
        return Error{file.errorString()};
    // If `path` is a symbolic link, this is the folder of the file itself.
    return flushFolder(QFileInfo(QFileInfo(path).canonicalFilePath()).path());
}

Result<void> PropertyList::writePropertyListFile(const QString &path, const QVariantMap &dictionary)
{
    const std::optional<QByteArray> data = writeBinary(dictionary);
    if (!data)
        return Error{u"its contents exceed the limits of a property list"_s};
    return writeFileAtomically(path, *data);
}
