// SPDX-License-Identifier: MIT
// Property lists in all three forms, which occur in files, settings and messages. Reading neither crashes nor hangs,
// and its work grows no faster than the size of the input. A tree that was read stays the same after being written and
// read again.
#include "base/propertylist.h"
#include "base/xmloutline.h"
#include "fuzz/target.h"

namespace {

void propertylist(QByteArrayView input)
{
    const QString text = QString::fromUtf8(input);
    require(outlineOfXml(text).steps <= 2 * text.size(), "the work on an XML text is bounded by its size");
    const auto tree = PropertyList::read(input);
    if (!tree)
        return;
    const auto written = PropertyList::writeBinary(*tree);
    require(written.has_value(), "a tree that was read can be written");
    const auto again = PropertyList::read(*written);
    // Compares bytes, because in trees a real that is not a number differs from itself.
    require(again && PropertyList::writeBinary(*again) == written, "what was written is read as the same");
}

} // namespace

KESTRA_FUZZ_TARGET(propertylist)
