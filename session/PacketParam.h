// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <array>

// The eight 32-bit words that travel with every command. What each word means
// depends on the command (for a setup write: category, length, offset).
struct PACKET_PARAM
{
    static constexpr int WordCount = 8;
    static constexpr qsizetype Size = WordCount * 4;

    std::array<quint32, WordCount> words {};

    // The 32 little-endian bytes as they stand in a frame head.
    QByteArray toBytes() const;
    // Reads the words from the first 32 bytes; words past the end of a short
    // input read as 0.
    static PACKET_PARAM fromBytes(QByteArrayView bytes);

    friend bool operator==(const PACKET_PARAM &, const PACKET_PARAM &) = default;
};
