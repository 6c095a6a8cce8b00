// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QHash>
#include <QHostAddress>

namespace sim {

// Slows password guessing down per source address: after a few failed
// logins from an address, each further login from it is checked only after
// a delay that doubles with every failure, up to a limit. Other addresses
// are not affected. An address is forgiven after a quiet spell without
// failures, and the table forgets its oldest address when it is full, so
// its memory stays bounded.
class LoginThrottle
{
public:
    static constexpr int FreeFailures = 3;
    static constexpr qint64 FirstDelayMs = 250;
    static constexpr qint64 MaxDelayMs = 8000;
    static constexpr qint64 ForgiveAfterMs = 10 * 60 * 1000;
    static constexpr qsizetype MaxAddresses = 4096;

    // How long, from `nowMs`, a login from `address` has to wait.
    qint64 waitMs(const QHostAddress &address, qint64 nowMs) const;
    void failed(const QHostAddress &address, qint64 nowMs);

private:
    struct Failures
    {
        int count = 0;
        qint64 lastMs = 0;
    };
    bool forgiven(const Failures &f, qint64 nowMs) const
    {
        return nowMs - f.lastMs >= ForgiveAfterMs;
    }

    QHash<QHostAddress, Failures> m_failures;
};

} // namespace sim
