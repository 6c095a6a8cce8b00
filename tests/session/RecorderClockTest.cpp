// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/RecorderClock.h"

#include <gtest/gtest.h>

namespace {

// The day of the week stays as it was.
RecorderTime at(quint16 y, quint16 mo, quint16 d, quint16 h, quint16 mi, quint16 s)
{
    return {y, mo, 0, d, h, mi, s};
}

} // namespace

TEST(RecorderClock, CountsTheWayTheRecorderDoes)
{
    const struct
    {
        const char *what;
        RecorderTime before;
        RecorderTime after;
    } cases[] = {
        {"plain second", at(2026, 5, 3, 10, 0, 0), at(2026, 5, 3, 10, 0, 1)},
        {"minute", at(2026, 5, 3, 10, 0, 59), at(2026, 5, 3, 10, 1, 0)},
        {"midnight", at(2026, 5, 3, 23, 59, 59), at(2026, 5, 4, 0, 0, 0)},
        // Month 5 is measured against entry 5 (June, 30 days) and restarts at day 0.
        {"day equals the entry at the month value", at(2026, 5, 29, 23, 59, 59),
         at(2026, 6, 0, 0, 0, 0)},
        {"January uses February's length", at(2026, 1, 27, 23, 59, 59), at(2026, 2, 0, 0, 0, 0)},
        {"leap year January", at(2024, 1, 27, 23, 59, 59), at(2024, 1, 28, 0, 0, 0)},
        {"leap year 2000", at(2000, 1, 28, 23, 59, 59), at(2000, 2, 0, 0, 0, 0)},
        {"no leap 1900", at(1900, 1, 27, 23, 59, 59), at(1900, 2, 0, 0, 0, 0)},
        {"month 12 has 31 days", at(2026, 12, 30, 23, 59, 59), at(2027, 0, 0, 0, 0, 0)},
        {"month 12 before its end", at(2026, 12, 29, 23, 59, 59), at(2026, 12, 30, 0, 0, 0)},
        {"month out of range only counts days", at(2026, 40, 99, 23, 59, 59),
         at(2026, 40, 100, 0, 0, 0)},
    };
    for (const auto &c : cases) {
        RecorderTime t = c.before;
        RecorderClock::tick(t);
        EXPECT_EQ(t, c.after) << c.what;
    }
}
