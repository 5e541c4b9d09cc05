// SPDX-License-Identifier: MIT
#include "tests/vm/driver/systemsteps.h"

#include "tests/vm/driver/failure.h"
#include "tests/vm/driver/keynames.h"
#include "tests/vm/driver/stall.h"
#include "tests/vm/driver/stepwords.h"
#include "tests/vm/driver/waiting.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sched.h>
#include <sstream>
#include <thread>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

void writeFile(Machine &machine, const Words &words)
{
    const std::filesystem::path path = machine.folder() + "/" + word(words, 1);
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << word(words, 2);
}

/// write-program PATH INTERPRETER LINE
void writeProgram(Machine &machine, const Words &words)
{
    writeFile(machine, {"", word(words, 1), "#!" + word(words, 2) + '\n' + word(words, 3) + '\n'});
    std::filesystem::permissions(machine.folder() + "/" + words[1], std::filesystem::perms::owner_all);
}

void expectFile(Machine &machine, const Words &words)
{
    const std::string path = machine.folder() + "/" + word(words, 1);
    if (!becomesTrue([&] { return contentOf(path).find(word(words, 2)) != std::string::npos; }))
        throw Failure("it says: " + contentOf(path));
}

/// Fills the file system of the settings, or frees it again.
void fillDisk(Machine &machine, const Words &words)
{
    const std::string path = machine.folder() + "/filler";
    if (word(words, 1) == "empty") {
        std::filesystem::remove(path);
        return;
    }
    std::ofstream file(path);
    const std::string block(4096, 'x');
    while (file << block << std::flush) {
    }
}

/// This thread precedes all others, including the daemon's, during the lifetime of the object.
class FirstInLine
{
public:
    FirstInLine() { set(SCHED_FIFO, priority); }
    ~FirstInLine() { set(SCHED_OTHER, 0); }
    FirstInLine(const FirstInLine &) = delete;
    FirstInLine &operator=(const FirstInLine &) = delete;

private:
    static constexpr int priority = 50;

    static void set(int policy, int level)
    {
        const sched_param parameter{.sched_priority = level};
        ::sched_setscheduler(0, policy, &parameter);
    }
};

/// expect-at-end SIGNAL KEY_A up, KEY_B up: ends the daemon. These are the last keys before its keyboard disappears, in
/// any order.
void expectAtEnd(Machine &machine, const Words &words)
{
    const int signal = word(words, 1) == "KILL" ? SIGKILL : SIGTERM;
    std::vector<std::string> wanted = parts(from(words, 1));
    std::vector<std::string> came;
    EventNode &desktop = machine.desktop();
    {
        const FirstInLine firstInLine; // a device that has disappeared no longer returns its earlier events
        machine.daemon().send(signal);
        const auto end = std::chrono::steady_clock::now() + patience;
        while (const auto key = desktop.next(timeUntil(end)))
            came.push_back(codeName(key->code) + (key->value == 0 ? " up" : key->value == 1 ? " down" : " repeated"));
    }
    machine.endDaemon(signal);
    machine.forgetDesktop();
    std::erase_if(came, [](const std::string &key) { return key.ends_with(" repeated"); });
    std::ranges::sort(wanted);
    std::ranges::sort(came);
    if (came == wanted)
        return;
    std::string text;
    for (const std::string &key : came)
        text += ' ' + key;
    throw Failure("came:" + text);
}

/// Whether all threads of a process are stopped.
bool isStopped(pid_t id)
{
    const std::filesystem::directory_iterator tasks("/proc/" + std::to_string(id) + "/task");
    return std::all_of(begin(tasks), end(tasks), [](const std::filesystem::directory_entry &task) {
        std::string line;
        std::getline(std::ifstream(task.path() / "stat"), line);
        const std::size_t name = line.rfind(") ");
        return name != std::string::npos && line[name + 2] == 'T';
    });
}

/// signal STOP|CONT: a stopped daemon does nothing more.
void sendSignal(Machine &machine, const Words &words)
{
    const bool isStop = word(words, 1) == "STOP";
    machine.daemon().send(isStop ? SIGSTOP : SIGCONT);
    if (isStop && !becomesTrue([&machine] { return isStopped(machine.daemon().id()); }))
        throw Failure("the daemon does not stop");
}

