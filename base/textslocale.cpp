// SPDX-License-Identifier: MIT
#include "base/textslocale.h"

#include "base/text.h"

QLocale textsLocale()
{
    const QLocale texts(localizedText("lkeyTextsLanguage"));
    const QLocale system;
    return system.language() == texts.language() && system.script() == texts.script() ? system : texts;
}
