// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

// The recorder's date and time as the session keeps it: the fields of the
// time answer, advanced once a second between answers.
struct RecorderTime
{
    quint16 year = 0;
    quint16 month = 0;
    quint16 dayOfWeek = 0; // not kept up to date
    quint16 day = 0;
    quint16 hour = 0;
    quint16 minute = 0;
    quint16 second = 0;
    quint16 milliseconds = 0;

    friend bool operator==(const RecorderTime &, const RecorderTime &) = default;
};

class RecorderClock
{
public:
    // Advances `time` by one second. The recorder's own counting is kept as
    // it is: the month value (1-12) indexes the month-length table without
    // subtracting one, so January is measured against February's length,
    // and a wrapped day or month restarts at 0. Month 12 lies past the
    // table and counts 31 days.
    static void tick(RecorderTime &time);
};
