// SPDX-License-Identifier: MIT
// A daemon that answers by a script. It does what the real one never does (wrong, late, double, missing replies) and
// records exactly what it receives. It has a thread and a bus connection of its own, so it works while the main thread
// blocks.
#pragma once

#include "base/daemonprotocol.h"
#include "tests/support/workerthread.h"

#include <QByteArray>
#include <QDBusConnection>
#include <QVariantMap>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

class LocalMessagePort;

/// Owns the daemon's request port from construction to disappear(). Any thread may call the functions.
class ScriptedDaemon
{
public:
    using Command = DaemonProtocol::Command;

    struct Request
    {
        int command = -1;
        QVariantMap dictionary;
        QByteArray data;
    };

    /// One message to the reply port that the request named. Without `after`, the port has taken it before the request
    /// itself is answered. A port on the thread that sends the request cannot do so.
    struct Reply
    {
        QByteArray data;
        std::chrono::milliseconds after{0};
    };

    using Script = std::function<std::vector<Reply>(const Request &)>;

    /// Answers every command with status 0. Commands that return a document get `document`. Macros have no lines.
    explicit ScriptedDaemon(QVariantMap document = {});
    ~ScriptedDaemon();

    /// Takes or releases the request port's name.
    void appear();
    void disappear();

    /// Runs `function` on the daemon's thread, with its connection: for further objects of the daemon.
    void run(const std::function<void(const QDBusConnection &connection)> &function);

    // The replies from now on
    void setDocument(const QVariantMap &document);
    void setReply(Command command, const QVariantMap &reply);
    void setScript(Command command, Script script);
    void setSilent(Command command);

    /// Sends `data` to the reply port named `port`, waits for the answer and returns it.
    QByteArray sendToReplyPort(const QString &port, int messageIdentifier, const QByteArray &data);

    void postNotification(const QString &name, const QVariantMap &userInfo = {});

    // The received requests
    [[nodiscard]] std::vector<Request> requests() const;
    [[nodiscard]] std::vector<int> commands() const;
    /// The last request of `command`; its command is -1 when there was none.
    [[nodiscard]] Request lastRequest(Command command) const;
    [[nodiscard]] int count(Command command) const;
    void forgetRequests();

    static QByteArray encoded(const QVariantMap &dictionary);

private:
    std::optional<QByteArray> receive(qint32 command, const std::optional<QByteArray> &data);
    std::vector<Reply> scriptedReplies(const Request &request) const;
    void send(const QString &port, int command, const Reply &reply);

    mutable std::mutex mMutex; // guards the script and the requests
    QVariantMap mDocument;
    std::map<int, Script> mScripts;
    std::vector<Request> mRequests;

    QString mConnectionName;
    std::unique_ptr<LocalMessagePort> mPort; // used on mThread only
    WorkerThread mThread;
};
