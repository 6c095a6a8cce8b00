#include "session/ProgramExit.h"

#include <cstdlib>
#include <mutex>

namespace {
std::mutex s_mutex;
ProgramExit::Hook s_hook;
} // namespace

ProgramExit::Hook ProgramExit::install(Hook hook)
{
    const std::lock_guard lock(s_mutex);
    std::swap(s_hook, hook);
    return hook;
}

void ProgramExit::exitProgram(int exitCode)
{
    Hook hook;
    {
        const std::lock_guard lock(s_mutex);
        hook = s_hook;
    }
    if (hook)
        hook(exitCode);
    else
        std::exit(exitCode);
}
