// SPDX-License-Identifier: MIT
// Bold texts, for titles and names. Main thread only.
#pragma once

class QWidget;

/// Gives `widget` its own font in bold.
void makeBold(QWidget *widget);
