// SPDX-License-Identifier: MIT
// The parts of one scenario: keyboards, a daemon with private settings, and the keys that the desktop sees.
#pragma once

#include "tests/vm/driver/controlpanel.h"
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
    static constexpr const char *outputName = "Quill Kestra output"; ///< of the daemon's output device

    /// `folder`: for settings and the log; created anew.
    explicit Machine(std::string folder);
    ~Machine();

    void startDaemon();
    /// Starts the daemon with only the permissions of the user service.
    void startRestrictedDaemon();
    /// Starts the daemon as the user `userId`, who has no rights.
    void startDaemonOfAUser();
    static constexpr unsigned userId = 1000;
    /// Ends the daemon with this signal; the desktop's keyboard disappears with it.
    void endDaemon(int signal);
    [[nodiscard]] BackgroundProcess &daemon() { return mDaemon; }
    [[nodiscard]] std::string daemonLog() const;
    [[nodiscard]] const std::string &folder() const { return mFolder; }

    /// Runs kestractl.
    [[nodiscard]] ProcessResult control(const std::vector<std::string> &words) const;
    /// Runs kestractl, which must succeed. Returns its output.
    std::string mustControl(const std::vector<std::string> &words) const;
    /// Starts kestractl and lets it run during the next steps; its output goes to the daemon's log.
    void startControl(const std::vector<std::string> &words);
    void waitForControl();
    /// Starts a program that shows the daemon's notifications, and with the word "capture" also requests single keys.
    /// told() returns its output.
    void startClient(const std::vector<std::string> &words);
    void endClient() { mClient.end(SIGTERM); }
    [[nodiscard]] std::string told() const;
    /// Starts a login manager, for daemons that are started later. A session of the daemon's user is at the seat.
    void startLoginManager();
    void setAtTheSeat(const std::string &who) const; ///< "own", else a session of another user
    /// The value of "name: value" in the output of "kestractl status"; empty when it is missing.
    [[nodiscard]] std::string status(const std::string &name) const;

    /// Plugs in a keyboard and waits for its event device.
    void plug(const std::string &name, UhidKeyboard::Identity identity);
    /// The same for a keyboard with a volume control and a switch.
    void plugPanel(const std::string &name);
    void unplug(const std::string &name)
    {
        mKeyboards.erase(name);
        mPanels.erase(name);
    }
    [[nodiscard]] ControlPanel &panel(const std::string &name);
    /// The event device of its keys.
    [[nodiscard]] std::string nodeName(const std::string &name);
    [[nodiscard]] UhidKeyboard &keyboard(const std::string &name);
    /// Makes the daemon use these keyboards and waits until it does.
    void use(const std::vector<std::string> &names);

    /// The event device that the desktop sees. Opened at the first call.
    [[nodiscard]] EventNode &desktop();
    /// Makes the next desktop() search for the desktop's keyboard again.
    void forgetDesktop() { mDesktop.reset(); }

    /// Its identifier in kestractl; empty when kestractl does not know the keyboard.
    [[nodiscard]] std::string deviceId(const std::string &name) const;

private:
    void start(bool (*prepare)());

    std::string mFolder;
    BackgroundProcess mDaemon;
    BackgroundProcess mControl;
    BackgroundProcess mClient;
    BackgroundProcess mLoginManager;
    std::map<std::string, std::unique_ptr<UhidKeyboard>> mKeyboards;
    std::map<std::string, ControlPanel> mPanels;
    std::optional<EventNode> mDesktop;
};
