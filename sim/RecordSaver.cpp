// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/RecordSaver.h"

#include <algorithm>

namespace sim {

RecordSaver::RecordSaver()
    : m_thread([this] { run(); })
{ }

RecordSaver::~RecordSaver()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void RecordSaver::post(const void *owner, std::function<void()> save)
{
    {
        const std::lock_guard lock(m_mutex);
        m_jobs.push_back({owner, std::move(save)});
    }
    m_changed.notify_all();
}

void RecordSaver::finish(const void *owner)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] {
        return m_running != owner
               && std::none_of(m_jobs.cbegin(), m_jobs.cend(),
                               [owner](const Job &job) { return job.owner == owner; });
    });
}

void RecordSaver::run()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_stopping || !m_jobs.empty(); });
        if (m_jobs.empty())
            return;
        Job job = std::move(m_jobs.front());
        m_jobs.pop_front();
        m_running = job.owner;
        lock.unlock();
        job.save();
        lock.lock();
        m_running = nullptr;
        m_changed.notify_all();
    }
}

} // namespace sim
