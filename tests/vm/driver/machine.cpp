// SPDX-License-Identifier: MIT
#include "tests/vm/driver/machine.h"

#include "tests/vm/driver/failure.h"
#include "tests/vm/driver/restriction.h"
#include "tests/vm/driver/stepwords.h"
#include "tests/vm/driver/waiting.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <grp.h>
#include <sstream>
#include <unistd.h>

Machine::Machine(std::string folder) : mFolder(std::move(folder))
{
    std::filesystem::create_directories(mFolder);
    for (const auto &entry : std::filesystem::directory_iterator(mFolder)) // a separate file system, which must stay
        std::filesystem::remove_all(entry.path());
    ::setenv("XDG_STATE_HOME", mFolder.c_str(), 1);
}

Machine::~Machine()
{
    ::unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
    mDesktop.reset();
    mKeyboards.clear();
    mPanels.clear();
}

void Machine::startDaemon()
{
    start(nullptr);
}

void Machine::startRestrictedDaemon()
{
    if (!isRestrictionKnown())
        throw Failure("nothing tells what the service allows");
    start(restrictThisProcess);
}

void Machine::startDaemonOfAUser()
{
    if (::chown(mFolder.c_str(), userId, userId) != 0)
        throw Failure("the folder cannot be given to the user");
    start([] { return ::setgroups(0, nullptr) == 0 && ::setgid(userId) == 0 && ::setuid(userId) == 0; });
}

void Machine::start(bool (*prepare)())
{
    mDaemon = BackgroundProcess({"QuillKestraDaemon"}, mFolder + "/log", prepare);
    if (!becomesTrue([this] { return !mDaemon.isRunning() || control({"status"}).exitCode == 0; })
        || !mDaemon.isRunning())
        throw Failure("the daemon does not start");
}

void Machine::endDaemon(int signal)
{
    mDaemon.end(signal);
    if (!becomesTrue([] { return !EventNode::exists(outputName); }))
        throw Failure("the daemon's device is still there");
}

std::string Machine::daemonLog() const
{
    std::ostringstream text;
    text << std::ifstream(mFolder + "/log").rdbuf();
    return text.str();
}

ProcessResult Machine::control(const std::vector<std::string> &words) const
{
    std::vector<std::string> command{"kestractl"};
    command.insert(command.end(), words.begin(), words.end());
    return runProcess(command);
}

std::string Machine::mustControl(const std::vector<std::string> &words) const
{
    const ProcessResult result = control(words);
    if (result.exitCode != 0)
        throw Failure("kestractl says: " + result.output);
    return result.output;
}

void Machine::startControl(const std::vector<std::string> &words)
{
    std::vector<std::string> command{"kestractl"};
    command.insert(command.end(), words.begin(), words.end());
    mControl = BackgroundProcess(command, mFolder + "/log");
}

void Machine::waitForControl()
{
    if (!becomesTrue([this] { return !mControl.isRunning(); }))
        throw Failure("kestractl does not end");
}

void Machine::startClient(const std::vector<std::string> &words)
{
    std::vector<std::string> command{"vmclient"};
    command.insert(command.end(), words.begin(), words.end());
    std::filesystem::remove(mFolder + "/told");
    mClient = BackgroundProcess(command, mFolder + "/told");
    if (!becomesTrue([this] { return told().find("listening") != std::string::npos; }))
        throw Failure("the client says: " + told());
}

void Machine::startLoginManager()
{
    setAtTheSeat("own");
    const std::string log = mFolder + "/login-log";
    mLoginManager = BackgroundProcess({"vmclient", "login-manager", mFolder + "/at-the-seat"}, log);
    if (!becomesTrue([&log] { return contentOf(log).find("listening") != std::string::npos; }))
        throw Failure("the login manager says: " + contentOf(log));
    // The machine has only one bus.
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", ::getenv("DBUS_SESSION_BUS_ADDRESS"), 1);
}

void Machine::setAtTheSeat(const std::string &who) const
{
    std::ofstream(mFolder + "/at-the-seat") << who;
}

std::string Machine::told() const
{
    std::ostringstream text;
    text << std::ifstream(mFolder + "/told").rdbuf();
    return text.str();
}

std::string Machine::status(const std::string &name) const
{
    std::istringstream lines(control({"status"}).output);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(name + ": "))
            return line.substr(name.size() + 2);
    }
    return {};
}

void Machine::plug(const std::string &name, UhidKeyboard::Identity identity)
{
    identity.name = "Keyboard " + name;
    mKeyboards[name] = std::make_unique<UhidKeyboard>(identity);
    if (identity.kind != UhidKeyboard::Kind::noKeys)
        (void)EventNode::open(nodeName(name), false);
}

void Machine::plugPanel(const std::string &name)
{
    mPanels.emplace(name, ControlPanel("Keyboard " + name));
    (void)EventNode::open("Keyboard " + name, false);
}

ControlPanel &Machine::panel(const std::string &name)
{
    const auto found = mPanels.find(name);
    if (found == mPanels.end())
        throw Failure("no keyboard " + name + " with a volume control is plugged in");
    return found->second;
}

std::string Machine::nodeName(const std::string &name)
{
    // The kernel distinguishes the event devices of one keyboard by a word after its name.
    const UhidKeyboard &device = keyboard(name);
    return device.identity().name + (device.hasSeveralParts() ? " Keyboard" : "");
}

UhidKeyboard &Machine::keyboard(const std::string &name)
{
    const auto found = mKeyboards.find(name);
    if (found == mKeyboards.end())
        throw Failure("no keyboard " + name + " is plugged in");
    // Opened now, because it must see the next keys.
    if (!mDesktop && EventNode::exists(outputName))
        (void)desktop();
    return *found->second;
}

std::string Machine::deviceId(const std::string &name) const
{
    std::istringstream lines(mustControl({"device", "list"}));
    const std::string wanted = "  Keyboard " + name + ' ';
    for (std::string line; std::getline(lines, line);) {
        if ((line + ' ').find(wanted) == std::string::npos)
            continue;
        const std::size_t first = line.find_first_not_of("* ");
        return line.substr(first, line.find(' ', first) - first);
    }
    return {};
}

void Machine::use(const std::vector<std::string> &names)
{
    std::vector<std::string> words{"device", "use"};
    for (const std::string &name : names) {
        std::string id;
        if (!becomesTrue([&] { return !(id = deviceId(name)).empty(); }))
            throw Failure("the daemon does not list keyboard " + name);
        words.push_back(id);
    }
    mustControl(words);
    (void)desktop(); // before the first key, which may already be held
    if (!becomesTrue([this] { return status("deviceState") == "in use"; }))
        throw Failure("the daemon does not take the keyboard over: " + status("deviceState"));
}

EventNode &Machine::desktop()
{
    if (!mDesktop)
        mDesktop = EventNode::open(outputName, true);
    return *mDesktop;
}
