// SPDX-License-Identifier: MIT
#include "tests/vm/driver/passthrough.h"

#include "tests/vm/driver/eventnode.h"
#include "tests/vm/driver/failure.h"

#include <libevdev/libevdev-uinput.h>
#include <libevdev/libevdev.h>
#include <poll.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace {

void passOn(int keyboard, int output)
{
    std::array<input_event, 64> events{};
    for (;;) {
        pollfd poll{.fd = keyboard, .events = POLLIN, .revents = 0};
        ::poll(&poll, 1, -1);
        const ssize_t size = ::read(keyboard, events.data(), sizeof events);
        if (size <= 0 || ::write(output, events.data(), static_cast<std::size_t>(size)) != size)
            return;
    }
}

/// The process: its event device has the keys of the keyboard.
[[noreturn]] void runPassThrough(int keyboard, const std::string &name, PassThrough::Priority priority)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const sched_param parameter = {.sched_priority = 5}; // as in daemon/keyboards/linux/realtime.cpp
    if (priority == PassThrough::Priority::realTime && ::sched_setscheduler(0, SCHED_FIFO, &parameter) != 0)
        ::_exit(1);
    libevdev *device = nullptr;
    libevdev_uinput *output = nullptr;
    if (libevdev_new_from_fd(keyboard, &device) == 0) {
        libevdev_set_name(device, name.c_str());
        if (libevdev_uinput_create_from_device(device, LIBEVDEV_UINPUT_OPEN_MANAGED, &output) == 0)
            passOn(keyboard, libevdev_uinput_get_fd(output));
    }
    ::_exit(1); // the event device ends with the process
}

} // namespace

PassThrough::PassThrough(const std::string &keyboard, const std::string &output, Priority priority)
{
    const EventNode node = EventNode::open(keyboard, true); // the grab stays with the process
    mId = ::fork();
    if (mId < 0)
        throw Failure("no process");
    if (mId == 0)
        runPassThrough(node.descriptor(), output, priority);
}

PassThrough::~PassThrough()
{
    ::kill(mId, SIGKILL);
    ::waitpid(mId, nullptr, 0);
}
