// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

#include <atomic>

// What the connection panel (or the command line) hands the session worker,
// and what the worker reports back into it.
struct ConnectionRecord
{
    static constexpr int AddressSize = 64; // NUL included
    static constexpr int MemberIdSize = 16;
    static constexpr int PasswordSize = 132;

    QByteArray address; // single-byte text, at most AddressSize - 1 bytes
    quint32 port = 0;
    QByteArray memberId; // at most MemberIdSize - 1 bytes
    QByteArray password; // at most PasswordSize - 1 bytes
    std::atomic<quint8> status {0}; // a copy of the worker state for the panel
    quint32 clearedAtConnect = 0;
    quint32 channelCount = 0; // byte 4 of the login answer
    quint32 clearedAtLogin = 0;
    quint8 videoStandard = 0; // byte 6 of the login answer: 0 NTSC, else PAL
};
