#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Boots Debian's kernel in an emulator, with the daemon, a bus and the driver in its memory, and runs the scenarios.

Usage: run.py --bin FOLDER --driver FILE --work FOLDER [--scenarios FOLDER]
              [--measure [--instructions] | --share K/N | SCENARIO...] [--limit SECONDS]
Scenarios are files of the folder (tests/vm/scenarios), named without .txt; without one, all are run. --share K/N runs the Kth of N shares of all. --measure
measures instead, by the clock of the host, or with --instructions in instructions.
Exit codes: 0 all is well, 1 a scenario failed, 77 no kernel image or emulator is available.
KESTRA_VM_KVM=1 uses the processor's own virtualisation; without it the times are those of software emulation.
"""

import argparse
import glob
import gzip
import os
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time

import owntime
import shares

HERE = os.path.dirname(os.path.abspath(__file__))
MODULES = ["evdev", "uinput", "hid", "uhid", "hid-generic", "hid-google-hammer"]
SCENARIOS = os.path.join(HERE, "scenarios")
RESTRICTED = "restricted"  # needs the permissions of the user service
OWN_TIME_LIMIT_S = 600  # ten times the duration of a share; --limit is for runs on request
SKIPPED = 77
REPORT = "kestra-vm: "  # the driver's output on the console
# By the machine's clock an instruction takes 2 to the power of this many nanoseconds. A larger number makes busy
# waiting cheaper, but leaves fewer instructions to a step. 4 ns is about the speed of the emulator.
SHIFT_OF_SCENARIOS = 2
SHIFT_OF_MEASUREMENTS = 0  # a nanosecond is an instruction

LAYOUTS = "/usr/share/X11/xkb/"
LAYOUT_FOLDERS = ["compat", "keycodes", "rules", "symbols", "types"]
COMPOSE_FILES = ["/usr/share/X11/locale/" + name for name in ["compose.dir", "locale.alias", "en_US.UTF-8/Compose"]]


def skip(reason):
    print(f"skipped: {reason}")
    sys.exit(SKIPPED)


def readable_kernel(image, work):
    """The image itself, or a copy if only root may read it (Ubuntu) and sudo needs no password; otherwise None."""
    if os.access(image, os.R_OK):
        return image
    copy = os.path.join(work, "vmlinuz")
    with open(copy, "wb") as file:
        command = ["sudo", "-n", "cat", image]
        is_copied = shutil.which("sudo") and subprocess.run(command, stdout=file, check=False).returncode == 0
    return copy if is_copied else None


def newest_kernel(work):
    """The image and the folder of the modules of the newest kernel that has both."""
    unreadable = None
    for image in sorted(glob.glob("/boot/vmlinuz-*"), reverse=True):
        modules = "/lib/modules/" + image.split("vmlinuz-", 1)[1]
        if not os.path.isdir(modules):
            continue
        kernel = readable_kernel(image, work)
        if kernel:
            return kernel, modules
        unreadable = image
    if unreadable:
        skip(f"{unreadable} may be read by root only (sudo chmod a+r {unreadable})")
    skip("no kernel image with its modules in /boot and /lib/modules (Debian: linux-image-amd64, Ubuntu: linux-image-generic)")


def module_files(folder, names=MODULES):
    """The files of these modules and their dependencies, in the order of loading, without those built into the kernel.
    """
    dependencies = {}
    with open(os.path.join(folder, "modules.dep"), encoding="ascii") as file:
        for line in file:
            path, needs = line.split(":", 1)
            dependencies[path] = needs.split()
    by_name = {re.sub(r"\.ko.*", "", os.path.basename(path)).replace("_", "-"): path for path in dependencies}
    order = []
    for name in names:
        if name in by_name:
            for path in [*reversed(dependencies[by_name[name]]), by_name[name]]:
                if path not in order:
                    order.append(path)
    return [os.path.join(folder, path) for path in order]


def libraries_of(program):
    """The shared libraries that a program loads, according to ldd."""
    output = subprocess.run(["ldd", program], capture_output=True, text=True, check=True).stdout
    return re.findall(r"(/\S+) \(0x", output)


def program(name):
    path = shutil.which(name, path=os.environ["PATH"] + ":/usr/sbin:/sbin:/lib/systemd:/usr/lib/systemd")
    if path is None:
        skip(f"no {name}")
    return path


def calls_in(group):
    """The names in a group of system calls, including those in the groups that it names."""
    lines = subprocess.run(["systemd-analyze", "syscall-filter", group], capture_output=True, text=True,
                           check=True).stdout.split("\n")[1:]
    names = set()
    for word in (line.strip() for line in lines):
        if word.startswith("@"):
            names |= calls_in(word)
        elif word and not word.startswith("#"):
            names.add(word)
    return names


def allowed_calls():
    """The numbers of the system calls that the user service allows; None when this machine cannot resolve them."""
    headers = glob.glob("/usr/include/x86_64-linux-gnu/asm/unistd_64.h") + glob.glob("/usr/include/asm/unistd_64.h")
    if not headers or not shutil.which("systemd-analyze"):
        return None
    names = calls_in("@default")
    with open(os.path.join(HERE, "../../packaging/quill-kestra-daemon.service.in"), encoding="utf-8") as service:
        for words in re.findall(r"^SystemCallFilter=(.*)$", service.read(), re.MULTILINE):
            is_denied = words.startswith("~")
            for group in words.lstrip("~").split():
                names = names - calls_in(group) if is_denied else names | calls_in(group)
    with open(headers[0], encoding="ascii") as header:
        numbers = dict(re.findall(r"^#define __NR_(\w+) (\d+)$", header.read(), re.MULTILINE))
    return sorted(int(numbers[name]) for name in names if name in numbers)


class Root:
    """The root folder of the virtual machine."""

    def __init__(self, folder):
        self.folder = folder

    def path(self, inside):
        path = self.folder + inside
        os.makedirs(os.path.dirname(path), exist_ok=True)
        return path

    def add(self, source, inside):
        shutil.copy(source, self.path(inside))

    def add_program(self, source, name):
        self.add(source, "/bin/" + name)
        for library in libraries_of(source):
            # The loader looks for it there; two paths may lead to the same name.
            self.add(library, library)

    def add_folder(self, folder):
        shutil.copytree(folder, self.path(folder), dirs_exist_ok=True)

    def write(self, inside, text):
        with open(self.path(inside), "w", encoding="utf-8") as file:
            file.write(text)


def add_module(root, source, inside):
    """Modules may be compressed, and insmod of the small root may not be able to read them."""
    data = open(source, "rb").read()
    if source.endswith(".xz"):
        import lzma
        data = lzma.decompress(data)
    elif source.endswith(".gz"):
        data = gzip.decompress(data)
    elif source.endswith(".zst"):
        data = subprocess.run(["zstd", "-dc", source], capture_output=True, check=True).stdout
    with open(root.path(inside), "wb") as file:
        file.write(data)


def make_root(folder, arguments, modules, names, calls):
    root = Root(folder)
    for name in ["proc", "sys", "dev", "run", "tmp", "etc/udev/rules.d"]:
        os.makedirs(os.path.join(folder, name))
    root.add(program("busybox"), "/bin/busybox")
    root.add_program(program("dbus-daemon"), "dbus-daemon")
    root.add_program(program("udevadm"), "udevadm")
    root.add_program(program("udevadm"), "udevd")  # the name selects the program
    os.rename(root.path("/bin/udevd"), root.path("/bin/systemd-udevd"))
    root.write("/bin/udevd", "#!/bin/busybox sh\nexec /bin/systemd-udevd \"$@\"\n")
    os.chmod(root.path("/bin/udevd"), 0o755)
    for name in ["QuillKestraDaemon", "kestractl", "quill-kestra-keyboard-rule"]:
        root.add_program(os.path.join(arguments.bin, name), name)
    root.add_program(arguments.driver, "vmdriver")
    root.add_program(arguments.client, "vmclient")
    # The daemon first looks for the factory settings in a folder beside it.
    root.add(os.path.join(HERE, "../../resources/Kestra.plist"), "/bin/resources/Kestra.plist")
    root.add(os.path.join(arguments.bin, "resources/texts/en.qm"), "/bin/resources/texts/en.qm")
    # Keyboard layouts and the sequences of dead keys, for macros that type a text.
    for part in LAYOUT_FOLDERS:
        root.add_folder(LAYOUTS + part)
    for file in COMPOSE_FILES:
        root.add(file, file)
    root.add(os.path.join(HERE, "../../packaging/70-quill-kestra-uinput.rules"), "/rules/70-quill-kestra-uinput.rules")
    for rules in ["50-udev-default.rules", "60-input-id.rules", "60-persistent-input.rules", "60-evdev.rules"]:
        for base in ["/usr/lib/udev/rules.d/", "/lib/udev/rules.d/"]:
            if os.path.exists(base + rules):
                root.add(base + rules, "/lib/udev/rules.d/" + rules)
                break
    order = []
    for source in modules:
        inside = "/modules/" + re.sub(r"\.(xz|gz|zst)$", "", os.path.basename(source))
        add_module(root, source, inside)
        order.append(inside)
    root.write("/modules/order", "\n".join(order) + "\n")
    root.add(os.path.join(HERE, "session.conf"), "/etc/session.conf")
    root.write("/etc/passwd", "root:x:0:0:root:/run/user:/bin/sh\nuser:x:1000:1000:user:/run/user:/bin/sh\n")
    root.write("/etc/group", "root:x:0:\nuser:x:1000:\ninput:x:1:\ntty:x:5:\nvideo:x:6:\n")
    root.write("/etc/machine-id", "0123456789abcdef0123456789abcdef\n")
    if calls:
        root.write("/calls", "\n".join(map(str, calls)) + "\n")
    for name in names:
        root.add(os.path.join(arguments.folder, name + ".txt"), f"/scenarios/{name}.txt")
    for name in ["seed", "events"]:  # of the scenario model-storm
        if value := os.environ.get("KESTRA_STORM_" + name.upper()):
            root.write("/storm-" + name, value)
    root.write("/driver-arguments", " ".join(driver_arguments(arguments, names)))
    root.add(os.path.join(HERE, "init"), "/init")


def make_image(path, *root_arguments):
    """The root folder as the archive that the kernel unpacks at its start. Uncompressed, because the emulator is slow.
    """
    with tempfile.TemporaryDirectory() as folder:
        os.chmod(folder, 0o755)  # becomes the root folder of all users
        make_root(folder, *root_arguments)
        names = subprocess.run(["find", ".", "-print0"], cwd=folder, capture_output=True, check=True).stdout
        with open(path, "wb") as file:
            subprocess.run(["cpio", "-o", "-0", "-H", "newc", "--quiet", "-R", "0:0"], cwd=folder, input=names,
                           stdout=file, check=True)


def counting_instructions(shift):
    """The machine's clock counts its instructions and skips idle time, so load on the host does not delay a step."""
    return ["-icount", f"shift={shift},sleep=off", "-rtc", "clock=vm"]


