# SPDX-License-Identifier: MIT
"""A virtual display of the user at the seat, on which window.py uses the configurator."""

from pathlib import Path

from driver import wait_until

NUMBER = 7
ENVIRONMENT = (f"DISPLAY=:{NUMBER}", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1")
PROGRAM = "kestra-configurator"


class Display:
    def __init__(self, user):
        self.user = user
        self.start_unit("kestra-display", "Xvfb", f":{NUMBER}", "-screen", "0", "1280x800x24", "-nolisten", "tcp")
        wait_until(lambda: Path(f"/tmp/.X11-unix/X{NUMBER}").exists(), "the display")

    def start_unit(self, name, *command):
        """Starts a program as a part of the user's session, and does not wait for its end."""
        settings = [f"--setenv={variable}" for variable in ENVIRONMENT]
        self.user.run("systemd-run", "--user", "--quiet", "--collect", f"--unit={name}", *settings, *command)

    def open_window(self):
        self.start_unit("kestra-window", PROGRAM)

    def has_window(self):
        return self.user.service("is-active", "kestra-window", check=False).stdout.strip() == "active"

    def use_window(self, *steps):
        """Does the steps of window.py."""
        self.user.run("env", *ENVIRONMENT, "python3", "-B", "/system/window.py", *steps)

    def close(self):
        self.use_window("focus=Quill Kestra", "keys=ctrl+q")
        wait_until(lambda: not self.has_window(), "the end of the window")
        self.user.service("stop", "kestra-display")
