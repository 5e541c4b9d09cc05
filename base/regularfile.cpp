// SPDX-License-Identifier: MIT
#include "base/regularfile.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

QString openRegularFile(QFile &file)
{
    const QFileInfo information(file);
    // Of what is missing and of folders the system says more.
    if (information.exists() && !information.isFile() && !information.isDir())
        return u"Not a regular file"_s;
    return file.open(QIODevice::ReadOnly) ? QString() : file.errorString();
}
