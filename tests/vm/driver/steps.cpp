// SPDX-License-Identifier: MIT
#include "tests/vm/driver/steps.h"

#include "tests/vm/driver/failure.h"
#include "tests/vm/driver/keynames.h"
#include "tests/vm/driver/load.h"
#include "tests/vm/driver/waiting.h"

#include <linux/input-event-codes.h>

#include <cctype>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>

using Words = std::vector<std::string>;

namespace {

constexpr const char *marker = "F24"; // no scenario maps it

const std::string &word(const Words &words, std::size_t index)
{
    if (index >= words.size())
        throw Failure("a word is missing");
    return words[index];
}

Words from(const Words &words, std::size_t index)
{
    return words.size() > index ? Words(words.begin() + static_cast<std::ptrdiff_t>(index), words.end()) : Words();
}

std::uint8_t usage(const std::string &name)
{
    if (const auto found = usageNamed(name))
        return *found;
    throw Failure("no key \"" + name + "\"");
}

/// "name=value" among the words; `otherwise` when it is not there.
std::string option(const Words &words, const std::string &name, const std::string &otherwise)
{
    for (const std::string &candidate : words) {
        if (candidate.starts_with(name + "="))
            return candidate.substr(name.size() + 1);
    }
    return otherwise;
}

int number(const Words &words, const std::string &name, int otherwise)
{
    return std::stoi(option(words, name, std::to_string(otherwise)));
}

void plug(Machine &machine, const Words &words)
{
    using Kind = UhidKeyboard::Kind;
    static const std::map<std::string, Kind> kinds{{"plain", Kind::plain},
                                                   {"media", Kind::media},
                                                   {"every-key", Kind::everyKey},
                                                   {"no-keys", Kind::noKeys},
                                                   {"strange", Kind::strange}};
    UhidKeyboard::Identity identity;
    identity.serial = option(words, "serial", word(words, 1));
    identity.product = static_cast<std::uint16_t>(number(words, "product", 1));
    identity.kind = kinds.at(option(words, "kind", "plain"));
    machine.plug(word(words, 1), identity);
}

void press(Machine &machine, const Words &words, bool isDown)
{
    for (const std::string &name : from(words, 2)) {
        if (!machine.keyboard(word(words, 1)).setDown(usage(name), isDown))
            throw Failure("no room for " + name + " in a report");
    }
}

void report(Machine &machine, const Words &words)
{
    std::vector<std::uint8_t> usages;
    for (const std::string &name : from(words, 2))
        usages.push_back(usage(name));
    machine.keyboard(word(words, 1)).report(usages);
}

void media(Machine &machine, const Words &words)
{
    const auto found = mediaUsageNamed(word(words, 2));
    if (!found)
        throw Failure("no media key \"" + words[2] + "\"");
    machine.keyboard(words[1]).reportMedia(*found);
}

std::string textOf(const EventNode::Key &key)
{
    static const char *const values[] = {" up", " down", " repeated"};
    return codeName(key.code) + values[key.value];
}

/// The next key that the desktop sees; repetitions only where `isRepeated`.
std::string nextOfDesktop(EventNode &desktop, bool isRepeated)
{
    const auto end = std::chrono::steady_clock::now() + patience; // a key that repeats must not put it off
    while (const auto key = desktop.next(timeUntil(end))) {
        if (isRepeated == (key->value == 2))
            return textOf(*key);
        if (isRepeated)
            throw Failure("came: " + textOf(*key));
    }
    return desktop.isGone() ? "the end of the device" : "nothing";
}

/// expect KEY_A down, KEY_A up, ...
void expect(Machine &machine, const Words &words)
{
    std::string wanted;
    for (const std::string &part : from(words, 1))
        wanted += (wanted.empty() ? "" : " ") + part;
    for (std::size_t begin = 0; begin < wanted.size();) {
        const std::size_t end = std::min(wanted.find(", ", begin), wanted.size());
        const std::string one = wanted.substr(begin, end - begin);
        const std::string came = nextOfDesktop(machine.desktop(), one.ends_with(" repeated"));
        if (came != one)
            throw Failure("expected: " + one + ", came: " + came);
        begin = end + 2;
    }
}

/// expect-any-order KEY_A up, KEY_B up
void expectAnyOrder(Machine &machine, const Words &words)
{
    std::vector<std::string> wanted(1);
    for (std::string part : from(words, 1)) {
        const bool isLast = part.ends_with(',');
        if (isLast)
            part.pop_back();
        wanted.back() += (wanted.back().empty() ? "" : " ") + part;
        if (isLast)
            wanted.emplace_back();
    }
    while (!wanted.empty()) {
        const std::string came = nextOfDesktop(machine.desktop(), false);
        if (std::erase(wanted, came) == 0)
            throw Failure("came: " + came);
    }
}

/// Nothing came until a key that is pressed now; that key goes through the keyboard named.
void expectNothing(Machine &machine, const Words &words)
{
    press(machine, {"press", word(words, 1), marker}, true);
    press(machine, {"release", words[1], marker}, false);
    expect(machine, {"expect", "KEY_F24", "down,", "KEY_F24", "up"});
}

void expectAllUp(Machine &machine, const Words &)
{
    if (!machine.desktop().down().empty())
        throw Failure("still down: " + codeName(*machine.desktop().down().begin()));
}

void expectLed(Machine &machine, const Words &words)
{
    const int wanted = std::stoi(word(words, 2));
    UhidKeyboard &keyboard = machine.keyboard(word(words, 1));
    if (!becomesTrue([&] { return keyboard.leds() == wanted; }))
        throw Failure("LEDs are " + std::to_string(keyboard.leds()));
}

/// The desktop's keyboard comes up by itself: the daemon is gone.
void expectEnd(Machine &machine, const Words &)
{
    const auto end = std::chrono::steady_clock::now() + patience;
    while (machine.desktop().next(timeUntil(end))) {
    }
    if (!machine.desktop().isGone())
        throw Failure("the desktop's keyboard is still there");
    machine.forgetDesktop();
}

void expectControl(Machine &machine, const Words &words)
{
    const ProcessResult result = machine.control(from(words, 2));
    if (result.output.find(word(words, 1)) == std::string::npos)
        throw Failure("kestractl says: " + result.output);
}

void expectStatus(Machine &machine, const Words &words)
{
    const std::string name = word(words, 1);
    if (!becomesTrue([&] { return machine.status(name) == word(words, 2); }))
        throw Failure("it is: " + machine.status(name));
}

void expectLog(Machine &machine, const Words &words)
{
    if (!becomesTrue([&] { return machine.daemonLog().find(word(words, 1)) != std::string::npos; }))
        throw Failure("the log does not say so");
}

/// The keys of this keyboard reach the desktop directly: the daemon does not hold it.
void expectReleased(Machine &machine, const Words &words)
{
    EventNode node = EventNode::open(machine.nodeName(word(words, 1)), true); // fails while the daemon holds it
}

/// macro Heal A down, 20 A up, 30 button1 down, 10 button1 up: adds it; the numbers are the pauses before.
void addMacro(Machine &machine, const Words &words)
{
    std::ostringstream file;
    file << "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>MacroName</key><string>" << word(words, 1)
         << "</string><key>delay</key><integer>20</integer><key>sequence</key><dict><key>Events</key><array>";
    for (std::size_t index = 2; index < words.size();) {
        int pause = 0;
        if (std::isdigit(static_cast<unsigned char>(words[index].front())) && words[index].size() > 1)
            pause = std::stoi(words[index++]);
        const std::string &what = word(words, index++);
        const bool isButton = what.starts_with("button");
        const int argument = isButton ? std::stoi(what.substr(6)) : usage(what);
        const bool isDown = word(words, index++).starts_with("down");
        file << "<dict><key>command</key><integer>" << isDown << "</integer><key>delay</key><integer>" << pause
             << "</integer><key>page</key><integer>" << (isButton ? 9 : 7) << "</integer><key>argument</key><integer>"
             << argument << "</integer></dict>";
    }
    file << "</array></dict></dict></plist>";
    const std::string path = machine.folder() + "/" + words[1] + ".KestraMacro";
    std::ofstream(path) << file.str();
    machine.mustControl({"macro", "import", path});
}

void writeFile(Machine &machine, const Words &words)
{
    const std::filesystem::path path = machine.folder() + "/" + word(words, 1);
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << word(words, 2);
}

/// Leaves no room where the settings are kept, or gives it back.
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

void kill(Machine &machine, const Words &words)
{
    machine.endDaemon(option(words, "signal", "TERM") == "KILL" ? SIGKILL : SIGTERM);
    machine.forgetDesktop();
}

using Action = std::function<void(Machine &, const Words &)>;

const std::map<std::string, Action> &actions()
{
    static const std::map<std::string, Action> table{
        {"start", [](Machine &machine, const Words &) { machine.startDaemon(); }},
        {"end", kill},
        {"stop-signal", [](Machine &machine, const Words &) { machine.daemon().send(SIGTSTP); }},
        {"plug", plug},
        {"unplug", [](Machine &machine, const Words &words) { machine.unplug(word(words, 1)); }},
        {"use", [](Machine &machine, const Words &words) { machine.use(from(words, 1)); }},
        {"press", [](Machine &machine, const Words &words) { press(machine, words, true); }},
        {"release", [](Machine &machine, const Words &words) { press(machine, words, false); }},
        {"report", report},
        {"media", media},
        {"broken-report",
         [](Machine &machine, const Words &words) {
             machine.keyboard(word(words, 1)).sendBroken(std::vector<std::uint8_t>{0xFF, 0xFF, 0xFF});
         }},
        {"ctl", [](Machine &machine, const Words &words) { machine.mustControl(from(words, 1)); }},
        {"ctl-says", expectControl},
        {"ctl-start", [](Machine &machine, const Words &words) { machine.startControl(from(words, 1)); }},
        {"ctl-wait", [](Machine &machine, const Words &) { machine.waitForControl(); }},
        {"macro", addMacro},
        {"ctl-fails",
         [](Machine &machine, const Words &words) {
             if (machine.control(from(words, 1)).exitCode == 0)
                 throw Failure("kestractl does it");
         }},
        {"expect", expect},
        {"expect-any-order", expectAnyOrder},
        {"expect-nothing", expectNothing},
        {"expect-all-up", expectAllUp},
        {"expect-end", expectEnd},
        {"expect-led", expectLed},
        {"expect-status", expectStatus},
        {"expect-log", expectLog},
        {"expect-released", expectReleased},
        {"desktop-led",
         [](Machine &machine, const Words &words) { machine.desktop().setLed(LED_CAPSL, word(words, 1) == "on"); }},
        {"write-file", writeFile},
        {"disk", fillDisk},
        {"flood",
         [](Machine &machine, const Words &words) {
             flood(machine, word(words, 1), number(words, "rate", 1000), number(words, "seconds", 1));
         }},
        {"storm",
         [](Machine &machine, const Words &words) {
             Words names = from(words, 1);
             std::erase_if(names, [](const std::string &name) { return name.find('=') != std::string::npos; });
             storm(machine, names, static_cast<unsigned>(number(words, "seed", 1)), number(words, "reports", 500));
         }},
    };
    return table;
}

} // namespace

void doStep(Machine &machine, const Words &words)
{
    const auto found = actions().find(words.front());
    if (found == actions().end())
        throw Failure("unknown step");
    found->second(machine, words);
}
