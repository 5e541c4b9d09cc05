// SPDX-License-Identifier: MIT
// Describes lists and tables to assistive tools by the rows that are in view. Main thread only.
#pragma once

class QAbstractItemView;
class QItemSelection;

/// The interfaces of Qt 6.4 have a child for every cell of the model: a tool that walks the list asks for all of them.
/// They also report the current cell as focused when another control has the focus, even in a hidden view, and omit the
/// editor of a cell. The table interface still reaches every row. For views without a hierarchy.
namespace RowsAccessibility {

/// Describes `view` by its header, the cells in view and the editor. The view must report its changes with the
/// functions below instead of those of its base class, which count the cells otherwise.
void install(QAbstractItemView *view);

/// Reports that the current cell has the focus, if the view has it and is visible.
void reportCurrent(QAbstractItemView *view);

/// Reports the cells that have been selected and deselected. Must be called with the arguments of selectionChanged().
void reportSelection(QAbstractItemView *view, const QItemSelection &selected, const QItemSelection &deselected);

} // namespace RowsAccessibility
