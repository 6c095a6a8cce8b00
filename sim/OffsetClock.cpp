// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/OffsetClock.h"

#include <QTimeZone>

namespace sim {

QDateTime OffsetClock::now() const
{
    const QDateTime time = hostTime().addMSecs(m_offsetMs);
    return time.addMSecs(-time.time().msec());
}

void OffsetClock::set(const QDateTime &time)
{
    m_offsetMs = hostTime().msecsTo(time);
}

std::optional<QDateTime> OffsetClock::fromFields(quint32 year, quint32 month, quint32 day,
                                                 quint32 hour, quint32 minute, quint32 second)
{
    if (year < 1970 || year > 2099 || month > 12 || day > 31 || hour > 23 || minute > 59
        || second > 59)
        return std::nullopt;
    const QDate date {int(year), int(month), int(day)};
    if (!date.isValid())
        return std::nullopt;
    return QDateTime(date, QTime(int(hour), int(minute), int(second)), QTimeZone::utc());
}

QDateTime OffsetClock::hostTime()
{
    const QDateTime local = QDateTime::currentDateTime();
    return QDateTime(local.date(), local.time(), QTimeZone::utc());
}

} // namespace sim
