// SPDX-License-Identifier: MIT
// What one scenario works with: keyboards, the daemon with settings of its own, and what the desktop sees.
#pragma once

#include "tests/vm/driver/eventnode.h"
#include "tests/vm/driver/process.h"
#include "tests/vm/driver/uhidkeyboard.h"

#include <csignal>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class Machine
{
public:
    /// `folder`: for settings and the log; made anew.
    explicit Machine(std::string folder);
    ~Machine();

    void startDaemon();
    /// The same with what the user service allows it, and nothing else.
    void startRestrictedDaemon();
    /// Ends it with this signal; the desktop's keyboard goes with it.
    void endDaemon(int signal);
    [[nodiscard]] BackgroundProcess &daemon() { return mDaemon; }
    [[nodiscard]] std::string daemonLog() const;
    [[nodiscard]] const std::string &folder() const { return mFolder; }

    /// Runs kestractl.
    [[nodiscard]] ProcessResult control(const std::vector<std::string> &words) const;
    /// Runs kestractl, which must do it. Returns what it says.
    std::string mustControl(const std::vector<std::string> &words) const;
    /// The same for what goes on while other steps are done; its output is in the daemon's log.
    void startControl(const std::vector<std::string> &words);
    void waitForControl();
    /// A program that asks for single keys, with the word "capture", and shows what the daemon tells. What came is told().
    void startClient(const std::vector<std::string> &words);
    void endClient() { mClient.end(SIGTERM); }
    [[nodiscard]] std::string told() const;
    /// The value of "name: value" in what "kestractl status" says; empty when it is not there.
    [[nodiscard]] std::string status(const std::string &name) const;

    /// Plugs in a keyboard and waits for its event node.
    void plug(const std::string &name, UhidKeyboard::Identity identity);
    void unplug(const std::string &name) { mKeyboards.erase(name); }
    /// The event node of its keys.
    [[nodiscard]] std::string nodeName(const std::string &name);
    [[nodiscard]] UhidKeyboard &keyboard(const std::string &name);
    /// Tells the daemon to use these and waits until it does.
    void use(const std::vector<std::string> &names);

    /// What the desktop sees. Opened when first asked for.
    [[nodiscard]] EventNode &desktop();
    /// Looks for the desktop's keyboard anew with the next desktop().
    void forgetDesktop() { mDesktop.reset(); }

    /// What kestractl calls it; empty when it does not know it.
    [[nodiscard]] std::string deviceId(const std::string &name) const;

private:
    void start(bool (*prepare)());

    std::string mFolder;
    BackgroundProcess mDaemon;
    BackgroundProcess mControl;
    BackgroundProcess mClient;
    std::map<std::string, std::unique_ptr<UhidKeyboard>> mKeyboards;
    std::optional<EventNode> mDesktop;
};
