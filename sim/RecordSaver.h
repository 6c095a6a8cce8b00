// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace sim {

// The thread that saves the records of every recorder of the process, so
// that no thread serving sessions waits for the disk. A recorder posts its
// save when a change awaits one; each save takes every change made until it
// starts, so sessions writing at once share one file replacement and one
// sync, and the changes made meanwhile wait for the next.
class RecordSaver
{
public:
    RecordSaver();
    // Runs what is posted, then stops.
    ~RecordSaver();

    RecordSaver(const RecordSaver &) = delete;
    RecordSaver &operator=(const RecordSaver &) = delete;

    // Runs `save` on the saver's thread, after everything posted before.
    void post(const void *owner, std::function<void()> save);
    // Returns once nothing posted for `owner` is waiting or running.
    void finish(const void *owner);

private:
    struct Job
    {
        const void *owner;
        std::function<void()> save;
    };
    void run();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Job> m_jobs;
    const void *m_running = nullptr;
    bool m_stopping = false;
    std::thread m_thread;
};

} // namespace sim
