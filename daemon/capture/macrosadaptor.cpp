// SPDX-License-Identifier: MIT
#include "daemon/capture/macrosadaptor.h"

#include "base/macroskeys.h"

namespace {

MacrosKeys::Key errorOf(MacroReplacement::Refusal refusal)
{
    switch (refusal) {
    case MacroReplacement::Refusal::gone: return MacrosKeys::goneError;
    case MacroReplacement::Refusal::busy: return MacrosKeys::busyError;
    case MacroReplacement::Refusal::changed: return MacrosKeys::changedError;
    case MacroReplacement::Refusal::invalid: return MacrosKeys::invalidError;
    case MacroReplacement::Refusal::notSaved: return MacrosKeys::notSavedError;
    }
    return MacrosKeys::invalidError;
}

} // namespace

MacrosObject::MacrosObject(MacroReplacement &replacement, QObject *parent) : QObject(parent)
{
    new MacrosAdaptor(replacement, this);
}

bool MacrosObject::registerOn(QDBusConnection connection)
{
    return connection.registerObject(MacrosKeys::objectPath, this, QDBusConnection::ExportAdaptors);
}

MacrosAdaptor::MacrosAdaptor(MacroReplacement &replacement, MacrosObject *object)
    : QDBusAbstractAdaptor(object), mReplacement(replacement), mObject(object)
{
}

void MacrosAdaptor::Replace(uint macroID, const QString &digest, const QByteArray &events, const QString &sourceApp)
{
    const auto replaced = mReplacement.replace(macroID, digest, events, sourceApp);
    if (!replaced)
        mObject->sendErrorReply(errorOf(replaced.error().refusal), replaced.error().message);
}
