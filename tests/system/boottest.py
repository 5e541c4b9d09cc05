#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Boots a Debian (debian.py) in an emulator, with systemd, a login manager, udev, polkit and RealtimeKit, and runs the
scenarios of guest/scenarios.py there: from the installation of the packages to their purge. See README.md.
Usage: boottest.py PACKAGES_FOLDER WORK_FOLDER
Exit codes: 0 all is well, 1 a scenario failed, 77 no kernel image or emulator is available."""

import json
import os
import re
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "vm"))

import owntime  # noqa: E402
import run as vm  # noqa: E402
from debian import PACKAGES, make_lower_version, package_file, system_image  # noqa: E402

REPORT = "kestra-system: "
OWN_TIME_LIMIT_S = 600  # three times the duration of a run
SLEEP_SECONDS = 5  # the clock that knows how long the machine slept has whole seconds
# The first ones are for the root file system: a memory module, whose reads take none of the machine's time. A disk of
# the host could make the machine wait, and its clock would skip that time.
ROOT_MODULES = ["nfit", "nd-pmem", "crc32c-generic", "ext4"]
MODULES = [*ROOT_MODULES, "evdev", "uinput", "hid", "uhid", "hid-generic", "autofs4"]

KERNEL_ARGUMENTS = ["console=ttyS0", "quiet", "panic=-1", "random.trust_cpu=on", "systemd.show_status=no",
                    "mem_sleep_default=deep", "systemd.wants=kestra-system.service",
                    # The report has the console to itself, and nothing else happens beside it.
                    "systemd.mask=serial-getty@ttyS0.service", "systemd.mask=apt-daily.timer",
                    "systemd.mask=apt-daily-upgrade.timer", "systemd.mask=fstrim.timer"]


def write(path, text):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text, encoding="utf-8")


def autologin(payload, terminal, user):
    write(payload / f"etc/systemd/system/getty@{terminal}.service.d/autologin.conf",
          f"[Service]\nExecStart=\nExecStart=-/sbin/agetty --autologin {user} --noclear %I linux\n")


def make_payload(payload, packages, modules_folder, modules):
    """The files that a run adds to the Debian."""
    (payload / "packages/lower").mkdir(parents=True)
    for name in PACKAGES:
        shutil.copy(package_file(packages, name), payload / "packages" / f"{name}.deb")
        make_lower_version(packages, name, payload / "packages/lower" / f"{name}.deb")
    (payload / "system").mkdir()
    for source in (HERE / "guest").glob("*.py"):
        shutil.copy(source, payload / "system")
    units = payload / "etc/systemd/system"
    units.mkdir(parents=True)
    shutil.copy(HERE / "guest/kestra-system.service", units)
    autologin(payload, "tty1", "user")
    autologin(payload, "tty2", "guest")
    folder = payload / "usr/lib/modules" / Path(modules_folder).name
    for source in modules:
        target = folder / Path(source).relative_to(modules_folder)
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(source, target)
    for name in ("modules.order", "modules.builtin", "modules.builtin.modinfo"):
        shutil.copy(Path(modules_folder) / name, folder / name)


def make_first_root(folder, packages, modules_folder):
    """The small root from which the machine starts."""
    root = vm.Root(str(folder))
    root.add(vm.program("busybox"), "/bin/busybox")
    order = []
    for source in vm.module_files(modules_folder, ROOT_MODULES):
        inside = "/modules/" + re.sub(r"\.(xz|gz|zst)$", "", os.path.basename(source))
        vm.add_module(root, source, inside)
        order.append(inside)
    root.write("/modules/order", "\n".join(order) + "\n")
    root.add(HERE / "guest/init", "/init")
    make_payload(folder / "payload", packages, modules_folder, vm.module_files(modules_folder, MODULES))


def make_archive(path, *arguments):
    with tempfile.TemporaryDirectory() as name:
        os.chmod(name, 0o755)
        make_first_root(Path(name), *arguments)
        names = subprocess.run(["find", ".", "-print0"], cwd=name, capture_output=True, check=True).stdout
        with open(path, "wb") as file:
            subprocess.run(["cpio", "-o", "-0", "-H", "newc", "--quiet"], cwd=name, input=names, stdout=file,
                           check=True)


def wake_up_after_sleep(monitor):
    """Wakes the machine each time that it has fallen asleep. `monitor` is a socket of the emulator's protocol QMP."""
    with monitor.makefile("rw", encoding="utf-8") as stream:
        def execute(command):
            print(json.dumps({"execute": command}), file=stream, flush=True)

        execute("qmp_capabilities")
        for line in stream:
            if json.loads(line).get("event") == "SUSPEND":
                time.sleep(SLEEP_SECONDS)
                execute("system_wakeup")


