#include "session/FrameReader.h"

#include "session/Frame.h"
#include "setup/LittleEndian.h"
#include "tests/TestSupport.h"

#include <QList>

#include <gtest/gtest.h>

using session::Frame;
using session::FrameReader;

namespace {

QByteArray frameWith(quint32 sequence, qint32 command, qsizetype payloadSize)
{
    QByteArray payload(payloadSize, '\0');
    for (qsizetype i = 0; i < payloadSize; ++i)
        payload[i] = char(i * 7 + sequence);
    PACKET_PARAM param;
    param.words[0] = sequence;
    return Frame::encode(sequence, command, param, payload);
}

QList<QByteArray> drain(FrameReader &reader)
{
    QList<QByteArray> frames;
    while (reader.hasFrame())
        frames.append(reader.takeFrame());
    return frames;
}

const QList<QByteArray> &sampleFrames()
{
    static const QList<QByteArray> frames {frameWith(0, 0x0F01, 0), frameWith(1, 4098, 0),
                                           frameWith(2, 4226, 150), frameWith(3, 4609, 1)};
    return frames;
}

} // namespace

// Covers whole-stream feeds (both cuts at 0) and frames glued together.
TEST(FrameReader, YieldsTheSameFramesWhereverTheStreamIsSplit)
{
    const QByteArray stream = sampleFrames().join();
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
            ASSERT_EQ(frames, sampleFrames()) << "split at " << first << " and " << second;
            EXPECT_EQ(reader.pendingBytes(), 0);
        }
    }
}

TEST(FrameReader, MalformedHeadStopsTheStreamForGood)
{
    const QByteArray good = frameWith(0, 4098, 3);
    QByteArray wrongMagic = frameWith(1, 4098, 0);
    wrongMagic[0] = 'X';
    QByteArray tooShort = frameWith(1, 4098, 0);
    nelib::LittleEndian::setU32(tooShort, Frame::TotalLengthOffset, 59);
    QByteArray tooLong = frameWith(1, 4098, 0);
    nelib::LittleEndian::setU32(tooLong, Frame::TotalLengthOffset, Frame::MaxSize + 1);
    QByteArray huge = frameWith(1, 4098, 0);
    nelib::LittleEndian::setU32(huge, Frame::TotalLengthOffset, 0xFFFFFFFF);

    for (const auto &[name, bad] :
         {std::pair {"wrong magic", wrongMagic}, std::pair {"total below 60", tooShort},
          std::pair {"total above the cap", tooLong}, std::pair {"total 4 GiB", huge}}) {
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
