// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/LittleEndian.h"

#include "tests/TestSupport.h"

#include <gtest/gtest.h>

using nelib::LittleEndian;

TEST(LittleEndian, ReadsAndWritesLeastSignificantByteFirstAndPaddedText)
{
    QByteArray b(8, '\0');
    ASSERT_TRUE(LittleEndian::setU32(b, 1, 0x11223344));
    EXPECT_EQ(b, QByteArray::fromHex("0044332211000000"));
    EXPECT_EQ(LittleEndian::u32(b, 1), 0x11223344u);
    EXPECT_EQ(LittleEndian::u16(b, 1), 0x3344u);
    EXPECT_EQ(LittleEndian::u8(b, 4), 0x11u);

    ASSERT_TRUE(LittleEndian::setU16(b, 6, 0xBEEF));
    EXPECT_EQ(LittleEndian::u16(b, 6), 0xBEEFu);
    ASSERT_TRUE(LittleEndian::setI32(b, 4, -65535));
    EXPECT_EQ(LittleEndian::u32(b, 4), 0xFFFF0001u);
    EXPECT_EQ(LittleEndian::i32(b, 4), -65535);

    // Fixed text is zero-padded and needs no terminator when full.
    b = QByteArray(12, 'x');
    ASSERT_TRUE(LittleEndian::setText(b, 1, 5, "ab"));
    EXPECT_EQ(b, QByteArray("xab\0\0\0xxxxxx", 12));
    EXPECT_EQ(LittleEndian::text(b, 1, 5), QByteArray("ab"));

    ASSERT_TRUE(LittleEndian::setText(b, 1, 5, "abcdefgh"));
    EXPECT_EQ(b, QByteArray("xabcdexxxxxx"));
    EXPECT_EQ(LittleEndian::text(b, 1, 5), QByteArray("abcde"));

    ASSERT_TRUE(LittleEndian::setText(b, 0, 3, ""));
    EXPECT_EQ(LittleEndian::text(b, 0, 12), QByteArray());
}

TEST(LittleEndian, AccessOutsideTheBufferReadsZeroAndWritesNothing)
{
    const QByteArray original = QByteArray::fromHex("0102030405");
    struct Case
    {
        qsizetype offset;
        qsizetype width;
    };
    for (const Case c : {Case {2, 4}, Case {5, 1}, Case {-1, 2}, Case {4, 2}, Case {0, 6}}) {
        SCOPED_TRACE(testing::Message() << "offset " << c.offset << " width " << c.width);
        QByteArray b = original;
        EXPECT_FALSE(LittleEndian::fits(b.size(), c.offset, c.width));
        if (c.width == 4) {
            EXPECT_EQ(LittleEndian::u32(b, c.offset), 0u);
            EXPECT_FALSE(LittleEndian::setU32(b, c.offset, 0xFFFFFFFF));
        } else if (c.width == 2) {
            EXPECT_EQ(LittleEndian::u16(b, c.offset), 0u);
            EXPECT_FALSE(LittleEndian::setU16(b, c.offset, 0xFFFF));
        } else {
            EXPECT_EQ(LittleEndian::text(b, c.offset, c.width), QByteArray());
            EXPECT_FALSE(LittleEndian::setText(b, c.offset, c.width, "zzzzzz"));
        }
        EXPECT_EQ(b, original);
    }
    EXPECT_TRUE(LittleEndian::fits(5, 5, 0));
    EXPECT_FALSE(LittleEndian::fits(5, 1, std::numeric_limits<qsizetype>::max()));
}
