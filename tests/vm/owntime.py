# SPDX-License-Identifier: MIT
"""A limit on the time that a process has for itself.

This time passes while the process uses a processor, and while all its threads sleep: a process that hangs either way
ends. It does not pass while the process waits for a processor or a disk: other programs cannot use it up.
"""

import os
import threading

TICKS_A_SECOND = os.sysconf("SC_CLK_TCK")


def stat_fields(path):
    """The fields of a "stat" file of /proc after the name, which may have spaces in it; the state is the first."""
    with open(path, encoding="ascii", errors="replace") as file:
        return file.read().rsplit(")", 1)[1].split()


def processor_seconds(process):
    """The time that all threads of a process have used, in user space and in the kernel."""
    fields = stat_fields(f"/proc/{process}/stat")
    return (int(fields[11]) + int(fields[12])) / TICKS_A_SECOND


def thread_states(process):
    tasks = f"/proc/{process}/task"
    for task in os.listdir(tasks):
        try:
            yield stat_fields(f"{tasks}/{task}/stat")[0]
        except (FileNotFoundError, ProcessLookupError):
            pass  # this thread has ended


def is_asleep(process):
    """Whether no thread of it runs, waits for a processor or a disk, or is suspended."""
    return all(state == "S" for state in thread_states(process))


class OwnTimeLimit:
    """Kills a child process when its own time is over. A "with" statement starts and ends the thread that watches it.
    """

    def __init__(self, process, limit_s, interval_s=1.0):
        self.used_s = 0.0
        self.is_over = False
        self._process = process
        self._limit_s = limit_s
        self._interval_s = interval_s
        self._ended = threading.Event()
        self._thread = threading.Thread(target=self._watch, daemon=True)

    def __enter__(self):
        self._thread.start()
        return self

    def __exit__(self, *_):
        self._ended.set()
        self._thread.join()

    def _watch(self):
        try:
            used_s = processor_seconds(self._process.pid)
            while not self._ended.wait(self._interval_s):
                before_s, used_s = used_s, processor_seconds(self._process.pid)
                asleep_s = self._interval_s if is_asleep(self._process.pid) else 0
                self.used_s += max(used_s - before_s, asleep_s)
                if self.used_s > self._limit_s:
                    self.is_over = True
                    self._process.kill()
                    return
        except (FileNotFoundError, ProcessLookupError):
            pass  # the process ended meanwhile
