// SPDX-License-Identifier: GPL-3.0-or-later

#include "i18n/AutoMutex.h"

#include "i18n/Mutex.h"

namespace nelib {

AutoMutex::AutoMutex(Mutex &mutex)
    : m_mutex(mutex)
{
    m_mutex.lock();
}

AutoMutex::~AutoMutex()
{
    m_mutex.unlock();
}

} // namespace nelib
