// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/FieldWriter.h"

#include <algorithm>

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

void FieldWriter::set(const FieldInfo &field, quint32 value, int i, int j)
{
    write(check(field, true), value, i, j);
}

void FieldWriter::fill(const FieldInfo &field, quint32 value)
{
    const FieldInfo &f = check(field, true);
    for (int i = 0; i < f.count; ++i) {
        for (int j = 0; j < f.count2; ++j)
            write(f, value, i, j);
    }
}

void FieldWriter::setBytes(const FieldInfo &field, QByteArrayView value, int i, int j)
{
    const FieldInfo &f = check(field, false);
    if (!FieldTable::setBytes(m_record, f, value, i, j))
        qFatal("%s.%s has no element [%d][%d]", m_group.key, f.name, i, j);
}

const FieldInfo &FieldWriter::check(const FieldInfo &field, bool wantNumber) const
{
    if (std::find(m_group.fields.begin(), m_group.fields.end(), field) == m_group.fields.end())
        qFatal("%s has no field %s", m_group.key, field.name);
    if (field.isNumber() != wantNumber)
        qFatal("%s.%s is not a %s field", m_group.key, field.name, wantNumber ? "number" : "byte");
    return field;
}

void FieldWriter::write(const FieldInfo &field, quint32 value, int i, int j)
{
    if (value > maxValue(field.type))
        qFatal("%s.%s cannot hold %u", m_group.key, field.name, value);
    if (!FieldTable::setNumber(m_record, field, value, i, j))
        qFatal("%s.%s has no element [%d][%d]", m_group.key, field.name, i, j);
}

} // namespace setup
