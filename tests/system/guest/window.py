# SPDX-License-Identifier: MIT
"""Uses the configurator as a person does: it looks for controls on the accessibility bus, clicks them and types. Runs as
the user at the seat, with DISPLAY set.
Usage: window.py STEP...
    click=NAME          clicks the control once it is shown and enabled
    row=NAME            the same for a row or an entry whose name begins so
    shown=NAME          waits until a control or text with this name is shown
    menu=NAME           clicks the control, and waits until its menu has the keys
    focus=TITLE         gives the keys to the window with this title; there is no window manager
    keys=KEY[,KEY...]   types keys, by xdotool's names
Prints the controls of the window if a step does not succeed."""

import subprocess
import sys
import time

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

LIMIT_SECONDS = 120
PROGRAM = "kestra-configurator"
ROOT = "/org/a11y/atspi/accessible/root"
ENABLED, SHOWING = 8, 25  # of AtspiStateType
SCREEN = 0
LABEL = 29  # of AtspiRole


class Window:
    def __init__(self):
        session = Gio.bus_get_sync(Gio.BusType.SESSION)
        address = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None,
                                    Gio.DBusCallFlags.NONE, -1, None).unpack()[0]
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self.bus = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)

    def call(self, place, interface, method, arguments=None):
        """The values of a reply; none if the control is gone."""
        name, path = place
        try:
            return self.bus.call_sync(name, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, -1,
                                      None).unpack()
        except GLib.Error:
            return None

    def children(self, place):
        return (self.call(place, "org.a11y.atspi.Accessible", "GetChildren") or ([],))[0]

    def name(self, place):
        reply = self.call(place, "org.freedesktop.DBus.Properties", "Get",
                          GLib.Variant("(ss)", ("org.a11y.atspi.Accessible", "Name")))
        return reply[0] if reply else ""

    def role(self, place):
        return (self.call(place, "org.a11y.atspi.Accessible", "GetRole") or (0,))[0]

    def states(self, place):
        words = (self.call(place, "org.a11y.atspi.Accessible", "GetState") or ([0, 0],))[0]
        bits = words[0] | words[1] << 32
        return {bit for bit in range(64) if bits >> bit & 1}

    def controls(self, place=None):
        """The places and names of everything that is shown, the newest window first."""
        if place is None:
            for application in self.children(("org.a11y.atspi.Registry", ROOT)):
                for window in reversed(self.children(application)):
                    yield from self.controls(window)
            return
        if SHOWING not in self.states(place):
            return
        yield place, self.name(place)
        for child in self.children(place):
            yield from self.controls(child)

    def find(self, fits):
        return next((place for place, name in self.controls() if fits(name)), None)

    def find_enabled(self, fits):
        for place, name in self.controls():
            if fits(name) and self.role(place) != LABEL and ENABLED in self.states(place):
                return place
        return None

    def click(self, place):
        x, y, width, height = self.call(place, "org.a11y.atspi.Component", "GetExtents",
                                        GLib.Variant("(u)", (SCREEN,)))[0]
        xdotool("mousemove", str(x + width // 2), str(y + height // 2), "click", "1")

    def take(self, step):
        kind, _, value = step.partition("=")
        if kind == "keys":
            xdotool("key", "--delay", "60", *value.split(","))
        elif kind == "focus":
            self.wait_for(lambda: focus_window(value), step)
        elif kind == "click":
            self.click(self.wait_for(lambda: self.find_enabled(lambda name: name == value), step))
        elif kind == "menu":
            self.click(self.wait_for(lambda: self.find_enabled(lambda name: name == value), step))
            self.wait_for(lambda: len(visible_windows("--class", PROGRAM)) > 1, step)
        elif kind == "row":
            self.click(self.wait_for(lambda: self.find_enabled(lambda name: name.startswith(value)), step))
        elif kind == "shown":
            self.wait_for(lambda: self.find(lambda name: name == value), step)
        else:
            raise ValueError(step)

    def wait_for(self, condition, step):
        deadline = time.monotonic() + LIMIT_SECONDS
        while not (value := condition()):
            if time.monotonic() > deadline:
                names = [name for _, name in self.controls() if name]
                sys.exit(f"{step} did not succeed; the window shows {names}")
            time.sleep(0.1)
        return value


def xdotool(*words):
    subprocess.run(["xdotool", *words], check=True)


def asked_xdotool(*words):
    return subprocess.run(["xdotool", *words], capture_output=True, text=True, check=False).stdout.split()


def visible_windows(*words):
    return asked_xdotool("search", "--onlyvisible", *words)


def focus_window(title):
    """Whether the visible window with this title has the focus now."""
    for window in visible_windows("--name", f"^{title}"):
        asked_xdotool("windowfocus", window)
        if asked_xdotool("getwindowfocus") == [window]:
            return True
    return False


def main():
    window = Window()
    for step in sys.argv[1:]:
        window.take(step)


main()
