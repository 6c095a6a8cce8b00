#include "session/Frame.h"

#include "setup/LittleEndian.h"
#include "tests/TestSupport.h"

#include <gtest/gtest.h>

using nelib::LittleEndian;
using session::Frame;

namespace {

QByteArray headWith(quint32 magic, quint32 total)
{
    QByteArray head(Frame::HeadSize, '\0');
    LittleEndian::setU32(head, 0, magic);
    LittleEndian::setU32(head, 16, total);
    return head;
}

} // namespace

TEST(Frame, EncodesTheHeadFieldByFieldUpToTheSizeLimit)
{
    PACKET_PARAM param;
    for (int i = 0; i < PACKET_PARAM::WordCount; ++i)
        param.words[i] = 0x01010101u * quint32(i + 1);
    const QByteArray frame = Frame::encode(0x0A0B0C0D, -65535, param, "xyz");

    const QByteArray expected = QByteArray("KRSP") // magic 0x5053524B
                                + QByteArray::fromHex("01000000" // version
                                                      "0D0C0B0A" // sequence
                                                      "00000000" // reserved
                                                      "3F000000" // total length 63
                                                      "00000000" // reserved
                                                      "0100FFFF" // command -65535
                                                      "01010101020202020303030304040404"
                                                      "05050505060606060707070708080808")
                                + "xyz";
    EXPECT_EQ(frame, expected);

    EXPECT_EQ(Frame::encode(0, 4227, {}, QByteArray(Frame::MaxPayloadSize, 'c')).size(),
              Frame::MaxSize);
    EXPECT_TRUE(Frame::encode(0, 4227, {}, QByteArray(Frame::MaxPayloadSize + 1, 'c')).isEmpty());
}

TEST(Frame, HeadCheckRejectsWrongMagicAndLengthsOutsideTheLimits)
{
    struct Case
    {
        const char *name;
        QByteArray head;
        qsizetype expected;
    };
    const Case cases[] = {
        {"bare head", headWith(Frame::Magic, 60), 60},
        {"largest frame", headWith(Frame::Magic, 60 + 1048576), 60 + 1048576},
        {"wrong magic", headWith(0x4B525350, 60), -1},
        {"total below the head", headWith(Frame::Magic, 59), -1},
        {"total zero", headWith(Frame::Magic, 0), -1},
        {"total one past the cap", headWith(Frame::Magic, 60 + 1048576 + 1), -1},
        {"total at u32 max", headWith(Frame::Magic, 0xFFFFFFFF), -1},
        {"truncated head", headWith(Frame::Magic, 60).first(59), -1},
    };
    for (const Case &c : cases)
        EXPECT_EQ(Frame::checkHead(c.head), c.expected) << c.name;
}

TEST(Frame, DecodeTakesApartOnlyAWholeWellFormedPacket)
{
    PACKET_PARAM param;
    param.words = {5, 768, 1300, 0, 0, 0, 0, 0xFFFFFFFF};
    const QByteArray payload(768, 'p');
    const QByteArray packet = Frame::encode(7, 4608, param, payload);
    const std::optional<Frame> frame = Frame::decode(packet);
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->sequence, 7u);
    EXPECT_EQ(frame->command, 4608);
    EXPECT_EQ(frame->param, param);
    EXPECT_EQ(frame->payload, payload);

    EXPECT_FALSE(Frame::decode(packet.chopped(1)));
    EXPECT_FALSE(Frame::decode(packet + 'x'));
    EXPECT_FALSE(Frame::decode(packet.first(30)));
}
