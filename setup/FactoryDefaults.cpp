// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/FactoryDefaults.h"

#include "setup/FieldWriter.h"

namespace setup {

namespace {

constexpr int Channels = 16;
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
    w.set("layout-version", SetupRecordMap::LayoutVersion);
    w.setBytes("software-version", dotted(version[0], version[1], version[2], version[3]));
    w.set("record-size", SetupRecordMap::RecordSize);
    w.set("channel-records", Channels);
    w.set("model-id", modelId);
}

void users(QByteArray &r)
{
    FieldWriter w(r, Section::Users);
    for (int k = 0; k < Accounts; ++k)
        w.setBytes("password", "", k);
    w.set("auto-logout", 0);
    w.set("auto-login", 0);
    w.set("rights", AllRights, 0);
    for (int k = 1; k < Accounts; ++k)
        w.set("rights", k <= Managers ? ManagerRights : UserRights, k);
}

void audio(QByteArray &r)
{
    FieldWriter w(r, Section::Audio);
    w.fill("input-enabled", 1);
    w.fill("input-volume", 8);
    w.set("live-output", 5); // Auto: the selected channel's input
    w.set("output-volume", 8);
    w.set("record-audio", 1);
    w.set("network-audio", 1);
}

void buzzer(QByteArray &r)
{
    FieldWriter w(r, Section::Buzzer);
    w.set("key-tone", 1);
    w.set("event-buzzer", 1);
    w.set("disk-full", 1);
    w.set("disk-error", 1);
    w.set("beep-time", 10);
}

// Greenwich Mean Time, 24-hour clock, no daylight saving. The stored rule is
// the zone's own (last Sunday of March 01:00 to last Sunday of October 02:00),
// ready for when DST is switched on.
void dateTime(QByteArray &r)
{
    constexpr int GreenwichZone = 30;
    FieldWriter w(r, Section::DateTime);
    w.set("time-zone", GreenwichZone);
    w.set("utc-offset", 0);
    w.set("date-format", 0); // YYYY/MM/DD
    w.set("time-format", 0); // 24 Hour
    w.set("dst", 0);
    w.set("time-sync", 0);
    w.set("sync-interval", 24);
    w.setBytes("time-server", dotted(0, 0, 0, 0));

    constexpr int LastWeek = 5;
    FieldWriter dst(r, Section::DaylightSaving);
    dst.set("start-month", 3);
    dst.set("start-week", LastWeek);
    dst.set("start-weekday", 0);
    dst.set("start-day", 0);
    dst.set("start-hour", 1);
    dst.set("end-month", 10);
    dst.set("end-week", LastWeek);
    dst.set("end-weekday", 0);
    dst.set("end-day", 0);
    dst.set("end-hour", 2);
}

void osd(QByteArray &r)
{
    FieldWriter w(r, Section::Osd);
    w.set("time-out", 60);
    w.set("live-items", 0x1F);
    w.set("playback-items", 0x0F);
    w.set("language", 0); // English
    w.set("margin-top", 10);
    w.set("margin-bottom", 10);
    w.set("margin-left", 16);
    w.set("margin-right", 16);
}

void eventDisplay(QByteArray &r)
{
    FieldWriter w(r, Section::EventDisplay);
    w.set("main-output", 1); // VGA
    w.set("vga-resolution", 1); // 1024x768
    w.set("brightness", 50);
    w.set("contrast", 50);
    w.set("event-popup", 0);
    w.set("popup-dwell", 5);
    w.set("spot-mode", 1); // Sequence
    w.fill("spot-channel", 1);
    w.set("spot-popup", 0);
    w.set("sequence-channels", AllChannels);
}

void interval(QByteArray &r)
{
    FieldWriter w(r, Section::Interval);
    w.set("sequence", 5);
    w.set("pip", 5);
    w.set("spot", 5);
    w.set("event-update", 1);
    w.set("time-out-switch", 1);
    w.set("time-out", 60);
}

// Titles "CAM 01" ... "CAM 16"; audio inputs 1 to 4 belong to channels 1 to 4.
void camera(QByteArray &r)
{
    constexpr int AudioInputs = 4;
    FieldWriter w(r, Section::Camera);
    w.fill("covert", 0);
    for (int c = 0; c < Channels; ++c) {
        w.setBytes("title", "CAM " + QByteArray::number(c + 1).rightJustified(2, '0'), c);
        w.set("audio", c < AudioInputs ? 1u << c : 0, c);
    }
}

// No PTZ camera; the line is 9600 8N1, control id = channel number.
void ptz(QByteArray &r)
{
    FieldWriter w(r, Section::Ptz);
    w.fill("in-use", 0);
    w.fill("protocol", 0);
    for (int c = 0; c < Channels; ++c)
        w.set("control-id", c + 1, c);
    w.fill("baud-rate", 9600);
    w.fill("data-bits", 8);
    w.fill("stop-bits", 1);
    w.fill("parity", 0); // None
    w.fill("pan-speed", 5);
    w.fill("tilt-speed", 5);
    w.fill("zoom-speed", 5);
}

// Day from 08:00, night from 20:00, the whole picture watched.
void motion(QByteArray &r)
{
    constexpr quint32 Normal = 2;
    FieldWriter w(r, Section::Motion);
    w.fill("day-start-hour", 8);
    w.fill("day-start-minute", 0);
    w.fill("night-start-hour", 20);
    w.fill("night-start-minute", 0);
    w.fill("day-sensitivity", Normal);
    w.fill("day-min-blocks", 3);
    w.fill("night-sensitivity", Normal);
    w.fill("night-min-blocks", 3);
    w.fill("beep", 0);
    w.fill("alarm-out", 0);
    w.fill("dwell", 5);
    w.fill("day-mask", FullMaskRow);
    w.fill("night-mask", FullMaskRow);
}

// Inputs off; once switched on, an alarm records its own channel for 5 s.
void alarmIn(QByteArray &r)
{
    FieldWriter w(r, Section::AlarmIn);
    w.fill("enabled", 0);
    w.fill("normally-closed", 0);
    w.fill("beep", 0);
    w.fill("dwell", 5);
    for (int c = 0; c < Channels; ++c)
        w.set("record-channels", 1u << c, c);
    w.fill("alarm-out", 0);
}

// Outputs normally open, held 5 s. No schedule line is in use; every line
// still holds a valid whole-day line so that any line a page shows passes its
// time check.
void alarmOut(QByteArray &r)
{
    constexpr quint32 FiveSeconds = 2;
    FieldWriter w(r, Section::AlarmOut);
    w.set("line-count", 0);
    w.fill("enabled", 1);
    w.fill("normally-closed", 0);
    w.fill("dwell", FiveSeconds);
    w.fill("days", 0x7F);
    w.fill("start-hour", 0);
    w.fill("start-minute", 0);
    w.fill("end-hour", 23);
    w.fill("end-minute", 59);
    w.fill("events", 0x7);
    w.fill("alarm-out", 0);
}

void videoLoss(QByteArray &r)
{
    FieldWriter w(r, Section::VideoLoss);
    w.fill("beep", 0);
    w.fill("alarm-out", 0);
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
            w.set("width-code", modes[m].widthCode, m, c);
            w.set("height-code", modes[m].heightCode, m, c);
            w.set("frame-rate", modes[m].frameRate, m, c);
            w.set("frame-rate-copy", modes[m].frameRate, m, c);
            w.set("quality", modes[m].quality, m, c);
            w.set("quality-copy", modes[m].quality, m, c);
        }
    }
    w.fill("pre-event", 0);
    w.fill("event-type", Motion);
    w.fill("dwell", 5);
}

