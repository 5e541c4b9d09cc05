# SPDX-License-Identifier: MIT
"""A Debian of the machine's own package sources, with everything that the project's packages need. mmdebstrap makes it
once and keeps it in build/system, under a name with a hash of its ingredients."""

import hashlib
import os
import re
import shutil
import subprocess
import tempfile
from pathlib import Path

SYSTEMS = Path(__file__).resolve().parents[2] / "build" / "system"
PACKAGES = ("quill-kestra", "quill-kestra-daemon")
EXTENSION = "gnome-shell-extension-quill-kestra"
LOWER_VERSION = "0.9"
# The packages that ours only recommend, and those that a machine with a seat has.
SEAT = ("acl", "dbus", "dbus-user-session", "kmod", "libpam-systemd", "pkexec", "polkitd", "python3", "python3-gi",
        "rtkit", "systemd", "systemd-sysv", "udev")
# The tools that a file manager asks about files.
FILE_MANAGER = ("desktop-file-utils", "libglib2.0-bin", "shared-mime-info")
# A virtual display, and tools that find and move the controls on it.
DISPLAY = ("at-spi2-core", "xdotool", "xvfb")

# Two desktops, a notification service for the one that has none, and tools of the scenarios.
DESKTOPS = ("at-spi2-core", "dbus", "gjs", "gnome-shell", "kwin-wayland", "libgl1-mesa-dri", "libglib2.0-dev-bin",
            "mako-notifier", "python3", "qt6-wayland")

USERS = ("user", "guest")
# Without a journal: nothing is stored beyond a run.
MAKE_FILE_SYSTEM = ("mkfs.ext4", "-q", "-F", "-O", "^has_journal")
FILE_SYSTEM_SIZE = "1G"


def run(*command, **options):
    """The output of a command that must succeed."""
    result = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                            check=False, **options)
    if result.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, command))} failed:\n{result.stdout}")
    return result.stdout


def package_file(folder, name):
    return next(folder.glob(f"{name}_*.deb"))


def make_lower_version(folder, name, target):
    """A package of this tree with a lower version."""
    with tempfile.TemporaryDirectory() as unpacked:
        file = package_file(folder, name)
        run("dpkg-deb", "-R", file, unpacked)
        control = Path(unpacked) / "DEBIAN" / "control"
        version = run("dpkg-deb", "-f", file, "Version").strip()
        control.write_text(control.read_text().replace(version, LOWER_VERSION))
        run("dpkg-deb", "--root-owner-group", "-Znone", "-b", unpacked, target)


def dependencies(folder):
    """The dependencies of the packages in this folder, without alternatives and versions."""
    names = set()
    for name in PACKAGES:
        for entry in run("dpkg-deb", "-f", package_file(folder, name), "Depends").split(","):
            names.add(re.match(r"\s*([a-z0-9.+-]+)", entry).group(1))
    # Any session bus will do.
    names.discard("default-dbus-session-bus")
    return names - set(PACKAGES)


def package_sources():
    """The files with the package sources of this machine."""
    folder = Path("/etc/apt")
    files = [folder / "sources.list", *sorted((folder / "sources.list.d").glob("*.list")),
             *sorted((folder / "sources.list.d").glob("*.sources"))]
    return [file for file in files if file.is_file()]


def hash_of(*ingredients):
    return hashlib.sha256("\n".join(ingredients).encode()).hexdigest()[:16]


def made_debian(name, suffix, packages, *options):
    """A Debian with these packages, made now or by an earlier run."""
    os_release = dict(line.split("=", 1) for line in Path("/etc/os-release").read_text().splitlines() if "=" in line)
    arguments = ["--variant=apt", *options, f"--include={','.join(sorted(packages))}", os_release["VERSION_CODENAME"]]
    sources = package_sources()
    SYSTEMS.mkdir(parents=True, exist_ok=True)
    made = SYSTEMS / f"{name}-{hash_of(*arguments, *(file.read_text() for file in sources))}{suffix}"
    if not made.exists():
        new = SYSTEMS / f"new-{made.name}"
        if new.is_dir():
            shutil.rmtree(new)  # of a run that was stopped
        run("mmdebstrap", *arguments, new, *sources)
        new.rename(made)
    return made


def system_archive(folder):
    """A Debian with the dependencies of the packages in this folder and with a seat, without them, as an archive."""
    return made_debian("debian", ".tar", dependencies(folder).union(SEAT, FILE_MANAGER, DISPLAY))


def desktops_folder(folder):
    """A Debian with the dependencies of the packages in this folder and with desktops, without them, as a folder.
    Runs must not change it."""
    # These files would take a third of the time, and no test looks at them.
    left_out = [f"--dpkgopt=path-exclude=/usr/share/{name}/*" for name in ("doc", "locale", "man", "backgrounds")]
    return made_debian("desktops", "", dependencies(folder) | set(DESKTOPS), "--dpkgopt=force-unsafe-io", *left_out)


def system_image(folder):
    """The same as a file system, with room for more."""
    archive = system_archive(folder)
    image = archive.with_name(f"{archive.stem}-{hash_of(*USERS, *MAKE_FILE_SYSTEM, FILE_SYSTEM_SIZE)}.ext4")
    if not image.exists():
        new = image.with_suffix(".new")
        with tempfile.TemporaryDirectory(dir=SYSTEMS) as root:
            os.chmod(root, 0o755)  # becomes the root folder of all users
            run("tar", "-xf", archive, "-C", root, "--exclude=./dev/*")
            for user in USERS:
                run("chroot", root, "useradd", "--create-home", "--shell", "/bin/sh", user)
            run(*MAKE_FILE_SYSTEM, "-d", root, new, FILE_SYSTEM_SIZE,
                env={**os.environ, "PATH": f"{os.environ['PATH']}:/usr/sbin:/sbin"})
        new.rename(image)
    return image
