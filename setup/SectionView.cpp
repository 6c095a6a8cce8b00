// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/SectionView.h"

#include "setup/LittleEndian.h"

using nelib::LittleEndian;

namespace setup {

SectionView SectionView::of(QByteArrayView record, Section id)
{
    const SectionInfo &s = SetupRecordMap::section(id);
    return {LittleEndian::fits(record.size(), s.offset, s.length)
                ? record.sliced(s.offset, s.length)
                : QByteArrayView(),
            s.offset};
}

int SectionView::at(const FieldInfo &field, int i, int j) const
{
    if (!field.hasElement(i, j))
        return -1;
    const int offset = field.elementOffset(i, j) - m_base;
    return offset >= 0 && LittleEndian::fits(m_bytes.size(), offset, field.width) ? offset : -1;
}

quint32 SectionView::number(const FieldInfo &field, int i, int j) const
{
    const int offset = at(field, i, j);
    if (offset < 0)
        return 0;
    switch (field.type) {
    case FieldType::U8:
        return LittleEndian::u8(m_bytes, offset);
    case FieldType::U16:
        return LittleEndian::u16(m_bytes, offset);
    case FieldType::U32:
    case FieldType::I32:
        return LittleEndian::u32(m_bytes, offset);
    case FieldType::Text:
    case FieldType::Bytes:
        break;
    }
    return 0;
}

QByteArrayView SectionView::bytes(const FieldInfo &field, int i, int j) const
{
    const int offset = at(field, i, j);
    return offset < 0 ? QByteArrayView() : m_bytes.sliced(offset, field.width);
}

QByteArray SectionView::text(const FieldInfo &field, int i, int j) const
{
    const int offset = at(field, i, j);
    return offset < 0 ? QByteArray() : LittleEndian::text(m_bytes, offset, field.width);
}

} // namespace setup
