// SPDX-License-Identifier: MIT
#include "daemon/settings/historytext.h"

#include "base/profilerecord.h"
#include "base/settingskeys.h"

QString HistoryText::cut(const QString &text, qsizetype longest)
{
    return text.size() <= longest ? text : text.first(longest - 1) + u'…';
}

QVariantMap HistoryText::shownAssignment(const QVariantMap &entry)
{
    QVariantMap shown;
    for (const SettingsKeys::Key key : {SettingsKeys::command, SettingsKeys::param1, SettingsKeys::param2}) {
        const QVariant value = entry.value(key);
        if (value.typeId() == QMetaType::QString)
            shown.insert(key, cut(value.toString(), longestPath));
        else if (value.canConvert<int>())
            shown.insert(key, value);
    }
    return shown;
}

QString HistoryText::applicationOf(const QVariantMap &profile)
{
    const QVariantMap application = ProfileRecord::appInfo(profile);
    for (const SettingsKeys::Key key :
         {SettingsKeys::application, SettingsKeys::identifier, SettingsKeys::executable}) {
        if (const QString name = application.value(key).toString(); !name.isEmpty())
            return cut(name);
    }
    return {};
}
