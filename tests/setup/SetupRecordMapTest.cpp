// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/SetupRecordMap.h"

#include <QSet>
#include <QString>

#include "tests/TestSupport.h"

#include <gtest/gtest.h>

using namespace setup;
using namespace Qt::StringLiterals;

// Tiling and nesting are checked at compile time; these are the look-ups.
TEST(SetupRecordMap, LookUpsFindBlocksAndSectionsByOffsetAndKey)
{
    EXPECT_EQ(SetupRecordMap::blockAt(31), nullptr);
    EXPECT_EQ(SetupRecordMap::blockAt(15148), nullptr);
    EXPECT_EQ(SetupRecordMap::blockAt(13876)->id, Block::Network);
    EXPECT_EQ(SetupRecordMap::blockAt(13875)->id, Block::Device);
    for (const SectionInfo &s : SetupRecordMap::Sections) {
        EXPECT_EQ(SetupRecordMap::blockAt(s.offset)->id, s.block) << s.key;
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
    const QSet<QString> expected {u"date-time/event-display"_s,   u"dst/event-display"_s,
                                  u"osd/event-display"_s,         u"event-display/interval"_s,
                                  u"record/schedule"_s,           u"record/holiday"_s,
                                  u"stream/notification"_s,       u"stream/email"_s,
                                  u"stream/network-event"_s,      u"notification/email"_s,
                                  u"notification/network-event"_s};
    QSet<QString> found;
    const auto &all = SetupRecordMap::Sections;
    for (std::size_t i = 0; i < all.size(); ++i) {
        for (std::size_t j = i + 1; j < all.size(); ++j) {
            if (all[i].offset < all[j].end() && all[j].offset < all[i].end())
                found.insert(QLatin1StringView(all[i].key) + u'/' + QLatin1StringView(all[j].key));
        }
    }
    EXPECT_EQ(found, expected);
}
