// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/ProgramExit.h"

#include "session/SessionScope.h"

#include <QCoreApplication>
#include <QThread>

#include <cstdlib>
#include <mutex>

namespace {

// As with the message sink: each session of a command-line fleet has a scope
// of its own and ends only itself.
std::mutex s_mutex;
ProgramExit::Hook s_mainHook;

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
    SessionScope &scope = SessionScope::current();
    scope.exitHookInstalled = true;
    std::swap(scope.exitHook, hook);
    return hook;
}

void ProgramExit::exitProgram(int exitCode)
{
    Hook hook;
    if (const SessionScope &scope = SessionScope::current(); scope.exitHookInstalled) {
        hook = scope.exitHook;
    } else {
        const std::lock_guard lock(s_mutex);
        hook = s_mainHook;
    }
    if (hook)
        hook(exitCode);
    else
        std::exit(exitCode);
}
