// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace nelib {

// An auto-reset event: set() lets exactly one wait() through, which resets it.
class Event
{
public:
    Event() = default;
    virtual ~Event();

    void set();
    void reset();
    // True when the event was set within `timeout` (and resets it).
    bool wait(std::chrono::milliseconds timeout);

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_set = false;
};

} // namespace nelib
