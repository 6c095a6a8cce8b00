// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/FieldInfo.h"
#include "setup/SetupRecordMap.h"

#include <QAnyStringView>
#include <QByteArray>
#include <QByteArrayView>

namespace setup {

// The fields a section owns itself. A section that contains other sections
// (event display, record, stream, notification) lists only the bytes that no
// contained section describes; the header is a group of its own.
struct FieldGroup
{
    const char *key;
    int offset;
    int length;
    std::span<const FieldInfo> fields; // ordered by offset, never overlapping

    constexpr int end() const { return offset + length; }
};

// The declarative description of every byte of the setup record that has a
// meaning. Decoding, dumping, diffing and the factory defaults all go through
// it, so a layout is written down in exactly one place.
class FieldTable
{
public:
    static const FieldGroup &header();
    static const FieldGroup &section(Section id);
    // The header first, then one group per section in SetupRecordMap order.
    static std::span<const FieldGroup> groups();
    static const FieldGroup *findGroup(QAnyStringView key);
    static const FieldInfo *findField(const FieldGroup &group, QAnyStringView name);

    // Element access on a whole record. Numbers are zero-extended (an i32 is
    // returned as its bit pattern); an element outside the record or an index
    // outside the field reads as 0 or empty, and a write there changes nothing
    // and returns false.
    static quint32 number(QByteArrayView record, const FieldInfo &field, int i = 0, int j = 0);
    static QByteArrayView bytes(QByteArrayView record, const FieldInfo &field, int i = 0,
                                int j = 0);
    // A text element up to its first zero byte.
    static QByteArray text(QByteArrayView record, const FieldInfo &field, int i = 0, int j = 0);
    static bool setNumber(QByteArray &record, const FieldInfo &field, quint32 value, int i = 0,
                          int j = 0);
    // Zero-fills the element, then copies at most its width of `value`.
    static bool setBytes(QByteArray &record, const FieldInfo &field, QByteArrayView value,
                         int i = 0, int j = 0);
};

} // namespace setup
