// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/Frame.h"
#include "session/FrameReader.h"

#include "setup/LittleEndian.h"
#include "tests/TestSupport.h"

#include <QList>

#include <gtest/gtest.h>

using nelib::LittleEndian;
using session::Frame;
using session::FrameReader;

namespace {

QByteArray headWith(quint32 magic, quint32 total)
{
    QByteArray head(Frame::HeadSize, '\0');
    LittleEndian::setU32(head, 0, magic);
    LittleEndian::setU32(head, 16, total);
    return head;
}

QByteArray frameWith(quint32 sequence, qint32 command, qsizetype payloadSize)
{
    QByteArray payload(payloadSize, '\0');
    for (qsizetype i = 0; i < payloadSize; ++i)
        payload[i] = char(i * 7 + sequence);
    return Frame::encode(sequence, command, PACKET_PARAM {{sequence}}, payload);
}

QList<QByteArray> drain(FrameReader &reader)
{
    QList<QByteArray> frames;
    while (reader.hasFrame())
        frames.append(reader.takeFrame());
    return frames;
}

} // namespace

// The size limit the socket's tests show: the largest chunk goes, one byte
// more does not.
TEST(Frame, EncodesTheHeadFieldByFieldAndDecodesItBack)
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

    // Decoding takes apart only a whole, well-formed packet.
    const std::optional<Frame> decoded = Frame::decode(frame);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(std::tie(decoded->sequence, decoded->command, decoded->param, decoded->payload),
              std::tuple(0x0A0B0C0Du, -65535, param, QByteArray("xyz")));
    EXPECT_FALSE(Frame::decode(frame.chopped(1)));
    EXPECT_FALSE(Frame::decode(frame + 'x'));
}

TEST(Frame, HeadCheckRejectsWrongMagicAndLengthsOutsideTheLimits)
{
    const struct
    {
        const char *name;
        QByteArray head;
        qsizetype expected;
    } cases[] = {
        {"bare head", headWith(Frame::Magic, 60), 60},
        {"largest frame", headWith(Frame::Magic, 60 + 1048576), 60 + 1048576},
        {"wrong magic", headWith(0x4B525350, 60), -1},
        {"total below the head", headWith(Frame::Magic, 59), -1},
        {"total one past the cap", headWith(Frame::Magic, 60 + 1048576 + 1), -1},
        {"total at u32 max", headWith(Frame::Magic, 0xFFFFFFFF), -1},
        {"truncated head", headWith(Frame::Magic, 60).first(59), -1},
    };
    for (const auto &c : cases)
        EXPECT_EQ(Frame::checkHead(c.head), c.expected) << c.name;
}

// Covers whole-stream feeds (both cuts at 0) and frames glued together.
TEST(FrameReader, YieldsTheSameFramesWhereverTheStreamIsSplit)
{
    const QList<QByteArray> sample {frameWith(0, 0x0F01, 0), frameWith(1, 4098, 0),
                                    frameWith(2, 4226, 150), frameWith(3, 4609, 1)};
    const QByteArray stream = sample.join();
    for (qsizetype first = 0; first <= stream.size(); ++first) {
        for (qsizetype second = first; second <= stream.size(); second += 13) {
            FrameReader reader;
            QList<QByteArray> frames;
            for (const QByteArrayView chunk : {QByteArrayView(stream).sliced(0, first),
                                               QByteArrayView(stream).sliced(first, second - first),
                                               QByteArrayView(stream).sliced(second)}) {
                ASSERT_TRUE(reader.feed(chunk));
                frames += drain(reader);
            }
            ASSERT_EQ(frames, sample) << "split at " << first << " and " << second;
            EXPECT_EQ(reader.pendingBytes(), 0);
        }
    }
}

TEST(FrameReader, MalformedHeadStopsTheStreamForGood)
{
    // The shapes of a bad head are Frame::checkHead's; these are the two
    // ways a reader must not go on: a foreign stream and a length it cannot hold.
    const QByteArray good = frameWith(0, 4098, 3);
    QByteArray wrongMagic = frameWith(1, 4098, 0);
    wrongMagic[0] = 'X';
    QByteArray huge = frameWith(1, 4098, 0);
    LittleEndian::setU32(huge, Frame::TotalLengthOffset, 0xFFFFFFFF);

    for (const auto &[name, bad] :
         {std::pair {"wrong magic", wrongMagic}, std::pair {"total 4 GiB", huge}}) {
        SCOPED_TRACE(name);
        FrameReader reader;
        EXPECT_FALSE(reader.feed(good + bad + good));
        EXPECT_TRUE(reader.failed());
        EXPECT_EQ(reader.pendingBytes(), 0);
        // The frame before the bad head is still good; nothing after it is.
        EXPECT_EQ(drain(reader), QList<QByteArray> {good});
        EXPECT_FALSE(reader.feed(good));
        EXPECT_FALSE(reader.hasFrame());
    }
}

TEST(FrameReader, AnnouncedLengthIsNotTrustedBeforeTheBytesArrive)
{
    // A head that promises the largest frame, followed by only a little data.
    const QByteArray big = frameWith(0, 4227, Frame::MaxPayloadSize);
    FrameReader reader;
    ASSERT_TRUE(reader.feed(QByteArrayView(big).first(Frame::HeadSize + 100)));
    EXPECT_FALSE(reader.hasFrame());
    EXPECT_EQ(reader.pendingBytes(), Frame::HeadSize + 100);
    EXPECT_TRUE(reader.takeFrame().isEmpty());
}
