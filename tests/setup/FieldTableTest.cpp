// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/FieldTable.h"
#include "setup/Fields.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

#include "tests/TestSupport.h"

#include <gtest/gtest.h>

using namespace setup;
using namespace Qt::StringLiterals;

namespace {

QString nameOf(const FieldGroup &g, const FieldInfo &f)
{
    return QString::fromLatin1(g.key) + u'.' + QLatin1StringView(f.name);
}

// The smallest group that holds `offset`: the section a byte really belongs to.
const FieldGroup *innermost(int offset)
{
    const FieldGroup *found = nullptr;
    for (const FieldGroup &g : FieldTable::groups()) {
        if (offset >= g.offset && offset < g.end() && (!found || g.length < found->length))
            found = &g;
    }
    return found;
}

} // namespace

// Every element lies inside its own section and in no section nested inside
// it, no byte is described twice, shapes fit their types, names are unique.
TEST(FieldTable, FieldsAreConsistent)
{
    QList<QString> owner(SetupRecordMap::RecordSize);
    for (const FieldGroup &g : FieldTable::groups()) {
        QSet<QString> names;
        for (const FieldInfo &f : g.fields) {
            const QString name = nameOf(g, f);
            SCOPED_TRACE(name.toStdString());
            EXPECT_FALSE(names.contains(name));
            names.insert(name);
            EXPECT_GE(f.count, 1);
            EXPECT_GE(f.count2, 1);
            if (f.isNumber()) {
                EXPECT_EQ(f.width, f.type == FieldType::U8 ? 1 : f.type == FieldType::U16 ? 2 : 4);
            } else {
                EXPECT_GT(f.width, 0);
            }
            for (int i = 0; i < f.count; ++i) {
                for (int j = 0; j < f.count2; ++j) {
                    const int at = f.elementOffset(i, j);
                    ASSERT_GE(at, g.offset);
                    ASSERT_LE(at + f.width, g.end());
                    EXPECT_EQ(innermost(at), &g) << "element at " << at;
                    for (int b = at; b < at + f.width; ++b) {
                        EXPECT_TRUE(owner[b].isEmpty())
                            << "byte " << b << " also in " << owner[b].toStdString();
                        owner[b] = name;
                    }
                }
            }
        }
    }
}

// The layouts the recorder fixes, checked against their known offsets where
// a stride or a nesting could go wrong; the last element of an array also
// pins its count.
TEST(FieldTable, FixedLayoutsSitAtTheirRecordOffsets)
{
    struct Expect
    {
        FieldInfo field;
        int i, j, offset, width;
    };
    const Expect cases[] = {
        {fields::users::password, 10, 0, 32 + 12 * 10, 12},
        {fields::users::rights, 10, 0, 172 + 4 * 10, 4},
        {fields::dst::endHour, 0, 0, 654, 2},
        {fields::osd::marginTop, 0, 0, 676, 1},
        {fields::interval::timeOut, 0, 0, 1290, 2},
        {fields::camera::covert, 3, 0, 1300 + 48 * 3 + 23, 1},
        {fields::camera::audio, 15, 0, 1300 + 48 * 15 + 32, 1},
        {fields::ptz::controlId, 1, 0, 2068 + 40 + 8, 4},
        {fields::ptz::zoomSpeed, 15, 0, 2068 + 40 * 15 + 38, 1},
        {fields::motion::nightStartMinute, 15, 0, 2708 + 4 * 15 + 3, 1},
        {fields::alarmIn::dwell, 15, 0, 7212 + 24 * 15 + 12, 4},
        {fields::alarmIn::alarmOut, 1, 0, 7212 + 24 + 20, 4},
        {fields::alarmOut::endMinute, 20, 0, 7792 + 20 * 20 + 10, 2},
        {fields::alarmOut::alarmOut, 20, 0, 7792 + 20 * 20 + 16, 4},
        {fields::videoLoss::beep, 15, 0, 8220 + 16 * 15, 4},
        {fields::videoLoss::alarmOut, 15, 0, 8228 + 16 * 15, 4},
        {fields::record::dwell, 2, 7, 8472 + 640 * 2 + 40 * 7 + 36, 4},
        {fields::schedule::channels, 39, 0, 11036 + 24 * 39 + 16, 4},
        {fields::holiday::weekday, 219, 0, 12024 + 8 * 219 + 6, 1},
    };
    for (const Expect &e : cases) {
        const FieldInfo &f = e.field;
        SCOPED_TRACE(f.name);
        EXPECT_TRUE(f.hasElement(e.i, e.j));
        EXPECT_EQ(f.elementOffset(e.i, e.j), e.offset);
        EXPECT_EQ(f.width, e.width);
    }
}

