// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/SectionView.h"

namespace setup {

// Writes fields into the bytes of a section, found by their record offsets
// like SectionView reads them. A write outside the bytes or the field changes
// nothing and returns false.
class SectionEdit
{
public:
    SectionEdit(QByteArray &bytes, int base)
        : m_bytes(bytes)
        , m_base(base)
    { }

    SectionView view() const { return {m_bytes, m_base}; }
    // What was written so far reads back through the view.
    operator SectionView() const { return view(); }
    quint32 number(const FieldInfo &field, int i = 0, int j = 0) const
    {
        return view().number(field, i, j);
    }

    bool setNumber(const FieldInfo &field, quint32 value, int i = 0, int j = 0);
    // Zero-fills the element, then copies at most its width of `value`.
    bool setBytes(const FieldInfo &field, QByteArrayView value, int i = 0, int j = 0);

private:
    QByteArray &m_bytes;
    int m_base;
};

} // namespace setup
