// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session/SessionScope.h"

#include <QObject>

#include <cstddef>
#include <exception>
#include <functional>

#include <ucontext.h>

namespace cli {

// A piece of code with a stack of its own that runs on the thread that
// resumes it until it yields or returns. A fleet runs each recorder's
// command in one: the command is written as a plain sequence of waits, and
// each wait yields, so that one thread and one event loop serve every
// session of the fleet. Fibers are resumed only by the thread's event loop
// (wake()), never from inside another fiber. Each fiber has a SessionScope
// of its own, in use while it runs.
class Fiber
{
public:
    // `finished` runs on the event loop once `body` has returned; it may
    // schedule the fiber's deletion but not delete it at once.
    Fiber(std::function<void()> body, std::function<void()> finished);
    // Only once the body has returned, or before it ever ran.
    ~Fiber();

    Fiber(const Fiber &) = delete;
    Fiber &operator=(const Fiber &) = delete;

    // The fiber running now, or null on the thread's own stack.
    static Fiber *current();
    // Back to the event loop; returns when the fiber is woken.
    static void yield();
    // Lets the fiber run again at the event loop's next turn (several wakes
    // before that run it once). Any code on the fiber's thread.
    void wake();
    bool isFinished() const { return m_finished; }

private:
    static void entry();
    void resume();
    void switchIn();
    void switchOut(bool leaving);

    std::function<void()> m_body;
    std::function<void()> m_finishedHook;
    std::exception_ptr m_exception;
    QObject m_waker; // context of the queued resume: gone with the fiber
    bool m_wakePending = false;
    bool m_finished = false;

    void *m_stack = nullptr; // a guard page, then the stack
    ucontext_t m_context {};
    ucontext_t m_caller {};
    SessionScope m_scope;
    SessionScope *m_callerScope = nullptr;
    // What the sanitizers need to follow a switch of stacks.
    void *m_fakeStack = nullptr;
    const void *m_callerStack = nullptr;
    std::size_t m_callerStackSize = 0;
    void *m_tsanFiber = nullptr;
    void *m_tsanCaller = nullptr;
};

} // namespace cli
