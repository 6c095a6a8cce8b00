// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/FactoryDefaults.h"

#include "setup/FieldTable.h"
#include "setup/FieldWriter.h"
#include "setup/Fields.h"
#include "setup/LittleEndian.h"

#include "tests/TestSupport.h"

#include <QList>
#include <QString>

#include <gtest/gtest.h>

#include <algorithm>

using namespace setup;
using nelib::LittleEndian;

namespace {

// Every element of the field, in index order.
QList<quint32> values(QByteArrayView record, const FieldInfo &f)
{
    QList<quint32> out;
    for (int i = 0; i < f.count; ++i) {
        for (int j = 0; j < f.count2; ++j)
            out.append(FieldTable::number(record, f, i, j));
    }
    return out;
}

// A time of entry i as minutes since midnight.
quint32 minuteOfDay(QByteArrayView record, const FieldInfo &hour, const FieldInfo &minute, int i)
{
    return FieldTable::number(record, hour, i) * 60 + FieldTable::number(record, minute, i);
}

const QByteArray &defaults()
{
    static const QByteArray record = FactoryDefaults::record();
    return record;
}

} // namespace

TEST(FactoryDefaults, HeaderCarriesLayoutVersionAndTheGivenIdentity)
{
    const QByteArray &r = defaults();
    EXPECT_EQ(LittleEndian::u32(r, 0), 0x00010011u);
    EXPECT_EQ(LittleEndian::u32(r, 16), FactoryDefaults::ModelId);
    EXPECT_EQ(r.sliced(4, 4), QByteArray("\x01\x00\x00\x00", 4));

    const QByteArray other = FactoryDefaults::record(0xCAFE0042, {2, 10, 0, 7});
    EXPECT_EQ(LittleEndian::u32(other, 16), 0xCAFE0042u);
    EXPECT_EQ(other.sliced(4, 4), QByteArray("\x02\x0A\x00\x07", 4));
    EXPECT_EQ(other.sliced(32), r.sliced(32)) << "the identity must change the header only";
}

TEST(FactoryDefaults, AccountsHaveEmptyPasswordsAndNetworkAccess)
{
    const QByteArray &r = defaults();
    EXPECT_TRUE(std::all_of(r.begin() + 32, r.begin() + 32 + 132, [](char c) { return c == 0; }));
    EXPECT_EQ(LittleEndian::u32(r, 172), 0x3FFFFu) << "Admin holds every right";
    for (int k = 1; k < 11; ++k) {
        const quint32 rights = LittleEndian::u32(r, 172 + 4 * k);
        EXPECT_TRUE(rights & (1u << 8)) << "account " << k << " cannot log in over the network";
        EXPECT_EQ(rights & ~0x3FFFFu, 0u) << "account " << k;
        EXPECT_FALSE(rights & (1u << 17)) << "only Admin may change accounts";
    }
}

// Values every page must be able to show: a name where the field names its
// values, else a number inside the field's range.
TEST(FactoryDefaults, ValuesLieInTheirPagesRanges)
{
    const QByteArray &r = defaults();
    for (const FieldGroup &g : FieldTable::groups()) {
        for (const FieldInfo &f : g.fields) {
            for (int i = 0; f.isNumber() && i < f.count; ++i) {
                for (int j = 0; j < f.count2; ++j) {
                    const quint32 raw = FieldTable::number(r, f, i, j);
                    const qint64 v = f.type == FieldType::I32 ? qint64(qint32(raw)) : qint64(raw);
                    const bool named = f.valueName(raw);
                    EXPECT_TRUE(f.valueNames.empty() ? v >= f.lowest() && v <= f.highest() : named)
                        << g.key << "." << f.name << "[" << i << "][" << j << "] = " << v;
                }
            }
        }
    }
    // Ranges only the pages know.
    struct Range
    {
        FieldInfo field;
        quint32 min, max;
    };
    const Range ranges[] = {
        {fields::motion::dayMask, 0x3FFFFFFF, 0x3FFFFFFF},
        {fields::record::frameRate, 0, 5},
        {fields::holiday::count, 0, 220},
    };
    for (const Range &range : ranges) {
        SCOPED_TRACE(range.field.name);
        for (quint32 v : values(r, range.field)) {
            EXPECT_GE(v, range.min);
            EXPECT_LE(v, range.max);
        }
    }
    EXPECT_EQ(values(r, fields::record::frameRate), values(r, fields::record::frameRateCopy));
    EXPECT_EQ(values(r, fields::record::quality), values(r, fields::record::qualityCopy));

    const QList<quint32> dayHour = values(r, fields::motion::dayStartHour);
    const QList<quint32> nightHour = values(r, fields::motion::nightStartHour);
    for (int c = 0; c < 16; ++c)
        EXPECT_LT(dayHour[c], nightHour[c]) << "motion time rule, channel " << c + 1;

    // Each used schedule entry passes the page's time check; so does every
    // alarm-out line, whether in use or not.
    using namespace fields;
    for (quint32 i = 0; i < FieldTable::number(r, schedule::count); ++i)
        EXPECT_LT(minuteOfDay(r, schedule::startHour, schedule::startMinute, int(i)),
                  minuteOfDay(r, schedule::endHour, schedule::endMinute, int(i)));
    for (int l = 0; l < 21; ++l)
        EXPECT_LT(minuteOfDay(r, alarmOut::startHour, alarmOut::startMinute, l),
                  minuteOfDay(r, alarmOut::endHour, alarmOut::endMinute, l));
}

TEST(FactoryDefaults, DefaultFileBesideTheExecutablesIsTheInCodeRecord)
{
    const QByteArray file
        = testsupport::readFile(testsupport::dataDir() + QStringLiteral("/DEFDVRSETUP.DAT"));
    EXPECT_EQ(file, defaults());
}

TEST(FactoryDefaultsDeathTest, WriterRefusesNamesAndValuesTheTableDoesNotHave)
{
    QByteArray r = defaults();
    FieldWriter camera(r, Section::Camera);
    EXPECT_DEATH(camera.set(fields::audio::outputVolume, 1), "camera has no field output-volume");
    EXPECT_DEATH(camera.set(fields::camera::covert, 256), "cannot hold 256");
    EXPECT_DEATH(camera.set(fields::camera::covert, 1, 16), "no element");
    EXPECT_DEATH(camera.set(fields::camera::title, 1), "not a number field");
}
