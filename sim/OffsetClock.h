// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>

#include <optional>

namespace sim {

// A recorder's wall clock: the host's local time plus an offset that setting
// the clock changes. Times carry no zone (they are held as UTC only so that
// no daylight-saving rule of the host bends them); a recorder knows nothing
// but its display time.
class OffsetClock
{
public:
    // The recorder's time now, to the second.
    QDateTime now() const;
    void set(const QDateTime &time);

    // The time the six words of a date/time command name, or nothing when
    // they name no real moment or one outside 1970-2099, the years a
    // recorder's clock can show.
    static std::optional<QDateTime> fromFields(quint32 year, quint32 month, quint32 day,
                                               quint32 hour, quint32 minute, quint32 second);

private:
    static QDateTime hostTime();

    qint64 m_offsetMs = 0;
};

} // namespace sim