def is_virtualised():
    return os.environ.get("KESTRA_VM_KVM") == "1"


def accelerator(arguments):
    if is_virtualised():
        return ["-enable-kvm", "-cpu", "host"]
    if not arguments.measure:
        return ["-accel", "tcg", *counting_instructions(SHIFT_OF_SCENARIOS)]
    return ["-accel", "tcg", *(counting_instructions(SHIFT_OF_MEASUREMENTS) if arguments.instructions else [])]


def driver_arguments(arguments, names):
    if arguments.measure:
        return ["--measure", "instructions" if arguments.instructions and not is_virtualised() else "us"]
    return [f"/scenarios/{name}.txt" for name in names]


def boot(kernel, image, options, limit_s):
    """Yields the lines of the console until the machine is off. Ends the machine when it takes too long."""
    command = [program("qemu-system-x86_64"), *options, "-m", "768", "-smp", "1", "-display", "none", "-nodefaults",
               "-no-reboot", "-serial", "stdio", "-kernel", kernel, "-initrd", image,
               "-append", "console=ttyS0 quiet panic=-1 random.trust_cpu=on"]
    with subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT) as machine:
        try:
            with owntime.OwnTimeLimit(machine, limit_s) as limit:
                for line in machine.stdout:
                    yield line.decode("utf-8", "replace").rstrip()
            if limit.is_over:
                yield REPORT + f"ended: it had {limit_s} s for itself"
        finally:
            machine.kill()


