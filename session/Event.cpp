// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/Event.h"

namespace nelib {

Event::~Event() = default;

void Event::set()
{
    const std::lock_guard lock(m_mutex);
    m_set = true;
    m_changed.notify_one();
}

void Event::reset()
{
    const std::lock_guard lock(m_mutex);
    m_set = false;
}

bool Event::wait(std::chrono::milliseconds timeout)
{
    std::unique_lock lock(m_mutex);
    if (!m_changed.wait_for(lock, timeout, [this] { return m_set; }))
        return false;
    m_set = false;
    return true;
}

} // namespace nelib
