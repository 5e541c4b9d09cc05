#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The scenarios on a real desktop, which this program starts and ends, inside the root folder of ../desktopstest.py.
Usage: scenarios.py kwin|gnome"""

import json
import os
import re
import shutil
import subprocess
import sys
import time
from pathlib import Path

HERE = Path(__file__).resolve().parent
LIMIT_SECONDS = 60
GAME, EDITOR, CONFIGURATOR = "org.example.Game", "org.example.Editor", "org.quillkestra.Configurator"
TITLE = "A private letter"
PACKAGE = "gnome-shell-extension-quill-kestra"
RUNTIME = Path(os.environ["XDG_RUNTIME_DIR"])
HOME = Path(os.environ["HOME"])


def wait_until(condition, what):
    """The first value of the condition that is true."""
    deadline = time.monotonic() + LIMIT_SECONDS
    while not (value := condition()):
        if time.monotonic() > deadline:
            raise AssertionError(f"it did not come: {what}")
        time.sleep(0.05)
    return value


def wait_for(read, expected):
    """Waits until `read` returns `expected`."""
    found = []

    def is_expected():
        found[:] = [read()]
        return found[0] == expected

    try:
        wait_until(is_expected, f"{expected!r}")
    except AssertionError as error:
        raise AssertionError(f"{error}; it is {found[0]!r}") from None


def run(*command, check=True):
    """The output of a command; None if it fails and need not succeed."""
    result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=False,
                            stdin=subprocess.DEVNULL)
    if result.returncode == 0:
        return result.stdout
    if check:
        raise AssertionError(f"{' '.join(command)} failed ({result.returncode}): {result.stdout}{result.stderr}")
    return None


def start(*command, **environment):
    """Starts a program, whose output goes to a file of its name."""
    with open(f"/tmp/{Path(command[0]).name}.log", "ab") as log:
        return subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                                env={**os.environ, **environment})


def end(process):
    process.terminate()
    try:
        process.wait(LIMIT_SECONDS)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


def call(service, path, method, *arguments, check=True):
    """Calls a method on the session bus. Returns its result as text."""
    return run("gdbus", "call", "--session", "--dest", service, "--object-path", path, "--method", method, *arguments,
               check=check)


def has_name(name):
    return "true" in call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus.NameHasOwner", name)


def scenario(function):
    """Marks a scenario. They run in their order; each one continues where the previous one has ended."""
    function.desktops = (KWin, Gnome)
    return function


def scenario_of_gnome(function):
    """Marks a scenario that runs on GNOME alone."""
    function.desktops = (Gnome,)
    return function


class Bus:
    """A private bus."""

    def __init__(self, name):
        self.address = f"unix:path={RUNTIME}/{name}"
        subprocess.run(["dbus-daemon", "--session", "--fork", f"--address={self.address}"], check=True,
                       stderr=subprocess.DEVNULL)


class KWin:
    source = "kwin"
    activations = 0

    def start(self):
        # The capability of the installed file does not let it run in a container. KWin accepts no other name.
        copy = Path("/tmp/kwin/kwin_wayland")
        copy.parent.mkdir(exist_ok=True)
        shutil.copyfile("/usr/bin/kwin_wayland", copy)
        copy.chmod(0o755)
        os.environ["WAYLAND_DISPLAY"] = "wayland-kwin"
        self.process = start(str(copy), "--virtual", "--width", "1024", "--height", "768", "--no-lockscreen",
                             "--socket", "wayland-kwin", WAYLAND_DISPLAY="", KWIN_COMPOSE="Q")
        wait_until(lambda: (RUNTIME / "wayland-kwin").exists() and has_name("org.kde.KWin"), "KWin")
        config = HOME / ".config/mako/config"
        config.parent.mkdir(parents=True)
        config.write_text("ignore-timeout=1\ndefault-timeout=0\n")
        self.notifications = start("mako")
        wait_until(lambda: has_name("org.freedesktop.Notifications"), "mako")

    def activate(self, application):
        script = Path("/tmp/activate.js")
        # KWin 6 has windows where KWin 5 has clients.
        script.write_text("const isNew = Boolean(workspace.windowList);\n"
                          "(isNew ? workspace.windowList() : workspace.clientList()).forEach(window => {\n"
                          f"    if (window.resourceClass == '{application.lower()}' || "
                          f"window.resourceClass == '{application}')\n"
                          "        workspace[isNew ? 'activeWindow' : 'activeClient'] = window;\n});\n")
        # A new name each time: a script that has run is not started again.
        self.activations += 1
        call("org.kde.KWin", "/Scripting", "org.kde.kwin.Scripting.loadScript", str(script),
             f"activate{self.activations}")
        call("org.kde.KWin", "/Scripting", "org.kde.kwin.Scripting.start")

    def shown_notification(self):
        """The title of the notification on the screen."""
        shown = json.loads(run("makoctl", "list"))["data"][0]
        return shown[0]["summary"]["data"] if shown else ""


class Gnome:
    source = "gnome"
    extension = "quill-kestra@quillkestra.org"

    def start(self):
        settings = HOME / ".config/glib-2.0/settings/keyfile"
        settings.parent.mkdir(parents=True)
        settings.write_text("[org/gnome/shell]\nwelcome-dialog-last-shown-version='99'\n")
        # Without a display manager, the Shell would warn once that it cannot lock the screen, until the user moves.
        warned = HOME / ".local/share/gnome-shell/lock-warning-shown"
        warned.parent.mkdir(parents=True)
        warned.touch()
        os.environ["WAYLAND_DISPLAY"] = "wayland-gnome"
        # The unsafe mode lets the test evaluate expressions in the Shell.
        self.process = start("gnome-shell", "--headless", "--virtual-monitor", "1024x768", "--wayland", "--no-x11",
                             "--wayland-display", "wayland-gnome", "--unsafe-mode", WAYLAND_DISPLAY="",
                             GSETTINGS_BACKEND="keyfile")
        wait_for(lambda: self.evaluate("Main.layoutManager._startingUp"), "false")
        self.evaluate("Main.overview.hide()")
        # As in every session: services of the Shell that are started by the bus have windows.
        run("dbus-update-activation-environment", "WAYLAND_DISPLAY")
        # The Shell reads its extensions last.
        wait_until(lambda: run("gnome-extensions", "info", self.extension, check=False), "the extension")

    def evaluate(self, expression):
        """The value of an expression in the Shell, as JSON; empty while it has none."""
        answer = call("org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell.Eval", expression, check=False) or ""
        match = re.fullmatch(r"\(true, '(.*)'\)", answer.strip())
        return match.group(1) if match else ""

    def activate(self, application):
        self.evaluate(f"global.display.list_all_windows().filter(window => window.get_wm_class() === '{application}')"
                      ".forEach(window => window.activate(global.get_current_time()))")

    def shown_notification(self):
        return self.evaluate("Main.messageTray._banner ? Main.messageTray._notification.title : ''").strip('"')

    def set_extension(self, action):
        run("gnome-extensions", action, self.extension)


class Scenarios:
    def __init__(self, desktop):
        self.desktop = desktop
        self.daemon = None
        self.windows = {}

    def status(self):
        return json.loads(run("kestractl", "status", "--json"))

    def source(self):
        return self.status()["frontApplicationSource"]

    def profile(self):
        return self.status()["activeProfileName"]

    def front(self):
        return self.status()["frontApplication"]

    def start_daemon(self):
        self.daemon = start("QuillKestraDaemon")
        wait_until(lambda: has_name("org.quillkestra.QuillCoreEngineMsgPort"), "the daemon")

    def open(self, application):
        self.windows[application] = start("gjs", "-m", str(HERE / "window.js"), application, TITLE)

    def close(self, application):
        end(self.windows.pop(application))

    def prepare(self):
        for name, application in (("Game", GAME), ("Editor", EDITOR)):
            entry = HOME / f".local/share/applications/{application}.desktop"
            entry.parent.mkdir(parents=True, exist_ok=True)
            entry.write_text(f"[Desktop Entry]\nType=Application\nName={name}\nExec=true\n")
        self.monitor = start("dbus-monitor", "--session", "interface='org.quillkestra.FrontApplication'")
        self.desktop.start()
        self.start_daemon()
        for name, application in (("Game profile", GAME), ("Editor profile", EDITOR)):
            run("kestractl", "profile", "add", name)
            run("kestractl", "profile", "bind", name, application)
        run("kestractl", "profile", "switch", "1")

    @scenario_of_gnome
    def extension_is_missed_until_it_is_enabled(self):
        wait_for(self.source, "none")
        hint = self.status()["frontApplicationHint"]
        assert PACKAGE in hint, hint
        process = self.start_configurator()
        wait_until(lambda: any(PACKAGE in window["status"] for window in self.shown(process)),
                   "the package in the status line")
        end(process)
        self.desktop.set_extension("enable")
        wait_for(self.source, self.desktop.source)
        assert not self.status()["frontApplicationHint"]

    @scenario
    def profile_follows_the_window_in_front(self):
        wait_for(self.source, self.desktop.source)
        self.open(GAME)
        wait_for(self.profile, "Game profile")
        wait_for(self.desktop.shown_notification, "Game profile")
        self.open(EDITOR)
        wait_for(self.profile, "Editor profile")
        wait_for(self.desktop.shown_notification, "Editor profile")
        self.desktop.activate(GAME)
        wait_for(self.profile, "Game profile")
        wait_for(self.front, GAME)
        self.close(GAME)
        wait_for(self.profile, "Editor profile")
        self.close(EDITOR)
        wait_for(self.profile, "Default Profile")

    @scenario
    def killed_daemon_learns_it_again(self):
        self.open(GAME)
        wait_for(self.profile, "Game profile")
        self.daemon.kill()
        self.daemon.wait()
        self.start_daemon()
        wait_for(self.source, self.desktop.source)
        wait_for(self.profile, "Game profile")
        self.open(EDITOR)
        wait_for(self.profile, "Editor profile")
        self.close(EDITOR)
        wait_for(self.profile, "Game profile")

    @scenario_of_gnome
    def disabled_extension_reports_nothing(self):
        wait_for(self.profile, "Game profile")
        self.desktop.set_extension("disable")
        wait_for(self.profile, "Default Profile")
        wait_for(self.source, "none")
        wait_until(lambda: PACKAGE in self.status()["frontApplicationHint"], "the hint at the extension")
        self.open(EDITOR)
        wait_until(lambda: EDITOR in self.desktop.evaluate("global.display.focus_window?.get_wm_class()"), "the editor")
        assert self.profile() == "Default Profile", self.profile()
        self.desktop.set_extension("enable")
        wait_for(self.profile, "Editor profile")
        wait_for(self.source, self.desktop.source)
        assert not self.status()["frontApplicationHint"]
        self.close(EDITOR)
        wait_for(self.profile, "Game profile")

    def shown(self, process):
        return json.loads(run("gjs", "-m", str(HERE / "accessible.js"), str(process.pid)))

    @staticmethod
    def start_configurator():
        return start("kestra-configurator", QT_QPA_PLATFORM="wayland", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")

    def active_window(self, process):
        return next((window for window in self.shown(process) if window["isActive"]), {})

    @scenario
    def configurator_has_its_window_and_sheets(self):
        process = self.start_configurator()
        wait_for(self.front, CONFIGURATOR)
        wait_for(self.profile, "Default Profile")
        main = wait_until(lambda: self.active_window(process), "the window of the configurator")
        run("gjs", "-m", str(HERE / "accessible.js"), str(process.pid), "Keyboard…")
        sheet = wait_until(lambda: next((window for window in self.shown(process)
                                         if window["isActive"] and window["name"] != main["name"]), None), "the sheet")
        assert sheet["focus"], sheet
        assert self.front() == CONFIGURATOR
        run("gjs", "-m", str(HERE / "accessible.js"), str(process.pid), "Close")
        wait_for(lambda: [window["name"] for window in self.shown(process)], [main["name"]])
        wait_for(lambda: self.active_window(process).get("name"), main["name"])
        assert not any(PACKAGE in window["status"] for window in self.shown(process))
        end(process)
        wait_for(self.profile, "Game profile")

    @scenario
    def no_title_is_reported(self):
        reports = Path("/tmp/dbus-monitor.log")
        wait_until(lambda: GAME in reports.read_text(encoding="utf-8"), "reports in the log of the bus")
        assert TITLE not in reports.read_text(encoding="utf-8"), "the title of a window is in a report"

    @scenario
    def desktop_ends(self):
        self.desktop.process.kill()
        self.desktop.process.wait()
        wait_for(self.source, "none")
        wait_for(self.profile, "Default Profile")

    def run(self):
        self.prepare()
        for name, function in vars(Scenarios).items():
            if isinstance(self.desktop, getattr(function, "desktops", ())):
                begin = time.monotonic()
                function(self)
                print(f"ok {name} ({time.monotonic() - begin:.1f} s)", flush=True)


def main():
    os.environ.update(XDG_SESSION_TYPE="wayland", GSK_RENDERER="cairo",
                      LIBGL_ALWAYS_SOFTWARE="1", LC_ALL="C.UTF-8", LANG="C.UTF-8")
    os.environ["DBUS_SYSTEM_BUS_ADDRESS"] = Bus("system").address
    os.environ["DBUS_SESSION_BUS_ADDRESS"] = Bus("session").address
    Scenarios({"kwin": KWin, "gnome": Gnome}[sys.argv[1]]()).run()


if __name__ == "__main__":
    main()
