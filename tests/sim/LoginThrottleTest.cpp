// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/LoginThrottle.h"

#include <gtest/gtest.h>

using sim::LoginThrottle;

TEST(LoginThrottle, SlowsOnlyTheAddressThatKeepsFailing)
{
    const QHostAddress guesser(QStringLiteral("127.0.0.1"));
    const QHostAddress other(QStringLiteral("::1"));
    LoginThrottle throttle;
    qint64 now = 1000;
    for (int i = 0; i < LoginThrottle::FreeFailures; ++i) {
        EXPECT_EQ(throttle.waitMs(guesser, now), 0) << i;
        throttle.failed(guesser, now);
    }
    // Each further failure doubles the wait, up to the limit.
    const qint64 waits[] = {250, 500, 1000, 2000, 4000, 8000, 8000};
    for (const qint64 wait : waits) {
        EXPECT_EQ(throttle.waitMs(guesser, now), wait);
        EXPECT_EQ(throttle.waitMs(guesser, now + wait), 0);
        EXPECT_EQ(throttle.waitMs(other, now), 0);
        now += wait;
        throttle.failed(guesser, now);
    }
    now += LoginThrottle::ForgiveAfterMs;
    EXPECT_EQ(throttle.waitMs(guesser, now), 0);
    throttle.failed(guesser, now);
    EXPECT_EQ(throttle.waitMs(guesser, now), 0);
}
