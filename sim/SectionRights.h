// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

namespace sim {

// Which of an account's eighteen rights a setup write needs. Every byte of
// the record after the header belongs to one right; a write needs the right
// of every byte it touches. The whole-block writes of an import or a factory
// default need "Import Setup" instead, whatever they cover.
class SectionRights
{
public:
    // Bits of an account's rights word, in the order of the rights grid.
    enum Right : int {
        AlarmOut,
        Backup,
        Camera,
        Device,
        Event,
        FormatHdd,
        ImportSetup,
        Network,
        NetworkAccess,
        Playback,
        PreAlarm,
        PtzCamera,
        Record,
        Schedule,
        SystemLog,
        SystemTime,
        UpgradeSoftware,
        UserSetup,
        RightCount,
    };
    static constexpr quint32 All = (1u << RightCount) - 1;

    // The rights word a write of `length` bytes at `offset` needs; the caller
    // has checked that the bytes lie inside the record after its header.
    static quint32 needed(quint32 category, quint32 offset, quint32 length);
    // The names of the rights in `rights`, for log lines.
    static QString names(quint32 rights);
};

} // namespace sim
