// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace nelib {

class Mutex;

// Holds a Mutex for the lifetime of the guard; the destructor releases it,
// so an exception leaving the scope cannot leave the mutex locked.
class AutoMutex
{
public:
    explicit AutoMutex(Mutex &mutex);
    virtual ~AutoMutex();

    AutoMutex(const AutoMutex &) = delete;
    AutoMutex &operator=(const AutoMutex &) = delete;

private:
    Mutex &m_mutex;
};

} // namespace nelib
