// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/SaveRules.h"

#include <QByteArray>

#include <gtest/gtest.h>

using setup::SaveRules;

TEST(SaveRules, MotionDayStartsStrictlyBeforeNightOnEveryChannelInUse)
{
    struct Case
    {
        std::vector<std::array<quint8, 4>> times; // day h, m, night h, m per channel
        int channels;
        std::optional<int> failing;
    };
    const Case cases[] = {
        {{{8, 0, 8, 1}, {8, 0, 20, 0}}, 2, std::nullopt},
        {{{8, 0, 8, 0}, {8, 0, 20, 0}}, 2, 1},
        {{{8, 0, 20, 0}, {21, 0, 20, 0}}, 2, 2},
        {{{8, 0, 20, 0}, {21, 0, 20, 0}}, 1, 1}, // one channel always fails
        {{{8, 0, 20, 0}, {8, 0, 20, 0}, {23, 59, 0, 0}}, 2, std::nullopt},
    };
    for (const Case &c : cases) {
        QByteArray section(64, '\0');
        for (std::size_t n = 0; n < c.times.size(); ++n)
            std::copy(c.times[n].begin(), c.times[n].end(), section.begin() + 4 * n);
        EXPECT_EQ(SaveRules::motionTimeError(section, c.channels), c.failing);
    }
}

TEST(SaveRules, ScheduleChecksOnlyItsFirstEntry)
{
    const auto schedule = [](quint32 count, std::array<quint16, 8> times) {
        QByteArray section(988, '\0');
        section[0] = char(count);
        // Entry 1 at 4 (times from 8), entry 2 at 28 (times from 32).
        for (int k = 0; k < 4; ++k) {
            section[8 + 2 * k] = char(times[k]);
            section[32 + 2 * k] = char(times[4 + k]);
        }
        return section;
    };
    EXPECT_EQ(SaveRules::scheduleTimeError(schedule(2, {10, 0, 10, 0, 0, 0, 23, 59})), 1);
    EXPECT_EQ(SaveRules::scheduleTimeError(schedule(2, {9, 59, 10, 0, 12, 0, 1, 0})), std::nullopt);
    EXPECT_EQ(SaveRules::scheduleTimeError(schedule(0, {10, 0, 10, 0, 0, 0, 0, 0})), std::nullopt);
}

TEST(SaveRules, PasswordChangeComparesTwelveZeroFilledBytes)
{
    using Change = SaveRules::PasswordChange;
    EXPECT_EQ(SaveRules::checkPasswordChange("", "", "new", "new"), Change::Accepted);
    EXPECT_EQ(SaveRules::checkPasswordChange("old", "ol", "new", "new"), Change::CurrentMismatch);
    EXPECT_EQ(SaveRules::checkPasswordChange("old", "old", "new", "New"), Change::ConfirmMismatch);
    EXPECT_EQ(SaveRules::checkPasswordChange("old", "old", "old", "old"), Change::SamePassword);
    // Only twelve bytes count: a thirteenth changes nothing.
    EXPECT_EQ(SaveRules::checkPasswordChange("123456789012", "1234567890123", "a", "a"),
              Change::Accepted);
    EXPECT_FALSE(SaveRules::titleAllowed(u"Shop/1"));
    EXPECT_TRUE(SaveRules::titleAllowed(u"Shop 1 (Kasse)"));
}
