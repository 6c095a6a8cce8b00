// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/FieldWriter.h"

#include <QString>

namespace setup {

namespace {

quint32 maxValue(FieldType type)
{
    switch (type) {
    case FieldType::U8:
        return 0xFF;
    case FieldType::U16:
        return 0xFFFF;
    default:
        return 0xFFFFFFFF;
    }
}

} // namespace

FieldWriter::FieldWriter(QByteArray &record, const FieldGroup &group)
    : m_record(record)
    , m_group(group)
{
    if (record.size() != SetupRecordMap::RecordSize)
        qFatal("FieldWriter needs a whole record, got %lld bytes", qlonglong(record.size()));
}

FieldWriter::FieldWriter(QByteArray &record, Section section)
    : FieldWriter(record, FieldTable::section(section))
{ }

void FieldWriter::set(QAnyStringView field, quint32 value, int i, int j)
{
    write(find(field, true), value, i, j);
}

void FieldWriter::fill(QAnyStringView field, quint32 value)
{
    const FieldInfo &f = find(field, true);
    for (int i = 0; i < f.count; ++i) {
        for (int j = 0; j < f.count2; ++j)
            write(f, value, i, j);
    }
}

void FieldWriter::setBytes(QAnyStringView field, QByteArrayView value, int i, int j)
{
    const FieldInfo &f = find(field, false);
    if (!FieldTable::setBytes(m_record, f, value, i, j))
        qFatal("%s.%s has no element [%d][%d]", m_group.key, f.name, i, j);
}

const FieldInfo &FieldWriter::find(QAnyStringView name, bool wantNumber) const
{
    const FieldInfo *f = FieldTable::findField(m_group, name);
    if (!f)
        qFatal("%s has no field %s", m_group.key, qPrintable(name.toString()));
    if (f->isNumber() != wantNumber)
        qFatal("%s.%s is not a %s field", m_group.key, f->name, wantNumber ? "number" : "byte");
    return *f;
}

void FieldWriter::write(const FieldInfo &field, quint32 value, int i, int j)
{
    if (value > maxValue(field.type))
        qFatal("%s.%s cannot hold %u", m_group.key, field.name, value);
    if (!FieldTable::setNumber(m_record, field, value, i, j))
        qFatal("%s.%s has no element [%d][%d]", m_group.key, field.name, i, j);
}

} // namespace setup