/// stall NAME KEY [how=spin]: the daemon's key thread stalls in the middle of this key.
void stall(Machine &machine, const Words &words)
{
    const auto usage = usageNamed(word(words, 2));
    if (!usage)
        throw Failure("no key \"" + words[2] + "\"");
    const Stall how = option(words, "how", "sleep") == "spin" ? Stall::spinning : Stall::sleeping;
    stallThread(machine.daemon().id(), "keys", how, [&] { (void)machine.keyboard(words[1]).setDown(*usage, true); });
}

/// The daemon ends without a signal.
void expectDaemonEnd(Machine &machine, const Words &)
{
    if (!becomesTrue([&machine] { return !machine.daemon().isRunning(); }))
        throw Failure("it still runs");
    machine.forgetDesktop();
}

/// expect-running SECONDS: the daemon does not end within this time of the machine.
void expectRunning(Machine &machine, const Words &words)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(std::stoi(word(words, 1)));
    while (std::chrono::steady_clock::now() < end) {
        if (!machine.daemon().isRunning())
            throw Failure("it has ended");
        std::this_thread::sleep_for(50ms);
    }
}

void writeSystemFile(const std::string &path, const std::string &text)
{
    std::ofstream file(path);
    if (!(file << text << std::flush))
        throw Failure("cannot write " + path);
}

/// All devices go to sleep and wake up again: the kernel's complete suspend, except stopping the processor.
void suspend(Machine &, const Words &)
{
    // Seconds of sleep, in which the clock runs: more than the daemon may need for a key.
    writeSystemFile("/sys/module/suspend/parameters/pm_test_delay", "3");
    writeSystemFile("/sys/power/pm_test", "devices");
    const std::string states = contentOf("/sys/power/state");
    writeSystemFile("/sys/power/state", states.find("mem") != std::string::npos ? "mem" : "freeze");
    writeSystemFile("/sys/power/pm_test", "none");
}

void mustRun(const std::vector<std::string> &command)
{
    if (const ProcessResult result = runProcess(command); result.exitCode != 0)
        throw Failure(command.front() + " says: " + result.output);
}

/// The device manager itself: its workers have the same name, and end at any time.
pid_t deviceManager()
{
    constexpr const char *parentIsInit = "\nPPid:\t1\n";
    for (const auto &entry : std::filesystem::directory_iterator("/proc")) {
        const std::string status = contentOf(entry.path().string() + "/status");
        if (status.starts_with("Name:\tsystemd-udevd\n") && status.find(parentIsInit) != std::string::npos)
            return std::stoi(entry.path().filename().string());
    }
    throw Failure("there is no device manager");
}

/// Has the same effect as "udevadm control --reload", which is lost in one of a hundred cases here. The manager drops a
/// message that arrives between accepting the connection and requesting the sender's name. The signal is not lost. The
/// manager has processed it when it answers or drops the ping.
void reloadRules()
{
    ::kill(deviceManager(), SIGHUP);
    mustRun({"udevadm", "control", "--ping"});
    // A separate settle could end before the manager has received the first device.
    mustRun({"udevadm", "trigger", "--settle", "--action=change", "--subsystem-match=input", "--subsystem-match=misc",
             "--subsystem-match=leds"});
}

/// The folder below /sys/class/input of the event device with this name; empty without one.
std::filesystem::path folderOfNode(const std::string &name)
{
    for (const auto &entry : std::filesystem::directory_iterator("/sys/class/input")) {
        const bool isEventDevice = entry.path().filename().string().starts_with("event");
        if (isEventDevice && contentOf(entry.path().string() + "/device/name") == name + '\n')
            return entry.path();
    }
    return {};
}

/// The udev properties of the event device with this name; empty without one.
std::string propertiesOfNode(const std::string &name)
{
    const std::filesystem::path folder = folderOfNode(name);
    return folder.empty() ? std::string()
                          : runProcess({"udevadm", "info", "--query=property", "--path=" + folder.string()}).output;
}