TEST(FieldTable, ElementAccessStaysInsideFieldAndRecord)
{
    QByteArray record(SetupRecordMap::RecordSize, '\0');
    const FieldInfo &covert = fields::camera::covert;
    const FieldInfo &title = fields::camera::title;
    const FieldInfo &offset = fields::dateTime::utcOffset;

    EXPECT_TRUE(FieldTable::setNumber(record, covert, 1, 15));
    EXPECT_EQ(record[1300 + 48 * 15 + 23], 1);
    EXPECT_FALSE(FieldTable::setNumber(record, covert, 1, 16));
    EXPECT_FALSE(FieldTable::setNumber(record, covert, 1, 0, 1));
    EXPECT_EQ(FieldTable::number(record, covert, -1), 0u);
    EXPECT_FALSE(FieldTable::setNumber(record, title, 1));

    EXPECT_TRUE(FieldTable::setNumber(record, offset, quint32(-330)));
    EXPECT_EQ(qint32(FieldTable::number(record, offset)), -330);

    EXPECT_TRUE(FieldTable::setBytes(record, title, "twenty-one characters", 2));
    EXPECT_EQ(FieldTable::text(record, title, 2), QByteArray("twenty-one character"));
    EXPECT_EQ(record[1300 + 48 * 2 + 20], 0) << "a text write spilled into the next field";
    EXPECT_TRUE(FieldTable::setBytes(record, title, "ab", 2));
    EXPECT_EQ(FieldTable::bytes(record, title, 2),
              QByteArrayView("ab\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 20));

    const QByteArray shortRecord = record.first(1300 + 48 * 15);
    EXPECT_EQ(FieldTable::number(shortRecord, covert, 15), 0u);
    EXPECT_TRUE(FieldTable::bytes(shortRecord, title, 15).isEmpty());
}

// People who write their own recorder read the layout document, so each
// group's chapter ("### `key` ...") must name every field of that group, and
// the field's row must give the record offset of its first element (the
// cells before the name hold the offsets, written as 1,300).
TEST(FieldTable, LayoutDocumentNamesEveryFieldAtItsOffset)
{
    const QString doc = QString::fromUtf8(
        testsupport::readFile(testsupport::sourceDir() + QStringLiteral("/docs/record-layout.md")));
    QHash<QString, QString> chapters;
    for (const QString &chapter : doc.split(QStringLiteral("\n### "))) {
        if (chapter.startsWith(u'`'))
            chapters.insert(chapter.section(u'`', 1, 1), chapter);
    }
    for (const FieldGroup &g : FieldTable::groups()) {
        const QString key = QString::fromLatin1(g.key);
        ASSERT_TRUE(chapters.contains(key)) << g.key;
        for (const FieldInfo &f : g.fields) {
            const QString quoted = u'`' + QString::fromLatin1(f.name) + u'`';
            const QString &chapter = chapters[key];
            const qsizetype at = chapter.indexOf(u"| "_s + quoted + u" |"_s);
            ASSERT_GE(at, 0) << nameOf(g, f).toStdString();
            const qsizetype row = chapter.lastIndexOf(u'\n', at) + 1;
            QStringList offsets = chapter.mid(row, at - row).split(u'|', Qt::SkipEmptyParts);
            for (QString &cell : offsets)
                cell = cell.trimmed().remove(u',');
            EXPECT_TRUE(offsets.contains(QString::number(f.offset)))
                << nameOf(g, f).toStdString() << " at " << f.offset;
        }
    }
}
