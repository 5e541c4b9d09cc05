// SPDX-License-Identifier: MIT
#include "daemon/devicedaemon.h"

#include "base/daemonprotocol.h"
#include "daemon/system/logging.h"

#include <utility>

DeviceDaemon::DeviceDaemon(SettingsStore &store, Keyboard &keyboard, DaemonServices services,
                           const QVariantMap &document, const HistoryLimits &limits, QObject *parent)
    : QObject(parent), mServices(std::move(services)), mHistory(store.folder(), limits),
      mSettings(store, mHistory, mServices, document,
                [this](const QVariantMap &current) { return mProfiles.documentToKeep(current); }),
      mProfiles(mSettings, mServices), mOwnKeys(mSettings, mServices), mOnTheFly(mSettings, mKeyboard, mServices),
      mCaptures(mKeyboard, mOnTheFly, mServices), mCaptureCommands(mCaptures, mSettings, mKeyboard),
      mHistoryCommands(mHistory, mSettings, mProfiles), mMacroReplacement(mSettings, mCaptures),
      mRequests(mSettings, mProfiles, mCaptureCommands, mKeyboard, mServices)
{
    mHistory.open(document, [&store] { return store.contents(); });
    connectParts();
    mKeyboard.use(keyboard, document);
}

void DeviceDaemon::connectParts()
{
    connect(&mSettings, &CurrentSettings::changed, this, [this](bool isOtherProfile) {
        mKeyboard.apply(document(), isOtherProfile);
        Q_EMIT documentChanged();
    });
    connect(&mKeyboard, &CurrentKeyboard::attachedChanged, this, &DeviceDaemon::attachedChanged);
    connect(&mKeyboard, &CurrentKeyboard::gameModePressed, this, [this] { mOwnKeys.toggleGameMode(); });
    connect(&mKeyboard, &CurrentKeyboard::brightnessChosen, this, [this](int level) { mOwnKeys.setBrightness(level); });
    connect(&mKeyboard, &CurrentKeyboard::macroKeyPressed, this,
            [this](KeyPath::Time time) { mCaptures.macroKeyPressed(time); });
    connect(&mKeyboard, &CurrentKeyboard::keyReported, this,
            [this](HidUsage key, bool isDown, KeyPath::Time time) { mCaptures.keyChanged(key, isDown, time); });
    connect(&mKeyboard, &CurrentKeyboard::keyCaptured, this,
            [this](HidUsage key, quint8 modifiers) { mCaptures.keyCaptured(key, modifiers); });
    connect(&mKeyboard, &CurrentKeyboard::profileChosen, this, [this](int index) { mProfiles.chooseByKey(index); });
    connect(&mKeyboard, &CurrentKeyboard::programChosen, this,
            [this](const QString &program) { mServices.launchProgram(program); });
}

void DeviceDaemon::handleMessage(qint32 number, const std::optional<QByteArray> &data)
{
    mRequests.handleMessage({.number = number, .data = data, .readAt = mServices.sinceBoot()});
}

void DeviceDaemon::clientVanished(const QString &portName)
{
    mCaptures.clientVanished(portName);
}

void DeviceDaemon::wake()
{
    mCaptures.wake();
}

void DeviceDaemon::setFrontApplication(const FrontApplication &application)
{
    mProfiles.setFrontApplication(application);
}

void DeviceDaemon::announceKeyboard()
{
    postAttachment(mKeyboard.keyboard()->isAttached());
}

void DeviceDaemon::useKeyboard(Keyboard &keyboard)
{
    if (&keyboard == mKeyboard.keyboard())
        return;
    const bool wasAttached = mKeyboard.keyboard()->isAttached();
    mCaptures.end("another keyboard is used");
    mKeyboard.use(keyboard, document());
    if (keyboard.isAttached() != wasAttached)
        postAttachment(!wasAttached);
}

void DeviceDaemon::shutDown()
{
    mCaptures.end("the daemon ends");
    mKeyboard.stop();
}

void DeviceDaemon::attachedChanged(bool isAttached)
{
    qCInfo(lcKeyboard, "%s", isAttached ? "keyboard: attached" : "keyboard: removed");
    if (isAttached)
        mKeyboard.apply(document(), false);
    else
        mCaptures.end("the keyboard is removed");
    postAttachment(isAttached);
}

void DeviceDaemon::postAttachment(bool isAttached)
{
    mServices.postNotification(isAttached ? DaemonProtocol::deviceAttached : DaemonProtocol::deviceRemoved,
                               {{DaemonProtocol::productIdKey, DaemonProtocol::productId}});
}