/// expect-property NAME TEXT: the text is in the udev properties of the event device with this name. "no" before the
/// text: it is missing.
void expectProperty(Machine &, const Words &words)
{
    const bool isWanted = word(words, 2) != "no";
    const std::string text = word(words, isWanted ? 2 : 3);
    // Only the complete properties show whether one is missing. The manager adds this one when it has handled the event
    // device.
    constexpr const char *handled = "USEC_INITIALIZED=";
    std::string properties;
    const bool isAsWanted = becomesTrue([&] {
        properties = propertiesOfNode(word(words, 1));
        return properties.find(handled) != std::string::npos
               && (properties.find(text) != std::string::npos) == isWanted;
    });
    if (!isAsWanted)
        throw Failure(properties.empty() ? "there is no such node" : "it says: " + properties);
}

/// The key thread precedes ordinary programs, the programs that it starts do not, and the daemon's memory is locked.
void expectRealTime(Machine &machine, const Words &)
{
    const pid_t process = machine.daemon().id();
    const int policy = ::sched_getscheduler(threadNamed(process, "keys"));
    if (policy != (SCHED_FIFO | SCHED_RESET_ON_FORK))
        throw Failure("its policy is " + std::to_string(policy));
    const std::string memory = contentOf("/proc/" + std::to_string(process) + "/smaps_rollup");
    if (memory.find("Locked:") == std::string::npos || std::stol(memory.substr(memory.find("Locked:") + 7)) == 0)
        throw Failure("no memory is locked");
}

/// expect-latency-below MS: no key that was measured took as long.
void expectLatencyBelow(Machine &machine, const Words &words)
{
    const std::string text = machine.status("latency");
    const std::size_t place = text.find("maximum ");
    if (place == std::string::npos || std::stol(text.substr(place + 8)) >= std::stol(word(words, 1)) * 1000)
        throw Failure("it is: " + text);
}

constexpr const char *ruleFolder = "/run/udev/rules.d/";

/// udev-rule own | none | keyboard NAME: the rule that is installed with the daemon, or the one that kestractl prints.
void installRule(Machine &machine, const Words &words)
{
    std::filesystem::create_directories(ruleFolder);
    const std::string kind = word(words, 1);
    const std::string path = std::string(ruleFolder) + "70-quill-kestra.rules";
    if (kind == "none")
        std::filesystem::remove(path);
    else
        writeSystemFile(path, kind == "own"
                                  ? contentOf("/rules/70-quill-kestra-uinput.rules")
                                  : machine.mustControl({"device", "rule", machine.deviceId(word(words, 2))}));
    reloadRules();
}

/// The command line of the rule helper; a word "device:NAME" means the path of the event device with this name.
std::vector<std::string> ruleHelperCommand(const Words &arguments)
{
    constexpr const char *nameMark = "device:";
    std::vector<std::string> command{"quill-kestra-keyboard-rule"};
    for (const std::string &argument : arguments) {
        if (!argument.starts_with(nameMark)) {
            command.push_back(argument);
            continue;
        }
        const std::filesystem::path folder = folderOfNode(argument.substr(std::strlen(nameMark)));
        if (folder.empty())
            throw Failure("no event device of \"" + argument + '"');
        command.push_back("/dev/input/" + folder.filename().string());
    }
    return command;
}

/// rule-helper-refuses TEXT WORDS: the rule helper fails and says the text.
void expectRefusedRule(Machine &, const Words &words)
{
    const ProcessResult result = runProcess(ruleHelperCommand({words.begin() + 2, words.end()}));
    if (result.exitCode == 0 || result.output.find(word(words, 1)) == std::string::npos)
        throw Failure("it ended with " + std::to_string(result.exitCode) + " and says: " + result.output);
}

/// link-node N NAME: /dev/input/eventN is a link to the event device with this name.
void linkNode(Machine &, const Words &words)
{
    const std::filesystem::path folder = folderOfNode(word(words, 2));
    std::filesystem::create_symlink("/dev/input/" + folder.filename().string(), "/dev/input/event" + word(words, 1));
}

/// expect-rules N: so many rules files of keyboards are installed.
void expectRules(Machine &, const Words &words)
{
    std::string names;
    int count = 0;
    for (const auto &entry : std::filesystem::directory_iterator("/etc/udev/rules.d")) {
        names += ' ' + entry.path().filename().string();
        ++count;
    }
    if (std::to_string(count) != word(words, 1))
        throw Failure("these are installed:" + names);
}

