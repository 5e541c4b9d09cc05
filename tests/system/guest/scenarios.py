# SPDX-License-Identifier: MIT
"""The scenarios of the system suite, in their order: from the installation of the packages to their purge, with a user
at the seat. Runs as root in the machine; each line of the report begins with "kestra-system: "."""

import json
import os
import sys
import time
import traceback
from pathlib import Path

from display import Display
from driver import (MOUSE_DESCRIPTOR, OUTPUT, HidDevice, Keyboard, Reader, User, node_of, nodes_of_user, output_node,
                    run, wait_until)

HELPER = "/usr/libexec/quill-kestra-keyboard-rule"
RULES = Path("/etc/udev/rules.d")
POLKIT_RULE = Path("/etc/polkit-1/rules.d/10-test.rules")
SERVICE = "quill-kestra-daemon.service"
REALTIME_KIT = "rtkit-daemon.service"
SCHEDULER_POLICIES_WITH_REAL_TIME = (os.SCHED_FIFO, os.SCHED_RR)

LONGEST_PAUSE_SECONDS = 600  # after which the daemon looks for the lost priority
AGENT = "kestra-agent.service"
AGENT_REPORT = Path("/tmp/kestra-agent")
# The exit codes of pkexec when the user cancels, and when polkit refuses.
CANCELLED = 126
NOT_AUTHORISED = 127
# The exit codes of the helper.
REFUSED = 1
WRONG_USAGE = 2

SCENARIOS = []
user = User("user")
guest = User("guest")
keyboards = {}


def scenario(function):
    SCENARIOS.append(function)
    return function


def check(condition, what):
    if not condition:
        raise AssertionError(what)


def check_equal(found, expected, what):
    check(found == expected, f"{what}: expected {expected!r}, found {found!r}")


def real_rules():
    """The rules for single keyboards."""
    return sorted(path.name for path in RULES.glob("70-quill-kestra-*"))


def keyboard_id(keyboard):
    """The keyboard's ID in the list of the daemon."""
    lines = [line for line in user.ctl("device", "list").splitlines() if keyboard.name in line]
    check(len(lines) == 1, f"{keyboard.name} is not in the list once: {lines}")
    return lines[0].replace("*", " ").split()[0]


def is_in_use(keyboard):
    return any(line.startswith("*") and keyboard.name in line for line in user.ctl("device", "list").splitlines())


def wait_for_use(keyboard):
    wait_until(lambda: is_in_use(keyboard) and keyboard.is_grabbed(), f"{keyboard.name} is in use")


def wait_for_daemon():
    wait_until(lambda: "daemon: running" in user.ctl("status", check=False), "the daemon answers")


def polkit_answers(result):
    """Gives an answer to every question about the action of the helper."""
    POLKIT_RULE.write_text('polkit.addRule(function(action, subject) {\n'
                           '    if (action.id == "org.quillkestra.keyboard-rule") return polkit.Result.%s;\n'
                           '});\n' % result)
    POLKIT_RULE.chmod(0o644)
    # polkitd reads its rules again when it starts.
    run("systemctl", "restart", "polkit.service")


def log_out():
    run("loginctl", "terminate-user", user.name)
    wait_until(lambda: not Path(f"/run/user/{user.id}").exists(), "the end of the user's service manager")


def log_in():
    """The seat logs the user in by itself."""
    run("systemctl", "restart", "getty@tty1.service")
    wait_until(user.is_active, "the next session of the user")
    wait_until(lambda: user.main_process() != 0, "the service")
    wait_for_daemon()


def expect_keys(node, *changes):
    """A tap of the key A on the first keyboard comes out of this event device as these changes."""
    reader = Reader(node)
    keyboards["a"].tap("A")
    reader.expect(*changes)
    reader.close()


def expect_assigned_key():
    wait_for_use(keyboards["a"])
    expect_keys(output_node(), "B down", "B up")


def expect_own_key():
    """The computer has the keyboard itself."""
    wait_until(lambda: not keyboards["a"].is_grabbed(), "the keyboard is released")
    expect_keys(keyboards["a"].node, "A down", "A up")


