// SPDX-License-Identifier: MIT
// The step that lets a macro type a text and reads what arrives.
#pragma once

#include "tests/vm/driver/machine.h"
#include "tests/vm/driver/stepwords.h"

/// types NAME KEY MACRO LAYOUT TEXT: kestractl makes the macro type the text in this layout. Then the key of the
/// keyboard plays it, and a computer with the same layout must receive exactly this text. In it, "¶" is Return and "→"
/// is Tab.
void expectTyped(Machine &machine, const Words &words);