def boot(kernel, archive, image):
    """Yields the lines of the console until the machine is off."""
    monitor, monitor_of_machine = socket.socketpair()
    size = image.stat().st_size
    accelerator = (["-enable-kvm", "-cpu", "host"] if vm.is_virtualised() else
                   ["-accel", "tcg", *vm.counting_instructions(vm.SHIFT_OF_SCENARIOS)])
    command = [vm.program("qemu-system-x86_64"), *accelerator, "-machine", "pc,nvdimm=on",
               "-m", "1024M,slots=2,maxmem=4G", "-smp", "1", "-display", "none", "-nodefaults", "-vga", "std",
               "-no-reboot", "-serial", "stdio", "-kernel", kernel, "-initrd", archive,
               # The machine learns from this clock how long it slept: asleep, it counts no instructions.
               "-rtc", "clock=host",
               "-chardev", f"socket,id=monitor,fd={monitor_of_machine.fileno()}",
               "-mon", "chardev=monitor,mode=control",
               # Not shared: what the machine writes is gone with it.
               "-object", f"memory-backend-file,id=root,mem-path={image},size={size},share=off",
               "-device", "nvdimm,id=root-module,memdev=root",
               "-append", " ".join(KERNEL_ARGUMENTS)]
    with monitor, subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                   pass_fds=[monitor_of_machine.fileno()]) as machine:
        monitor_of_machine.close()
        threading.Thread(target=wake_up_after_sleep, args=[monitor], daemon=True).start()
        try:
            with owntime.OwnTimeLimit(machine, OWN_TIME_LIMIT_S) as limit:
                for line in machine.stdout:
                    yield line.decode("utf-8", "replace").rstrip()
            if limit.is_over:
                yield REPORT + f"ended: it had {OWN_TIME_LIMIT_S} s for itself"
        finally:
            machine.kill()


def scenario_names():
    """The names of the scenarios, in their order."""
    text = (HERE / "guest/scenarios.py").read_text(encoding="utf-8")
    return re.findall(r"^@scenario\ndef (\w+)\(", text, re.MULTILINE)


def problems(found):
    """Reasons why the report does not count as a success."""
    passed = re.findall(r"^ok (\w+) \(", "\n".join(found), re.MULTILINE)
    missing = [name for name in scenario_names() if name not in passed]
    return [f"these scenarios did not succeed: {', '.join(missing)}"] if missing or not passed else []


def main():
    packages, work = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
    # Ends the emulator as well.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    work.mkdir(parents=True, exist_ok=True)
    kernel, modules_folder = vm.newest_kernel(str(work))
    vm.program("qemu-system-x86_64")
    image = system_image(packages)
    archive = work / "initramfs"
    make_archive(archive, packages, modules_folder)
    start = time.monotonic()
    log = work / "console.log"
    found = []
    try:
        with open(log, "w", encoding="utf-8") as file:
            for line in boot(kernel, archive, image):
                file.write(line + "\n")
                file.flush()
                if REPORT in line:
                    found.append(line.split(REPORT, 1)[1])
                    print(f"{time.monotonic() - start:4.0f} s  {found[-1]}", flush=True)
    finally:
        archive.unlink()  # it is large
    texts = problems(found)
    if texts:
        print("the end of the console:", *log.read_text(encoding="utf-8").splitlines()[-120:], *texts, sep="\n")
    return 1 if texts else 0


if __name__ == "__main__":
    sys.exit(main())
