// SPDX-License-Identifier: MIT
// The thread of real keyboards: nothing else that the daemon does delays a key. Owned and called by the main thread;
// queued calls reach the objects on the key thread.
#pragma once

#include "daemon/keyboards/keypath.h"
#include "daemon/keyboards/linux/linuxkeychannel.h"
#include "daemon/keyboards/linux/realtimekeeper.h"
#include "daemon/keyboards/linux/stallwatch.h"

#include <QObject>
#include <QThread>

#include <memory>

/// Starts with real-time priority if the system allows it, with locked memory, and with a watch that ends the process
/// when the thread stalls. Releases everything at its end.
class KeyThread : public QObject
{
    Q_OBJECT

public:
    explicit KeyThread(QObject *parent = nullptr);
    ~KeyThread() override;

    [[nodiscard]] LinuxKeyChannel &channel() { return *mChannel; } ///< lives on the key thread
    [[nodiscard]] const LinuxKeyChannel &channel() const { return *mChannel; }
    [[nodiscard]] KeyPath &keys() { return *mKeys; } ///< lives on the key thread
    [[nodiscard]] bool isRealTime() const;           ///< at this moment

Q_SIGNALS:
    void realTimeChanged();

private:
    void prepare();
    void keepRealTime(pid_t thread);

    QThread mThread;
    QObject mAnchor;                           // lives on the key thread, for calls there
    std::unique_ptr<LinuxKeyChannel> mChannel; // lives and is destroyed there
    std::unique_ptr<KeyPath> mKeys;            // lives and is destroyed there
    std::unique_ptr<StallWatch> mWatch;        // lives, is made and is destroyed there
    pid_t mThreadId = 0;                       // 0 until the thread has started
    std::unique_ptr<RealtimeKeeper> mRealtime; // from then on
};
