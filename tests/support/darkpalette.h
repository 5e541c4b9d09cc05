// SPDX-License-Identifier: MIT
// The colours of a dark desktop, for the tests that draw pictures. Main thread only.
#pragma once

#include <QPalette>

[[nodiscard]] inline QPalette darkPalette()
{
    QPalette palette;
    const QColor window(0x2b, 0x2d, 0x31), base(0x1f, 0x21, 0x24), text(0xe6, 0xe7, 0xea), faint(0x80, 0x83, 0x88);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::Button, QColor(0x3a, 0x3d, 0x42));
    // The style draws edges, and a shadow behind disabled texts, in these colours.
    palette.setColor(QPalette::Light, QColor(0x45, 0x48, 0x4e));
    palette.setColor(QPalette::Midlight, QColor(0x3f, 0x42, 0x47));
    palette.setColor(QPalette::Mid, QColor(0x24, 0x26, 0x29));
    palette.setColor(QPalette::Dark, QColor(0x1a, 0x1b, 0x1e));
    palette.setColor(QPalette::Shadow, Qt::black);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::ToolTipBase, base);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, faint);
    }
    palette.setColor(QPalette::PlaceholderText, QColor(0x9d, 0xa0, 0xa6));
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0x8e, 0xe6));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0x4a, 0x4d, 0x52));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}