// One entry: every day, all day, continuous, all channels. Unused slots hold
// the values of an emptied slot (SUN, 00:00-23:59, Alarm, no channels).
void schedule(QByteArray &r)
{
    constexpr quint32 EveryDay = 127, Sunday = 1, Continue = 1, Alarm = 16;
    FieldWriter w(r, Section::Schedule);
    w.fill("day", Sunday);
    w.fill("start-hour", 0);
    w.fill("start-minute", 0);
    w.fill("end-hour", 23);
    w.fill("end-minute", 59);
    w.fill("mode", Alarm);
    w.fill("channels", 0);
    w.set("count", 1);
    w.set("day", EveryDay, 0);
    w.set("mode", Continue, 0);
    w.set("channels", AllChannels, 0);
}

// 1 January and 25 December, both fixed dates.
void holiday(QByteArray &r)
{
    constexpr quint32 FixedDate = 1;
    FieldWriter w(r, Section::Holiday);
    w.set("enabled", 1);
    w.set("count", 2);
    w.set("kind", FixedDate, 0);
    w.set("month", 1, 0);
    w.set("day", 1, 0);
    w.set("kind", FixedDate, 1);
    w.set("month", 12, 1);
    w.set("day", 25, 1);
}

void device(QByteArray &r)
{
    FieldWriter rs(r, Section::Rs232c);
    rs.set("baud-rate", 9600);
    rs.set("data-bits", 8);
    rs.set("parity", 0); // None
    rs.set("stop-bits", 1);
    rs.set("flow-control", 0);
    rs.set("usage", 0); // Off
    rs.set("device-id", 1);
    rs.set("text-channels", 0);

    FieldWriter kb(r, Section::Keyboard);
    kb.set("enabled", 0);
    kb.set("protocol", 0); // Native
    kb.set("recorder-id", 1);
    kb.set("baud-rate", 9600);
    kb.set("data-bits", 8);
    kb.set("parity", 0); // None
    kb.set("stop-bits", 1);
    kb.set("flow-control", 0);
    kb.set("ptz-control", 1);

    FieldWriter rc(r, Section::RemoteControl);
    rc.set("remote-id", 0); // obeys any remote
    rc.set("enabled", 1);

    FieldWriter sb(r, Section::SmartBackup);
    sb.set("enabled", 0);
    sb.set("media", 0); // USB Memory
    sb.set("channels", AllChannels);
    sb.set("days", 0x7F);
    sb.set("start-hour", 2);
    sb.set("start-minute", 0);
    sb.set("span-hours", 24);
    sb.set("overwrite", 0);
}

