// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/SaveRules.h"

#include <QByteArray>

#include <gtest/gtest.h>

using setup::SaveRules;

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
