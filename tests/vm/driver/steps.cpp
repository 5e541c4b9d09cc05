// SPDX-License-Identifier: MIT
#include "tests/vm/driver/steps.h"

#include "tests/vm/driver/failure.h"
#include "tests/vm/driver/keynames.h"
#include "tests/vm/driver/load.h"
#include "tests/vm/driver/modelstorm.h"
#include "tests/vm/driver/stepwords.h"
#include "tests/vm/driver/systemsteps.h"
#include "tests/vm/driver/typedtext.h"
#include "tests/vm/driver/waiting.h"

#include <linux/input-event-codes.h>

#include <cctype>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>

namespace {

constexpr const char *marker = "F24"; // a key that no scenario assigns

std::uint8_t usage(const std::string &name)
{
    if (const auto found = usageNamed(name))
        return *found;
    throw Failure("no key \"" + name + "\"");
}

void plug(Machine &machine, const Words &words)
{
    using Kind = UhidKeyboard::Kind;
    static const std::map<std::string, Kind> kinds{{"plain", Kind::plain},       {"media", Kind::media},
                                                   {"several", Kind::several},   {"every-key", Kind::everyKey},
                                                   {"no-keys", Kind::noKeys},    {"strange", Kind::strange},
                                                   {"pointing", Kind::pointing}, {"lit", Kind::lit}};
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

/// remap NAME KEY CODE
void remap(Machine &machine, const Words &words)
{
    constexpr std::uint32_t keyboardPage = 0x70000;
    const auto code = codeNamed(word(words, 3));
    if (!code)
        throw Failure("no code \"" + words[3] + "\"");
    EventNode::open(machine.nodeName(word(words, 1)), false).setCode(keyboardPage | usage(word(words, 2)), *code);
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

/// The next key that the desktop receives; repetitions only with `isRepeated`.
std::string nextOfDesktop(EventNode &desktop, bool isRepeated)
{
    const auto end = std::chrono::steady_clock::now() + patience; // a repeating key must not postpone it
    while (const auto key = desktop.next(timeUntil(end))) {
        if (isRepeated == (key->value == 2))
            return textOf(*key);
        if (isRepeated)
            throw Failure("came: " + textOf(*key));
    }
    return desktop.isGone() ? "the end of the device" : "nothing";
}

/// panel-press NAME CODE, panel-release NAME CODE
void pressPanel(Machine &machine, const Words &words, bool isDown)
{
    const auto code = codeNamed(word(words, 2));
    if (!code)
        throw Failure("no code \"" + words[2] + "\"");
    machine.panel(words[1]).press(*code, isDown);
}

/// expect-volume VALUE...
void expectVolume(Machine &machine, const Words &words)
{
    for (const std::string &wanted : from(words, 1)) {
        const auto came = machine.desktop().nextVolume();
        if (!came || std::to_string(*came) != wanted)
            throw Failure("expected: " + wanted + ", came: " + (came ? std::to_string(*came) : "nothing"));
    }
}

/// expect-switch on|off
void expectSwitch(Machine &machine, const Words &words)
{
    const bool isOn = word(words, 1) == "on";
    if (!becomesTrue([&] { return machine.desktop().isSwitchOn(SW_MUTE_DEVICE) == isOn; }))
        throw Failure("the switch is not " + words[1]);
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
    std::vector<std::string> wanted = parts(words);
    while (!wanted.empty()) {
        const std::string came = nextOfDesktop(machine.desktop(), false);
        if (std::erase(wanted, came) == 0)
            throw Failure("came: " + came);
    }
}

/// No key arrived before one that is pressed now; that key passes through the given keyboard.
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

void expectLight(Machine &machine, const Words &words)
{
    const int wanted = std::stoi(word(words, 2));
    UhidKeyboard &keyboard = machine.keyboard(word(words, 1));
    if (!becomesTrue([&] { return keyboard.brightness() == wanted; }))
        throw Failure("the brightness is " + std::to_string(keyboard.brightness()));
}

/// The desktop's keyboard disappears without a step for it: the daemon has ended.
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

void expectControlSilent(Machine &machine, const Words &words)
{
    const std::string output = machine.mustControl(from(words, 2));
    if (output.find(word(words, 1)) != std::string::npos)
        throw Failure("kestractl says: " + output);
}

void expectStatus(Machine &machine, const Words &words)
{
    const std::string name = word(words, 1);
    if (!becomesTrue([&] { return machine.status(name) == word(words, 2); }))
        throw Failure("it is: " + machine.status(name));
}

/// press-often NAME KEY [times=N]: presses and releases a key without waiting for the daemon.
void pressOften(Machine &machine, const Words &words)
{
    const auto usage = usageNamed(word(words, 2));
    if (!usage)
        throw Failure("no key \"" + words[2] + "\"");
    for (int count = number(words, "times", 200); count > 0; --count) {
        (void)machine.keyboard(word(words, 1)).setDown(*usage, true);
        (void)machine.keyboard(word(words, 1)).setDown(*usage, false);
    }
}

void expectLog(Machine &machine, const Words &words)
{
    if (!becomesTrue([&] { return machine.daemonLog().find(word(words, 1)) != std::string::npos; }))
        throw Failure("the log does not say so");
}

/// No process holds the event device with this name.
void expectFree(Machine &, const Words &words)
{
    EventNode node = EventNode::open(word(words, 1), true);
}

/// The keys of this keyboard reach the desktop directly, because the daemon has released it.
void expectReleased(Machine &machine, const Words &words)
{
    EventNode node = EventNode::open(machine.nodeName(word(words, 1)), true); // fails while the daemon holds it
}

/// macro Heal A down, 20 A up, 30 button1 down, 10 button1 up: adds the macro. Each number is the pause before the
/// event.
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

void kill(Machine &machine, const Words &words)
{
    machine.endDaemon(option(words, "signal", "TERM") == "KILL" ? SIGKILL : SIGTERM);
    machine.forgetDesktop();
}

const std::map<std::string, StepAction> &keyActions()
{
    static const std::map<std::string, StepAction> table{
        {"start", [](Machine &machine, const Words &) { machine.startDaemon(); }},
        {"end", kill},
        {"stop-signal", [](Machine &machine, const Words &) { machine.daemon().send(SIGTSTP); }},
        {"plug", plug},
        {"plug-panel", [](Machine &machine, const Words &words) { machine.plugPanel(word(words, 1)); }},
        {"panel-press", [](Machine &machine, const Words &words) { pressPanel(machine, words, true); }},
        {"panel-release", [](Machine &machine, const Words &words) { pressPanel(machine, words, false); }},
        {"panel-volume",
         [](Machine &machine, const Words &words) {
             machine.panel(word(words, 1)).setVolume(std::stoi(word(words, 2)));
         }},
        {"panel-switch",
         [](Machine &machine, const Words &words) { machine.panel(word(words, 1)).setSwitch(word(words, 2) == "on"); }},
        {"expect-volume", expectVolume},
        {"expect-switch", expectSwitch},
        {"unplug", [](Machine &machine, const Words &words) { machine.unplug(word(words, 1)); }},
        {"use", [](Machine &machine, const Words &words) { machine.use(from(words, 1)); }},
        {"press", [](Machine &machine, const Words &words) { press(machine, words, true); }},
        {"release", [](Machine &machine, const Words &words) { press(machine, words, false); }},
        {"report", report},
        {"media", media},
        {"remap", remap},
        {"keypad",
         [](Machine &machine, const Words &words) {
             machine.keyboard(word(words, 1)).reportKeypad(word(words, 2) == "none" ? 0 : usage(words[2]));
         }},
        {"broken-report",
         [](Machine &machine, const Words &words) {
             machine.keyboard(word(words, 1)).sendBroken(std::vector<std::uint8_t>{0xFF, 0xFF, 0xFF});
         }},
        {"ctl", [](Machine &machine, const Words &words) { machine.mustControl(from(words, 1)); }},
        {"ctl-says", expectControl},
        {"ctl-says-not", expectControlSilent},
        {"ctl-start", [](Machine &machine, const Words &words) { machine.startControl(from(words, 1)); }},
        {"ctl-wait", [](Machine &machine, const Words &) { machine.waitForControl(); }},
        {"macro", addMacro},
        {"types", expectTyped},
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
        {"expect-light", expectLight},
        {"expect-status", expectStatus},
        {"expect-log", expectLog},
        {"press-often", pressOften},
        {"expect-released", expectReleased},
        {"expect-free", expectFree},
        {"desktop-led",
         [](Machine &machine, const Words &words) { machine.desktop().setLed(LED_CAPSL, word(words, 1) == "on"); }},
        {"flood",
         [](Machine &machine, const Words &words) {
             flood(machine, word(words, 1), number(words, "rate", 1000), number(words, "seconds", 1));
         }},
        {"model-storm",
         [](Machine &machine, const Words &words) {
             // run.py writes these files, if other values were asked for.
             const std::string seed = contentOf("/storm-seed");
             const std::string events = contentOf("/storm-events");
             const int givenSeed = seed.empty() ? number(words, "seed", 1) : std::stoi(seed);
             const int givenEvents = events.empty() ? number(words, "events", 10'000) : std::stoi(events);
             std::printf("kestra-vm: storm of %d events, seed %d\n", givenEvents, givenSeed);
             std::fflush(stdout);
             modelStorm(machine, static_cast<unsigned>(givenSeed), givenEvents);
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
    for (const auto *actions : {&keyActions(), &systemActions()}) {
        if (const auto found = actions->find(words.front()); found != actions->end())
            return found->second(machine, words);
    }
    throw Failure("unknown step");
}
