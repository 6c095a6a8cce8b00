// SPDX-License-Identifier: GPL-3.0-or-later

#include "i18n/Placeholders.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using nelib::Placeholders;

// Translations are data: whatever placeholders they hold, filling them never
// reads a value that is not there.
TEST(Placeholders, FillsInTurnAndLeavesWhatHasNoValue)
{
    EXPECT_EQ(Placeholders::fill(u"CH 0%d"_s, {7}), u"CH 07"_s);
    EXPECT_EQ(Placeholders::fill(u"%02d,"_s, {3}), u"03,"_s);
    EXPECT_EQ(Placeholders::fill(u"%2d Sec"_s, {5}), u" 5 Sec"_s);
    EXPECT_EQ(Placeholders::fill(u"%s - Ch. %d - Night"_s, {u"Motion %d"_s, 12}),
              u"Motion %d - Ch. 12 - Night"_s);
    EXPECT_EQ(Placeholders::fill(u"Kanal %d %s %d"_s, {2}), u"Kanal 2 %s %d"_s);
    EXPECT_EQ(Placeholders::fill(u"%s%s"_s, {4}), u"%s%s"_s);
}
