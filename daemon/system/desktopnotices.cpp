// SPDX-License-Identifier: MIT
#include "daemon/system/desktopnotices.h"

#include "base/resources.h"
#include "base/text.h"
#include "base/visibletext.h"

#include <QLocale>

using namespace Qt::StringLiterals;

namespace {

/// Loads the texts on demand: these notices are rare, and the texts need memory.
void loadTexts()
{
    static const bool areTextsThere = [] {
        installTexts(resourcePath(u"texts"_s), QLocale::system().uiLanguages());
        return true;
    }();
    Q_UNUSED(areTextsThere);
}

/// A lasting notice with the texts of these keys.
DesktopNotification::Notice lastingNotice(const char *summaryKey, const char *bodyKey)
{
    loadTexts();
    return {.summary = localizedText(summaryKey), .body = localizedText(bodyKey), .isPassing = false};
}

/// A name from outside must not be markup, which many services show in a body.
QString plainName(const QString &name)
{
    QString plain = visibleText(name, u'?');
    for (const QChar markup : {u'<', u'>', u'&'})
        plain.replace(markup, u'?');
    return plain;
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

DesktopQuestion::Bubble DesktopNotices::watchQuestion(const QString &program)
{
    loadTexts();
    return {.summary = localizedText("lkeyWatchQuestion"),
            .body = localizedFormat("lkeyWatchQuestionHow", {plainName(program)}),
            .buttons = {QString(allowButton), localizedText("lkeyWatchAllow"), u"refuse"_s,
                        localizedText("lkeyWatchRefuse")}};
}

DesktopQuestion::Bubble DesktopNotices::watchNotice(const QString &program)
{
    loadTexts();
    return {.summary = localizedText("lkeyWatchRuns"),
            .body = localizedFormat("lkeyWatchRunsHow", {plainName(program)}),
            .buttons = {u"stop"_s, localizedText("lkeyWatchStop")}};
}
