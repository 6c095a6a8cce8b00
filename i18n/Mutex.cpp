// SPDX-License-Identifier: GPL-3.0-or-later

#include "i18n/Mutex.h"

namespace nelib {

Mutex::Mutex() = default;

Mutex::~Mutex() = default;

void Mutex::lock()
{
    m_mutex.lock();
}

void Mutex::unlock()
{
    m_mutex.unlock();
}

} // namespace nelib
