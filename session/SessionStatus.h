// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <atomic>

// The words of a session that another thread reads while the user-interface
// thread changes them. The session worker owns one through a shared
// pointer and hands copies to its watchers, so that a watcher never reads
// through a worker that has already been destroyed.
struct SessionStatus
{
    std::atomic<int> state {0};
    std::atomic<int> setupReceived {0};
    std::atomic<bool> workerAlive {true};
};
