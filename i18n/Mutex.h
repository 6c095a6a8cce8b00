// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <mutex>

namespace nelib {

// A plain, non-recursive mutex. Lock it through AutoMutex so that every path
// out of a guarded block, an exception included, releases it.
class Mutex
{
public:
    Mutex();
    virtual ~Mutex();

    Mutex(const Mutex &) = delete;
    Mutex &operator=(const Mutex &) = delete;

    // Waits without a time limit.
    void lock();
    void unlock();

private:
    std::mutex m_mutex;
};

} // namespace nelib
