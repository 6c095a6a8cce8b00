// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/SectionEdit.h"

#include "setup/LittleEndian.h"

using nelib::LittleEndian;

namespace setup {

bool SectionEdit::setNumber(const FieldInfo &field, quint32 value, int i, int j)
{
    const int offset = view().at(field, i, j);
    if (offset < 0)
        return false;
    switch (field.type) {
    case FieldType::U8:
        return LittleEndian::setU8(m_bytes, offset, quint8(value));
    case FieldType::U16:
        return LittleEndian::setU16(m_bytes, offset, quint16(value));
    case FieldType::U32:
    case FieldType::I32:
        return LittleEndian::setU32(m_bytes, offset, value);
    case FieldType::Text:
    case FieldType::Bytes:
        break;
    }
    return false;
}

bool SectionEdit::setBytes(const FieldInfo &field, QByteArrayView value, int i, int j)
{
    const int offset = view().at(field, i, j);
    return offset >= 0 && LittleEndian::setText(m_bytes, offset, field.width, value);
}

} // namespace setup