def seconds_asleep():
    """How long the machine has slept since its start."""
    return time.clock_gettime(time.CLOCK_BOOTTIME) - time.clock_gettime(time.CLOCK_MONOTONIC)


def is_default_reached(someone):
    """Whether the service manager of a user has started everything that belongs to a session."""
    return someone.service("is-active", "default.target", check=False).stdout.strip() == "active"


def threads_with_priority(process):
    """How many threads of a process have real-time priority."""
    tasks = [int(path.name) for path in Path(f"/proc/{process}/task").iterdir()]
    policies = [os.sched_getscheduler(task) & ~os.SCHED_RESET_ON_FORK for task in tasks]
    return sum(each in SCHEDULER_POLICIES_WITH_REAL_TIME for each in policies)


def status_has_priority():
    return json.loads(user.ctl("status", "--json"))["realTime"]


def change_all_devices():
    """As other packages do, for their own rules."""
    run("udevadm", "trigger", "--settle", "--action=change")


def helper(*words):
    return user.run_in_session("pkexec", HELPER, *words, check=False)


@scenario
def a_user_is_at_the_seat():
    wait_until(user.is_active, "the session of the user")
    keyboards["a"] = Keyboard("Board A", "7", 0x0001)
    keyboards["b"] = Keyboard("Board B", "8", 0x0002)
    check("/dev/uinput" not in nodes_of_user(user), "the user may use uinput before the installation")


@scenario
def installation_enables_the_service_and_gives_the_right_to_type():
    run("dpkg", "-i", "/packages/lower/quill-kestra-daemon.deb", "/packages/lower/quill-kestra.deb")
    check_equal(user.service("is-enabled", SERVICE).stdout.strip(), "enabled", "the service for users")
    wait_until(lambda: "/dev/uinput" in nodes_of_user(user), "the right to uinput, without a new session")
    check_equal(nodes_of_user(user) & {keyboards["a"].node, keyboards["b"].node}, set(), "the rights to keyboards")


@scenario
def a_new_user_needs_the_window_alone():
    check_equal(user.main_process(), 0, "the process of the service")
    polkit_answers("YES")
    keyboard = keyboards["a"]
    display = Display(user)
    display.open_window()
    # The service does not run yet: the window says so, and starts it.
    display.use_window("shown=The QuillKestraDaemon service is not running. Your settings are safe. Close this message, "
                       "and then click “Start” at the top of the window, or “Troubleshooting” if that is shown instead. "
                       "The configurator continues automatically as soon as the service runs.",
                       "click=OK", "click=Start")
    wait_for_daemon()
    # The keyboard, and the right to it.
    display.use_window("click=Keyboard…", "row=Board A", "shown=No access yet", "click=Use this keyboard")
    wait_for_use(keyboard)
    check_equal(len(real_rules()), 1, "the number of rules")
    reader = Reader(output_node())
    keyboard.tap("D")
    reader.expect("D down", "D up")
    # D becomes C, which is pressed on the keyboard in use.
    display.use_window("click=Close", "focus=Quill Kestra", "click=D", "menu=Assignment:", "keys=Down,Return",
                       f"shown=On “{keyboard.name}”, press the key that the selected key should send.")
    keyboard.tap("C")
    display.use_window("click=OK")
    wait_until(lambda: user.ctl("key", "D").startswith("D: single key C"), "the assignment")
    keyboard.tap("D")
    reader.expect("C down", "C up")
    reader.close()
    # Everything is taken back.
    display.use_window("click=Keyboard…", "click=Also remove the access", "click=Release keyboard")
    wait_until(lambda: not real_rules(), "the end of the rule")
    wait_until(lambda: keyboard.node not in nodes_of_user(user), "the end of the right")
    display.use_window("click=Close")
    display.close()
    POLKIT_RULE.unlink()
    user.ctl("key", "D", "default")


@scenario
def the_service_starts_with_the_next_session():
    log_out()
    log_in()


