// SPDX-License-Identifier: MIT
// Shows the pages of the help book in a separate window. Main thread only.
#pragma once

#include <QString>

namespace HelpViewer {

/// Sets the book that gotoPage() shows. `folder` holds its pages; a folder that does not exist is ignored.
void registerBook(const QString &title, const QString &folder);

/// Opens the book at `page` (a file name in its folder), in the window of the book if it is already open. Does nothing
/// without a registered book.
void gotoPage(const QString &page);

} // namespace HelpViewer
