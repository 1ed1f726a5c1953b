// SPDX-License-Identifier: MIT
#include "tests/support/killedrun.h"

#include <csignal>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

constexpr int notAllowed = 111;

[[noreturn]] void runFollowed(const std::function<void()> &operation)
{
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
        _exit(notAllowed);
    }
    std::raise(SIGSTOP);
    operation();
    _exit(0); // without looking for leaks, which needs what follows this process
}

bool hasEnded(int status)
{
    return WIFEXITED(status) || WIFSIGNALED(status);
}

bool isAtSystemCall(int status)
{
    return WIFSTOPPED(status) && WSTOPSIG(status) == (SIGTRAP | 0x80);
}

// Lets it run on up to the next stop; false when it has ended.
bool goOn(pid_t process, int *status)
{
    const long signal =
        isAtSystemCall(*status) || WSTOPSIG(*status) == SIGSTOP ? 0 : WSTOPSIG(*status);
    return ptrace(PTRACE_SYSCALL, process, nullptr, signal) == 0 &&
           waitpid(process, status, 0) == process && !hasEnded(*status);
}

} // namespace

KilledRun::End KilledRun::before(int call, const std::function<void()> &operation)
{
    const pid_t process = fork();
    if (process == 0) {
        runFollowed(operation);
    }
    int status = 0;
    if (process < 0 || waitpid(process, &status, 0) != process || hasEnded(status) ||
        ptrace(PTRACE_SETOPTIONS, process, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL) !=
            0) {
        return End::NotAllowed;
    }
    bool entering = false;
    for (int begun = -1; goOn(process, &status);) {
        if (!isAtSystemCall(status)) {
            continue;
        }
        entering = !entering;
        begun += entering ? 1 : 0;
        if (entering && begun == call) {
            kill(process, SIGKILL);
            waitpid(process, &status, 0);
            return End::Killed;
        }
    }
    return End::Finished;
}