@scenario
def root_and_system_users_have_no_service():
    for name in ("root", "games"):
        other = User(name)
        manager = f"user@{other.id}.service"
        run("systemctl", "start", manager)
        wait_until(lambda: is_default_reached(other), f"the service manager of {name}")
        shown = other.service("show", "-p", "ActiveState,ConditionResult", SERVICE).stdout.split()
        check_equal(sorted(shown), ["ActiveState=inactive", "ConditionResult=no"], f"the service of {name}")
        run("systemctl", "stop", manager)


@scenario
def a_keyboard_without_a_rule_cannot_be_used():
    lines = user.ctl("device", "list")
    for keyboard in keyboards.values():
        check(keyboard.name in lines, f"{keyboard.name} is not in {lines}")
    check("cannot be used" in lines, f"there is no reason in {lines}")


@scenario
def polkit_refuses_the_rule():
    polkit_answers("NO")
    result = helper(keyboards["a"].node)
    check_equal(result.returncode, NOT_AUTHORISED, f"the exit code of pkexec, which wrote {result.stdout!r}")
    check_equal(real_rules(), [], "the rules")
    # Without an answer by a rule, polkit asks an administrator, through an agent. There is none here.
    POLKIT_RULE.unlink()
    run("systemctl", "restart", "polkit.service")
    result = helper(keyboards["a"].node)
    check_equal(result.returncode, NOT_AUTHORISED, f"the exit code of pkexec, which wrote {result.stdout!r}")
    check_equal(real_rules(), [], "the rules")


@scenario
def a_user_who_cancels_gets_no_rule():
    user.run("systemd-run", "--user", f"--unit={AGENT}", "--collect", f"--property=StandardOutput=file:{AGENT_REPORT}",
             "python3", "-B", "/system/agent.py", user.session())
    wait_until(lambda: AGENT_REPORT.exists() and "registered" in AGENT_REPORT.read_text(), "the agent")
    result = helper(keyboards["a"].node)
    check_equal(result.returncode, CANCELLED, f"the exit code of pkexec, which wrote {result.stdout!r}")
    check_equal(AGENT_REPORT.read_text().split(), ["registered", "org.quillkestra.keyboard-rule"], "the questions")
    check_equal(real_rules(), [], "the rules")
    user.service("stop", AGENT)


def expect_refusal(code, text, *words):
    """The helper ends with this exit code, gives this reason, and leaves the rules unchanged."""
    before = real_rules()
    result = helper(*words)
    check_equal(result.returncode, code, f"the exit code for {words}, with {result.stdout!r}")
    check(text in result.stdout, f"the reason for {words}: expected {text!r}, found {result.stdout!r}")
    check_equal(real_rules(), before, f"the rules after {words}")


@scenario
def the_helper_refuses_hostile_arguments():
    polkit_answers("YES")
    node = keyboards["a"].node
    for words in ([], ["--remove"], [""], ["/etc/passwd"], ["/dev/input/../input/event0"], ["/dev/input/mice"],
                  ["/dev/uinput"], [node, keyboards["b"].node], [node + "\n"], ["event0"]):
        expect_refusal(WRONG_USAGE, "the arguments are", *words)
    link = Path("/dev/input/event99")
    link.symlink_to(node)
    expect_refusal(REFUSED, "event99 is not an input device", str(link))
    link.unlink()
    expect_refusal(REFUSED, "event12345: No such file", "--remove", "/dev/input/event12345")
    mouse = HidDevice("Mouse C", "9", 0x0003, MOUSE_DESCRIPTOR)
    expect_refusal(REFUSED, "the device is not a keyboard", mouse.node)
    mouse.unplug()


@scenario
def the_rule_gives_the_user_exactly_this_keyboard():
    before = nodes_of_user(user)
    result = helper(keyboards["a"].node)
    check(result.returncode == 0, f"the helper failed: {result.stdout}")
    check_equal(len(real_rules()), 1, "the number of rules")
    wait_until(lambda: keyboards["a"].node in nodes_of_user(user), "the right to the keyboard")
    check_equal(nodes_of_user(user) - before, {keyboards["a"].node}, "the rights that the rule gives")
    # Every right goes with its reason.
    check(helper("--remove", keyboards["a"].node).returncode == 0, "the helper does not remove the rule")
    wait_until(lambda: keyboards["a"].node not in nodes_of_user(user), "the end of the right")
    check_equal(nodes_of_user(user), before, "the rights after the removal")
    check(helper(keyboards["a"].node).returncode == 0, "the helper does not install the rule again")
    wait_until(lambda: keyboards["a"].node in nodes_of_user(user), "the right to the keyboard, again")


