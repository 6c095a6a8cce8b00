// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "sim/RecordSaver.h"

#include <QObject>
#include <QThread>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

namespace sim {

// The threads that serve the recorders' connections, each with an event
// loop of its own, and the one that saves their records. A listener hands
// every accepted connection to the next thread in turn, so no single loop
// has to watch every socket of a busy recorder. Shared by all recorders of
// the process; it outlives them.
class SessionThreads
{
public:
    // `count` threads; 0 picks one per processor, but at least two.
    explicit SessionThreads(int count = 0);
    // Quits every loop and waits for the threads to finish.
    ~SessionThreads();

    SessionThreads(const SessionThreads &) = delete;
    SessionThreads &operator=(const SessionThreads &) = delete;

    int count() const { return int(m_workers.size()); }
    // An object living in the thread for the next connection: what is
    // invoked on it runs there.
    QObject *next();
    // Runs `work` on each thread in turn, after everything posted to that
    // thread before, and returns once all have run it.
    void onEachThread(const std::function<void()> &work);
    // Runs `work` on `thread`, which must be one of these, at its loop's
    // next turn.
    void post(const QThread *thread, std::function<void()> work);
    RecordSaver &saver() { return m_saver; }

private:
    struct Worker
    {
        std::unique_ptr<QThread> thread;
        std::unique_ptr<QObject> context;
    };
    RecordSaver m_saver;
    std::vector<Worker> m_workers;
    std::atomic<std::size_t> m_next {0};
};

} // namespace sim
