// SPDX-License-Identifier: MIT
// The question that comes before a profile or macro file is added.
#pragma once

#include "app/openedfile.h"

class QWidget;
class Sheet;

/// Returns a sheet that names the file with its full path and the effect of its content; `name` is the one that the
/// record would get. Ends with alertFirstButtonReturn if the user adds it. Cancel is the default button and has the
/// focus. The caller must delete the sheet.
[[nodiscard]] Sheet *makeFileQuestion(const OpenedFile &file, const QString &name, QWidget *window);