struct SeatDevice
{
    std::string name; // event devices have the name of their keyboard
    std::string node;

    auto operator<=>(const SeatDevice &) const = default;
};

/// The devices that the user at the seat may open, in the order of their names.
std::vector<SeatDevice> devicesOfTheSeat()
{
    std::vector<SeatDevice> devices;
    SeatDevice device; // the subject of the following lines
    std::istringstream lines(runProcess({"udevadm", "info", "--export-db"}).output);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("P: ")) {
            const std::string path = line.substr(3);
            device = {.name = contentOf("/sys" + path + "/device/name"), .node = {}};
            device.name.erase(std::ranges::find(device.name, '\n'), device.name.end());
            if (device.name.empty())
                device.name = std::filesystem::path(path).filename().string();
        } else if (line.starts_with("N: ")) {
            device.node = "/dev/" + line.substr(3);
        } else if (line.starts_with("E: CURRENT_TAGS=") && line.find(":uaccess:") != std::string::npos) {
            devices.push_back(device);
        }
    }
    std::ranges::sort(devices);
    return devices;
}

/// Does the login manager's work with the event devices that have the tag: grants the right to this user alone.
void grantSeatTo(uid_t user)
{
    for (const SeatDevice &device : devicesOfTheSeat()) {
        if (::chown(device.node.c_str(), user, 0) != 0)
            throw Failure("cannot give " + device.node + " away");
    }
}

void expectOfTheSeat(Machine &, const Words &words)
{
    std::vector<std::string> wanted = words.size() > 1 ? parts(words) : std::vector<std::string>();
    std::ranges::sort(wanted);
    std::vector<std::string> found;
    const bool isAsWanted = becomesTrue([&] {
        found.clear();
        for (const SeatDevice &device : devicesOfTheSeat())
            found.push_back(device.name);
        return found == wanted;
    });
    if (isAsWanted)
        return;
    std::string text;
    for (const std::string &name : found)
        text += " \"" + name + '"';
    throw Failure("those are:" + text);
}

} // namespace

const std::map<std::string, StepAction> &systemActions()
{
    static const std::map<std::string, StepAction> table{
        {"start-restricted", [](Machine &machine, const Words &) { machine.startRestrictedDaemon(); }},
        {"signal", sendSignal},
        {"start-as-user", [](Machine &machine, const Words &) { machine.startDaemonOfAUser(); }},
        {"seat-user", [](Machine &, const Words &) { grantSeatTo(Machine::userId); }},
        {"unseat-user", [](Machine &, const Words &) { grantSeatTo(0); }},
        {"write-file", writeFile},
        {"write-program", writeProgram},
        {"expect-file", expectFile},
        {"disk", fillDisk},
        {"expect-at-end", expectAtEnd},
        {"stall", stall},
        {"expect-daemon-end", expectDaemonEnd},
        {"expect-running", expectRunning},
        {"suspend", suspend},
        {"expect-property", expectProperty},
        {"expect-latency-below", expectLatencyBelow},
        {"expect-real-time", expectRealTime},
        {"udev-rule", installRule},
        {"expect-of-the-seat", expectOfTheSeat},
        {"rule-helper",
         [](Machine &, const Words &words) {
             mustRun(ruleHelperCommand({words.begin() + 1, words.end()}));
         }},
        {"rule-helper-refuses", expectRefusedRule},
        {"link-node", linkNode},
        {"expect-rules", expectRules},
        {"login-manager", [](Machine &machine, const Words &) { machine.startLoginManager(); }},
        {"at-the-seat", [](Machine &machine, const Words &words) { machine.setAtTheSeat(word(words, 1)); }},
        {"client", [](Machine &machine, const Words &words) { machine.startClient(from(words, 1)); }},
        {"client-end", [](Machine &machine, const Words &) { machine.endClient(); }},
        {"expect-told",
         [](Machine &machine, const Words &words) {
             if (!becomesTrue([&] { return machine.told().find(word(words, 1)) != std::string::npos; }))
                 throw Failure("the client was told: " + machine.told());
         }},
    };
    return table;
}
