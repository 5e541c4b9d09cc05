// SPDX-License-Identifier: MIT
// Checks an XML text before the XML parser processes it. The parser's work grows with the square of the number of an
// element's attributes. It reports a document type only after all its declarations. No state; any thread.
#pragma once

#include <QStringView>

// More than any property list needs: its elements have at most one attribute, and short names.
inline constexpr int maximumXmlAttributes = 8;  // in one element or declaration
inline constexpr qsizetype maximumXmlName = 64; // characters in the name of an element, an attribute or an instruction

struct XmlOutline
{
    /// True if the document type has no declarations and the text keeps the limits above and, for depth and values,
    /// those of propertylist.h. The text may still be malformed.
    bool isWithinLimits = false;
    /// The work: the characters up to the first fault, plus the parser's comparisons of attribute names in them.
    qint64 steps = 0;
};

/// Returns the outline of `text`; the check ends at the first fault.
[[nodiscard]] XmlOutline outlineOfXml(QStringView text);
