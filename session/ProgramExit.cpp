// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/ProgramExit.h"

#include <QCoreApplication>
#include <QThread>

#include <cstdlib>
#include <mutex>

namespace {

// As with the message sink: each session of a command-line fleet runs on a
// thread of its own and ends only itself.
std::mutex s_mutex;
ProgramExit::Hook s_mainHook;
thread_local ProgramExit::Hook t_hook;
thread_local bool t_installed = false;

bool onMainThread()
{
    const QCoreApplication *app = QCoreApplication::instance();
    return !app || QThread::currentThread() == app->thread();
}

} // namespace

ProgramExit::Hook ProgramExit::install(Hook hook)
{
    if (onMainThread()) {
        const std::lock_guard lock(s_mutex);
        s_mainHook = hook;
    }
    t_installed = true;
    std::swap(t_hook, hook);
    return hook;
}

void ProgramExit::exitProgram(int exitCode)
{
    Hook hook;
    if (t_installed) {
        hook = t_hook;
    } else {
        const std::lock_guard lock(s_mutex);
        hook = s_mainHook;
    }
    if (hook)
        hook(exitCode);
    else
        std::exit(exitCode);
}
