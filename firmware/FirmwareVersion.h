// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <array>
#include <compare>
#include <optional>

namespace firmware {

// A four-part version a.b.c.d as packages and recorders carry it: four bytes,
// compared part by part with part a first.
struct FirmwareVersion
{
    std::array<quint8, 4> parts {};

    // The four bytes at `offset`; parts outside `bytes` read as 0.
    static FirmwareVersion fromBytes(QByteArrayView bytes, qsizetype offset);
    // "a.b.c.d" with every part from 0 to 255; nothing for anything else.
    static std::optional<FirmwareVersion> parse(QStringView text);

    QByteArray toBytes() const;
    QString toString() const;

    friend auto operator<=>(const FirmwareVersion &, const FirmwareVersion &) = default;
    friend bool operator==(const FirmwareVersion &, const FirmwareVersion &) = default;
};

} // namespace firmware