@scenario
def keys_come_out_remapped():
    user.ctl("device", "use", keyboard_id(keyboards["a"]))
    wait_for_use(keyboards["a"])
    expect_keys(output_node(), "A down", "A up")
    user.ctl("key", "A", "single", "B")
    reader = Reader(output_node())
    keyboards["a"].tap("A")
    keyboards["a"].tap("C")
    reader.expect("B down", "B up", "C down", "C up")
    reader.close()
    # The other keyboard still types itself.
    check(not keyboards["b"].is_grabbed(), "the daemon has grabbed the other keyboard")


@scenario
def the_helper_refuses_the_output_device():
    expect_refusal(REFUSED, "the keyboard was made by a program", output_node())


@scenario
def realtime_kit_gives_priority_to_one_thread():
    process = user.main_process()
    wait_until(lambda: threads_with_priority(process), "a thread with real-time priority")
    check_equal(threads_with_priority(process), 1, "the threads with priority")
    check(status_has_priority(), "the status does not show the priority")
    check_equal(run("systemctl", "is-active", REALTIME_KIT).stdout.strip(), "active", REALTIME_KIT)


@scenario
def priority_that_realtime_kit_takes_away_comes_back():
    process = user.main_process()
    # As RealtimeKit does when a thread with priority occupies the processor.
    run("rtkitctl", "--reset-known")
    check_equal(threads_with_priority(process), 0, "the threads with priority")
    check(not status_has_priority(), "the status shows the priority")
    expect_assigned_key()
    wait_until(lambda: threads_with_priority(process), "the priority, again", 2 * LONGEST_PAUSE_SECONDS)
    expect_assigned_key()


@scenario
def a_killed_service_comes_back():
    before = user.main_process()
    user.service("kill", "--signal=KILL", SERVICE)
    wait_until(lambda: user.main_process() not in (0, before), "the service starts again")
    wait_for_daemon()
    expect_assigned_key()


@scenario
def a_stopped_service_leaves_the_keyboard_to_the_computer():
    user.service("stop", SERVICE)
    check_equal(node_of(OUTPUT), "", "the output device")
    expect_own_key()
    user.service("start", SERVICE)
    wait_for_daemon()
    expect_assigned_key()


@scenario
def the_keyboard_works_after_a_sleep():
    process = user.main_process()
    before = seconds_asleep()
    reader = Reader(output_node())
    keyboards["a"].report("A")
    reader.expect("B down")
    run("systemctl", "suspend")  # boottest.py wakes the machine
    wait_until(lambda: seconds_asleep() > before + 1, "the sleep")
    # The key that was down at the beginning of the sleep comes up without the user.
    reader.expect("B up")
    reader.close()
    keyboards["a"].report()
    expect_assigned_key()
    check_equal(user.main_process(), process, "the process of the service")


@scenario
def another_user_comes_to_the_seat_and_goes():
    run("systemctl", "start", "getty@tty2.service")
    wait_until(guest.session, "the session of the other user")
    run("loginctl", "activate", guest.session())
    wait_until(guest.is_active, "the other user is at the seat")
    node = keyboards["a"].node
    wait_until(lambda: node in nodes_of_user(guest) and node not in nodes_of_user(user), "the right changes hands")
    wait_until(lambda: "inactive" in user.ctl("status"), "the daemon reports why")
    expect_own_key()
    # Back to the user, while the other one stays logged in.
    run("loginctl", "activate", user.session())
    wait_until(user.is_active, "the user is at the seat again")
    check_equal(nodes_of_user(guest), set(), "the rights of the other user")
    expect_assigned_key()
    # The other one returns, and logs out.
    run("loginctl", "activate", guest.session())
    wait_until(lambda: node in nodes_of_user(guest), "the other user has the right again")
    expect_own_key()
    run("systemctl", "stop", "getty@tty2.service")
    wait_until(lambda: not guest.session(), "the other user is gone")
    run("loginctl", "activate", user.session())
    wait_until(lambda: node in nodes_of_user(user) and node not in nodes_of_user(guest), "the right comes back")
    expect_assigned_key()


