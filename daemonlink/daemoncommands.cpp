// SPDX-License-Identifier: MIT
#include "daemonlink/daemoncommands.h"

#include "base/daemonprotocol.h"
#include "base/settingskeys.h"

#include <algorithm>

namespace P = DaemonProtocol;

namespace {

QVariantMap request(int product, const QString &replyPort, QVariantMap entries = {})
{
    entries.insert(P::productIdKey, product);
    entries.insert(P::responsePortName, replyPort);
    return entries;
}

int low8Bits(int index)
{
    return index & 0xFF;
}

} // namespace

QVariantMap DaemonCommands::openDevice(const QString &replyPort, const QString &factoryDocumentPath)
{
    return request(
        P::productId, replyPort,
        {{P::productName, QString(P::productWord)}, {P::isDeviceWired, 1}, {P::defaultPlistPath, factoryDocumentPath}});
}

QVariantMap DaemonCommands::readSettings(int product, const QString &replyPort)
{
    return request(product, replyPort);
}

QVariantMap DaemonCommands::addProfile(int product, const QString &replyPort, const QVariantMap &profile)
{
    return request(product, replyPort, {{P::deviceSettingsDictionary, profile}});
}

QVariantMap DaemonCommands::addInactiveProfile(int product, const QString &replyPort, const QVariantMap &profile)
{
    return request(product, replyPort, {{P::deviceSettingsDictionary, profile}, {P::keepsActiveProfile, true}});
}

QVariantMap DaemonCommands::updateProfile(int product, const QString &replyPort, int profileIndex,
                                          const QVariantMap &settings)
{
    return request(product, replyPort,
                   {{P::profileId, std::max(profileIndex, 0)}, {P::deviceSettingsDictionary, settings}});
}

QVariantMap DaemonCommands::replaceAllProfiles(int product, const QString &replyPort, const QVariantList &profiles)
{
    return request(product, replyPort, {{P::allProfiles, profiles}});
}

QVariantMap DaemonCommands::deleteProfile(int product, const QString &replyPort, int profileIndex)
{
    return request(product, replyPort, {{P::profileId, profileIndex}});
}

QVariantMap DaemonCommands::switchProfile(int product, const QString &replyPort, int profileIndex)
{
    return request(product, replyPort, {{P::profileId, profileIndex}});
}

QVariantMap DaemonCommands::queryFirmwareVersion(int product, const QString &replyPort)
{
    return request(product, replyPort);
}

QVariantMap DaemonCommands::startMacroRecording(int product, const QString &replyPort, int appendFlag, int macroIndex)
{
    return request(product, replyPort, {{P::macroId, macroIndex}, {P::isAppendRecording, appendFlag}});
}

QVariantMap DaemonCommands::stopMacroRecording(int product, const QString &replyPort)
{
    return request(product, replyPort);
}

QVariantMap DaemonCommands::saveRecordedEvents(int product, const QString &replyPort, int macroIndex,
                                               int isNewRecording)
{
    return request(product, replyPort, {{P::macroId, macroIndex}, {P::isAppendRecording, isNewRecording}});
}

QVariantMap DaemonCommands::startEditHid(int product, const QString &replyPort)
{
    return request(product, replyPort);
}

QVariantMap DaemonCommands::deleteMacro(int product, const QString &replyPort, int macroIndex)
{
    return request(product, replyPort, {{P::macroId, macroIndex}});
}

QVariantMap DaemonCommands::removeEvent(int product, const QString &replyPort, int eventIndex, int macroIndex)
{
    return request(product, replyPort, {{P::macroId, macroIndex}, {P::macroEventTableIndex, eventIndex}});
}

QVariantMap DaemonCommands::updateEvent(int product, const QString &replyPort, int macroIndex, int eventIndex,
                                        const QVariantMap &event)
{
    return request(
        product, replyPort,
        {{P::macroId, low8Bits(macroIndex)}, {P::sequenceIndex, low8Bits(eventIndex)}, {P::sequence, event}});
}

QVariantMap DaemonCommands::renameMacro(int product, const QString &replyPort, int macroIndex, const QString &newName)
{
    const QVariantMap contents{{SettingsKeys::macroName, newName}, {SettingsKeys::macroId, macroIndex}};
    return request(product, replyPort, {{P::macroContents, contents}});
}

QVariantMap DaemonCommands::readMacroLines(int product, const QString &replyPort, int macroIndex)
{
    return request(product, replyPort, {{P::indexOfMacroSequence, macroIndex}});
}

QVariantMap DaemonCommands::readEvent(int product, const QString &replyPort, int macroIndex, int eventIndex)
{
    return request(product, replyPort, {{P::macroId, low8Bits(macroIndex)}, {P::sequenceIndex, low8Bits(eventIndex)}});
}

QVariantMap DaemonCommands::startSingleKeyRecording(int product, const QString &replyPort)
{
    return request(product, replyPort);
}

QVariantMap DaemonCommands::stopSingleKeyRecording(int product, const QString &replyPort)
{
    return request(product, replyPort);
}

QVariantMap DaemonCommands::addMacro(int product, const QString &replyPort, const QVariantMap &macro)
{
    return request(product, replyPort, {{P::macroContents, macro}});
}

QVariantMap DaemonCommands::removeAllEvents(int product, const QString &replyPort, int macroIndex)
{
    return request(product, replyPort, {{P::macroId, macroIndex}});
}

QVariantMap DaemonCommands::setAllDelays(int product, const QString &replyPort, int delay, int macroIndex,
                                         bool hasNoDelay)
{
    return request(product, replyPort, {{P::macroId, macroIndex}, {P::delay, delay}, {P::hasNoDelay, hasNoDelay}});
}

QVariantMap DaemonCommands::setDelay(int product, const QString &replyPort, int delay, int eventIndex, int macroIndex)
{
    return request(product, replyPort, {{P::macroId, macroIndex}, {P::delay, delay}, {P::sequenceIndex, eventIndex}});
}

QVariantMap DaemonCommands::releaseDevice(int product)
{
    return {{P::productIdKey, product}};
}
