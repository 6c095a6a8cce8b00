// SPDX-License-Identifier: GPL-3.0-or-later

#include "firmware/UpdatePlan.h"
#include "firmware/RecorderVersions.h"

#include <gtest/gtest.h>

using firmware::FirmwarePackage;
using firmware::FirmwareVersion;
using firmware::RecorderVersions;
using firmware::UpdatePlan;

namespace {

constexpr FirmwareVersion v(quint8 a, quint8 b, quint8 c, quint8 d)
{
    return FirmwareVersion {{a, b, c, d}};
}

// A recorder at 1.0.0.0 whose known component slot i holds 1.(i+1).0.0, so
// that a component compared with the wrong slot shows.
RecorderVersions recorderAtOne()
{
    RecorderVersions recorder;
    recorder.overall = v(1, 0, 0, 0);
    for (std::size_t i = 0; i < recorder.components.size(); ++i)
        recorder.components[i] = v(1, quint8(i + 1), 0, 0);
    recorder.model = "DVR";
    return recorder;
}

} // namespace

// Comparison is the defaulted one, part A first; the plan's cases show it.
TEST(FirmwareVersion, ParsesFourDottedBytesOnly)
{
    EXPECT_EQ(FirmwareVersion::parse(u"1.2.3.255"), v(1, 2, 3, 255));
    for (const char16_t *bad : {u"1.2.3", u"1.2.3.4.5", u"1.2.3.256", u"1.2.x.4", u""})
        EXPECT_FALSE(FirmwareVersion::parse(bad)) << QString::fromUtf16(bad).toStdString();
}

TEST(RecorderVersions, ReadsTheShortAndTheLongFormOnly)
{
    const RecorderVersions recorder = recorderAtOne();
    QByteArray data = recorder.toBytes();
    EXPECT_EQ(data.first(8), QByteArray("\x01\0\0\0\x01\x01\0\0", 8));
    EXPECT_EQ(data.sliced(32, 4), QByteArray("DVR\0", 4));

    for (const QByteArray &form : {data, data + QByteArray(204, 'r')}) {
        const auto read = RecorderVersions::fromBytes(form);
        ASSERT_TRUE(read) << form.size();
        EXPECT_EQ(read->overall, recorder.overall);
        EXPECT_EQ(read->components, recorder.components);
    }
    for (const qsizetype size : {0, 53, 55, 257, 259})
        EXPECT_FALSE(RecorderVersions::fromBytes(QByteArray(size, '\1'))) << size;
}

TEST(UpdatePlan, OlderRecorderTakesOnlyNewerKnownComponentsAndEveryUnknownOne)
{
    const struct
    {
        quint32 type;
        FirmwareVersion version;
        bool sent;
    } cases[] = {
        {2, v(1, 1, 0, 1), true}, // slot 0 holds 1.1.0.0
        {2, v(1, 1, 0, 0), false},          {2, v(1, 0, 9, 9), false},
        {0x00010002, v(1, 1, 0, 0), false}, // known by its low 16 bits
        {0x00020002, v(1, 1, 0, 1), true},  {8, v(1, 2, 0, 0), false},
        {8, v(1, 3, 0, 0), true},           {0xABCD0010, v(1, 3, 0, 0), false}, // 16
        {0xABCD0010, v(1, 3, 0, 1), true},  {0xF001, v(1, 4, 0, 0), false},
        {0x1F001, v(0, 0, 0, 0), true}, // not 0xF001: only 2, 8 and 16 drop the high half
        {0xF004, v(1, 5, 0, 0), false},     {0xF004, v(1, 6, 0, 0), true},
        {0x20000, v(1, 6, 0, 0), false},    {0xF0010000, v(1, 7, 0, 0), false},
        {0xF0010000, v(1, 7, 1, 0), true},  {0x1234, v(0, 0, 0, 0), true}, // unknown
        {0, v(0, 0, 0, 0), true},
    };
    std::vector<FirmwarePackage::Component> components;
    quint64 newerTotal = 0;
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        // The last one's size shows that the total does not wrap at 32 bits.
        const quint32 size = i + 1 < std::size(cases) ? quint32(100 + i) : 0xFFFFFFFF;
        components.push_back({cases[i].type, cases[i].version, size, 0});
        newerTotal += cases[i].sent ? size : 0;
    }
    const quint64 wholeTotal = 100 * 17 + 136 + 0xFFFFFFFFull;

    // A recorder at or above the package's version takes every component.
    for (const FirmwareVersion package : {v(1, 0, 0, 1), v(1, 0, 0, 0), v(0, 255, 255, 255)}) {
        SCOPED_TRACE(package.toString().toStdString());
        const bool forced = package != v(1, 0, 0, 1);
        const UpdatePlan plan = UpdatePlan::make(package, components, recorderAtOne());
        EXPECT_EQ(plan.forced, forced);
        ASSERT_EQ(plan.send.size(), std::size(cases));
        for (std::size_t i = 0; i < std::size(cases); ++i)
            EXPECT_EQ(plan.send[i], forced || cases[i].sent)
                << "type 0x" << std::hex << cases[i].type << " version "
                << cases[i].version.toString().toStdString();
        EXPECT_EQ(plan.totalBytes, forced ? wholeTotal : newerTotal);
    }
}
