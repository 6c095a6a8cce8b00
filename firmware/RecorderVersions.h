// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "firmware/FirmwareVersion.h"

#include <QByteArray>
#include <QByteArrayView>

#include <array>
#include <optional>

namespace firmware {

// What a recorder reports about its firmware in the reply to an upload's
// header packet, 54 bytes:
//   0 overall version | 4 + 4 i version of known component type i | 32 model
//   name, 22 bytes zero-padded
// or the same 54 bytes followed by 204 bytes of release text (258 bytes).
struct RecorderVersions
{
    static constexpr qsizetype ShortSize = 54;
    static constexpr qsizetype LongSize = 258;
    static constexpr qsizetype ComponentsOffset = 4;
    static constexpr qsizetype ModelOffset = 32;
    static constexpr qsizetype ModelSize = 22;
    // The component types whose versions the recorder reports, in the order
    // of their slots.
    static constexpr std::array<quint32, 7> KnownTypes {2,      8,       16,        0xF001,
                                                        0xF004, 0x20000, 0xF0010000};

    FirmwareVersion overall;
    std::array<FirmwareVersion, KnownTypes.size()> components {};
    QByteArray model;

    // Nothing unless `data` is 54 or 258 bytes long.
    static std::optional<RecorderVersions> fromBytes(QByteArrayView data);
    // The 54-byte form; a longer model name is cut to its field.
    QByteArray toBytes() const;

    // The slot `type` reports its version in: types 2, 8 and 16 are known by
    // their low 16 bits (the high half carries a variant), the others only
    // as themselves. Nothing for a type the recorder does not report.
    static std::optional<std::size_t> slotOf(quint32 type);
};

} // namespace firmware
