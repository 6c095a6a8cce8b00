// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/SectionRights.h"

#include "setup/SetupRecordMap.h"

#include <QString>
#include <QStringList>

#include <algorithm>
#include <array>

using setup::SetupRecordMap;

namespace sim {

namespace {

struct Range
{
    quint32 end; // exclusive; each range starts where the one before ends
    SectionRights::Right right;
};

// From offset 32 (the users section) to the end of the record. The map is
// written down in docs/recorder-sim.md; keep the two together.
constexpr std::array<Range, 17> Ranges {{
    {564, SectionRights::UserSetup}, // users and passwords
    {604, SectionRights::Device}, // audio, buzzer
    {656, SectionRights::SystemTime}, // date/time
    {684, SectionRights::Camera}, // OSD
    {1300, SectionRights::Event}, // the rest of the event display, interval
    {2068, SectionRights::Camera}, // camera setup
    {2708, SectionRights::PtzCamera}, // PTZ
    {7208, SectionRights::Event}, // motion
    {7596, SectionRights::Event}, // alarm-in
    {8212, SectionRights::AlarmOut}, // alarm-out
    {8472, SectionRights::Event}, // video loss
    {11032, SectionRights::Record}, // record setup
    {13784, SectionRights::Schedule}, // schedule, holiday
    {13848, SectionRights::Device}, // RS-232C, keyboard control, remote control
    {13876, SectionRights::Backup}, // smart backup
    {14152, SectionRights::Network}, // stream
    {quint32(SetupRecordMap::RecordSize), SectionRights::Network}, // notification, e-mail, event
}};

constexpr std::array<const char *, SectionRights::RightCount> Names {
    "Alarm-Out",    "Backup",   "Camera",         "Device",      "Event",       "Format HDD",
    "Import Setup", "Network",  "Network Access", "Playback",    "Pre-Alarm",   "PTZ Camera",
    "Record",       "Schedule", "System Log",     "System Time", "Upgrade S/W", "User Setup",
};

} // namespace

quint32 SectionRights::needed(quint32 category, quint32 offset, quint32 length)
{
    if (category == SetupRecordMap::WholeBlockCategory)
        return 1u << ImportSetup;
    quint32 rights = 0;
    quint32 start = SetupRecordMap::HeaderSize;
    const quint64 end = quint64(offset) + std::max<quint32>(length, 1);
    for (const Range &range : Ranges) {
        if (offset < range.end && end > start)
            rights |= 1u << range.right;
        start = range.end;
    }
    return rights;
}

QString SectionRights::names(quint32 rights)
{
    QStringList list;
    for (int r = 0; r < RightCount; ++r) {
        if (rights & (1u << r))
            list.append(QString::fromLatin1(Names[std::size_t(r)]));
    }
    return list.join(u", ");
}

} // namespace sim
