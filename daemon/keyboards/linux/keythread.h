// SPDX-License-Identifier: MIT
// The thread that real keyboards live on, so that nothing else that the daemon does delays a key. Owned and called by
// the daemon's thread; what lives on the key thread is reached by queued calls.
#pragma once

#include "daemon/keyboards/keypath.h"
#include "daemon/keyboards/linux/linuxkeychannel.h"
#include "daemon/keyboards/linux/stallwatch.h"

#include <QObject>
#include <QThread>

#include <memory>

/// Starts with real-time priority where the system allows it, with memory that stays in memory, and under the watch
/// that ends the process when the thread stalls. Ends with everything let go of.
class KeyThread : public QObject
{
    Q_OBJECT

public:
    explicit KeyThread(QObject *parent = nullptr);
    ~KeyThread() override;

    [[nodiscard]] LinuxKeyChannel &channel() { return *mChannel; } ///< lives on the key thread
    [[nodiscard]] const LinuxKeyChannel &channel() const { return *mChannel; }
    [[nodiscard]] KeyPath &keys() { return *mKeys; } ///< likewise
    [[nodiscard]] bool isRealTime() const { return mIsRealTime; }

Q_SIGNALS:
    void realTimeChanged();

private:
    void prepare();
    void setRealTime(bool isRealTime);

    QThread mThread;
    QObject mAnchor;                           // lives on the key thread, for calls there
    std::unique_ptr<LinuxKeyChannel> mChannel; // lives there and is destroyed there
    std::unique_ptr<KeyPath> mKeys;            // likewise
    std::unique_ptr<StallWatch> mWatch;        // likewise, but made there, too
    bool mIsRealTime = false;
};
