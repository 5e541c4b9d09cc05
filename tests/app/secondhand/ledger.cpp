// SPDX-License-Identifier: MIT
#include "tests/app/secondhand/ledger.h"

#include "base/document.h"
#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "daemon/settings/documentcommands.h"
#include "macros/macrorecord.h"

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

constexpr int unknownDelay = -1;

void moveUp(int &row, int deletedRow)
{
    if (deletedRow == row)
        row = -1;
    else if (deletedRow < row)
        --row;
}

QString shortText(const QVariant &value)
{
    if (!value.isValid())
        return u"nothing"_s;
    if (value.typeId() == QMetaType::QVariantMap || value.typeId() == QMetaType::QVariantList)
        return u"a record"_s;
    return u"%1 (%2)"_s.arg(value.toString(), QLatin1StringView(value.typeName()));
}

/// An integer is read as another type than the one it was written as.
QVariant normalized(const QVariant &value)
{
    return value.typeId() == QMetaType::Int ? QVariant(value.toLongLong()) : value;
}

} // namespace

Ledger::Ledger(QVariantMap document, int profile, int macro)
    : mDocument(std::move(document)), mProfile(profile), mMacro(macro)
{
}

int Ledger::activeProfile() const
{
    return Document(mDocument).activeProfileIndex();
}

QVariantList Ledger::profiles() const
{
    return Document(mDocument).profiles();
}

QVariantList Ledger::macros() const
{
    return Document(mDocument).macros();
}

QVariantMap Ledger::profileRecord() const
{
    return profiles().value(mProfile).toMap();
}

QVariantMap Ledger::macroRecord() const
{
    return macros().value(mMacro).toMap();
}

bool Ledger::isObstructed(Command command) const
{
    return obstructionOf(command).has_value();
}

std::optional<Obstruction> Ledger::obstructionOf(Command command) const
{
    if (!mObstructed || mObstructed->command != command)
        return {};
    return mObstructed->obstruction;
}

bool Ledger::follow(Command command, const QVariantMap &request)
{
    const DocumentCommand *rule = findDocumentCommand(static_cast<qint32>(command));
    const std::optional<CommandOutcome> outcome = rule ? std::optional(rule->apply(mDocument, request)) : std::nullopt;
    if (!outcome || outcome->status != Status::ok) {
        mProblems += u"command %1 cannot be followed"_s.arg(int(command));
        return false;
    }
    mDocument = outcome->document;
    moveRows(command, request);
    return true;
}

void Ledger::moveRows(Command command, const QVariantMap &request)
{
    if (command == Command::deleteProfile)
        moveUp(mProfile, request.value(DaemonProtocol::profileId).toInt());
    else if (command == Command::deleteMacro)
        moveUp(mMacro, request.value(DaemonProtocol::macroId).toInt());
}

bool Ledger::apply(Command command, const QVariantMap &request)
{
    return !isObstructed(command) && follow(command, request);
}

bool Ledger::changeProfile(const QVariantMap &settings)
{
    return apply(Command::updateProfile,
                 {{DaemonProtocol::profileId, mProfile}, {DaemonProtocol::deviceSettingsDictionary, settings}});
}

bool Ledger::assignKey(int code, int assignment, const QVariant &param1, const QVariant &param2)
{
    QVariantMap keys = profileRecord().value(SettingsKeys::keys).toMap();
    QVariantMap entry = keys.value(QString::number(code)).toMap();
    entry.insert(SettingsKeys::command, assignment);
    entry.insert(SettingsKeys::param1, param1);
    entry.insert(SettingsKeys::param2, param2);
    keys.insert(QString::number(code), entry);
    return changeProfile({{SettingsKeys::keys, keys}});
}

void Ledger::dropAssignments(int assignment, int deletedRow, int count)
{
    QVariantList changed;
    for (const QVariant &record : profiles()) {
        QVariantMap profile = record.toMap();
        QVariantMap keys = profile.value(SettingsKeys::keys).toMap();
        for (auto &entry : keys) {
            const QVariantMap mapping = entry.toMap();
            const int row = mapping.value(SettingsKeys::param1).toInt();
            if (mapping.value(SettingsKeys::command).toInt() == assignment
                && (row == deletedRow || row < 0 || row >= count))
                entry = QVariantMap();
        }
        profile.insert(SettingsKeys::keys, keys);
        changed += profile;
    }
    if (changed != profiles())
        apply(Command::replaceAllProfiles, {{DaemonProtocol::allProfiles, changed}});
}

void Ledger::recordEvents(const QVariantList &events, bool isAppended)
{
    QVariantList recorded;
    for (const QVariant &event : events) {
        QVariantMap record = event.toMap();
        record.insert(SettingsKeys::delay, unknownDelay);
        recorded += record;
    }
    const CommandOutcome outcome = saveEvents(mDocument, mMacro, recorded, isAppended);
    if (outcome.status == Status::ok)
        mDocument = outcome.document;
    else
        mProblems += u"the recorded events cannot be saved"_s;
}

void Ledger::replaceEvents(const QVariantList &events)
{
    QVariantList all = macros();
    if (mMacro < 0 || mMacro >= all.size()) {
        mProblems += u"there is no macro whose events could be replaced"_s;
        return;
    }
    all[mMacro] = MacroRecord::withEvents(macroRecord(), events);
    mDocument.insert(SettingsKeys::macros, all);
}

void Ledger::adoptRecordedDelays(const QVariantMap &actual)
{
    QVariantList all = macros();
    const QVariantList actualMacros = Document(actual).macros();
    for (qsizetype row = 0; row < all.size(); ++row) {
        const QVariantMap macro = all.at(row).toMap();
        const QVariantList actualEvents = MacroRecord::events(actualMacros.value(row).toMap());
        QVariantList events = MacroRecord::events(macro);
        bool hasRecorded = false;
        for (qsizetype index = 0; index < events.size(); ++index) {
            QVariantMap event = events.at(index).toMap();
            if (event.value(SettingsKeys::delay).toInt() != unknownDelay)
                continue;
            hasRecorded = true;
            event.insert(SettingsKeys::delay, actualEvents.value(index).toMap().value(SettingsKeys::delay, 0));
            events[index] = event;
        }
        if (hasRecorded)
            all[row] = MacroRecord::withEvents(macro, events);
    }
    mDocument.insert(SettingsKeys::macros, all);
}

QStringList differences(const QVariant &actual, const QVariant &expected, const QString &path)
{
    QStringList found;
    if (actual.typeId() == QMetaType::QVariantMap && expected.typeId() == QMetaType::QVariantMap) {
        QVariantMap keys = actual.toMap();
        keys.insert(expected.toMap());
        for (const QString &key : keys.keys())
            found += differences(actual.toMap().value(key), expected.toMap().value(key), path + u'/' + key);
    } else if (actual.typeId() == QMetaType::QVariantList && expected.typeId() == QMetaType::QVariantList) {
        const qsizetype count = std::max(actual.toList().size(), expected.toList().size());
        for (qsizetype index = 0; index < count; ++index)
            found += differences(actual.toList().value(index), expected.toList().value(index),
                                 path + u'/' + QString::number(index));
    } else if (normalized(actual) != normalized(expected)
               || normalized(actual).typeId() != normalized(expected).typeId()) {
        found += u"%1 is %2 and not %3"_s.arg(path, shortText(actual), shortText(expected));
    }
    return found;
}
