// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/LoginThrottle.h"

#include <algorithm>

namespace sim {

qint64 LoginThrottle::waitMs(const QHostAddress &address, qint64 nowMs) const
{
    const auto it = m_failures.constFind(address);
    if (it == m_failures.cend() || forgiven(*it, nowMs) || it->count < FreeFailures)
        return 0;
    const int doublings = std::min(it->count - FreeFailures, 16);
    const qint64 delay = std::min(FirstDelayMs << doublings, MaxDelayMs);
    return std::max<qint64>(it->lastMs + delay - nowMs, 0);
}

void LoginThrottle::failed(const QHostAddress &address, qint64 nowMs)
{
    auto it = m_failures.find(address);
    if (it == m_failures.end()) {
        if (m_failures.size() >= MaxAddresses) {
            const auto oldest = std::min_element(
                m_failures.begin(), m_failures.end(),
                [](const Failures &a, const Failures &b) { return a.lastMs < b.lastMs; });
            m_failures.erase(oldest);
        }
        it = m_failures.insert(address, {});
    } else if (forgiven(*it, nowMs)) {
        it->count = 0;
    }
    ++it->count;
    it->lastMs = nowMs;
}

} // namespace sim
