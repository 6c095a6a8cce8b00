// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

#include <limits>
#include <span>
#include <string_view>

namespace setup {

enum class FieldType { U8, U16, U32, I32, Text, Bytes };

// How a dump shows a value: numbers in decimal or hex (bit masks), raw bytes as
// hex or as dotted decimal (addresses and version numbers).
enum class FieldFormat { Decimal, Hex, Dotted };

struct ValueName
{
    quint32 value;
    const char *name;
};

// One field of the setup record. Repeated fields (one per channel, per entry,
// per mode) are a single field with up to two indexes: element [i][j] lies at
// offset + i * stride + j * stride2. Tables are built with the factories and
// modifiers below, e.g. FieldInfo::u8("covert", 1323).repeat(16, 48).named(offOn).
struct FieldInfo
{
    const char *name;
    int offset; // record offset of element [0][0]
    FieldType type;
    int width; // bytes of one element
    int count = 1;
    int stride = 0;
    int count2 = 1;
    int stride2 = 0;
    FieldFormat format = FieldFormat::Decimal;
    std::span<const ValueName> valueNames = {};
    // What a page shows for the field: the system's own text, which is also
    // its translation key. Null for fields no page shows.
    const char *label = nullptr;
    // The values an operator may enter; an empty range (maximum < minimum)
    // stands for every value of the type.
    qint64 minimum = 0;
    qint64 maximum = -1;
    // For bit masks: the single bits that have a name (value = the bit).
    std::span<const ValueName> bitNames = {};

    static constexpr FieldInfo u8(const char *name, int offset)
    {
        return {name, offset, FieldType::U8, 1};
    }
    static constexpr FieldInfo u16(const char *name, int offset)
    {
        return {name, offset, FieldType::U16, 2};
    }
    static constexpr FieldInfo u32(const char *name, int offset)
    {
        return {name, offset, FieldType::U32, 4};
    }
    static constexpr FieldInfo i32(const char *name, int offset)
    {
        return {name, offset, FieldType::I32, 4};
    }
    static constexpr FieldInfo text(const char *name, int offset, int width)
    {
        return {name, offset, FieldType::Text, width};
    }
    static constexpr FieldInfo bytes(const char *name, int offset, int width)
    {
        return {name, offset, FieldType::Bytes, width};
    }

    constexpr FieldInfo repeat(int n, int step) const
    {
        FieldInfo f = *this;
        f.count = n;
        f.stride = step;
        return f;
    }
    constexpr FieldInfo grid(int n, int step, int n2, int step2) const
    {
        FieldInfo f = repeat(n, step);
        f.count2 = n2;
        f.stride2 = step2;
        return f;
    }
    constexpr FieldInfo hex() const
    {
        FieldInfo f = *this;
        f.format = FieldFormat::Hex;
        return f;
    }
    constexpr FieldInfo dotted() const
    {
        FieldInfo f = *this;
        f.format = FieldFormat::Dotted;
        return f;
    }
    constexpr FieldInfo named(std::span<const ValueName> names) const
    {
        FieldInfo f = *this;
        f.valueNames = names;
        return f;
    }

    constexpr FieldInfo labelled(const char *text) const
    {
        FieldInfo f = *this;
        f.label = text;
        return f;
    }
    constexpr FieldInfo range(qint64 low, qint64 high) const
    {
        FieldInfo f = *this;
        f.minimum = low;
        f.maximum = high;
        return f;
    }
    constexpr FieldInfo bits(std::span<const ValueName> names) const
    {
        FieldInfo f = *this;
        f.bitNames = names;
        return f;
    }

    // The range an operator may enter, the type's whole range unless set.
    constexpr qint64 lowest() const
    {
        if (maximum >= minimum)
            return minimum;
        return type == FieldType::I32 ? std::numeric_limits<qint32>::min() : 0;
    }
    constexpr qint64 highest() const
    {
        if (maximum >= minimum)
            return maximum;
        switch (type) {
        case FieldType::U8:
            return 0xFF;
        case FieldType::U16:
            return 0xFFFF;
        case FieldType::I32:
            return std::numeric_limits<qint32>::max();
        default:
            return 0xFFFFFFFF;
        }
    }

    constexpr bool isNumber() const { return type != FieldType::Text && type != FieldType::Bytes; }
    constexpr bool hasElement(int i, int j) const
    {
        return i >= 0 && i < count && j >= 0 && j < count2;
    }
    constexpr int elementOffset(int i, int j = 0) const
    {
        return offset + i * stride + j * stride2;
    }
    // One past the last byte of the last element.
    constexpr int end() const { return elementOffset(count - 1, count2 - 1) + width; }

    // A field's identity: its name at its record offset. Copies of a field
    // (a section's `all`, a page's column) are the same field; what a page
    // shows of it (label, range, names) takes no part.
    friend constexpr bool operator==(const FieldInfo &a, const FieldInfo &b)
    {
        return a.offset == b.offset && std::string_view(a.name) == std::string_view(b.name);
    }

    // The name of `value`, or null when the field has none for it.
    const char *valueName(quint32 value) const;
};

} // namespace setup
