// SPDX-License-Identifier: MIT
// Makes the request dictionary of every command. Pure functions; the protocol fixes the keys and numbers.
//
// `product` is the opened keyboard's product identifier, `replyPort` the name of the port that receives the reply.
// The index of a profile or macro is that in its list. The index of an event is a row of the event list, in which
// delays also have rows. Delays are in milliseconds. Flags are the numbers 0 and 1; only "HasNoDelay" is a boolean.
#pragma once

#include <QString>
#include <QVariantMap>

namespace DaemonCommands {

QVariantMap openDevice(const QString &replyPort, const QString &factoryDocumentPath);
QVariantMap readSettings(int product, const QString &replyPort);
QVariantMap addProfile(int product, const QString &replyPort, const QVariantMap &profile);
/// The active profile stays active.
QVariantMap addInactiveProfile(int product, const QString &replyPort, const QVariantMap &profile);
/// Sends a negative index as 0.
QVariantMap updateProfile(int product, const QString &replyPort, int profileIndex, const QVariantMap &settings);
QVariantMap replaceAllProfiles(int product, const QString &replyPort, const QVariantList &profiles);
QVariantMap deleteProfile(int product, const QString &replyPort, int profileIndex);
QVariantMap switchProfile(int product, const QString &replyPort, int profileIndex);
QVariantMap queryFirmwareVersion(int product, const QString &replyPort);
QVariantMap startMacroRecording(int product, const QString &replyPort, int appendFlag, int macroIndex);
QVariantMap stopMacroRecording(int product, const QString &replyPort);
/// The flag has the same key as the append flag of startMacroRecording(). Deliberate.
QVariantMap saveRecordedEvents(int product, const QString &replyPort, int macroIndex, int isNewRecording);
QVariantMap startEditHid(int product, const QString &replyPort);
QVariantMap deleteMacro(int product, const QString &replyPort, int macroIndex);
QVariantMap removeEvent(int product, const QString &replyPort, int eventIndex, int macroIndex);
/// Sends the low 8 bits of both indexes. Deliberate.
QVariantMap updateEvent(int product, const QString &replyPort, int macroIndex, int eventIndex,
                        const QVariantMap &event);
QVariantMap renameMacro(int product, const QString &replyPort, int macroIndex, const QString &newName);
QVariantMap readMacroLines(int product, const QString &replyPort, int macroIndex);
/// Sends the low 8 bits of both indexes. Deliberate.
QVariantMap readEvent(int product, const QString &replyPort, int macroIndex, int eventIndex);
QVariantMap startSingleKeyRecording(int product, const QString &replyPort);
QVariantMap stopSingleKeyRecording(int product, const QString &replyPort);
QVariantMap addMacro(int product, const QString &replyPort, const QVariantMap &macro);
QVariantMap removeAllEvents(int product, const QString &replyPort, int macroIndex);
QVariantMap setAllDelays(int product, const QString &replyPort, int delay, int macroIndex, bool hasNoDelay);
QVariantMap setDelay(int product, const QString &replyPort, int delay, int eventIndex, int macroIndex);
/// The only request that names no reply port: no client waits for its reply.
QVariantMap releaseDevice(int product);

} // namespace DaemonCommands
