// SPDX-License-Identifier: MIT
// Memory that only the start of the process needs. Any thread.
#pragma once

namespace StartMemory {

/// Releases the pages of code and constants in memory, of the program and its libraries, and unused memory of the heap.
/// The loader has read most of these pages: symbols, relocations, code that runs once. Pages that are needed later come
/// back from the system's file cache when they are next used. A breakpoint that a debugger has set before is lost.
void release();

} // namespace StartMemory
