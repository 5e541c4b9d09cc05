// SPDX-License-Identifier: MIT
// The request dictionary of every command. Pure functions; the keys and numbers are fixed by the protocol.
//
// `product` is the opened keyboard's product identifier, `replyPort` the name of the port the reply is to go to.
// Indexes are rows of the profile list, the macro list and a macro's event list (delay rows counted); delays are
// milliseconds; flags are the numbers 0 and 1, only "HasNoDelay" is a boolean.
#pragma once

#include <QString>
#include <QVariantMap>

namespace DaemonCommands {

QVariantMap openDevice(const QString &replyPort, const QString &factoryDocumentPath);
QVariantMap readSettings(int product, const QString &replyPort);
QVariantMap addProfile(int product, const QString &replyPort, const QVariantMap &profile);
/// A negative index is sent as 0.
QVariantMap updateProfile(int product, const QString &replyPort, int profileIndex, const QVariantMap &settings);
QVariantMap replaceAllProfiles(int product, const QString &replyPort, const QVariantList &profiles);
QVariantMap deleteProfile(int product, const QString &replyPort, int profileIndex);
QVariantMap switchProfile(int product, const QString &replyPort, int profileIndex);
QVariantMap queryFirmwareVersion(int product, const QString &replyPort);
QVariantMap startMacroRecording(int product, const QString &replyPort, int appendFlag, int macroIndex);
QVariantMap stopMacroRecording(int product, const QString &replyPort);
/// The flag travels under the same key as the append flag of startMacroRecording(). Deliberate.
QVariantMap saveRecordedEvents(int product, const QString &replyPort, int macroIndex, int isNewRecording);
QVariantMap startEditHid(int product, const QString &replyPort);
QVariantMap deleteMacro(int product, const QString &replyPort, int macroIndex);
QVariantMap removeEvent(int product, const QString &replyPort, int eventIndex, int macroIndex);
/// Both indexes are sent as their low 8 bits. Deliberate.
QVariantMap updateEvent(int product, const QString &replyPort, int macroIndex, int eventIndex,
                        const QVariantMap &event);
QVariantMap renameMacro(int product, const QString &replyPort, int macroIndex, const QString &newName);
QVariantMap readMacroLines(int product, const QString &replyPort, int macroIndex);
/// Both indexes are sent as their low 8 bits. Deliberate.
QVariantMap readEvent(int product, const QString &replyPort, int macroIndex, int eventIndex);
QVariantMap startSingleKeyRecording(int product, const QString &replyPort);
QVariantMap stopSingleKeyRecording(int product, const QString &replyPort);
QVariantMap addMacro(int product, const QString &replyPort, const QVariantMap &macro);
QVariantMap removeAllEvents(int product, const QString &replyPort, int macroIndex);
QVariantMap setAllDelays(int product, const QString &replyPort, int delay, int macroIndex, bool hasNoDelay);
QVariantMap setDelay(int product, const QString &replyPort, int delay, int eventIndex, int macroIndex);
/// The one request that names no reply port: nobody waits for its reply.
QVariantMap releaseDevice(int product);

} // namespace DaemonCommands