def reports(lines, log):
    """Prints the driver's part of the console; the whole console goes to the log."""
    found = []
    for line in lines:
        log.write(line + "\n")
        log.flush()
        if REPORT in line:
            found.append(line.split(REPORT, 1)[1])
            print(found[-1], flush=True)
    return found


def problems(found, names, is_measuring):
    """Reasons why the driver's report does not count as a success; `names` are the scenarios of the driver."""
    texts = []
    ends = [text for text in found if text.startswith("done, ")]
    if not ends:
        texts.append("the virtual machine did not come to the end")
    elif not ends[-1].startswith("done, 0 failed of "):
        texts.append("not everything succeeded")
    run = sorted(re.findall(r"^(?:ok|failed) (\S+) \(", "\n".join(found), re.MULTILINE))
    if run != sorted(names):
        texts.append(f"it has {len(names)} scenarios and ran {len(run)}; not run: {sorted(set(names) - set(run))}")
    if is_measuring and not any(text.startswith("latency ") for text in found):
        texts.append("it measured nothing")
    if not is_measuring and not names:
        texts.append("it has no scenario")
    return texts


def chosen_scenarios(arguments):
    if arguments.measure:
        return []
    every = shares.scenario_names(arguments.folder)
    if arguments.share:
        return shares.share_of(every, *arguments.share)
    return arguments.scenarios or every


