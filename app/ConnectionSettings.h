// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

struct ConnectionRecord;

// What the operator entered on the connection panel, and the rules that turn
// it into a connection record.
//
// MANUAL names the recorder by address and port. DDNS names it by the host
// name it registered with a dynamic DNS service: the ADDRESS field then holds
// the service's domain, the recorder is reached as HOST.DOMAIN, and always on
// the recorders' standard port.
struct ConnectionSettings
{
    enum class Mode { Manual, Ddns };

    static constexpr quint32 MinPort = 1;
    static constexpr quint32 MaxPort = 65530;
    static constexpr quint32 DdnsPort = 9000;

    Mode mode = Mode::Manual;
    QString address;
    QString port;
    QString hostName;
    QString userId;
    QString password;
    // What a setup file opened without its recorder does not hold: the
    // recorder's channel count and video standard (0 NTSC, 1 PAL). The last
    // choice is offered again.
    int fileChannels = 16;
    int fileVideoStandard = 0;

    // Fills the address, port, member id and password of `record` in the
    // system's single-byte code page. Returns false, leaving `record`
    // untouched, when a field the mode needs is missing or out of range.
    bool fillRecord(ConnectionRecord &record) const;
};
