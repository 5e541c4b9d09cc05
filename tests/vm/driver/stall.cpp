// SPDX-License-Identifier: MIT
#include "tests/vm/driver/stall.h"

#include "tests/vm/driver/failure.h"
#include "tests/vm/driver/waiting.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <elf.h>
#include <filesystem>
#include <fstream>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>

pid_t threadNamed(pid_t process, const std::string &name)
{
    for (const auto &task : std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/task")) {
        std::string found;
        std::getline(std::ifstream(task.path() / "comm"), found);
        if (found == name)
            return std::stoi(task.path().filename().string());
    }
    throw Failure("no thread \"" + name + "\"");
}

namespace {

/// The program's entry point: code that is not needed any more.
std::uint64_t entryOf(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/auxv", std::ios::binary);
    for (Elf64_auxv_t entry{}; file.read(reinterpret_cast<char *>(&entry), sizeof entry);) {
        if (entry.a_type == AT_ENTRY)
            return entry.a_un.a_val;
    }
    throw Failure("the program has no entry");
}

/// A traced thread. It continues undisturbed when this object ends.
class TracedThread
{
public:
    explicit TracedThread(pid_t thread) : mThread(thread)
    {
        check(::ptrace(PTRACE_SEIZE, mThread, nullptr, PTRACE_O_TRACESYSGOOD));
        check(::ptrace(PTRACE_INTERRUPT, mThread, nullptr, nullptr));
        waitForStop();
    }
    ~TracedThread() { ::ptrace(PTRACE_DETACH, mThread, nullptr, nullptr); }
    TracedThread(const TracedThread &) = delete;
    TracedThread &operator=(const TracedThread &) = delete;

    /// Lets it run to the next beginning or end of a system call.
    void goOn() { check(::ptrace(PTRACE_SYSCALL, mThread, nullptr, nullptr)); }
    void waitForStop()
    {
        const bool hasStopped = becomesTrue([this] {
            int status = 0;
            return ::waitpid(mThread, &status, __WALL | WNOHANG) == mThread && WIFSTOPPED(status);
        });
        if (!hasStopped)
            throw Failure("the thread does not get there");
    }
    [[nodiscard]] user_regs_struct registers() const
    {
        user_regs_struct values{};
        check(::ptrace(PTRACE_GETREGS, mThread, nullptr, &values));
        return values;
    }
    void setRegisters(user_regs_struct values) { check(::ptrace(PTRACE_SETREGS, mThread, nullptr, &values)); }
    void writeWord(std::uint64_t address, long word) { check(::ptrace(PTRACE_POKETEXT, mThread, address, word)); }

private:
    static void check(long result)
    {
        if (result < 0)
            throw Failure(std::string("tracing: ") + std::strerror(errno));
    }

    pid_t mThread;
};

using Code = std::array<std::uint8_t, 2 * sizeof(long)>;

constexpr Code sleepingCode{0xB8, SYS_pause, 0, 0, 0, 0x0F, 0x05, 0xEB, 0xF7}; // loop: eax = pause; syscall; jmp loop
constexpr Code spinningCode{0xEB, 0xFE};                                       // loop: jmp loop

void writeCode(TracedThread &thread, std::uint64_t place, const Code &code)
{
    std::array<long, 2> words{};
    std::memcpy(words.data(), code.data(), sizeof words);
    for (const long word : words) {
        thread.writeWord(place, word);
        place += sizeof word;
    }
}

} // namespace

void stallThread(pid_t process, const std::string &threadName, Stall how, const std::function<void()> &cause)
{
    const std::uint64_t place = entryOf(process);
    TracedThread thread(threadNamed(process, threadName));
    writeCode(thread, place, how == Stall::sleeping ? sleepingCode : spinningCode);
    thread.goOn();
    cause();
    for (;;) {
        thread.waitForStop();
        user_regs_struct registers = thread.registers();
        if (registers.orig_rax == SYS_write) {
            registers.rip = place; // it continues here after the call
            thread.setRegisters(registers);
            return;
        }
        thread.goOn();
    }
}
