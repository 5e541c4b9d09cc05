// SPDX-License-Identifier: MIT
// Shows the pages of the help book in a window of its own. Main thread only.
#pragma once

#include <QString>

namespace HelpViewer {

/// Tells which book gotoPage() shows. `folder` holds its pages; a folder that does not exist registers nothing.
void registerBook(const QString &title, const QString &folder);

/// Opens the book at `page` (a file name in its folder), in the window that is already open if there is one.
/// Does nothing without a registered book.
void gotoPage(const QString &page);

} // namespace HelpViewer
