// SPDX-License-Identifier: MIT
// Code that the fuzz targets share. A target is a function that takes any bytes and ends the process when a required
// condition does not hold. libFuzzer runs one target per program; without it, standalone.cpp runs all of them. One
// thread.
#pragma once

#include <QByteArrayView>
#include <QDir>
#include <QString>
#include <QVariantMap>

using FuzzTarget = void (*)(QByteArrayView input);

/// Ends the process with `message` unless `isTrue`.
void require(bool isTrue, const char *message);

/// Silences the log and creates the application. Every program of targets must call this first.
void prepareFuzzing(int &argc, char **argv);

/// A folder of this process for the files of a target, empty at the start; in memory if the system offers that.
[[nodiscard]] QDir workFolder();

/// Writes `content` to the file at `path`, and creates the file if necessary.
void writeWorkFile(const QString &path, QByteArrayView content);

/// The dictionary that `input` encodes as a property list; empty if it encodes none.
[[nodiscard]] QVariantMap dictionaryOf(QByteArrayView input);

/// Requires that `dictionary` can be written as a property list and has the same bytes after being read again.
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
/// Registers `target` with standalone.cpp as `name`.
struct FuzzTargetRegistration
{
    FuzzTargetRegistration(const char *name, FuzzTarget target);
};
#define KESTRA_FUZZ_TARGET(function) const FuzzTargetRegistration function##Registration(#function, function);
#endif
