// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/FieldTable.h"

#include <QAnyStringView>
#include <QByteArray>
#include <QByteArrayView>

namespace setup {

// Sets fields of one group of a whole record by name, for code that builds
// records from fixed values (the factory defaults, the simulator). A name the
// group does not have, an index outside the field, a value that does not fit
// or a text written to a number are programming errors and abort at once, so
// a broken default can never reach a file.
class FieldWriter
{
public:
    FieldWriter(QByteArray &record, const FieldGroup &group);
    FieldWriter(QByteArray &record, Section section);

    void set(QAnyStringView field, quint32 value, int i = 0, int j = 0);
    // Every element of the field.
    void fill(QAnyStringView field, quint32 value);
    // Text and raw fields: zero-filled, then at most the element's width copied.
    void setBytes(QAnyStringView field, QByteArrayView value, int i = 0, int j = 0);

private:
    const FieldInfo &find(QAnyStringView name, bool wantNumber) const;
    void write(const FieldInfo &field, quint32 value, int i, int j);

    QByteArray &m_record;
    const FieldGroup &m_group;
};

} // namespace setup
