#include "setup/SetupRecordMap.h"

#include <QSet>
#include <QString>

#include "tests/TestSupport.h"

#include <gtest/gtest.h>

using namespace setup;
using namespace Qt::StringLiterals;

namespace {

QString pairName(const SectionInfo &a, const SectionInfo &b)
{
    return QLatin1StringView(a.key) + u'/' + QLatin1StringView(b.key);
}

} // namespace

TEST(SetupRecordMap, BlocksTileTheRecordAfterTheHeader)
{
    int next = SetupRecordMap::HeaderSize;
    for (const BlockInfo &b : SetupRecordMap::Blocks) {
        EXPECT_EQ(b.offset, next) << b.name;
        next = b.end();
    }
    EXPECT_EQ(next, SetupRecordMap::RecordSize);
    EXPECT_EQ(SetupRecordMap::blockAt(31), nullptr);
    EXPECT_EQ(SetupRecordMap::blockAt(15148), nullptr);
    EXPECT_EQ(SetupRecordMap::blockAt(13876)->id, Block::Network);
    EXPECT_EQ(SetupRecordMap::blockAt(13875)->id, Block::Device);
}

TEST(SetupRecordMap, EverySectionLiesInsideItsBlock)
{
    for (const SectionInfo &s : SetupRecordMap::Sections) {
        const BlockInfo &b = SetupRecordMap::block(s.block);
        EXPECT_GE(s.offset, b.offset) << s.key;
        EXPECT_LE(s.end(), b.end()) << s.key;
        EXPECT_EQ(SetupRecordMap::blockAt(s.offset), &b) << s.key;
        EXPECT_EQ(&SetupRecordMap::section(s.id), &s) << s.key;
        EXPECT_EQ(SetupRecordMap::findSection(QLatin1StringView(s.key)), &s) << s.key;
    }
    EXPECT_EQ(SetupRecordMap::findSection(u"no-such-section"), nullptr);
}

// Pages that write a whole block resend their neighbours' bytes, and the
// e-mail and network event pages write the two halves of the notification
// section. Nothing else may
// overlap, or a save on one page would silently overwrite another.
TEST(SetupRecordMap, OverlapsAreExactlyTheWholeBlockAndNotificationOnes)
{
    const QSet<QString> expected {
        u"date-time/event-display"_s,
        u"dst/event-display"_s,
        u"osd/event-display"_s,
        u"event-display/interval"_s,
        u"record/schedule"_s,
        u"record/holiday"_s,
        u"stream/notification"_s,
        u"stream/email"_s,
        u"stream/network-event"_s,
        u"notification/email"_s,
        u"notification/network-event"_s,
    };
    QSet<QString> found;
    const auto &all = SetupRecordMap::Sections;
    for (std::size_t i = 0; i < all.size(); ++i) {
        for (std::size_t j = i + 1; j < all.size(); ++j) {
            if (all[i].offset < all[j].end() && all[j].offset < all[i].end())
                found.insert(pairName(all[i], all[j]));
        }
    }
    EXPECT_EQ(found, expected);
}

TEST(SetupRecordMap, PageWritesUseTheirCategoryOffsetAndLength)
{
    struct Triple
    {
        Section id;
        quint32 category;
        int offset;
        int length;
    };
    const Triple pages[] = {
        {Section::Camera, 5, 1300, 768},       {Section::Ptz, 5, 2068, 640},
        {Section::Motion, 5, 2708, 4500},      {Section::AlarmIn, 5, 7208, 388},
        {Section::AlarmOut, 5, 7596, 616},     {Section::VideoLoss, 5, 8212, 260},
        {Section::Rs232c, 11, 13792, 20},      {Section::Keyboard, 12, 13812, 28},
        {Section::RemoteControl, 0, 13840, 8}, {Section::SmartBackup, 0, 13848, 28},
        {Section::Users, 10, 32, 532},         {Section::DateTime, 7, 604, 32},
        {Section::DaylightSaving, 7, 636, 20}, {Section::Osd, 4, 656, 28},
        {Section::Interval, 0, 1268, 24},      {Section::RecordSetup, 0, 8472, 5312},
        {Section::Schedule, 0, 11032, 988},    {Section::Holiday, 0, 12020, 1764},
        {Section::Stream, 1, 13876, 1272},     {Section::Email, 0, 14152, 432},
    };
    for (const Triple &t : pages) {
        const SectionInfo &s = SetupRecordMap::section(t.id);
        EXPECT_EQ(s.category, t.category) << s.key;
        EXPECT_EQ(s.offset, t.offset) << s.key;
        EXPECT_EQ(s.length, t.length) << s.key;
    }

    int shared0 = 0, shared5 = 0, readable = 0;
    for (const SectionInfo &s : SetupRecordMap::Sections) {
        shared0 += s.category == 0;
        shared5 += s.category == 5;
        readable += s.readable;
    }
    EXPECT_EQ(shared0, 10);
    EXPECT_EQ(shared5, 6);
    EXPECT_EQ(readable, 4);
}

TEST(SetupRecordMap, SliceNeedsAWholeRecord)
{
    QByteArray record(SetupRecordMap::RecordSize, '\0');
    record[1300] = 'A';
    const QByteArrayView camera
        = SetupRecordMap::slice(record, SetupRecordMap::section(Section::Camera));
    ASSERT_EQ(camera.size(), 768);
    EXPECT_EQ(camera[0], 'A');
    EXPECT_TRUE(SetupRecordMap::slice(record.first(15147), SetupRecordMap::section(Section::Camera))
                    .isEmpty());
}
