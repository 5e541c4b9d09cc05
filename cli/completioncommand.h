// SPDX-License-Identifier: MIT
// "kestractl --complete WORD...", with which the shells complete a command line. Users do not call it.
#pragma once

#include "cli/console.h"

#include <QStringList>

/// Prints a line "files" if the name of a file can be next, otherwise "words". Then prints two lines for each
/// continuation of `words`: the word, and its help, which may be empty. Prints no error: a shell has no place for it.
/// Main thread.
void printCompletions(const QStringList &words, Console &console);
