// SPDX-License-Identifier: MIT
#include "fuzz/target.h"

#include "base/propertylist.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

void require(bool isTrue, const char *message)
{
    if (isTrue)
        return;
    std::fprintf(stderr, "does not hold: %s\n", message);
    std::abort();
}

void prepareFuzzing(int &argc, char **argv)
{
    // Messages are formatted but not printed.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    static const QCoreApplication application(argc, argv);
}

QDir workFolder()
{
    static const QTemporaryDir folder((QFileInfo(u"/dev/shm"_s).isWritable() ? u"/dev/shm"_s : QDir::tempPath())
                                      + u"/kestra-fuzz-XXXXXX"_s);
    require(folder.isValid(), "there is a folder to work in");
    return QDir(folder.path());
}

void writeWorkFile(const QString &path, QByteArrayView content)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(content.data(), content.size()) == content.size(),
            "the working folder can be written");
}

QVariantMap dictionaryOf(QByteArrayView input)
{
    return PropertyList::read(input).value_or(QVariant()).toMap();
}

void requireWritable(const QVariantMap &dictionary)
{
    const auto written = PropertyList::writeBinary(dictionary);
    require(written.has_value(), "a dictionary that was read can be written");
    const auto again = PropertyList::read(*written);
    // Compares bytes, because in trees a real that is not a number differs from itself.
    require(again && PropertyList::writeBinary(*again) == written, "what was written is read as the same");
}
