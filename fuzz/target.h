// SPDX-License-Identifier: MIT
// What the fuzz targets share. A target is a function that takes any bytes and ends the process when something does not
// hold that must. libFuzzer runs one target a program; without it, standalone.cpp runs all of them. One thread.
#pragma once

#include <QByteArrayView>
#include <QDir>
#include <QString>
#include <QVariantMap>

using FuzzTarget = void (*)(QByteArrayView input);

/// Ends the process with `message` unless `isTrue`.
void require(bool isTrue, const char *message);

/// What every program of targets does first: takes the log away, and makes the application and the working folder.
void prepareFuzzing(int &argc, char **argv);

/// A folder of this process for the files of a target, in memory where the system has such a place; empty at the start.
[[nodiscard]] QDir workFolder();

/// Writes `content` to the file at `path`, which it makes if need be.
void writeWorkFile(const QString &path, QByteArrayView content);

/// The dictionary that `input` is as a property list; empty where it is none.
[[nodiscard]] QVariantMap dictionaryOf(QByteArrayView input);

/// Requires that `dictionary` is written as a property list and read as the same bytes again.
void requireWritable(const QVariantMap &dictionary);

#ifdef KESTRA_LIBFUZZER
#define KESTRA_FUZZ_TARGET(function)                                                                                   \
    extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)                                                       \
    {                                                                                                                  \
        prepareFuzzing(*argc, *argv);                                                                                  \
        return 0;                                                                                                      \
    }                                                                                                                  \
    extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)                                            \
    {                                                                                                                  \
        function(QByteArrayView(data, qsizetype(size)));                                                               \
        return 0;                                                                                                      \
    }
#else
/// Makes `target` known to standalone.cpp as `name`.
struct FuzzTargetRegistration
{
    FuzzTargetRegistration(const char *name, FuzzTarget target);
};
#define KESTRA_FUZZ_TARGET(function) const FuzzTargetRegistration function##Registration(#function, function);
#endif
