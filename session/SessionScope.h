// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>

class MessageSink;

// What a session installs for itself: where its messages go and what ends
// it. Each thread has its own scope; a command line fleet runs many sessions
// on one thread, each in a fiber, and switches the thread's scope with the
// fiber so that every session still hears only its own messages.
struct SessionScope
{
    MessageSink *sink = nullptr;
    bool sinkInstalled = false;
    std::function<void(int)> exitHook;
    bool exitHookInstalled = false;

    // The scope in use on the calling thread.
    static SessionScope &current();
    // Makes `scope` the calling thread's scope (null: the thread's own) and
    // returns the one in use before.
    static SessionScope *enter(SessionScope *scope);
};
