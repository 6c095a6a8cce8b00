// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/FieldValueParser.h"
#include "i18n/CodePage.h"
#include "setup/Fields.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using setup::FieldInfo;
namespace fields = setup::fields;

TEST(FieldValueParser, ParsesByTypeNamesRangeAndBitNames)
{
    const nelib::CodePage codePage;
    const cli::FieldValueParser parser(codePage);
    constexpr FieldInfo ranged = FieldInfo::u8("dwell", 0).range(1, 99);
    constexpr FieldInfo namedRange
        = FieldInfo::u32("remote-id", 0).named(fields::values::remoteId).range(1, 99);
    struct Case
    {
        FieldInfo field;
        QString value;
        QByteArray bytes; // hex; empty when the value is refused
        QString error = {};
    };
    const Case cases[] = {
        {fields::camera::covert, u"ON"_s, "01"},
        {fields::camera::covert, u"1"_s, "01"},
        {fields::camera::covert, u"7"_s, {}, u"not one of Off, On"_s},
        {fields::record::quality, u"0xff02"_s, "02ff"},
        {fields::osd::timeOut, u"Off"_s, "ffffffff"},
        {fields::dateTime::utcOffset, u"-720"_s, "30fdffff"},
        {fields::interval::sequence, u"3x"_s, {}, u"'3x' is not a number"_s},
        {fields::alarmIn::dwell, u"0x10"_s, "10000000"},
        {fields::stream::remotePort, u"70000"_s, {}, u"out of range (1 to 65535)"_s},
        {ranged, u"99"_s, "63"},
        {ranged, u"0"_s, {}, u"out of range (1 to 99)"_s},
        {namedRange, u"all"_s, "00000000"},
        {namedRange, u"42"_s, "2a000000"},
        {fields::videoLoss::alarmOut, u"3"_s, "04000000"},
        {fields::videoLoss::alarmOut, u"1, 16"_s, "01800000"},
        {fields::videoLoss::alarmOut, u"0x3"_s, "03000000"},
        {fields::smartBackup::days, u"Monday"_s, "02000000"},
        {fields::stream::gateway, u"192.168.1.254"_s, "c0a801fe"},
        {fields::stream::gateway, u"192.168.1.256"_s, {}, u"4 numbers from 0 to 255"_s},
        {fields::header::softwareVersion, u"1.2.3"_s, {}, u"4 numbers"_s},
        {fields::stream::ddnsHost, u""_s, QByteArray(96, '0')},
        {fields::camera::title, u"Caf\u00e9"_s, "436166e9" + QByteArray(32, '0')},
        {fields::camera::title, u"\"\\x00A\\\\\""_s, "00415c" + QByteArray(34, '0')},
        {fields::camera::title, u"\"\\q\""_s, {}, u"bad escape"_s},
        {fields::camera::title, u"\u4e2d"_s, {}, u"cannot be written in code page"_s},
        {fields::users::password, u"1234567890123"_s, {}, u"13 bytes long; at most 12 fit"_s},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(std::string(c.field.name) + " = " + c.value.toStdString());
        QString error;
        const auto bytes = parser.parse(c.field, c.value, &error);
        EXPECT_EQ(bytes.value_or(QByteArray()).toHex(), c.bytes);
        EXPECT_TRUE(error.contains(c.error)) << error.toStdString();
    }
}
