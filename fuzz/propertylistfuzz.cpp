// SPDX-License-Identifier: MIT
// Whatever the bytes are: reading neither crashes nor hangs, and what was read is the same after being written and
// read.
#include "base/propertylist.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto tree = PropertyList::read(QByteArrayView(data, qsizetype(size)));
    if (!tree)
        return 0;
    const auto written = PropertyList::writeBinary(*tree);
    const auto again = written ? PropertyList::read(*written) : std::nullopt;
    // Bytes are compared, not trees: a real that is not a number differs from itself.
    if (!again || PropertyList::writeBinary(*again) != written)
        std::abort();
    return 0;
}
