// SPDX-License-Identifier: MIT
// Property lists for the tests of this folder: random trees and hand-made binary files. No state.
#pragma once

#include <QByteArray>
#include <QList>
#include <QVariant>

#include <initializer_list>
#include <random>

/// A tree with every type in it, at most `depth` containers deep. The same state of `random` gives the same tree.
/// `isPortable` restricts it to values on which every reader and writer of the tests agrees: whole seconds, no lone
/// surrogates, integers from INT64_MIN.
[[nodiscard]] QVariant randomTree(std::mt19937 &random, int depth, bool isPortable);

/// Whether both trees are equal, including their types (QVariant's own comparison considers 1, true and 1.0 equal).
[[nodiscard]] bool isSameTree(const QVariant &left, const QVariant &right);

/// The bytes whose low eight bits are given.
[[nodiscard]] QByteArray bytes(std::initializer_list<int> values);

/// A binary file of unchanged `objects`, with references of one byte; object `top` is the root.
[[nodiscard]] QByteArray binaryFile(const QList<QByteArray> &objects, quint64 top = 0);

/// `file`, a valid binary file, with these numbers in its trailer.
[[nodiscard]] QByteArray withTrailer(const QByteArray &file, int offsetSize, int referenceSize, quint64 objectCount,
                                     quint64 top, quint64 tableStart);

/// A file of 164 bytes: 24 arrays, each containing the next one twice. A reader that visits every value meets 2^24
/// integers.
[[nodiscard]] QByteArray nestedPairs();
