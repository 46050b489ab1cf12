// The thread sanitizer takes a child that shares our memory until it runs another program, as QProcess starts
// them, for a fork: it stops watching the thread that has started it. So the child gets a copy of the memory,
// by a call that the sanitizer does not see. Only built for it.
#include <cstdarg>
#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

extern "C" __attribute__((visibility("default"))) int clone(
    int (*run)(void*), void* /*stack*/, int flags, void* argument, ...)
{
    va_list more;
    va_start(more, argument);
    auto* const parentsWord = va_arg(more, pid_t*);
    va_end(more);
    const auto pid = syscall(SYS_clone, flags & ~(CLONE_VM | CLONE_VFORK), nullptr, parentsWord, nullptr, 0);
    if (pid == 0)
        _exit(run(argument));
    return static_cast<int>(pid);
}