def runnable_scenarios(names, calls):
    """The names without the scenario that cannot run here."""
    if calls is not None or RESTRICTED not in names:
        return names
    reason = f"{RESTRICTED}: no systemd-analyze, or no headers of the kernel"
    if names == [RESTRICTED]:
        skip(reason)
    print(f"skipped {reason}")
    return [name for name in names if name != RESTRICTED]


def parse_arguments():
    parser = argparse.ArgumentParser()
    parser.add_argument("--bin", required=True)
    parser.add_argument("--driver", required=True)
    parser.add_argument("--client", help="vmclient; the one beside the driver when not given")
    parser.add_argument("--work", required=True)
    parser.add_argument("--scenarios", default=SCENARIOS, metavar="FOLDER", dest="folder")
    parser.add_argument("--measure", action="store_true")
    parser.add_argument("--instructions", action="store_true")
    parser.add_argument("--share", type=shares.parse_share, metavar="K/N")
    parser.add_argument("--limit", type=int, default=OWN_TIME_LIMIT_S, metavar="SECONDS",
                        help="of the machine's own time (owntime.py); %(default)s when not given")
    parser.add_argument("scenarios", nargs="*")
    arguments = parser.parse_args()
    if arguments.measure + bool(arguments.share) + bool(arguments.scenarios) > 1:
        parser.error("--measure, --share and names of scenarios exclude each other")
    if arguments.instructions and not arguments.measure:
        parser.error("--instructions needs --measure: scenarios count instructions anyway")
    unknown = set(arguments.scenarios) - set(shares.scenario_names(arguments.folder))
    if unknown:
        parser.error(f"no such scenario: {', '.join(sorted(unknown))}")
    arguments.client = arguments.client or os.path.join(os.path.dirname(arguments.driver), "vmclient")
    return arguments


def main():
    arguments = parse_arguments()
    # Ends the emulator as well.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    os.makedirs(arguments.work, exist_ok=True)
    kernel, modules_folder = newest_kernel(arguments.work)
    calls = allowed_calls()
    names = runnable_scenarios(chosen_scenarios(arguments), calls)
    image = os.path.join(arguments.work, "initramfs")
    make_image(image, arguments, module_files(modules_folder), names, calls)
    options = accelerator(arguments)
    log_path = os.path.join(arguments.work, "console.log")
    start = time.monotonic()
    try:
        with open(log_path, "w", encoding="utf-8") as log:
            found = reports(boot(kernel, image, options, arguments.limit), log)
    finally:
        os.remove(image)  # it is large
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    print(f"took {used.ru_utime + used.ru_stime:.0f} s of the processor, {time.monotonic() - start:.0f} s in all")
    texts = problems(found, names, arguments.measure)
    if texts:
        with open(log_path, encoding="utf-8") as log:
            print("the end of the console:", *log.read().splitlines()[-60:], *texts, sep="\n")
    return 1 if texts else 0


if __name__ == "__main__":
    sys.exit(main())
