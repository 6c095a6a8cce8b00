// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/RecordDump.h"

#include "setup/FactoryDefaults.h"
#include "setup/LittleEndian.h"

#include <QStringList>

#include "tests/TestSupport.h"

#include <gtest/gtest.h>

using namespace setup;
using nelib::LittleEndian;
using namespace Qt::StringLiterals;

namespace {

QStringList withPrefix(const QStringList &lines, const QString &prefix)
{
    QStringList out;
    for (const QString &line : lines) {
        if (line.startsWith(prefix))
            out.append(line);
    }
    return out;
}

} // namespace

// Long reserved stretches come in pieces of at most 16 bytes, so a change in
// one of them shows just that piece, and a piece never crosses into another
// section.
TEST(RecordDump, ShowsFieldsWithNamesAndReservedBytesAsHexInPieces)
{
    QByteArray r = FactoryDefaults::record();
    r[600] = char(0xAB);
    const QStringList lines = RecordDump::dump(r);
    const QString expected[] = {
        u"header.layout-version = 0x00010011"_s,
        u"header.software-version = 1.0.0.0"_s,
        // In the form the Configuration page and info show it.
        u"header.model-id = 1441793"_s,
        u"camera.title[0] = \"CAM 01\""_s,
        u"camera.audio[2] = 4 (Ch 03)"_s,
        u"camera.reserved[1320..1322] = 00 00 00"_s,
        u"users.rights[0] = 0x0003FFFF"_s,
        u"system.reserved[596..603] = 00 00 00 00 AB 00 00 00"_s,
        u"device.reserved[13784..13791] = 00 00 00 00 00 00 00 00"_s,
        u"record.quality[3][15] = 0xFF00 (Highest)"_s,
        u"motion.day-mask[15][23] = 0x3FFFFFFF"_s,
        u"stream.ip-address = 192.168.0.100"_s,
        u"event-display.reserved[1264..1267] = 00 00 00 00"_s,
        u"event-display.reserved[1292..1299] = 00 00 00 00 00 00 00 00"_s,
        u"interval.reserved[1280..1283] = 00 00 00 00"_s,
    };
    for (const QString &line : expected)
        EXPECT_TRUE(lines.contains(line)) << line.toStdString();
    EXPECT_LT(lines.indexOf(u"camera.title[0] = \"CAM 01\""_s),
              lines.indexOf(u"camera.title[1] = \"CAM 02\""_s));
    const QStringList users = withPrefix(lines, u"users.reserved"_s);
    ASSERT_EQ(users.size(), 22);
    EXPECT_TRUE(users.first().startsWith(u"users.reserved[216..231] = "_s));
    EXPECT_TRUE(users.last().startsWith(u"users.reserved[552..563] = "_s));
    EXPECT_TRUE(RecordDump::dump(r.first(100)).isEmpty());
}

TEST(RecordDump, SectionDumpIncludesTheSectionsItContains)
{
    const QByteArray r = FactoryDefaults::record();
    const QStringList record = RecordDump::dump(r, FieldTable::section(Section::RecordSetup));
    EXPECT_TRUE(record.contains(u"schedule.count = 1"_s));
    EXPECT_TRUE(record.contains(u"holiday.count = 2"_s));
    EXPECT_TRUE(withPrefix(record, u"camera."_s).isEmpty());

    const QStringList notification
        = RecordDump::dump(r, FieldTable::section(Section::Notification));
    EXPECT_EQ(notification, RecordDump::dump(r, FieldTable::section(Section::Email))
                                + RecordDump::dump(r, FieldTable::section(Section::NetworkEvent)));
    EXPECT_TRUE(withPrefix(notification, u"stream."_s).isEmpty());

    const QStringList header = RecordDump::dump(r, FieldTable::header());
    EXPECT_EQ(header.first(), u"header.layout-version = 0x00010011"_s);
    EXPECT_TRUE(header.last().startsWith(u"header.reserved[20..31]"_s));
}

TEST(RecordDump, TextIsQuotedWithEscapes)
{
    const FieldInfo &title = *FieldTable::findField(FieldTable::section(Section::Camera), u"title");
    QByteArray r = FactoryDefaults::record();
    const struct
    {
        QByteArray stored;
        QString shown;
    } cases[] = {
        {"", u"\"\""_s},
        {"Gate \"A\"", u"\"Gate \\\"A\\\"\""_s},
        {"C:\\cam", u"\"C:\\\\cam\""_s},
        {"Caf\xE9\x01", u"\"Caf\\xE9\\x01\""_s},
        {QByteArray("AB\0C", 4), u"\"AB\\x00C\""_s}, // bytes after the terminator still show
        {"12345678901234567890", u"\"12345678901234567890\""_s},
    };
    for (const auto &c : cases) {
        ASSERT_TRUE(FieldTable::setBytes(r, title, c.stored, 5));
        EXPECT_EQ(RecordDump::value(r, title, 5), c.shown);
    }
}

TEST(RecordDump, DiffListsExactlyTheChangedElements)
{
    const QByteArray before = FactoryDefaults::record();
    EXPECT_TRUE(RecordDump::diff(before, before).isEmpty());

    QByteArray after = before;
    LittleEndian::setText(after, 1300 + 48 * 4, 20, "Door");
    EXPECT_EQ(RecordDump::diff(before, after),
              QStringList {u"camera.title[4] = \"CAM 05\" -> \"Door\""_s});

    LittleEndian::setU16(after, 8472 + 640 + 40 * 2 + 20, 0xFF03);
    after[13785] = 1;
    EXPECT_EQ(RecordDump::diff(before, after),
              (QStringList {u"camera.title[4] = \"CAM 05\" -> \"Door\""_s,
                            u"record.quality[1][2] = 0xFF01 (High) -> 0xFF03 (Low)"_s,
                            u"device.reserved[13784..13791] = 00 00 00 00 00 00 00 00 -> "
                            u"00 01 00 00 00 00 00 00"_s}));
    EXPECT_TRUE(RecordDump::diff(before, after, FieldTable::section(Section::Email)).isEmpty());
    EXPECT_EQ(RecordDump::diff(before, after, FieldTable::section(Section::Camera)).size(), 1);
    EXPECT_TRUE(RecordDump::diff(before, after.first(15000)).isEmpty());
}