// A static address on a typical home/office subnet, the client port the
// simulator listens on by default, every channel streamed at CIF.
void stream(QByteArray &r)
{
    constexpr quint32 Cif = 3, TenFps = 3, Normal = 2, AllEvents = 0x7;
    FieldWriter w(r, Section::Stream);
    w.set("ip-mode", 0); // Static
    w.setBytes("ip-address", dotted(192, 168, 0, 100));
    w.setBytes("subnet-mask", dotted(255, 255, 255, 0));
    w.setBytes("gateway", dotted(192, 168, 0, 1));
    w.setBytes("dns-server", dotted(192, 168, 0, 1));
    w.set("remote-port", 9000);
    w.set("web-port", 80);
    w.set("max-bandwidth", 0);
    w.set("ddns", 0);
    w.set("audio", 0);
    w.fill("enabled", 1);
    w.fill("resolution", Cif);
    w.fill("frame-rate", TenFps);
    w.fill("quality", Normal);
    w.fill("bitrate", 512);
    w.fill("key-frame-interval", 30);
    w.fill("cms-enabled", 0);
    w.fill("cms-port", 9001);
    w.fill("cms-events", AllEvents);
}

void notification(QByteArray &r)
{
    FieldWriter mail(r, Section::Email);
    mail.set("enabled", 0);
    mail.set("smtp-port", 25);
    mail.set("security", 0);
    mail.setBytes("subject", "DVR Event");
    mail.set("attach-image", 1);
    mail.set("authentication", 0);

    constexpr quint32 ByMail = 0x1;
    FieldWriter ev(r, Section::NetworkEvent);
    ev.set("notify", 0);
    ev.set("min-interval", 60);
    for (const char *enabled :
         {"alarm-enabled", "motion-enabled", "video-loss-enabled", "disk-full-enabled",
          "disk-error-enabled", "power-on-enabled", "login-failure-enabled"}) {
        ev.set(enabled, 0);
    }
    for (const char *channels : {"alarm-channels", "motion-channels", "video-loss-channels"})
        ev.set(channels, AllChannels);
    for (const char *actions :
         {"alarm-actions", "motion-actions", "video-loss-actions", "disk-full-actions",
          "disk-error-actions", "power-on-actions", "login-failure-actions"}) {
        ev.set(actions, ByMail);
    }
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
