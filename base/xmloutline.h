// SPDX-License-Identifier: MIT
// Checks an XML text before the XML parser works on it. The parser's work grows with the square of the attributes of an
// element, and it reports a document type only after all its declarations. No state; any thread.
#pragma once

#include <QStringView>

// More than any property list needs: its elements have one attribute at most, and short names.
inline constexpr int maximumXmlAttributes = 8;  // in one element or declaration
inline constexpr qsizetype maximumXmlName = 64; // characters of an element's, an attribute's or an instruction's name

struct XmlOutline
{
    /// True when the document type has no declarations, and the text keeps the limits above and those of propertylist.h
    /// for depth and values. It may still be malformed.
    bool isWithinLimits = false;
    /// The work: the characters up to the first fault, and the comparisons of attribute names that the parser makes in
    /// them.
    qint64 steps = 0;
};

/// The outline of `text`; the check ends at the first fault.
[[nodiscard]] XmlOutline outlineOfXml(QStringView text);
