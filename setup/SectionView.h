// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/FieldInfo.h"
#include "setup/SetupRecordMap.h"

#include <QByteArray>
#include <QByteArrayView>

namespace setup {

// The bytes of one section (or of consecutive sections, or of the whole
// record) with the record offset of their first byte. A field is named as the
// field table declares it, at its record offset; the view finds its elements
// inside its bytes, so no one shifts a field by hand. Numbers are
// zero-extended (an i32 is returned as its bit pattern); an element outside
// the bytes or an index outside the field reads as 0 or empty.
class SectionView
{
public:
    SectionView(QByteArrayView bytes, int base)
        : m_bytes(bytes)
        , m_base(base)
    { }
    // Section `id` of a whole record.
    static SectionView of(QByteArrayView record, Section id);

    QByteArrayView data() const { return m_bytes; }
    int base() const { return m_base; }

    quint32 number(const FieldInfo &field, int i = 0, int j = 0) const;
    QByteArrayView bytes(const FieldInfo &field, int i = 0, int j = 0) const;
    // A text element up to its first zero byte.
    QByteArray text(const FieldInfo &field, int i = 0, int j = 0) const;
    // Where element [i][j] lies in the bytes, or -1 when it is not all inside.
    int at(const FieldInfo &field, int i, int j) const;

private:
    QByteArrayView m_bytes;
    int m_base;
};

} // namespace setup
