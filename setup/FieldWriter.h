// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/FieldTable.h"

#include <QByteArray>
#include <QByteArrayView>

namespace setup {

// Sets fields of one group of a whole record, for code that builds records
// from fixed values (the factory defaults). A field of another group, an
// index outside the field, a value that does not fit or a text written to a
// number are programming errors and abort at once, so a broken default can
// never reach a file.
class FieldWriter
{
public:
    FieldWriter(QByteArray &record, const FieldGroup &group);
    FieldWriter(QByteArray &record, Section section);

    void set(const FieldInfo &field, quint32 value, int i = 0, int j = 0);
    // Every element of the field.
    void fill(const FieldInfo &field, quint32 value);
    // Text and raw fields: zero-filled, then at most the element's width copied.
    void setBytes(const FieldInfo &field, QByteArrayView value, int i = 0, int j = 0);

private:
    const FieldInfo &check(const FieldInfo &field, bool wantNumber) const;
    void write(const FieldInfo &field, quint32 value, int i, int j);

    QByteArray &m_record;
    const FieldGroup &m_group;
};

} // namespace setup
