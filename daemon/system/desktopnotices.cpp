// SPDX-License-Identifier: MIT
#include "daemon/system/desktopnotices.h"

#include "base/resources.h"
#include "base/text.h"

#include <QLocale>

using namespace Qt::StringLiterals;

namespace {

/// A lasting notice with the texts of these keys.
DesktopNotification::Notice lastingNotice(const char *summaryKey, const char *bodyKey)
{
    // Loaded on demand: these notices are rare, and the texts need memory.
    static const bool areTextsThere = [] {
        installTexts(resourcePath(u"texts"_s), QLocale::system().uiLanguages());
        return true;
    }();
    Q_UNUSED(areTextsThere);
    return {.summary = localizedText(summaryKey), .body = localizedText(bodyKey), .isPassing = false};
}

} // namespace

void DesktopNotices::showProfile(const QString &name)
{
    mProfile.show({.summary = name, .body = {}}); // the name is the whole message; nothing needs a translation
}

void DesktopNotices::showKeyboardReleased()
{
    mRelease.show(lastingNotice("lkeyKeyboardReleased", "lkeyKeyboardReleasedHow"));
}

void DesktopNotices::showSettingsProblem()
{
    mSettings.show(lastingNotice("lkeySettingsProblem", "lkeySettingsProblemHow"));
}
