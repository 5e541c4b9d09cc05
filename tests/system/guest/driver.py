# SPDX-License-Identifier: MIT
"""The users, keyboards and devices of the machine, for the scenarios of the system suite. Every wait is for a condition,
by the machine's clock, which counts instructions."""

import fcntl
import os
import pwd
import select
import struct
import subprocess
import time
from pathlib import Path

LIMIT_SECONDS = 120
VENDOR = 0x1209
OUTPUT = "Quill Kestra output"
# The boot keyboard and the boot mouse of the Device Class Definition for HID 1.11, appendices B.1 and B.2.
KEYBOARD_DESCRIPTOR = bytes.fromhex("05010906a101050719e029e715002501750195088102950175088101950575010508190129059102"
                                    "95017503910195067508150026ff00050719002aff008100c0")
MOUSE_DESCRIPTOR = bytes.fromhex("05010902a1010901a100050919012903150025019503750181029501750581010501093009311581257f"
                                 "750895028106c0c0")
USAGES = {"A": 4, "B": 5, "C": 6, "D": 7, "F24": 0x73}
CODES = {30: "A", 48: "B", 46: "C", 32: "D", 194: "F24"}
EVENT = struct.Struct("llHHi")
EV_KEY = 1
EVIOCGRAB = 0x40044590


def run(*command, check=True, **options):
    """Runs a command as root. The result has its output and its errors in `stdout`."""
    result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False,
                            stdin=subprocess.DEVNULL, **options)
    if check and result.returncode != 0:
        raise AssertionError(f"{' '.join(command)} failed ({result.returncode}): {result.stdout}")
    return result


def wait_until(condition, what, limit_seconds=LIMIT_SECONDS):
    """The first value of the condition that is true."""
    deadline = time.monotonic() + limit_seconds
    while not (value := condition()):
        if time.monotonic() > deadline:
            raise AssertionError(f"it did not come: {what}")
        time.sleep(0.1)
    return value


class User:
    def __init__(self, name):
        self.name = name
        self.id = pwd.getpwnam(name).pw_uid

    def run(self, *command, check=True):
        """Runs a command with the user's bus, outside of a session, as a terminal of a desktop does."""
        runtime = f"/run/user/{self.id}"
        return run("setpriv", f"--reuid={self.id}", f"--regid={self.id}", "--init-groups", "env", "-i",
                   f"HOME=/home/{self.name}", f"USER={self.name}", "PATH=/usr/bin:/bin", "LC_ALL=C.UTF-8",
                   f"XDG_RUNTIME_DIR={runtime}", f"DBUS_SESSION_BUS_ADDRESS=unix:path={runtime}/bus", *command,
                   check=check)

    def run_in_session(self, *command, check=True):
        """Runs a command as a child of the user's service manager. polkit takes it for a part of the session."""
        return self.run("systemd-run", "--user", "--pipe", "--wait", "--quiet", "--collect", *command, check=check)

    def service(self, *words, check=True):
        return self.run("systemctl", "--user", *words, check=check)

    def main_process(self):
        """The process of the daemon's service; 0 if there is none."""
        return int(self.service("show", "--value", "-p", "MainPID", "quill-kestra-daemon", check=False).stdout.strip()
                   or 0)

    def ctl(self, *words, check=True):
        return self.run("kestractl", *words, check=check).stdout

    def session(self):
        """The user's session at the seat; empty if there is none."""
        for line in run("loginctl", "list-sessions", "--no-legend").stdout.splitlines():
            words = line.split()
            if words[2] == self.name and "seat0" in words:
                return words[0]
        return ""

    def is_active(self):
        session = self.session()
        return session and run("loginctl", "show-session", session, "--value", "-p", "State").stdout.strip() == "active"


class HidDevice:
    """A device that the kernel sees on the USB, made through uhid."""

    def __init__(self, name, serial, product, descriptor):
        self.name = name
        self.file = os.open("/dev/uhid", os.O_RDWR | os.O_CLOEXEC | os.O_NONBLOCK)
        os.write(self.file, struct.pack("<I128s64s64sHHIIII4096s", 11, name.encode(), f"vm/{name}".encode(),
                                        serial.encode(), len(descriptor), 3, VENDOR, product, 1, 0, descriptor))
        self.node = wait_until(lambda: node_of(name), f"the event device of {name}")
        run("udevadm", "settle")

    def unplug(self):
        os.close(self.file)


class Keyboard(HidDevice):
    def __init__(self, name, serial, product):
        super().__init__(name, serial, product, KEYBOARD_DESCRIPTOR)

    def report(self, *keys):
        usages = bytes(USAGES[key] for key in keys)
        os.write(self.file, struct.pack("<IH4096s", 12, 8, bytes(2) + usages))

    def tap(self, key):
        self.report(key)
        self.report()

    def is_grabbed(self):
        """Whether another program has grabbed its events."""
        file = os.open(self.node, os.O_RDONLY | os.O_CLOEXEC)
        try:
            fcntl.ioctl(file, EVIOCGRAB, 1)
        except OSError:
            return True
        finally:
            os.close(file)  # ungrabs
        return False


def node_of(name):
    """The event device of this name; empty if there is none."""
    for folder in Path("/sys/class/input").glob("event*"):
        if (folder / "device/name").read_text().strip() == name:
            return f"/dev/input/{folder.name}"
    return ""


class Reader:
    """Reads the keys of an event device, as a desktop does."""

    def __init__(self, node):
        self.file = os.open(node, os.O_RDONLY | os.O_CLOEXEC | os.O_NONBLOCK)

    def close(self):
        os.close(self.file)

    def expect(self, *changes):
        """The next keys must be these: "A down", "A up"."""
        found = []
        deadline = time.monotonic() + LIMIT_SECONDS
        while len(found) < len(changes):
            if not select.select([self.file], [], [], max(0, deadline - time.monotonic()))[0]:
                raise AssertionError(f"expected {changes}, got {found}")
            data = os.read(self.file, EVENT.size * 64)
            for _, _, kind, code, value in EVENT.iter_unpack(data):
                if kind == EV_KEY and value != 2:
                    found.append(f"{CODES.get(code, code)} {'down' if value else 'up'}")
        if tuple(found) != changes:
            raise AssertionError(f"expected {changes}, got {tuple(found)}")


def output_node():
    """The event device of the daemon's keyboard."""
    return wait_until(lambda: node_of(OUTPUT), "the output device")


def nodes_of_user(user):
    """The device nodes that the login manager has given to this user."""
    nodes = [path for folder in ("/dev", "/dev/input") for path in Path(folder).iterdir() if path.is_char_device()]
    granted = run("getfacl", "--absolute-names", "--omit-header", "--tabular", *map(str, nodes)).stdout
    found = set()
    for block in granted.split("\n\n"):
        lines = block.splitlines()
        if lines and any(line.split()[:2] == ["user", user.name] for line in lines[1:]):
            found.add(lines[0].removeprefix("# file: "))
    return found
