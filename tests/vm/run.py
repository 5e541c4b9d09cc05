#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Boots Debian's kernel in an emulator, with the daemon, a bus and the driver in its memory, and does the scenarios.

Usage: run.py --bin FOLDER --driver FILE --work FOLDER [--measure | SCENARIO...]
Scenarios are named without .txt; all when none is given, and the measurements; with --measure only those.
Exit codes: 0 all is well, 1 a scenario failed, 77 there is no kernel image or emulator to be had.
KESTRA_VM_KVM=1 uses the processor's own virtualisation; without it the times are those of software emulation.
"""

import argparse
import glob
import gzip
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import threading

HERE = os.path.dirname(os.path.abspath(__file__))
MODULES = ["evdev", "uinput", "hid", "uhid", "hid-generic", "hid-google-hammer"]
RESTRICTED = "restricted.txt"  # needs to know what the user service allows
TIME_LIMIT_S = 840
SKIPPED = 77


def skip(reason):
    print(f"skipped: {reason}")
    sys.exit(SKIPPED)


def readable_kernel(image, work):
    """The image itself, or a copy where only root may read it (Ubuntu) and sudo asks for no password; None otherwise."""
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


def module_files(folder):
    """The files of MODULES and what they need, in the order of loading; those built into the kernel are left out."""
    dependencies = {}
    with open(os.path.join(folder, "modules.dep"), encoding="ascii") as file:
        for line in file:
            path, needs = line.split(":", 1)
            dependencies[path] = needs.split()
    by_name = {re.sub(r"\.ko.*", "", os.path.basename(path)).replace("_", "-"): path for path in dependencies}
    order = []
    for name in MODULES:
        if name in by_name:
            for path in [*reversed(dependencies[by_name[name]]), by_name[name]]:
                if path not in order:
                    order.append(path)
    return [os.path.join(folder, path) for path in order]


def libraries_of(program):
    """The shared libraries that a program loads, as ldd tells."""
    output = subprocess.run(["ldd", program], capture_output=True, text=True, check=True).stdout
    return re.findall(r"(/\S+) \(0x", output)


def program(name):
    path = shutil.which(name, path=os.environ["PATH"] + ":/usr/sbin:/sbin:/lib/systemd:/usr/lib/systemd")
    if path is None:
        skip(f"no {name}")
    return path


def calls_in(group):
    """The names in a group of the kernel's calls, those in the groups that it names included."""
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
    """The numbers of the kernel's calls that the user service allows; None when nothing here tells."""
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
            # Where the loader looks for it; the same name may be reached by two ways.
            self.add(library, library)

    def write(self, inside, text):
        with open(self.path(inside), "w", encoding="utf-8") as file:
            file.write(text)


def add_module(root, source, inside):
    """Modules may be compressed, which insmod of the small root may not understand."""
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


def make_root(folder, arguments, modules):
    root = Root(folder)
    for name in ["proc", "sys", "dev", "run", "tmp", "etc"]:
        os.makedirs(os.path.join(folder, name))
    root.add(program("busybox"), "/bin/busybox")
    root.add_program(program("dbus-daemon"), "dbus-daemon")
    root.add_program(program("udevadm"), "udevadm")
    root.add_program(program("udevadm"), "udevd")  # the name says which of the two it is
    os.rename(root.path("/bin/udevd"), root.path("/bin/systemd-udevd"))
    root.write("/bin/udevd", "#!/bin/busybox sh\nexec /bin/systemd-udevd \"$@\"\n")
    os.chmod(root.path("/bin/udevd"), 0o755)
    for name in ["QuillKestraDaemon", "kestractl"]:
        root.add_program(os.path.join(arguments.bin, name), name)
    root.add_program(arguments.driver, "vmdriver")
    root.add_program(arguments.client, "vmclient")
    # The factory settings: a folder beside the daemon is where it looks first.
    root.add(os.path.join(HERE, "../../resources/Kestra.plist"), "/bin/resources/Kestra.plist")
    root.add(os.path.join(arguments.bin, "resources/texts/en.qm"), "/bin/resources/texts/en.qm")
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
    calls = allowed_calls()
    if calls:
        root.write("/calls", "\n".join(map(str, calls)) + "\n")
    for scenario in glob.glob(os.path.join(HERE, "scenarios", "*.txt")):
        if calls is None and os.path.basename(scenario) == RESTRICTED:
            print(f"skipped {RESTRICTED}: no systemd-analyze, or no headers of the kernel")
        else:
            root.add(scenario, "/scenarios/" + os.path.basename(scenario))
    names = ["--measure"] if arguments.measure else [f"/scenarios/{name}.txt" for name in arguments.scenarios]
    root.write("/scenario-names", " ".join(names))
    root.add(os.path.join(HERE, "init"), "/init")


def make_image(arguments, modules, path):
    """The root folder as the archive that the kernel unpacks at its start."""
    with tempfile.TemporaryDirectory() as folder:
        os.chmod(folder, 0o755)  # it becomes the root folder, of every user
        make_root(folder, arguments, modules)
        names = subprocess.run(["find", ".", "-print0"], cwd=folder, capture_output=True, check=True).stdout
        archive = subprocess.run(["cpio", "-o", "-0", "-H", "newc", "--quiet", "-R", "0:0"], cwd=folder, input=names,
                                 capture_output=True, check=True).stdout
    with open(path, "wb") as file:
        file.write(gzip.compress(archive, compresslevel=1))


def boot(kernel, image):
    """Yields the lines of the console until the machine is off; ends it when it takes too long."""
    accelerator = ["-enable-kvm", "-cpu", "host"] if os.environ.get("KESTRA_VM_KVM") == "1" else ["-accel", "tcg"]
    command = [program("qemu-system-x86_64"), *accelerator, "-m", "768", "-smp", "1", "-display", "none", "-nodefaults",
               "-no-reboot", "-serial", "stdio", "-kernel", kernel, "-initrd", image,
               "-append", "console=ttyS0 quiet panic=-1 random.trust_cpu=on"]
    with subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT) as machine:
        timer = threading.Timer(TIME_LIMIT_S, machine.kill)
        timer.start()
        try:
            for line in machine.stdout:
                yield line.decode("utf-8", "replace").rstrip()
        finally:
            timer.cancel()
            machine.kill()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--bin", required=True)
    parser.add_argument("--driver", required=True)
    parser.add_argument("--client", help="vmclient; the one beside the driver when not given")
    parser.add_argument("--work", required=True)
    parser.add_argument("--measure", action="store_true")
    parser.add_argument("scenarios", nargs="*")
    arguments = parser.parse_args()
    arguments.client = arguments.client or os.path.join(os.path.dirname(arguments.driver), "vmclient")
    # So that the emulator is ended, too.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    os.makedirs(arguments.work, exist_ok=True)
    kernel, modules_folder = newest_kernel(arguments.work)
    image = os.path.join(arguments.work, "initramfs.gz")
    make_image(arguments, module_files(modules_folder), image)
    end = None
    console = []
    with open(os.path.join(arguments.work, "console.log"), "w", encoding="utf-8") as log:
        for line in boot(kernel, image):
            log.write(line + "\n")
            log.flush()
            console.append(line)
            if "kestra-vm: " in line:
                text = line.split("kestra-vm: ", 1)[1]
                print(text, flush=True)
                if text.startswith("done, "):
                    end = text
    if end is None:
        print("the virtual machine did not come to the end; its console:", *console[-60:], sep="\n")
        return 1
    return 0 if end.startswith("done, 0 failed") else 1


if __name__ == "__main__":
    sys.exit(main())