@scenario
def a_logout_leaves_the_keyboard_to_the_computer_until_the_login():
    log_out()
    wait_until(lambda: not nodes_of_user(user), "the end of the rights")
    check_equal(node_of(OUTPUT), "", "the output device")
    expect_own_key()
    log_in()
    expect_assigned_key()


@scenario
def an_upgrade_keeps_settings_and_the_service():
    process = user.main_process()
    run("dpkg", "-i", "/packages/quill-kestra-daemon.deb", "/packages/quill-kestra.deb")
    check_equal(user.main_process(), process, "the process of the service")
    check_equal(len(real_rules()), 1, "the number of rules")
    user.service("restart", SERVICE)
    wait_for_daemon()
    check(user.ctl("key", "A").startswith("A: single key B"), f"the assignment is not kept: {user.ctl('key', 'A')}")
    expect_assigned_key()


@scenario
def a_removal_leaves_rules_and_settings_and_a_purge_the_settings():
    # As on a machine that has started with the packages: udev notes the right to uinput when it starts.
    run("systemctl", "restart", "systemd-udevd.service")
    check("/dev/uinput" in nodes_of_user(user), "the user may not use uinput")
    run("dpkg", "-r", "quill-kestra", "quill-kestra-daemon")
    expect_own_key()  # no daemon holds the keyboard any longer
    check(not Path("/usr/bin/QuillKestraDaemon").exists(), "the daemon is still installed")
    check_equal(len(real_rules()), 1, "the number of rules")
    # The rights are those of the rules that are left, also in a new session.
    check_equal(nodes_of_user(user), {keyboards["a"].node}, "the rights after the removal")
    change_all_devices()
    check_equal(nodes_of_user(user), {keyboards["a"].node}, "the rights after a change")
    log_out()
    run("systemctl", "restart", "getty@tty1.service")
    wait_until(user.is_active, "the next session of the user")
    wait_until(lambda: nodes_of_user(user), "the right to the keyboard in the next session")
    check_equal(nodes_of_user(user), {keyboards["a"].node}, "the rights in the next session")
    # The administrator's own rule for the other keyboard.
    rule = RULES / "70-quill-kestra-04617-00002-1desk.rules"
    rule.write_text('SUBSYSTEM=="input", KERNEL=="event*", ATTRS{name}=="%s", TAG+="uaccess"\n' % keyboards["b"].name)
    run("udevadm", "control", "--reload")
    run("udevadm", "trigger", "--action=change", keyboards["b"].node)
    wait_until(lambda: keyboards["b"].node in nodes_of_user(user), "the right by the rule of the administrator")
    run("dpkg", "-P", "quill-kestra", "quill-kestra-daemon")
    check_equal(real_rules(), [rule.name], "the rules")
    check_equal(nodes_of_user(user), {keyboards["b"].node}, "the rights after the purge")
    change_all_devices()
    check_equal(nodes_of_user(user), {keyboards["b"].node}, "the rights after the purge and a change")
    settings = Path(f"/home/{user.name}/.local/state/quill-kestra/settings.plist")
    check(settings.stat().st_size > 0, "the settings are gone")


def report(text):
    print("kestra-system: " + text, flush=True)


def main():
    for number, function in enumerate(SCENARIOS, 1):
        start = time.monotonic()
        try:
            function()
        except Exception:  # whatever it is, the report must name the scenario
            report(f"failed {function.__name__}")
            traceback.print_exc(file=sys.stdout)
            # Each scenario continues where the previous one has ended.
            print(run("journalctl", "--no-pager", "-b", "-n", "80", check=False).stdout)
            report(f"done, {number} of {len(SCENARIOS)} run, 1 failed")
            return
        report(f"ok {function.__name__} ({time.monotonic() - start:.1f} s)")
    report(f"done, {len(SCENARIOS)} of {len(SCENARIOS)} run, 0 failed")


main()
