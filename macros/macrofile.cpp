// SPDX-License-Identifier: MIT
#include "macros/macrofile.h"

#include "base/daemonprotocol.h"
#include "base/qlcoreutility.h"
#include "base/settingskeys.h"
#include "macros/macrorecord.h"

QVariantMap MacroFile::newRecord(const QVariantList &macros)
{
    return {
        {SettingsKeys::macroName, QlCoreUtility::generateNameUsingDefaultName(macros, untitledName)},
        {SettingsKeys::delay, MacroRecord::standardDelayMs},
        {DaemonProtocol::responsePortName, QString(DaemonProtocol::configuratorReplyPortName)},
        {SettingsKeys::sequence, QVariantMap()},
    };
}

QVariantMap MacroFile::exportedRecord(QVariantMap record)
{
    record.remove(SettingsKeys::macroId);
    return record;
}

bool MacroFile::holdsMacro(const QVariantMap &record)
{
    return !MacroRecord::name(record).isEmpty() || MacroRecord::sequence(record).typeId() == QMetaType::QVariantMap;
}

QVariantMap MacroFile::importedRecord(QVariantMap record, const QVariantList &macros)
{
    const QString name = MacroRecord::name(record);
    record.insert(SettingsKeys::macroName,
                  QlCoreUtility::generateNameUsingDefaultName(macros, name.isEmpty() ? QString(untitledName) : name));
    return record;
}
