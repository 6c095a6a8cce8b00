#include "setup/FactoryDefaults.h"

#include "setup/FieldTable.h"
#include "setup/FieldWriter.h"
#include "setup/LittleEndian.h"

#include "tests/TestSupport.h"

#include <QList>
#include <QString>

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

using namespace setup;
using nelib::LittleEndian;

namespace {

const FieldInfo &field(const char *group, const char *name)
{
    const FieldGroup *g = FieldTable::findGroup(group);
    const FieldInfo *f = g ? FieldTable::findField(*g, name) : nullptr;
    if (!f)
        throw std::runtime_error(std::string("no field ") + group + "." + name);
    return *f;
}

// Every element of the field, in index order.
QList<quint32> values(QByteArrayView record, const char *group, const char *name)
{
    const FieldInfo &f = field(group, name);
    QList<quint32> out;
    for (int i = 0; i < f.count; ++i) {
        for (int j = 0; j < f.count2; ++j)
            out.append(FieldTable::number(record, f, i, j));
    }
    return out;
}

// "start" or "end" time of entry i as minutes since midnight.
quint32 minuteOfDay(QByteArrayView record, const char *group, const std::string &which, int i)
{
    return FieldTable::number(record, field(group, (which + "-hour").c_str()), i) * 60
           + FieldTable::number(record, field(group, (which + "-minute").c_str()), i);
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
        const char *group, *name;
        quint32 min, max;
    };
    const Range ranges[] = {
        {"motion", "day-mask", 0x3FFFFFFF, 0x3FFFFFFF},
        {"record", "frame-rate", 0, 5},
        {"holiday", "count", 0, 220},
    };
    for (const Range &range : ranges) {
        SCOPED_TRACE(std::string(range.group) + "." + range.name);
        for (quint32 v : values(r, range.group, range.name)) {
            EXPECT_GE(v, range.min);
            EXPECT_LE(v, range.max);
        }
    }
    EXPECT_EQ(values(r, "record", "frame-rate"), values(r, "record", "frame-rate-copy"));
    EXPECT_EQ(values(r, "record", "quality"), values(r, "record", "quality-copy"));

    const QList<quint32> dayHour = values(r, "motion", "day-start-hour");
    const QList<quint32> nightHour = values(r, "motion", "night-start-hour");
    for (int c = 0; c < 16; ++c)
        EXPECT_LT(dayHour[c], nightHour[c]) << "motion time rule, channel " << c + 1;

    // Each used schedule entry passes the page's time check; so does every
    // alarm-out line, whether in use or not.
    const int entries = int(values(r, "schedule", "count")[0]);
    for (int i = 0; i < entries; ++i)
        EXPECT_LT(minuteOfDay(r, "schedule", "start", i), minuteOfDay(r, "schedule", "end", i));
    for (int l = 0; l < 21; ++l)
        EXPECT_LT(minuteOfDay(r, "alarm-out", "start", l), minuteOfDay(r, "alarm-out", "end", l));
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
    EXPECT_DEATH(camera.set("no-such-field", 1), "camera has no field no-such-field");
    EXPECT_DEATH(camera.set("covert", 256), "cannot hold 256");
    EXPECT_DEATH(camera.set("covert", 1, 16), "no element");
    EXPECT_DEATH(camera.set("title", 1), "not a number field");
}
