#include "setup/FieldTable.h"

#include "setup/LittleEndian.h"

#include <QLatin1StringView>

using nelib::LittleEndian;

namespace setup {

namespace {

constexpr int at(Section id)
{
    return SetupRecordMap::Sections[std::size_t(id)].offset;
}

// Value names shared by several fields.

constexpr ValueName offOn[] = {{0, "Off"}, {1, "On"}};
constexpr ValueName noYes[] = {{0, "No"}, {1, "Yes"}};
constexpr ValueName levels[] = {
    {0, "Highest"}, {1, "High"}, {2, "Normal"}, {3, "Low"}, {4, "Lowest"},
};
constexpr ValueName parity[] = {{0, "None"}, {1, "Odd"}, {2, "Even"}};
constexpr ValueName flowControl[] = {{0, "None"}, {1, "RTS/CTS"}};
constexpr ValueName weekdays[] = {
    {0, "Sunday"},   {1, "Monday"}, {2, "Tuesday"},  {3, "Wednesday"},
    {4, "Thursday"}, {5, "Friday"}, {6, "Saturday"},
};
// Day bit sets of the alarm-out schedule and smart backup.
constexpr ValueName dayBits[] = {
    {0x01, "Sunday"},   {0x02, "Monday"}, {0x04, "Tuesday"},  {0x08, "Wednesday"},
    {0x10, "Thursday"}, {0x20, "Friday"}, {0x40, "Saturday"}, {0x7F, "Every Day"},
};

// ---- header ---------------------------------------------------------------

constexpr FieldInfo headerFields[] = {
    FieldInfo::u32("layout-version", SetupRecordMap::LayoutVersionOffset).hex(),
    FieldInfo::bytes("software-version", SetupRecordMap::SoftwareVersionOffset, 4).dotted(),
    FieldInfo::u32("record-size", 8),
    FieldInfo::u32("channel-records", 12),
    FieldInfo::u32("model-id", SetupRecordMap::ModelIdOffset).hex(),
};

// ---- SYSTEM ----------------------------------------------------------------

constexpr ValueName autoLogout[] = {
    {0, "Off"},     {1, "1 Min"},   {3, "3 Min"},   {5, "5 Min"},
    {10, "10 Min"}, {30, "30 Min"}, {60, "60 Min"},
};
constexpr ValueName autoLogin[] = {
    {0, "Off"},   {1, "Admin"}, {2, "Manager1"}, {3, "Manager2"}, {4, "Manager3"}, {5, "User1"},
    {6, "User2"}, {7, "User3"}, {8, "User4"},    {9, "User5"},    {10, "User6"},   {11, "User7"},
};
constexpr int users = at(Section::Users);
constexpr FieldInfo usersFields[] = {
    FieldInfo::text("password", users, 12).repeat(11, 12),
    FieldInfo::u32("auto-logout", users + 132).named(autoLogout),
    FieldInfo::u32("auto-login", users + 136).named(autoLogin),
    FieldInfo::u32("rights", users + 140).repeat(11, 4).hex(),
};

constexpr ValueName liveAudio[] = {
    {0, "Off"}, {1, "Audio 1"}, {2, "Audio 2"}, {3, "Audio 3"}, {4, "Audio 4"}, {5, "Auto"},
};
constexpr int audio = at(Section::Audio);
constexpr FieldInfo audioFields[] = {
    FieldInfo::u8("input-enabled", audio).repeat(4, 1).named(offOn),
    FieldInfo::u8("input-volume", audio + 4).repeat(4, 1),
    FieldInfo::u32("live-output", audio + 8).named(liveAudio),
    FieldInfo::u32("output-volume", audio + 12),
    FieldInfo::u32("record-audio", audio + 16).named(offOn),
    FieldInfo::u32("network-audio", audio + 20).named(offOn),
};

constexpr ValueName beepTime[] = {
    {0, "Until Key Press"}, {5, "5 Sec"}, {10, "10 Sec"}, {30, "30 Sec"}, {60, "60 Sec"},
};
constexpr int buzzer = at(Section::Buzzer);
constexpr FieldInfo buzzerFields[] = {
    FieldInfo::u8("key-tone", buzzer).named(offOn),
    FieldInfo::u8("event-buzzer", buzzer + 1).named(offOn),
    FieldInfo::u8("disk-full", buzzer + 2).named(offOn),
    FieldInfo::u8("disk-error", buzzer + 3).named(offOn),
    FieldInfo::u32("beep-time", buzzer + 4).named(beepTime),
};

// ---- DISPLAY ---------------------------------------------------------------

constexpr ValueName dateFormat[] = {{0, "YYYY/MM/DD"}, {1, "MM/DD/YYYY"}, {2, "DD/MM/YYYY"}};
constexpr ValueName timeFormat[] = {{0, "24 Hour"}, {1, "12 Hour"}};
constexpr ValueName syncInterval[] = {
    {1, "1 Hour"},
    {6, "6 Hours"},
    {12, "12 Hours"},
    {24, "24 Hours"},
};
constexpr int dateTime = at(Section::DateTime);
constexpr FieldInfo dateTimeFields[] = {
    FieldInfo::u32("time-zone", dateTime),
    FieldInfo::i32("utc-offset", dateTime + 4),
    FieldInfo::u32("date-format", dateTime + 8).named(dateFormat),
    FieldInfo::u32("time-format", dateTime + 12).named(timeFormat),
    FieldInfo::u32("dst", dateTime + 16).named(offOn),
    FieldInfo::u32("time-sync", dateTime + 20).named(offOn),
    FieldInfo::u32("sync-interval", dateTime + 24).named(syncInterval),
    FieldInfo::bytes("time-server", dateTime + 28, 4).dotted(),
};

constexpr ValueName months[] = {
    {1, "January"},   {2, "February"}, {3, "March"},     {4, "April"},
    {5, "May"},       {6, "June"},     {7, "July"},      {8, "August"},
    {9, "September"}, {10, "October"}, {11, "November"}, {12, "December"},
};
constexpr ValueName dstWeek[] = {
    {0, "Fixed Date"}, {1, "1st"}, {2, "2nd"}, {3, "3rd"}, {4, "4th"}, {5, "Last"},
};
constexpr int dst = at(Section::DaylightSaving);
constexpr FieldInfo dstFields[] = {
    FieldInfo::u16("start-month", dst).named(months),
    FieldInfo::u16("start-week", dst + 2).named(dstWeek),
    FieldInfo::u16("start-weekday", dst + 4).named(weekdays),
    FieldInfo::u16("start-day", dst + 6),
    FieldInfo::u16("start-hour", dst + 8),
    FieldInfo::u16("end-month", dst + 10).named(months),
    FieldInfo::u16("end-week", dst + 12).named(dstWeek),
    FieldInfo::u16("end-weekday", dst + 14).named(weekdays),
    FieldInfo::u16("end-day", dst + 16),
    FieldInfo::u16("end-hour", dst + 18),
};

constexpr ValueName osdTimeOut[] = {
    {0xFFFFFFFF, "Off"}, {10, "10 Sec"},  {30, "30 Sec"},   {60, "1 Min"},    {180, "3 Min"},
    {300, "5 Min"},      {900, "15 Min"}, {1800, "30 Min"}, {3600, "60 Min"},
};
constexpr ValueName languages[] = {
    {0, "English"}, {1, "Korean"},  {2, "Japanese"}, {3, "Chinese"},   {4, "French"},
    {5, "German"},  {6, "Italian"}, {7, "Spanish"},  {8, "Ukrainian"}, {9, "Russian"},
};
constexpr int osd = at(Section::Osd);
constexpr FieldInfo osdFields[] = {
    FieldInfo::u32("time-out", osd).named(osdTimeOut),
    FieldInfo::u32("live-items", osd + 4).hex(),
    FieldInfo::u32("playback-items", osd + 8).hex(),
    FieldInfo::u32("language", osd + 16).named(languages),
    FieldInfo::u8("margin-top", osd + 20),
    FieldInfo::u8("margin-bottom", osd + 21),
    FieldInfo::u8("margin-left", osd + 22),
    FieldInfo::u8("margin-right", osd + 23),
};

// The event display page writes the whole DISPLAY block; these are the bytes
// that no other DISPLAY section describes. The monitor settings (684-699) are
// the recorder's own hardware: an import keeps them, a factory default resets them.
constexpr ValueName mainOutput[] = {{0, "CVBS"}, {1, "VGA"}, {2, "HDMI"}};
constexpr ValueName vgaResolution[] = {
    {0, "800x600"},
    {1, "1024x768"},
    {2, "1280x1024"},
    {3, "1920x1080"},
};
constexpr ValueName spotMode[] = {{0, "Off"}, {1, "Sequence"}, {2, "Event"}};
constexpr int display = at(Section::EventDisplay);
constexpr FieldInfo eventDisplayFields[] = {
    FieldInfo::u32("main-output", display + 80).named(mainOutput),
    FieldInfo::u32("vga-resolution", display + 84).named(vgaResolution),
    FieldInfo::u32("brightness", display + 88),
    FieldInfo::u32("contrast", display + 92),
    FieldInfo::u32("event-popup", display + 96).named(offOn),
    FieldInfo::u32("popup-dwell", display + 100),
    FieldInfo::u32("spot-mode", display + 104).named(spotMode),
    FieldInfo::u8("spot-channel", display + 108).repeat(16, 1).named(offOn),
    FieldInfo::u32("spot-popup", display + 124).named(offOn),
    FieldInfo::u32("sequence-channels", display + 128).hex(),
};

constexpr ValueName intervalTimeOut[] = {
    {10, "10 Sec"}, {30, "30 Sec"}, {60, "60 Sec"}, {180, "180 Sec"}, {300, "300 Sec"},
};
constexpr int interval = at(Section::Interval);
constexpr FieldInfo intervalFields[] = {
    FieldInfo::u32("sequence", interval),
    FieldInfo::u32("pip", interval + 4),
    FieldInfo::u32("spot", interval + 8),
    FieldInfo::u32("event-update", interval + 16),
    FieldInfo::u16("time-out-switch", interval + 20).named(offOn),
    FieldInfo::u16("time-out", interval + 22).named(intervalTimeOut),
};

// ---- CAMERA ----------------------------------------------------------------

constexpr ValueName cameraAudio[] = {
    {0, "Off"}, {1, "Ch 01"}, {2, "Ch 02"}, {4, "Ch 03"}, {8, "Ch 04"},
};
constexpr int camera = at(Section::Camera);
constexpr FieldInfo cameraFields[] = {
    FieldInfo::text("title", camera, 20).repeat(16, 48),
    FieldInfo::u8("covert", camera + 23).repeat(16, 48).named(offOn),
    FieldInfo::u8("audio", camera + 32).repeat(16, 48).named(cameraAudio),
};

constexpr ValueName ptzProtocol[] = {
    {0, "Pelco-D"},
    {1, "Pelco-P"},
    {2, "Samsung"},
    {3, "Panasonic"},
};
constexpr int ptz = at(Section::Ptz);
constexpr FieldInfo ptzFields[] = {
    FieldInfo::u32("in-use", ptz).repeat(16, 40).named(offOn),
    FieldInfo::u32("protocol", ptz + 4).repeat(16, 40).named(ptzProtocol),
    FieldInfo::u32("control-id", ptz + 8).repeat(16, 40),
    FieldInfo::u32("baud-rate", ptz + 16).repeat(16, 40),
    FieldInfo::u32("data-bits", ptz + 20).repeat(16, 40),
    FieldInfo::u32("stop-bits", ptz + 24).repeat(16, 40),
    FieldInfo::u32("parity", ptz + 28).repeat(16, 40).named(parity),
    FieldInfo::u8("pan-speed", ptz + 36).repeat(16, 40),
    FieldInfo::u8("tilt-speed", ptz + 37).repeat(16, 40),
    FieldInfo::u8("zoom-speed", ptz + 38).repeat(16, 40),
};

// A 64-byte time record, then one 208-byte settings record per channel that
// holds both 24-row masks.
constexpr int motion = at(Section::Motion);
constexpr int motionSettings = motion + 64;
constexpr int motionStride = 208;
constexpr FieldInfo motionFields[] = {
    FieldInfo::u8("day-start-hour", motion).repeat(16, 4),
    FieldInfo::u8("day-start-minute", motion + 1).repeat(16, 4),
    FieldInfo::u8("night-start-hour", motion + 2).repeat(16, 4),
    FieldInfo::u8("night-start-minute", motion + 3).repeat(16, 4),
    FieldInfo::u8("day-sensitivity", motionSettings).repeat(16, motionStride).named(levels),
    FieldInfo::u8("day-min-blocks", motionSettings + 1).repeat(16, motionStride),
    FieldInfo::u8("night-sensitivity", motionSettings + 2).repeat(16, motionStride).named(levels),
    FieldInfo::u8("night-min-blocks", motionSettings + 3).repeat(16, motionStride),
    FieldInfo::u32("beep", motionSettings + 4).repeat(16, motionStride).named(offOn),
    FieldInfo::u32("alarm-out", motionSettings + 8).repeat(16, motionStride).hex(),
    FieldInfo::u32("dwell", motionSettings + 12).repeat(16, motionStride),
    FieldInfo::u32("day-mask", motionSettings + 16).grid(16, motionStride, 24, 4).hex(),
    FieldInfo::u32("night-mask", motionSettings + 112).grid(16, motionStride, 24, 4).hex(),
};

constexpr int alarmIn = at(Section::AlarmIn) + 4; // after the 4-byte head
constexpr FieldInfo alarmInFields[] = {
    FieldInfo::u32("enabled", alarmIn).repeat(16, 24).named(offOn),
    FieldInfo::u32("normally-closed", alarmIn + 4).repeat(16, 24).named(noYes),
    FieldInfo::u32("beep", alarmIn + 8).repeat(16, 24).named(offOn),
    FieldInfo::u32("dwell", alarmIn + 12).repeat(16, 24),
    FieldInfo::u32("record-channels", alarmIn + 16).repeat(16, 24).hex(),
    FieldInfo::u32("alarm-out", alarmIn + 20).repeat(16, 24).hex(),
};

constexpr ValueName alarmOutDwell[] = {
    {1, "Continues"}, {2, "5 Sec"},   {3, "10 Sec"},  {4, "30 Sec"},
    {5, "60 Sec"},    {6, "180 Sec"}, {7, "300 Sec"},
};
constexpr ValueName alarmOutEvents[] = {
    {0x1, "Alarm"},
    {0x2, "Motion"},
    {0x4, "Video Loss"},
    {0x7, "All"},
};
constexpr int alarmOut = at(Section::AlarmOut);
constexpr int alarmOutLines = alarmOut + 196;
constexpr FieldInfo alarmOutFields[] = {
    FieldInfo::u32("line-count", alarmOut),
    FieldInfo::u32("enabled", alarmOut + 4).repeat(16, 12).named(offOn),
    FieldInfo::u32("normally-closed", alarmOut + 8).repeat(16, 12).named(noYes),
    FieldInfo::u32("dwell", alarmOut + 12).repeat(16, 12).named(alarmOutDwell),
    FieldInfo::u32("days", alarmOutLines).repeat(21, 20).hex().named(dayBits),
    FieldInfo::u16("start-hour", alarmOutLines + 4).repeat(21, 20),
    FieldInfo::u16("start-minute", alarmOutLines + 6).repeat(21, 20),
    FieldInfo::u16("end-hour", alarmOutLines + 8).repeat(21, 20),
    FieldInfo::u16("end-minute", alarmOutLines + 10).repeat(21, 20),
    FieldInfo::u32("events", alarmOutLines + 12).repeat(21, 20).hex().named(alarmOutEvents),
    FieldInfo::u32("alarm-out", alarmOutLines + 16).repeat(21, 20).hex(),
};

constexpr int videoLoss = at(Section::VideoLoss) + 8;
constexpr FieldInfo videoLossFields[] = {
    FieldInfo::u32("beep", videoLoss).repeat(16, 16).named(offOn),
    FieldInfo::u32("alarm-out", videoLoss + 8).repeat(16, 16).hex(),
};

// ---- RECORD ----------------------------------------------------------------

// Index [mode][channel]: modes 0 Normal, 1 Event, 2 Pre-Event, 3 Panic.
constexpr ValueName widthCode[] = {{0, "Not Set"}, {1, "Full"}, {2, "Half"}};
constexpr ValueName heightCode[] = {{0, "Full"}, {1, "Half"}};
constexpr ValueName quality[] = {
    {0xFF00, "Highest"},
    {0xFF01, "High"},
    {0xFF02, "Normal"},
    {0xFF03, "Low"},
};
constexpr ValueName preEventType[] = {{1, "Alarm"}, {2, "Motion"}, {3, "Motion+Alarm"}};
constexpr int record = at(Section::RecordSetup);
constexpr FieldInfo recordFields[] = {
    FieldInfo::u32("pre-event", record).grid(4, 640, 16, 40).named(offOn),
    FieldInfo::u32("width-code", record + 4).grid(4, 640, 16, 40).named(widthCode),
    FieldInfo::u32("height-code", record + 8).grid(4, 640, 16, 40).named(heightCode),
    FieldInfo::u32("frame-rate", record + 12).grid(4, 640, 16, 40),
    FieldInfo::u32("frame-rate-copy", record + 16).grid(4, 640, 16, 40),
    FieldInfo::u16("quality", record + 20).grid(4, 640, 16, 40).hex().named(quality),
    FieldInfo::u16("quality-copy", record + 22).grid(4, 640, 16, 40).hex().named(quality),
    FieldInfo::u32("event-type", record + 32).grid(4, 640, 16, 40).named(preEventType),
    FieldInfo::u32("dwell", record + 36).grid(4, 640, 16, 40),
};

constexpr ValueName scheduleDay[] = {
    {1, "SUN"},  {2, "MON"},  {4, "TUE"},   {8, "WED"},   {16, "THU"},
    {32, "FRI"}, {64, "SAT"}, {127, "ALL"}, {128, "HOL"},
};
constexpr ValueName scheduleMode[] = {
    {1, "Continue"}, {16, "Alarm"}, {32, "Motion"}, {33, "M+C"}, {48, "A+M"},
};
constexpr int schedule = at(Section::Schedule);
constexpr FieldInfo scheduleFields[] = {
    FieldInfo::u32("count", schedule),
    FieldInfo::u32("day", schedule + 4).repeat(40, 24).named(scheduleDay),
    FieldInfo::u16("start-hour", schedule + 8).repeat(40, 24),
    FieldInfo::u16("start-minute", schedule + 10).repeat(40, 24),
    FieldInfo::u16("end-hour", schedule + 12).repeat(40, 24),
    FieldInfo::u16("end-minute", schedule + 14).repeat(40, 24),
    FieldInfo::u32("mode", schedule + 16).repeat(40, 24).named(scheduleMode),
    FieldInfo::u32("channels", schedule + 20).repeat(40, 24).hex(),
};

constexpr ValueName holidayKind[] = {{0, "None"}, {1, "Fixed Date"}, {2, "Weekday"}};
constexpr int holiday = at(Section::Holiday);
constexpr FieldInfo holidayFields[] = {
    FieldInfo::u8("enabled", holiday).named(offOn),
    FieldInfo::u8("count", holiday + 2),
    FieldInfo::u32("kind", holiday + 4).repeat(220, 8).named(holidayKind),
    FieldInfo::u8("month", holiday + 8).repeat(220, 8),
    FieldInfo::u8("day", holiday + 9).repeat(220, 8),
    FieldInfo::u8("weekday", holiday + 10).repeat(220, 8).named(weekdays),
};

// ---- DEVICE ----------------------------------------------------------------

constexpr ValueName serialUsage[] = {{0, "Off"}, {1, "Remote Control"}, {2, "Text Input"}};
constexpr int rs232c = at(Section::Rs232c);
constexpr FieldInfo rs232cFields[] = {
    FieldInfo::u32("baud-rate", rs232c),
    FieldInfo::u8("data-bits", rs232c + 4),
    FieldInfo::u8("parity", rs232c + 5).named(parity),
    FieldInfo::u8("stop-bits", rs232c + 6),
    FieldInfo::u8("flow-control", rs232c + 7).named(flowControl),
    FieldInfo::u32("usage", rs232c + 8).named(serialUsage),
    FieldInfo::u32("device-id", rs232c + 12),
    FieldInfo::u32("text-channels", rs232c + 16).hex(),
};

constexpr ValueName keyboardProtocol[] = {{0, "Native"}, {1, "Pelco-D"}, {2, "Pelco-P"}};
constexpr int keyboard = at(Section::Keyboard);
constexpr FieldInfo keyboardFields[] = {
    FieldInfo::u32("enabled", keyboard).named(offOn),
    FieldInfo::u32("protocol", keyboard + 4).named(keyboardProtocol),
    FieldInfo::u32("recorder-id", keyboard + 8),
    FieldInfo::u32("baud-rate", keyboard + 12),
    FieldInfo::u8("data-bits", keyboard + 16),
    FieldInfo::u8("parity", keyboard + 17).named(parity),
    FieldInfo::u8("stop-bits", keyboard + 18),
    FieldInfo::u8("flow-control", keyboard + 19).named(flowControl),
    FieldInfo::u32("ptz-control", keyboard + 20).named(offOn),
};

constexpr ValueName remoteId[] = {{0, "All"}};
constexpr int remoteControl = at(Section::RemoteControl);
constexpr FieldInfo remoteControlFields[] = {
    FieldInfo::u32("remote-id", remoteControl).named(remoteId),
    FieldInfo::u32("enabled", remoteControl + 4).named(offOn),
};

constexpr ValueName backupMedia[] = {{0, "USB Memory"}, {1, "USB Disk"}, {2, "DVD"}};
constexpr int smartBackup = at(Section::SmartBackup);
constexpr FieldInfo smartBackupFields[] = {
    FieldInfo::u32("enabled", smartBackup).named(offOn),
    FieldInfo::u32("media", smartBackup + 4).named(backupMedia),
    FieldInfo::u32("channels", smartBackup + 8).hex(),
    FieldInfo::u32("days", smartBackup + 12).hex().named(dayBits),
    FieldInfo::u16("start-hour", smartBackup + 16),
    FieldInfo::u16("start-minute", smartBackup + 18),
    FieldInfo::u32("span-hours", smartBackup + 20),
    FieldInfo::u32("overwrite", smartBackup + 24).named(offOn),
};

// ---- NETWORK ---------------------------------------------------------------

// The stream page writes the whole NETWORK block. It owns the 276 bytes before
// the notification section (the recorder's network identity and per-channel
// stream settings, which import and factory default leave alone) and the four
// 40-byte central monitoring server entries after it.
constexpr ValueName ipMode[] = {{0, "Static"}, {1, "DHCP"}};
constexpr ValueName streamResolution[] = {
    {0, "704x480/576"},
    {1, "704x240/288"},
    {2, "352x480/576"},
    {3, "352x240/288"},
};
constexpr int stream = at(Section::Stream);
constexpr int streamChannels = stream + 84;
constexpr int monitorServers = at(Section::Notification) + 836;
constexpr FieldInfo streamFields[] = {
    FieldInfo::u32("ip-mode", stream).named(ipMode),
    FieldInfo::bytes("ip-address", stream + 4, 4).dotted(),
    FieldInfo::bytes("subnet-mask", stream + 8, 4).dotted(),
    FieldInfo::bytes("gateway", stream + 12, 4).dotted(),
    FieldInfo::bytes("dns-server", stream + 16, 4).dotted(),
    FieldInfo::u16("remote-port", stream + 20),
    FieldInfo::u16("web-port", stream + 22),
    FieldInfo::u32("max-bandwidth", stream + 24),
    FieldInfo::u32("ddns", stream + 28).named(offOn),
    FieldInfo::text("ddns-host", stream + 32, 48),
    FieldInfo::u32("audio", stream + 80).named(offOn),
    FieldInfo::u8("enabled", streamChannels).repeat(16, 12).named(offOn),
    FieldInfo::u8("resolution", streamChannels + 1).repeat(16, 12).named(streamResolution),
    FieldInfo::u8("frame-rate", streamChannels + 2).repeat(16, 12),
    FieldInfo::u8("quality", streamChannels + 3).repeat(16, 12).named(levels),
    FieldInfo::u32("bitrate", streamChannels + 4).repeat(16, 12),
    FieldInfo::u32("key-frame-interval", streamChannels + 8).repeat(16, 12),
    FieldInfo::u32("cms-enabled", monitorServers).repeat(4, 40).named(offOn),
    FieldInfo::text("cms-host", monitorServers + 4, 32).repeat(4, 40),
    FieldInfo::u16("cms-port", monitorServers + 36).repeat(4, 40),
    FieldInfo::u16("cms-events", monitorServers + 38).repeat(4, 40).hex(),
};

constexpr ValueName mailSecurity[] = {{0, "None"}, {1, "SSL"}, {2, "TLS"}};
constexpr int email = at(Section::Email);
constexpr FieldInfo emailFields[] = {
    FieldInfo::u32("enabled", email).named(offOn),
    FieldInfo::text("smtp-server", email + 4, 64),
    FieldInfo::u16("smtp-port", email + 68),
    FieldInfo::u16("security", email + 70).named(mailSecurity),
    FieldInfo::text("user", email + 72, 32),
    FieldInfo::text("password", email + 104, 32),
    FieldInfo::text("sender", email + 136, 64),
    FieldInfo::text("recipient", email + 200, 64).repeat(3, 64),
    FieldInfo::text("subject", email + 392, 32),
    FieldInfo::u32("attach-image", email + 424).named(offOn),
    FieldInfo::u32("authentication", email + 428).named(offOn),
};

constexpr int networkEvent = at(Section::NetworkEvent);
constexpr FieldInfo networkEventFields[] = {
    FieldInfo::u32("notify", networkEvent).named(offOn),
    FieldInfo::u32("min-interval", networkEvent + 4),
    FieldInfo::u32("alarm-enabled", networkEvent + 8).named(offOn),
    FieldInfo::u32("alarm-channels", networkEvent + 12).hex(),
    FieldInfo::u32("alarm-actions", networkEvent + 16).hex(),
    FieldInfo::u32("motion-enabled", networkEvent + 20).named(offOn),
    FieldInfo::u32("motion-channels", networkEvent + 24).hex(),
    FieldInfo::u32("motion-actions", networkEvent + 28).hex(),
    FieldInfo::u32("video-loss-enabled", networkEvent + 32).named(offOn),
    FieldInfo::u32("video-loss-channels", networkEvent + 36).hex(),
    FieldInfo::u32("video-loss-actions", networkEvent + 40).hex(),
    FieldInfo::u32("disk-full-enabled", networkEvent + 44).named(offOn),
    FieldInfo::u32("disk-full-actions", networkEvent + 48).hex(),
    FieldInfo::u32("disk-error-enabled", networkEvent + 52).named(offOn),
    FieldInfo::u32("disk-error-actions", networkEvent + 56).hex(),
    FieldInfo::u32("power-on-enabled", networkEvent + 60).named(offOn),
    FieldInfo::u32("power-on-actions", networkEvent + 64).hex(),
    FieldInfo::u32("login-failure-enabled", networkEvent + 68).named(offOn),
    FieldInfo::u32("login-failure-actions", networkEvent + 72).hex(),
};

// ---- the groups ------------------------------------------------------------

constexpr FieldGroup group(Section id, std::span<const FieldInfo> fields)
{
    const SectionInfo &s = SetupRecordMap::Sections[std::size_t(id)];
    return {s.key, s.offset, s.length, fields};
}

constexpr FieldGroup allGroups[] = {
    {"header", 0, SetupRecordMap::HeaderSize, headerFields},
    group(Section::Users, usersFields),
    group(Section::Audio, audioFields),
    group(Section::Buzzer, buzzerFields),
    group(Section::DateTime, dateTimeFields),
    group(Section::DaylightSaving, dstFields),
    group(Section::Osd, osdFields),
    group(Section::EventDisplay, eventDisplayFields),
    group(Section::Interval, intervalFields),
    group(Section::Camera, cameraFields),
    group(Section::Ptz, ptzFields),
    group(Section::Motion, motionFields),
    group(Section::AlarmIn, alarmInFields),
    group(Section::AlarmOut, alarmOutFields),
    group(Section::VideoLoss, videoLossFields),
    group(Section::RecordSetup, recordFields),
    group(Section::Schedule, scheduleFields),
    group(Section::Holiday, holidayFields),
    group(Section::Rs232c, rs232cFields),
    group(Section::Keyboard, keyboardFields),
    group(Section::RemoteControl, remoteControlFields),
    group(Section::SmartBackup, smartBackupFields),
    group(Section::Stream, streamFields),
    group(Section::Notification, {}),
    group(Section::Email, emailFields),
    group(Section::NetworkEvent, networkEventFields),
};
static_assert(std::size(allGroups) == SetupRecordMap::Sections.size() + 1);

// Where element [i][j] lies, or -1 when the index or the bytes are outside.
int elementAt(qsizetype recordSize, const FieldInfo &field, int i, int j)
{
    if (!field.hasElement(i, j))
        return -1;
    const int offset = field.elementOffset(i, j);
    return LittleEndian::fits(recordSize, offset, field.width) ? offset : -1;
}

} // namespace

const FieldGroup &FieldTable::header()
{
    return allGroups[0];
}

const FieldGroup &FieldTable::section(Section id)
{
    return allGroups[std::size_t(id) + 1];
}

std::span<const FieldGroup> FieldTable::groups()
{
    return allGroups;
}

const FieldGroup *FieldTable::findGroup(QAnyStringView key)
{
    for (const FieldGroup &g : allGroups) {
        if (QAnyStringView::compare(key, QLatin1StringView(g.key)) == 0)
            return &g;
    }
    return nullptr;
}

const FieldInfo *FieldTable::findField(const FieldGroup &group, QAnyStringView name)
{
    for (const FieldInfo &f : group.fields) {
        if (QAnyStringView::compare(name, QLatin1StringView(f.name)) == 0)
            return &f;
    }
    return nullptr;
}

quint32 FieldTable::number(QByteArrayView record, const FieldInfo &field, int i, int j)
{
    const int offset = elementAt(record.size(), field, i, j);
    if (offset < 0)
        return 0;
    switch (field.type) {
    case FieldType::U8:
        return LittleEndian::u8(record, offset);
    case FieldType::U16:
        return LittleEndian::u16(record, offset);
    case FieldType::U32:
    case FieldType::I32:
        return LittleEndian::u32(record, offset);
    case FieldType::Text:
    case FieldType::Bytes:
        break;
    }
    return 0;
}

QByteArrayView FieldTable::bytes(QByteArrayView record, const FieldInfo &field, int i, int j)
{
    const int offset = elementAt(record.size(), field, i, j);
    return offset < 0 ? QByteArrayView() : record.sliced(offset, field.width);
}

QByteArray FieldTable::text(QByteArrayView record, const FieldInfo &field, int i, int j)
{
    const int offset = elementAt(record.size(), field, i, j);
    return offset < 0 ? QByteArray() : LittleEndian::text(record, offset, field.width);
}

bool FieldTable::setNumber(QByteArray &record, const FieldInfo &field, quint32 value, int i, int j)
{
    const int offset = elementAt(record.size(), field, i, j);
    if (offset < 0)
        return false;
    switch (field.type) {
    case FieldType::U8:
        return LittleEndian::setU8(record, offset, quint8(value));
    case FieldType::U16:
        return LittleEndian::setU16(record, offset, quint16(value));
    case FieldType::U32:
    case FieldType::I32:
        return LittleEndian::setU32(record, offset, value);
    case FieldType::Text:
    case FieldType::Bytes:
        break;
    }
    return false;
}

bool FieldTable::setBytes(QByteArray &record, const FieldInfo &field, QByteArrayView value, int i,
                          int j)
{
    const int offset = elementAt(record.size(), field, i, j);
    return offset >= 0 && LittleEndian::setText(record, offset, field.width, value);
}

} // namespace setup
