#include "setup/CameraSection.h"

#include "tests/pages/PageTestSupport.h"

#include <gtest/gtest.h>

using setup::CameraSection;

TEST(CameraSection, WritesOnlyTheOwnedBytesOfOneRecord)
{
    const QByteArray before = pagetest::pattern(768);
    for (int channel : {0, 6, 15}) {
        QByteArray section = before;
        ASSERT_TRUE(CameraSection::setChannel(section, channel, {"Gate", true, 8}));
        // Title at 0, covert at 23, audio at 32 of the channel's 48 bytes.
        QByteArray expected = before;
        expected.replace(48 * channel, 20, QByteArray("Gate").leftJustified(20, '\0'));
        expected[48 * channel + 23] = 1;
        expected[48 * channel + 32] = 8;
        EXPECT_EQ(section, expected) << "channel " << channel;

        const CameraSection::Channel read = CameraSection::channel(section, channel);
        EXPECT_EQ(read.title, "Gate");
        EXPECT_TRUE(read.covert);
        EXPECT_EQ(read.audio, 8);
    }
    QByteArray tooShort = before.left(48 * 15 + 32);
    EXPECT_FALSE(CameraSection::setChannel(tooShort, 15, {"Gate", true, 8}));
    EXPECT_EQ(tooShort, before.left(48 * 15 + 32));
}

TEST(CameraSection, TitleUsesAllTwentyBytesWithoutTerminator)
{
    const QByteArray before = pagetest::pattern(768);
    QByteArray section = before;
    ASSERT_TRUE(CameraSection::setChannel(section, 1, {"ABCDEFGHIJKLMNOPQRSTUVWXY", false, 0}));
    EXPECT_EQ(section.mid(48, 21), "ABCDEFGHIJKLMNOPQRST" + before.mid(68, 1));
    EXPECT_EQ(CameraSection::channel(section, 1).title, "ABCDEFGHIJKLMNOPQRST");
}
