// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/FieldTable.h"

#include <QByteArrayView>
#include <QString>
#include <QStringList>

namespace setup {

// Readable views of setup records, driven by the field tables alone.
//
// Every element of a field is one line "group.field[i][j] = value" (indexes
// only where the field repeats): numbers in decimal or hex with their name in
// parentheses where the table has one, text quoted with \xNN escapes, raw
// bytes as hex or dotted decimal. Bytes no field covers are shown as
// "owner.reserved[first..last] = hex" in pieces of at most 16 bytes, the owner
// being the innermost section (or the block) that holds them. Lines follow
// record order.
class RecordDump
{
public:
    // The whole record; empty unless it is exactly one record long.
    static QStringList dump(QByteArrayView record);
    // One group's bytes, including the sections it contains.
    static QStringList dump(QByteArrayView record, const FieldGroup &group);

    // The lines whose bytes differ, as "name = before -> after"; empty when
    // either record is not whole.
    static QStringList diff(QByteArrayView before, QByteArrayView after);
    static QStringList diff(QByteArrayView before, QByteArrayView after, const FieldGroup &group);

    // One element's value as a dump line shows it.
    static QString value(QByteArrayView record, const FieldInfo &field, int i = 0, int j = 0);
};

} // namespace setup
