// SPDX-License-Identifier: MIT
// The exit codes of kestractl. Scripts rely on them and kestractl(1) lists them: never renumber one.
#pragma once

enum class ExitCode : int {
    ok = 0,
    refused = 1,    ///< the daemon answered with a status other than success
    usage = 2,      ///< wrong command, argument or option; nothing was sent that changes anything
    noDaemon = 3,   ///< no daemon on the session bus, or no session bus
    noReply = 4,    ///< the daemon did not answer in time
    noOutput = 5,   ///< done, but the results could not be written (a full disk, for example)
    incomplete = 6, ///< done, but a change that belongs to it was not
};
