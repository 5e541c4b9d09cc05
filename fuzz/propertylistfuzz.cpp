// SPDX-License-Identifier: MIT
// Property lists in all three forms, which occur in files, settings and messages. Reading neither crashes nor hangs,
// and its work grows no faster than the size of the input. A tree that was read stays the same after being written and
// read again.
#include "base/propertylist.h"
#include "base/xmloutline.h"
#include "fuzz/target.h"

namespace {

/// Six bytes of a binary file's trailer have no meaning. A reader that goes past the end of the objects, where the
/// trailer follows, gives itself away when they change.
void requireUnusedBytesUnread(QByteArrayView input, const std::optional<QByteArray> &written)
{
    constexpr qsizetype trailerSize = 32;
    constexpr qsizetype unusedSize = 6;
    if (!input.startsWith("bplist") || input.size() < trailerSize)
        return;
    QByteArray other = input.toByteArray();
    for (qsizetype at = input.size() - trailerSize; at < input.size() - trailerSize + unusedSize; ++at)
        other[at] = char(~other.at(at));
    const auto tree = PropertyList::read(other);
    require((tree ? PropertyList::writeBinary(*tree) : std::nullopt) == written, "what was read is in the objects");
}

void propertylist(QByteArrayView input)
{
    const QString text = QString::fromUtf8(input);
    require(outlineOfXml(text).steps <= 2 * text.size(), "the work on an XML text is bounded by its size");
    const auto tree = PropertyList::read(input);
    const auto written = tree ? PropertyList::writeBinary(*tree) : std::nullopt;
    requireUnusedBytesUnread(input, written);
    if (!tree)
        return;
    require(written.has_value(), "a tree that was read can be written");
    const auto again = PropertyList::read(*written);
    // Compares bytes, because in trees a real that is not a number differs from itself.
    require(again && PropertyList::writeBinary(*again) == written, "what was written is read as the same");
}

} // namespace

KESTRA_FUZZ_TARGET(propertylist)
