// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/FactoryDefaults.h"

#include "setup/FieldWriter.h"
#include "setup/Fields.h"

namespace setup {

namespace {

constexpr int Channels = SetupRecordMap::MaxChannels;
constexpr quint32 AllChannels = 0xFFFF;
constexpr quint32 FullMaskRow = 0x3FFFFFFF; // all 30 cells of a motion mask row

// Rights of the users section, bit r = right r in the Authority grid's order.
enum Right : quint32 {
    AlarmOut = 1u << 0,
    Backup = 1u << 1,
    Camera = 1u << 2,
    Device = 1u << 3,
    Event = 1u << 4,
    FormatHdd = 1u << 5,
    ImportSetup = 1u << 6,
    Network = 1u << 7,
    NetworkAccess = 1u << 8,
    Playback = 1u << 9,
    PreAlarm = 1u << 10,
    PtzCamera = 1u << 11,
    Record = 1u << 12,
    Schedule = 1u << 13,
    SystemLog = 1u << 14,
    SystemTime = 1u << 15,
    UpgradeSoftware = 1u << 16,
    UserSetup = 1u << 17,
};
constexpr quint32 AllRights = (UserSetup << 1) - 1;
// Managers run the recorder but cannot wipe it, replace its setup or firmware,
// or change accounts; users watch, play back and steer cameras.
constexpr quint32 ManagerRights
    = AllRights & ~(FormatHdd | ImportSetup | UpgradeSoftware | UserSetup);
constexpr quint32 UserRights = NetworkAccess | Playback | PtzCamera | SystemLog;
constexpr int Managers = 3;
constexpr int Accounts = 11;

QByteArray dotted(quint8 a, quint8 b, quint8 c, quint8 d)
{
    const char bytes[] = {char(a), char(b), char(c), char(d)};
    return QByteArray(bytes, sizeof bytes);
}

void header(QByteArray &r, quint32 modelId, FactoryDefaults::Version version)
{
    FieldWriter w(r, FieldTable::header());
    w.set(fields::header::layoutVersion, SetupRecordMap::LayoutVersion);
    w.setBytes(fields::header::softwareVersion,
               dotted(version[0], version[1], version[2], version[3]));
    w.set(fields::header::recordSize, SetupRecordMap::RecordSize);
    w.set(fields::header::channelRecords, Channels);
    w.set(fields::header::modelId, modelId);
}

void users(QByteArray &r)
{
    FieldWriter w(r, Section::Users);
    for (int k = 0; k < Accounts; ++k)
        w.setBytes(fields::users::password, "", k);
    w.set(fields::users::autoLogout, 0);
    w.set(fields::users::autoLogin, 0);
    w.set(fields::users::rights, AllRights, 0);
    for (int k = 1; k < Accounts; ++k)
        w.set(fields::users::rights, k <= Managers ? ManagerRights : UserRights, k);
}

void audio(QByteArray &r)
{
    FieldWriter w(r, Section::Audio);
    w.fill(fields::audio::inputEnabled, 1);
    w.fill(fields::audio::inputVolume, 8);
    w.set(fields::audio::liveOutput, 5); // Auto: the selected channel's input
    w.set(fields::audio::outputVolume, 8);
    w.set(fields::audio::recordAudio, 1);
    w.set(fields::audio::networkAudio, 1);
}

void buzzer(QByteArray &r)
{
    FieldWriter w(r, Section::Buzzer);
    w.set(fields::buzzer::keyTone, 1);
    w.set(fields::buzzer::eventBuzzer, 1);
    w.set(fields::buzzer::diskFull, 1);
    w.set(fields::buzzer::diskError, 1);
    w.set(fields::buzzer::beepTime, 10);
}

// Greenwich Mean Time, 24-hour clock, no daylight saving. The stored rule is
// the zone's own (last Sunday of March 01:00 to last Sunday of October 02:00),
// ready for when DST is switched on.
void dateTime(QByteArray &r)
{
    constexpr int GreenwichZone = 30;
    FieldWriter w(r, Section::DateTime);
    w.set(fields::dateTime::timeZone, GreenwichZone);
    w.set(fields::dateTime::utcOffset, 0);
    w.set(fields::dateTime::dateFormat, 0); // YYYY/MM/DD
    w.set(fields::dateTime::timeFormat, 0); // 24 Hour
    w.set(fields::dateTime::dst, 0);
    w.set(fields::dateTime::timeSync, 0);
    w.set(fields::dateTime::syncInterval, 24);
    w.setBytes(fields::dateTime::timeServer, dotted(0, 0, 0, 0));

    constexpr int LastWeek = 5;
    FieldWriter dst(r, Section::DaylightSaving);
    dst.set(fields::dst::startMonth, 3);
    dst.set(fields::dst::startWeek, LastWeek);
    dst.set(fields::dst::startWeekday, 0);
    dst.set(fields::dst::startDay, 0);
    dst.set(fields::dst::startHour, 1);
    dst.set(fields::dst::endMonth, 10);
    dst.set(fields::dst::endWeek, LastWeek);
    dst.set(fields::dst::endWeekday, 0);
    dst.set(fields::dst::endDay, 0);
    dst.set(fields::dst::endHour, 2);
}

void osd(QByteArray &r)
{
    FieldWriter w(r, Section::Osd);
    w.set(fields::osd::timeOut, 60);
    w.set(fields::osd::liveItems, 0x1F);
    w.set(fields::osd::playbackItems, 0x0F);
    w.set(fields::osd::language, 0); // English
    w.set(fields::osd::marginTop, 10);
    w.set(fields::osd::marginBottom, 10);
    w.set(fields::osd::marginLeft, 16);
    w.set(fields::osd::marginRight, 16);
}

void eventDisplay(QByteArray &r)
{
    FieldWriter w(r, Section::EventDisplay);
    w.set(fields::eventDisplay::mainOutput, 1); // VGA
    w.set(fields::eventDisplay::vgaResolution, 1); // 1024x768
    w.set(fields::eventDisplay::brightness, 50);
    w.set(fields::eventDisplay::contrast, 50);
    w.set(fields::eventDisplay::eventPopup, 0);
    w.set(fields::eventDisplay::popupDwell, 5);
    w.set(fields::eventDisplay::spotMode, 1); // Sequence
    w.fill(fields::eventDisplay::spotChannel, 1);
    w.set(fields::eventDisplay::spotPopup, 0);
    w.set(fields::eventDisplay::sequenceChannels, AllChannels);
}

void interval(QByteArray &r)
{
    FieldWriter w(r, Section::Interval);
    w.set(fields::interval::sequence, 5);
    w.set(fields::interval::pip, 5);
    w.set(fields::interval::spot, 5);
    w.set(fields::interval::eventUpdate, 1);
    w.set(fields::interval::timeOutSwitch, 1);
    w.set(fields::interval::timeOut, 60);
}

// Titles "CAM 01" ... "CAM 16"; audio inputs 1 to 4 belong to channels 1 to 4.
void camera(QByteArray &r)
{
    constexpr int AudioInputs = 4;
    FieldWriter w(r, Section::Camera);
    w.fill(fields::camera::covert, 0);
    for (int c = 0; c < Channels; ++c) {
        w.setBytes(fields::camera::title, "CAM " + QByteArray::number(c + 1).rightJustified(2, '0'),
                   c);
        w.set(fields::camera::audio, c < AudioInputs ? 1u << c : 0, c);
    }
}

// No PTZ camera; the line is 9600 8N1, control id = channel number.
void ptz(QByteArray &r)
{
    FieldWriter w(r, Section::Ptz);
    w.fill(fields::ptz::inUse, 0);
    w.fill(fields::ptz::protocol, 0);
    for (int c = 0; c < Channels; ++c)
        w.set(fields::ptz::controlId, c + 1, c);
    w.fill(fields::ptz::baudRate, 9600);
    w.fill(fields::ptz::dataBits, 8);
    w.fill(fields::ptz::stopBits, 1);
    w.fill(fields::ptz::parity, 0); // None
    w.fill(fields::ptz::panSpeed, 5);
    w.fill(fields::ptz::tiltSpeed, 5);
    w.fill(fields::ptz::zoomSpeed, 5);
}

// Day from 08:00, night from 20:00, the whole picture watched.
void motion(QByteArray &r)
{
    constexpr quint32 Normal = 2;
    FieldWriter w(r, Section::Motion);
    w.fill(fields::motion::dayStartHour, 8);
    w.fill(fields::motion::dayStartMinute, 0);
    w.fill(fields::motion::nightStartHour, 20);
    w.fill(fields::motion::nightStartMinute, 0);
    w.fill(fields::motion::daySensitivity, Normal);
    w.fill(fields::motion::dayMinBlocks, 3);
    w.fill(fields::motion::nightSensitivity, Normal);
    w.fill(fields::motion::nightMinBlocks, 3);
    w.fill(fields::motion::beep, 0);
    w.fill(fields::motion::alarmOut, 0);
    w.fill(fields::motion::dwell, 5);
    w.fill(fields::motion::dayMask, FullMaskRow);
    w.fill(fields::motion::nightMask, FullMaskRow);
}

// Inputs off; once switched on, an alarm records its own channel for 5 s.
void alarmIn(QByteArray &r)
{
    FieldWriter w(r, Section::AlarmIn);
    w.fill(fields::alarmIn::enabled, 0);
    w.fill(fields::alarmIn::normallyClosed, 0);
    w.fill(fields::alarmIn::beep, 0);
    w.fill(fields::alarmIn::dwell, 5);
    for (int c = 0; c < Channels; ++c)
        w.set(fields::alarmIn::recordChannels, 1u << c, c);
    w.fill(fields::alarmIn::alarmOut, 0);
}

// Outputs normally open, held 5 s. No schedule line is in use; every line
// still holds a valid whole-day line so that any line a page shows passes its
// time check.
void alarmOut(QByteArray &r)
{
    constexpr quint32 FiveSeconds = 2;
    FieldWriter w(r, Section::AlarmOut);
    w.set(fields::alarmOut::lineCount, 0);
    w.fill(fields::alarmOut::enabled, 1);
    w.fill(fields::alarmOut::normallyClosed, 0);
    w.fill(fields::alarmOut::dwell, FiveSeconds);
    w.fill(fields::alarmOut::days, 0x7F);
    w.fill(fields::alarmOut::startHour, 0);
    w.fill(fields::alarmOut::startMinute, 0);
    w.fill(fields::alarmOut::endHour, 23);
    w.fill(fields::alarmOut::endMinute, 59);
    w.fill(fields::alarmOut::events, 0x7);
    w.fill(fields::alarmOut::alarmOut, 0);
}

void videoLoss(QByteArray &r)
{
    FieldWriter w(r, Section::VideoLoss);
    w.fill(fields::videoLoss::beep, 0);
    w.fill(fields::videoLoss::alarmOut, 0);
}

// Normal and Pre-Event record CIF at a moderate rate; Event and Panic raise
// size, rate and quality.
void recordProfiles(QByteArray &r)
{
    struct Profile
    {
        quint32 widthCode, heightCode, frameRate, quality;
    };
    constexpr Profile modes[] = {
        {2, 1, 3, 0xFF02}, // Normal: 352x240/288, 10/8 fps, Normal
        {1, 1, 4, 0xFF01}, // Event: 704x240/288, 15/12 fps, High
        {2, 1, 3, 0xFF02}, // Pre-Event
        {1, 0, 5, 0xFF00}, // Panic: 704x480/576, 30/25 fps, Highest
    };
    constexpr quint32 Motion = 2;
    FieldWriter w(r, Section::RecordSetup);
    for (int m = 0; m < 4; ++m) {
        for (int c = 0; c < Channels; ++c) {
            w.set(fields::record::widthCode, modes[m].widthCode, m, c);
            w.set(fields::record::heightCode, modes[m].heightCode, m, c);
            w.set(fields::record::frameRate, modes[m].frameRate, m, c);
            w.set(fields::record::frameRateCopy, modes[m].frameRate, m, c);
            w.set(fields::record::quality, modes[m].quality, m, c);
            w.set(fields::record::qualityCopy, modes[m].quality, m, c);
        }
    }
    w.fill(fields::record::preEvent, 0);
    w.fill(fields::record::eventType, Motion);
    w.fill(fields::record::dwell, 5);
}

// One entry: every day, all day, continuous, all channels. Unused slots hold
// the values of an emptied slot (SUN, 00:00-23:59, Alarm, no channels).
void schedule(QByteArray &r)
{
    constexpr quint32 EveryDay = 127, Sunday = 1, Continue = 1, Alarm = 16;
    FieldWriter w(r, Section::Schedule);
    w.fill(fields::schedule::day, Sunday);
    w.fill(fields::schedule::startHour, 0);
    w.fill(fields::schedule::startMinute, 0);
    w.fill(fields::schedule::endHour, 23);
    w.fill(fields::schedule::endMinute, 59);
    w.fill(fields::schedule::mode, Alarm);
    w.fill(fields::schedule::channels, 0);
    w.set(fields::schedule::count, 1);
    w.set(fields::schedule::day, EveryDay, 0);
    w.set(fields::schedule::mode, Continue, 0);
    w.set(fields::schedule::channels, AllChannels, 0);
}

// 1 January and 25 December, both fixed dates.
void holiday(QByteArray &r)
{
    constexpr quint32 FixedDate = 1;
    FieldWriter w(r, Section::Holiday);
    w.set(fields::holiday::enabled, 1);
    w.set(fields::holiday::count, 2);
    w.set(fields::holiday::kind, FixedDate, 0);
    w.set(fields::holiday::month, 1, 0);
    w.set(fields::holiday::day, 1, 0);
    w.set(fields::holiday::kind, FixedDate, 1);
    w.set(fields::holiday::month, 12, 1);
    w.set(fields::holiday::day, 25, 1);
}

void device(QByteArray &r)
{
    FieldWriter rs(r, Section::Rs232c);
    rs.set(fields::rs232c::baudRate, 9600);
    rs.set(fields::rs232c::dataBits, 8);
    rs.set(fields::rs232c::parity, 0); // None
    rs.set(fields::rs232c::stopBits, 1);
    rs.set(fields::rs232c::flowControl, 0);
    rs.set(fields::rs232c::usage, 0); // Off
    rs.set(fields::rs232c::deviceId, 1);
    rs.set(fields::rs232c::textChannels, 0);

    FieldWriter kb(r, Section::Keyboard);
    kb.set(fields::keyboard::enabled, 0);
    kb.set(fields::keyboard::protocol, 0); // Native
    kb.set(fields::keyboard::recorderId, 1);
    kb.set(fields::keyboard::baudRate, 9600);
    kb.set(fields::keyboard::dataBits, 8);
    kb.set(fields::keyboard::parity, 0); // None
    kb.set(fields::keyboard::stopBits, 1);
    kb.set(fields::keyboard::flowControl, 0);
    kb.set(fields::keyboard::ptzControl, 1);

    FieldWriter rc(r, Section::RemoteControl);
    rc.set(fields::remoteControl::remoteId, 0); // obeys any remote
    rc.set(fields::remoteControl::enabled, 1);

    FieldWriter sb(r, Section::SmartBackup);
    sb.set(fields::smartBackup::enabled, 0);
    sb.set(fields::smartBackup::media, 0); // USB Memory
    sb.set(fields::smartBackup::channels, AllChannels);
    sb.set(fields::smartBackup::days, 0x7F);
    sb.set(fields::smartBackup::startHour, 2);
    sb.set(fields::smartBackup::startMinute, 0);
    sb.set(fields::smartBackup::spanHours, 24);
    sb.set(fields::smartBackup::overwrite, 0);
}

// A static address on a typical home/office subnet, the client port the
// simulator listens on by default, every channel streamed at CIF.
void stream(QByteArray &r)
{
    constexpr quint32 Cif = 3, TenFps = 3, Normal = 2, AllEvents = 0x7;
    FieldWriter w(r, Section::Stream);
    w.set(fields::stream::ipMode, 0); // Static
    w.setBytes(fields::stream::ipAddress, dotted(192, 168, 0, 100));
    w.setBytes(fields::stream::subnetMask, dotted(255, 255, 255, 0));
    w.setBytes(fields::stream::gateway, dotted(192, 168, 0, 1));
    w.setBytes(fields::stream::dnsServer, dotted(192, 168, 0, 1));
    w.set(fields::stream::remotePort, 9000);
    w.set(fields::stream::webPort, 80);
    w.set(fields::stream::maxBandwidth, 0);
    w.set(fields::stream::ddns, 0);
    w.set(fields::stream::audio, 0);
    w.fill(fields::stream::enabled, 1);
    w.fill(fields::stream::resolution, Cif);
    w.fill(fields::stream::frameRate, TenFps);
    w.fill(fields::stream::quality, Normal);
    w.fill(fields::stream::bitrate, 512);
    w.fill(fields::stream::keyFrameInterval, 30);
    w.fill(fields::stream::cmsEnabled, 0);
    w.fill(fields::stream::cmsPort, 9001);
    w.fill(fields::stream::cmsEvents, AllEvents);
}

void notification(QByteArray &r)
{
    FieldWriter mail(r, Section::Email);
    mail.set(fields::email::enabled, 0);
    mail.set(fields::email::smtpPort, 25);
    mail.set(fields::email::security, 0);
    mail.setBytes(fields::email::subject, "DVR Event");
    mail.set(fields::email::attachImage, 1);
    mail.set(fields::email::authentication, 0);

    constexpr quint32 ByMail = 0x1;
    FieldWriter ev(r, Section::NetworkEvent);
    ev.set(fields::networkEvent::notify, 0);
    ev.set(fields::networkEvent::minInterval, 60);
    namespace event = fields::networkEvent;
    for (const FieldInfo &enabled :
         {event::alarmEnabled, event::motionEnabled, event::videoLossEnabled,
          event::diskFullEnabled, event::diskErrorEnabled, event::powerOnEnabled,
          event::loginFailureEnabled})
        ev.set(enabled, 0);
    for (const FieldInfo &channels :
         {event::alarmChannels, event::motionChannels, event::videoLossChannels})
        ev.set(channels, AllChannels);
    for (const FieldInfo &actions :
         {event::alarmActions, event::motionActions, event::videoLossActions,
          event::diskFullActions, event::diskErrorActions, event::powerOnActions,
          event::loginFailureActions})
        ev.set(actions, ByMail);
}

} // namespace

QByteArray FactoryDefaults::record(quint32 modelId, Version softwareVersion)
{
    QByteArray r(SetupRecordMap::RecordSize, '\0');
    header(r, modelId, softwareVersion);
    users(r);
    audio(r);
    buzzer(r);
    dateTime(r);
    osd(r);
    eventDisplay(r);
    interval(r);
    camera(r);
    ptz(r);
    motion(r);
    alarmIn(r);
    alarmOut(r);
    videoLoss(r);
    recordProfiles(r);
    schedule(r);
    holiday(r);
    device(r);
    stream(r);
    notification(r);
    return r;
}

} // namespace setup
