// SPDX-License-Identifier: MIT
// Property lists for the tests of this folder: random trees and hand-made binary files. No state.
#pragma once

#include <QByteArray>
#include <QList>
#include <QVariant>

#include <initializer_list>
#include <random>

/// A tree with every type in it, the same for the same state of `random`; at most `depth` containers deep.
/// With `isPortable` only values that every reader and writer of the tests agrees on: whole seconds, no lone
/// surrogates, integers from INT64_MIN.
[[nodiscard]] QVariant randomTree(std::mt19937 &random, int depth, bool isPortable);

/// True when both trees are equal, types included (QVariant's own comparison takes 1, true and 1.0 for equal).
[[nodiscard]] bool isSameTree(const QVariant &left, const QVariant &right);

/// These bytes, each given by its low eight bits.
[[nodiscard]] QByteArray bytes(std::initializer_list<int> values);

/// A binary file of `objects` as they are, with references of one byte; object `top` is the root.
[[nodiscard]] QByteArray binaryFile(const QList<QByteArray> &objects, quint64 top = 0);

/// A valid binary file for `objects` with its trailer replaced by these numbers.
[[nodiscard]] QByteArray withTrailer(const QByteArray &file, int offsetSize, int referenceSize, quint64 objectCount,
                                     quint64 top, quint64 tableStart);

/// A file of 164 bytes: 24 arrays, each holding the next one twice, that is 2^24 integers to somebody walking it.
[[nodiscard]] QByteArray nestedPairs();
