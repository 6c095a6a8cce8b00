// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/PacketString.h"

#include "tests/TestSupport.h"

#include <gtest/gtest.h>

TEST(PacketString, LaysOutTheLoginRecordWithTerminatedText)
{
    PACKET_STRING login;
    login.memberId = "Admin";
    login.password = "1234";
    const QByteArray bytes = login.toBytes();

    QByteArray expected(272, '\0');
    expected.replace(0, 5, "Admin");
    expected.replace(128, 4, "1234");
    expected[260] = 6;
    EXPECT_EQ(bytes, expected);
    // Names and passwords read back through the simulator's logins.
    EXPECT_EQ(PACKET_STRING::fromBytes(bytes).clientKind, 6u);

    // Overlong text keeps its terminator.
    login.memberId = QByteArray(200, 'm');
    login.password = QByteArray(200, 'p');
    const QByteArray full = login.toBytes();
    ASSERT_EQ(full.size(), 272);
    EXPECT_EQ(full.sliced(0, 128), QByteArray(127, 'm') + '\0');
    EXPECT_EQ(full.sliced(128, 132), QByteArray(131, 'p') + '\0');

    // A record cut short on the wire reads as padded, never past its end.
    const PACKET_STRING cut = PACKET_STRING::fromBytes(full.first(140));
    EXPECT_EQ(cut.memberId, QByteArray(127, 'm'));
    EXPECT_EQ(cut.password, QByteArray(12, 'p'));
    EXPECT_EQ(cut.clientKind, 0u);
}
