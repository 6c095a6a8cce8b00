// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/FieldInfo.h"
#include "setup/SetupRecordMap.h"
#include "setup/TimeZones.h"

// The fields of the setup record, one namespace per section: a page, the
// command line and the tests name a field at compile time
// (setup::fields::alarmIn::dwell), and FieldTable lists each section's `all`
// for decoding, dumping and diffing. Offsets are record offsets.
namespace setup::fields {

constexpr int at(Section id)
{
    return SetupRecordMap::Sections[std::size_t(id)].offset;
}

// Value names shared by several fields.

namespace values {
inline constexpr ValueName offOn[] = {{0, "Off"}, {1, "On"}};
inline constexpr ValueName noYes[] = {{0, "No"}, {1, "Yes"}};
inline constexpr ValueName levels[] = {
    {0, "Highest"}, {1, "High"}, {2, "Normal"}, {3, "Low"}, {4, "Lowest"},
};
inline constexpr ValueName parity[] = {{0, "None"}, {1, "Odd"}, {2, "Even"}};
inline constexpr ValueName flowControl[] = {{0, "None"}, {1, "RTS/CTS"}};
inline constexpr ValueName weekdays[] = {
    {0, "Sunday"},   {1, "Monday"}, {2, "Tuesday"},  {3, "Wednesday"},
    {4, "Thursday"}, {5, "Friday"}, {6, "Saturday"},
};
// Day bit sets of the alarm-out schedule and smart backup.
inline constexpr ValueName dayBits[] = {
    {0x01, "Sunday"},   {0x02, "Monday"}, {0x04, "Tuesday"},  {0x08, "Wednesday"},
    {0x10, "Thursday"}, {0x20, "Friday"}, {0x40, "Saturday"}, {0x7F, "Every Day"},
};
} // namespace values

// The channels of a channel mask: bit n stands for channel n + 1.
namespace values {
inline constexpr ValueName channelBits[] = {
    {0x0001, "Ch 01"}, {0x0002, "Ch 02"}, {0x0004, "Ch 03"}, {0x0008, "Ch 04"},
    {0x0010, "Ch 05"}, {0x0020, "Ch 06"}, {0x0040, "Ch 07"}, {0x0080, "Ch 08"},
    {0x0100, "Ch 09"}, {0x0200, "Ch 10"}, {0x0400, "Ch 11"}, {0x0800, "Ch 12"},
    {0x1000, "Ch 13"}, {0x2000, "Ch 14"}, {0x4000, "Ch 15"}, {0x8000, "Ch 16"},
};
// The alarm outputs of an alarm-out word: bit k stands for output k + 1.
inline constexpr ValueName alarmOutputBits[] = {
    {0x0001, "1"},  {0x0002, "2"},  {0x0004, "3"},  {0x0008, "4"},  {0x0010, "5"},  {0x0020, "6"},
    {0x0040, "7"},  {0x0080, "8"},  {0x0100, "9"},  {0x0200, "10"}, {0x0400, "11"}, {0x0800, "12"},
    {0x1000, "13"}, {0x2000, "14"}, {0x4000, "15"}, {0x8000, "16"},
};
} // namespace values

// ---- header ---------------------------------------------------------------

namespace header {
inline constexpr FieldInfo layoutVersion
    = FieldInfo::u32("layout-version", SetupRecordMap::LayoutVersionOffset).hex();
inline constexpr FieldInfo softwareVersion
    = FieldInfo::bytes("software-version", SetupRecordMap::SoftwareVersionOffset, 4).dotted();
inline constexpr FieldInfo recordSize = FieldInfo::u32("record-size", 8);
inline constexpr FieldInfo channelRecords = FieldInfo::u32("channel-records", 12);
inline constexpr FieldInfo modelId = FieldInfo::u32("model-id", SetupRecordMap::ModelIdOffset);
inline constexpr FieldInfo all[]
    = {layoutVersion, softwareVersion, recordSize, channelRecords, modelId};
} // namespace header

// ---- SYSTEM ----------------------------------------------------------------

namespace values {
inline constexpr ValueName autoLogout[] = {
    {0, "Off"},     {1, "1 Min"},   {3, "3 Min"},   {5, "5 Min"},
    {10, "10 Min"}, {30, "30 Min"}, {60, "60 Min"},
};
inline constexpr ValueName autoLogin[] = {
    {0, "Off"},   {1, "Admin"}, {2, "Manager1"}, {3, "Manager2"}, {4, "Manager3"}, {5, "User1"},
    {6, "User2"}, {7, "User3"}, {8, "User4"},    {9, "User5"},    {10, "User6"},   {11, "User7"},
};
// The rights of an account's rights word: bit r stands for right r.
inline constexpr ValueName rights[] = {
    {1u << 0, "Alarm-Out"},    {1u << 1, "Backup"},       {1u << 2, "Camera"},
    {1u << 3, "Device"},       {1u << 4, "Event"},        {1u << 5, "Format HDD"},
    {1u << 6, "Import Setup"}, {1u << 7, "Network"},      {1u << 8, "Network Access"},
    {1u << 9, "Playback"},     {1u << 10, "Pre-Alarm"},   {1u << 11, "PTZ Camera"},
    {1u << 12, "Record"},      {1u << 13, "Schedule"},    {1u << 14, "System Log"},
    {1u << 15, "System Time"}, {1u << 16, "Upgrade S/W"}, {1u << 17, "User Setup"},
};
} // namespace values
namespace users {
inline constexpr int base = at(Section::Users);
inline constexpr FieldInfo password = FieldInfo::text("password", base, 12).repeat(11, 12);
inline constexpr FieldInfo autoLogout
    = FieldInfo::u32("auto-logout", base + 132).named(values::autoLogout).labelled("Auto Logout");
inline constexpr FieldInfo autoLogin
    = FieldInfo::u32("auto-login", base + 136).named(values::autoLogin).labelled("Auto Login");
inline constexpr FieldInfo rights
    = FieldInfo::u32("rights", base + 140).repeat(11, 4).hex().bits(values::rights);
inline constexpr FieldInfo all[] = {password, autoLogout, autoLogin, rights};
} // namespace users

namespace values {
inline constexpr ValueName liveAudio[] = {
    {0, "Off"}, {1, "Audio 1"}, {2, "Audio 2"}, {3, "Audio 3"}, {4, "Audio 4"}, {5, "Auto"},
};
} // namespace values
namespace audio {
inline constexpr int base = at(Section::Audio);
inline constexpr FieldInfo inputEnabled
    = FieldInfo::u8("input-enabled", base).repeat(4, 1).named(values::offOn).labelled("Input");
inline constexpr FieldInfo inputVolume
    = FieldInfo::u8("input-volume", base + 4).repeat(4, 1).range(0, 15).labelled("Volume");
inline constexpr FieldInfo liveOutput
    = FieldInfo::u32("live-output", base + 8).named(values::liveAudio).labelled("Live Output");
inline constexpr FieldInfo outputVolume
    = FieldInfo::u32("output-volume", base + 12).range(0, 15).labelled("Output Volume");
inline constexpr FieldInfo recordAudio
    = FieldInfo::u32("record-audio", base + 16).named(values::offOn).labelled("Record Audio");
inline constexpr FieldInfo networkAudio
    = FieldInfo::u32("network-audio", base + 20).named(values::offOn).labelled("Network Audio");
inline constexpr FieldInfo all[]
    = {inputEnabled, inputVolume, liveOutput, outputVolume, recordAudio, networkAudio};
} // namespace audio

namespace values {
inline constexpr ValueName beepTime[] = {
    {0, "Until Key Press"}, {5, "5 Sec"}, {10, "10 Sec"}, {30, "30 Sec"}, {60, "1 Min"},
};
} // namespace values
namespace buzzer {
inline constexpr int base = at(Section::Buzzer);
inline constexpr FieldInfo keyTone
    = FieldInfo::u8("key-tone", base).named(values::offOn).labelled("Key Tone");
inline constexpr FieldInfo eventBuzzer
    = FieldInfo::u8("event-buzzer", base + 1).named(values::offOn).labelled("Event Buzzer");
inline constexpr FieldInfo diskFull
    = FieldInfo::u8("disk-full", base + 2).named(values::offOn).labelled("Disk Full");
inline constexpr FieldInfo diskError
    = FieldInfo::u8("disk-error", base + 3).named(values::offOn).labelled("Disk Error");
inline constexpr FieldInfo beepTime
    = FieldInfo::u32("beep-time", base + 4).named(values::beepTime).labelled("Beep Time");
inline constexpr FieldInfo all[] = {keyTone, eventBuzzer, diskFull, diskError, beepTime};
} // namespace buzzer

// ---- DISPLAY ---------------------------------------------------------------

namespace values {
inline constexpr ValueName dateFormat[] = {{0, "YYYY/MM/DD"}, {1, "MM/DD/YYYY"}, {2, "DD/MM/YYYY"}};
inline constexpr ValueName timeFormat[] = {{0, "24 Hour"}, {1, "12 Hour"}};
inline constexpr ValueName syncInterval[] = {
    {1, "1 Hour"},
    {6, "6 Hours"},
    {12, "12 Hours"},
    {24, "24 Hours"},
};
} // namespace values
namespace dateTime {
inline constexpr int base = at(Section::DateTime);
inline constexpr FieldInfo timeZone
    = FieldInfo::u32("time-zone", base).named(TimeZoneNames).labelled("Time Zone");
inline constexpr FieldInfo utcOffset = FieldInfo::i32("utc-offset", base + 4).range(-720, 780);
inline constexpr FieldInfo dateFormat
    = FieldInfo::u32("date-format", base + 8).named(values::dateFormat).labelled("Display Format");
inline constexpr FieldInfo timeFormat = FieldInfo::u32("time-format", base + 12)
                                            .named(values::timeFormat)
                                            .labelled("Date/Time Format");
inline constexpr FieldInfo dst
    = FieldInfo::u32("dst", base + 16).named(values::offOn).labelled("DST Time");
// The switch and the address share the "Server" row.
inline constexpr FieldInfo timeSync
    = FieldInfo::u32("time-sync", base + 20).named(values::offOn).labelled("Server");
inline constexpr FieldInfo syncInterval = FieldInfo::u32("sync-interval", base + 24)
                                              .named(values::syncInterval)
                                              .labelled("Sync. Interval");
inline constexpr FieldInfo timeServer
    = FieldInfo::bytes("time-server", base + 28, 4).dotted().labelled("Server");
inline constexpr FieldInfo all[]
    = {timeZone, utcOffset, dateFormat, timeFormat, dst, timeSync, syncInterval, timeServer};
} // namespace dateTime

namespace values {
inline constexpr ValueName months[] = {
    {1, "January"},   {2, "February"}, {3, "March"},     {4, "April"},
    {5, "May"},       {6, "June"},     {7, "July"},      {8, "August"},
    {9, "September"}, {10, "October"}, {11, "November"}, {12, "December"},
};
inline constexpr ValueName dstWeek[] = {
    {0, "Fixed Date"}, {1, "1st"}, {2, "2nd"}, {3, "3rd"}, {4, "4th"}, {5, "Last"},
};
// The day of a fixed-date rule; 0 where the rule counts weeks.
inline constexpr ValueName dayOfMonth[] = {
    {0, "--"},  {1, "1"},   {2, "2"},   {3, "3"},   {4, "4"},   {5, "5"},   {6, "6"},   {7, "7"},
    {8, "8"},   {9, "9"},   {10, "10"}, {11, "11"}, {12, "12"}, {13, "13"}, {14, "14"}, {15, "15"},
    {16, "16"}, {17, "17"}, {18, "18"}, {19, "19"}, {20, "20"}, {21, "21"}, {22, "22"}, {23, "23"},
    {24, "24"}, {25, "25"}, {26, "26"}, {27, "27"}, {28, "28"}, {29, "29"}, {30, "30"}, {31, "31"},
};
// 24 is the end of the day.
inline constexpr ValueName dstHour[] = {
    {0, "00"},  {1, "01"},  {2, "02"},  {3, "03"},  {4, "04"},  {5, "05"},  {6, "06"},
    {7, "07"},  {8, "08"},  {9, "09"},  {10, "10"}, {11, "11"}, {12, "12"}, {13, "13"},
    {14, "14"}, {15, "15"}, {16, "16"}, {17, "17"}, {18, "18"}, {19, "19"}, {20, "20"},
    {21, "21"}, {22, "22"}, {23, "23"}, {24, "24"},
};
} // namespace values
namespace dst {
inline constexpr int base = at(Section::DaylightSaving);
inline constexpr FieldInfo startMonth
    = FieldInfo::u16("start-month", base).named(values::months).labelled("Month");
inline constexpr FieldInfo startWeek
    = FieldInfo::u16("start-week", base + 2).named(values::dstWeek).labelled("Week");
inline constexpr FieldInfo startWeekday
    = FieldInfo::u16("start-weekday", base + 4).named(values::weekdays).labelled("Day");
inline constexpr FieldInfo startDay
    = FieldInfo::u16("start-day", base + 6).named(values::dayOfMonth).labelled("Date");
inline constexpr FieldInfo startHour
    = FieldInfo::u16("start-hour", base + 8).named(values::dstHour).labelled("Hour");
inline constexpr FieldInfo endMonth
    = FieldInfo::u16("end-month", base + 10).named(values::months).labelled("Month");
inline constexpr FieldInfo endWeek
    = FieldInfo::u16("end-week", base + 12).named(values::dstWeek).labelled("Week");
inline constexpr FieldInfo endWeekday
    = FieldInfo::u16("end-weekday", base + 14).named(values::weekdays).labelled("Day");
inline constexpr FieldInfo endDay
    = FieldInfo::u16("end-day", base + 16).named(values::dayOfMonth).labelled("Date");
inline constexpr FieldInfo endHour
    = FieldInfo::u16("end-hour", base + 18).named(values::dstHour).labelled("Hour");
inline constexpr FieldInfo all[] = {startMonth, startWeek, startWeekday, startDay, startHour,
                                    endMonth,   endWeek,   endWeekday,   endDay,   endHour};
} // namespace dst

namespace values {
inline constexpr ValueName osdTimeOut[] = {
    {0xFFFFFFFF, "Off"}, {10, "10 Sec"},  {30, "30 Sec"},   {60, "1 Min"},    {180, "3 Min"},
    {300, "5 Min"},      {900, "15 Min"}, {1800, "30 Min"}, {3600, "60 Min"},
};
// Spelled as the recorder's own menu lists them.
inline constexpr ValueName languages[] = {
    {0, "English"}, {1, "Korea"},   {2, "Japanese"}, {3, "Chinese"},    {4, "French"},
    {5, "German"},  {6, "Italian"}, {7, "Spanish"},  {8, "Ukrainaian"}, {9, "Russian"},
};
inline constexpr ValueName osdItems[] = {
    {0x01, "Camera Title"},   {0x02, "Alarm/Motion Event"}, {0x04, "Percent Bar"},
    {0x08, "Channel Status"}, {0x10, "Date/Time"},
};
} // namespace values
namespace osd {
inline constexpr int base = at(Section::Osd);
inline constexpr FieldInfo timeOut
    = FieldInfo::u32("time-out", base).named(values::osdTimeOut).labelled("Time Out");
inline constexpr FieldInfo liveItems
    = FieldInfo::u32("live-items", base + 4).hex().bits(values::osdItems).labelled("Live");
// Play back shows the first four items.
inline constexpr FieldInfo playbackItems = FieldInfo::u32("playback-items", base + 8)
                                               .hex()
                                               .bits(std::span(values::osdItems).first(4))
                                               .labelled("Play Back");
inline constexpr FieldInfo language
    = FieldInfo::u32("language", base + 16).named(values::languages).labelled("Language");
inline constexpr FieldInfo marginTop
    = FieldInfo::u8("margin-top", base + 20).range(0, 50).labelled("Top");
inline constexpr FieldInfo marginBottom
    = FieldInfo::u8("margin-bottom", base + 21).range(0, 50).labelled("Bottom");
inline constexpr FieldInfo marginLeft
    = FieldInfo::u8("margin-left", base + 22).range(0, 50).labelled("Left");
inline constexpr FieldInfo marginRight
    = FieldInfo::u8("margin-right", base + 23).range(0, 50).labelled("Right");
inline constexpr FieldInfo all[] = {timeOut,   liveItems,    playbackItems, language,
                                    marginTop, marginBottom, marginLeft,    marginRight};
} // namespace osd

// The event display page writes the whole DISPLAY block; these are the bytes
// that no other DISPLAY section describes. The monitor settings (684-699) are
// the recorder's own hardware: an import keeps them, a factory default resets them.
namespace values {
inline constexpr ValueName mainOutput[] = {{0, "CVBS"}, {1, "VGA"}, {2, "HDMI"}};
inline constexpr ValueName vgaResolution[] = {
    {0, "800x600"},
    {1, "1024x768"},
    {2, "1280x1024"},
    {3, "1920x1080"},
};
inline constexpr ValueName spotMode[] = {{0, "Off"}, {1, "Sequence"}, {2, "Event"}};
} // namespace values
namespace eventDisplay {
inline constexpr int display = at(Section::EventDisplay);
inline constexpr FieldInfo mainOutput
    = FieldInfo::u32("main-output", display + 80).named(values::mainOutput).labelled("Main Output");
inline constexpr FieldInfo vgaResolution = FieldInfo::u32("vga-resolution", display + 84)
                                               .named(values::vgaResolution)
                                               .labelled("VGA Resolution");
inline constexpr FieldInfo brightness
    = FieldInfo::u32("brightness", display + 88).range(0, 100).labelled("Brightness");
inline constexpr FieldInfo contrast
    = FieldInfo::u32("contrast", display + 92).range(0, 100).labelled("Contrast");
inline constexpr FieldInfo eventPopup
    = FieldInfo::u32("event-popup", display + 96).named(values::offOn).labelled("Event Pop-Up");
inline constexpr FieldInfo popupDwell
    = FieldInfo::u32("popup-dwell", display + 100).range(1, 99).labelled("Pop-Up Time(Sec)");
inline constexpr FieldInfo spotMode
    = FieldInfo::u32("spot-mode", display + 104).named(values::spotMode).labelled("Spot Mode");
inline constexpr FieldInfo spotChannel = FieldInfo::u8("spot-channel", display + 108)
                                             .repeat(16, 1)
                                             .named(values::offOn)
                                             .labelled("Spot Channel");
inline constexpr FieldInfo spotPopup
    = FieldInfo::u32("spot-popup", display + 124).named(values::offOn).labelled("Spot Pop-Up");
inline constexpr FieldInfo sequenceChannels = FieldInfo::u32("sequence-channels", display + 128)
                                                  .hex()
                                                  .bits(values::channelBits)
                                                  .labelled("Sequence Channel");
inline constexpr FieldInfo all[]
    = {mainOutput, vgaResolution, brightness,  contrast,  eventPopup,
       popupDwell, spotMode,      spotChannel, spotPopup, sequenceChannels};
} // namespace eventDisplay

namespace values {
inline constexpr ValueName intervalTimeOut[] = {
    {10, "10 Sec"}, {30, "30 Sec"}, {60, "60 Sec"}, {180, "180 Sec"}, {300, "300 Sec"},
};
} // namespace values
namespace interval {
inline constexpr int base = at(Section::Interval);
inline constexpr FieldInfo sequence
    = FieldInfo::u32("sequence", base).range(1, 30).labelled("Sequence(Sec)");
inline constexpr FieldInfo pip = FieldInfo::u32("pip", base + 4).range(1, 30).labelled("PIP(Sec)");
inline constexpr FieldInfo spot
    = FieldInfo::u32("spot", base + 8).range(1, 30).labelled("Spot Monitor(Sec)");
inline constexpr FieldInfo eventUpdate
    = FieldInfo::u32("event-update", base + 16).range(1, 3).labelled("Event Update Time");
// The switch and the list share the "Time Out" row.
inline constexpr FieldInfo timeOutSwitch
    = FieldInfo::u16("time-out-switch", base + 20).named(values::offOn).labelled("Time Out");
inline constexpr FieldInfo timeOut
    = FieldInfo::u16("time-out", base + 22).named(values::intervalTimeOut).labelled("Time Out");
inline constexpr FieldInfo all[] = {sequence, pip, spot, eventUpdate, timeOutSwitch, timeOut};
} // namespace interval

// ---- CAMERA ----------------------------------------------------------------

namespace values {
inline constexpr ValueName cameraAudio[] = {
    {0, "Off"}, {1, "Ch 01"}, {2, "Ch 02"}, {4, "Ch 03"}, {8, "Ch 04"},
};
} // namespace values
namespace camera {
inline constexpr int base = at(Section::Camera);
inline constexpr FieldInfo title
    = FieldInfo::text("title", base, 20).repeat(16, 48).labelled("Camera Title");
inline constexpr FieldInfo covert
    = FieldInfo::u8("covert", base + 23).repeat(16, 48).named(values::offOn).labelled("Covert");
inline constexpr FieldInfo audio
    = FieldInfo::u8("audio", base + 32).repeat(16, 48).named(values::cameraAudio).labelled("Audio");
inline constexpr FieldInfo all[] = {title, covert, audio};
} // namespace camera

namespace values {
inline constexpr ValueName ptzProtocol[] = {
    {0, "Pelco-D"},
    {1, "Pelco-P"},
    {2, "Samsung"},
    {3, "Panasonic"},
};
inline constexpr ValueName ptzBaudRate[] = {
    {2400, "2400"}, {4800, "4800"}, {9600, "9600"}, {19200, "19200"}, {38400, "38400"},
};
inline constexpr ValueName ptzDataBits[] = {{7, "7"}, {8, "8"}};
inline constexpr ValueName ptzStopBits[] = {{1, "1"}, {2, "2"}};
} // namespace values
namespace ptz {
inline constexpr int base = at(Section::Ptz);
inline constexpr FieldInfo inUse
    = FieldInfo::u32("in-use", base).repeat(16, 40).named(values::offOn);
inline constexpr FieldInfo protocol = FieldInfo::u32("protocol", base + 4)
                                          .repeat(16, 40)
                                          .named(values::ptzProtocol)
                                          .labelled("Protocol");
inline constexpr FieldInfo controlId
    = FieldInfo::u32("control-id", base + 8).repeat(16, 40).labelled("Control ID").range(0, 255);
inline constexpr FieldInfo baudRate = FieldInfo::u32("baud-rate", base + 16)
                                          .repeat(16, 40)
                                          .named(values::ptzBaudRate)
                                          .labelled("Baudrate");
inline constexpr FieldInfo dataBits = FieldInfo::u32("data-bits", base + 20)
                                          .repeat(16, 40)
                                          .named(values::ptzDataBits)
                                          .labelled("Data Bits");
inline constexpr FieldInfo stopBits = FieldInfo::u32("stop-bits", base + 24)
                                          .repeat(16, 40)
                                          .named(values::ptzStopBits)
                                          .labelled("Stop Bits");
inline constexpr FieldInfo parity
    = FieldInfo::u32("parity", base + 28).repeat(16, 40).named(values::parity).labelled("Parity");
inline constexpr FieldInfo panSpeed
    = FieldInfo::u8("pan-speed", base + 36).repeat(16, 40).labelled("Pan Speed").range(1, 10);
inline constexpr FieldInfo tiltSpeed
    = FieldInfo::u8("tilt-speed", base + 37).repeat(16, 40).labelled("Tilt Speed").range(1, 10);
inline constexpr FieldInfo zoomSpeed
    = FieldInfo::u8("zoom-speed", base + 38).repeat(16, 40).labelled("Zoom Speed").range(1, 10);
inline constexpr FieldInfo all[] = {inUse,    protocol, controlId, baudRate,  dataBits,
                                    stopBits, parity,   panSpeed,  tiltSpeed, zoomSpeed};
} // namespace ptz

// A 64-byte time record, then one 208-byte settings record per channel that
// holds both 24-row masks.
namespace motion {
inline constexpr int base = at(Section::Motion);
inline constexpr int motionSettings = base + 64;
inline constexpr int motionStride = 208;
inline constexpr FieldInfo dayStartHour
    = FieldInfo::u8("day-start-hour", base).repeat(16, 4).range(0, 23);
inline constexpr FieldInfo dayStartMinute
    = FieldInfo::u8("day-start-minute", base + 1).repeat(16, 4).range(0, 59);
inline constexpr FieldInfo nightStartHour
    = FieldInfo::u8("night-start-hour", base + 2).repeat(16, 4).range(0, 23);
inline constexpr FieldInfo nightStartMinute
    = FieldInfo::u8("night-start-minute", base + 3).repeat(16, 4).range(0, 59);
inline constexpr FieldInfo daySensitivity = FieldInfo::u8("day-sensitivity", motionSettings)
                                                .repeat(16, motionStride)
                                                .named(values::levels)
                                                .labelled("Sensitivity");
inline constexpr FieldInfo dayMinBlocks = FieldInfo::u8("day-min-blocks", motionSettings + 1)
                                              .repeat(16, motionStride)
                                              .labelled("Min. Blocks")
                                              .range(1, 99);
inline constexpr FieldInfo nightSensitivity = FieldInfo::u8("night-sensitivity", motionSettings + 2)
                                                  .repeat(16, motionStride)
                                                  .named(values::levels)
                                                  .labelled("Sensitivity");
inline constexpr FieldInfo nightMinBlocks = FieldInfo::u8("night-min-blocks", motionSettings + 3)
                                                .repeat(16, motionStride)
                                                .labelled("Min. Blocks")
                                                .range(1, 99);
inline constexpr FieldInfo beep = FieldInfo::u32("beep", motionSettings + 4)
                                      .repeat(16, motionStride)
                                      .named(values::offOn)
                                      .labelled("Beep");
inline constexpr FieldInfo alarmOut = FieldInfo::u32("alarm-out", motionSettings + 8)
                                          .repeat(16, motionStride)
                                          .hex()
                                          .labelled("Alarm-Out");
inline constexpr FieldInfo dwell = FieldInfo::u32("dwell", motionSettings + 12)
                                       .repeat(16, motionStride)
                                       .labelled("Dwell Time")
                                       .range(1, 99);
inline constexpr FieldInfo dayMask = FieldInfo::u32("day-mask", motionSettings + 16)
                                         .grid(16, motionStride, 24, 4)
                                         .hex()
                                         .labelled("Mask Zone");
inline constexpr FieldInfo nightMask = FieldInfo::u32("night-mask", motionSettings + 112)
                                           .grid(16, motionStride, 24, 4)
                                           .hex()
                                           .labelled("Mask Zone");
inline constexpr FieldInfo all[] = {dayStartHour,     dayStartMinute, nightStartHour,
                                    nightStartMinute, daySensitivity, dayMinBlocks,
                                    nightSensitivity, nightMinBlocks, beep,
                                    alarmOut,         dwell,          dayMask,
                                    nightMask};
} // namespace motion

namespace alarmIn {
inline constexpr int base = at(Section::AlarmIn) + 4; // after the 4-byte head
// With normally-closed, the contact's "Type".
inline constexpr FieldInfo enabled
    = FieldInfo::u32("enabled", base).repeat(16, 24).named(values::offOn).labelled("Type");
inline constexpr FieldInfo normallyClosed
    = FieldInfo::u32("normally-closed", base + 4).repeat(16, 24).named(values::noYes);
inline constexpr FieldInfo beep
    = FieldInfo::u32("beep", base + 8).repeat(16, 24).named(values::offOn).labelled("Beep");
inline constexpr FieldInfo dwell
    = FieldInfo::u32("dwell", base + 12).repeat(16, 24).labelled("Dwell Time").range(1, 99);
inline constexpr FieldInfo recordChannels
    = FieldInfo::u32("record-channels", base + 16).repeat(16, 24).hex().labelled("Record Channel");
inline constexpr FieldInfo alarmOut
    = FieldInfo::u32("alarm-out", base + 20).repeat(16, 24).hex().labelled("Alarm-Out");
inline constexpr FieldInfo all[] = {enabled, normallyClosed, beep, dwell, recordChannels, alarmOut};
} // namespace alarmIn

namespace values {
inline constexpr ValueName alarmOutDwell[] = {
    {1, "Continues"}, {2, "5 Sec"},   {3, "10 Sec"},  {4, "30 Sec"},
    {5, "60 Sec"},    {6, "180 Sec"}, {7, "300 Sec"},
};
inline constexpr ValueName alarmOutEvents[] = {
    {0x1, "Alarm"},
    {0x2, "Motion"},
    {0x4, "Video Loss"},
    {0x7, "All"},
};
} // namespace values
namespace alarmOut {
inline constexpr int base = at(Section::AlarmOut);
inline constexpr int alarmOutLines = base + 196;
inline constexpr FieldInfo lineCount
    = FieldInfo::u32("line-count", base).labelled("Lines in Use").range(0, 21);
// With normally-closed, the output's "Type".
inline constexpr FieldInfo enabled
    = FieldInfo::u32("enabled", base + 4).repeat(16, 12).named(values::offOn).labelled("Type");
inline constexpr FieldInfo normallyClosed
    = FieldInfo::u32("normally-closed", base + 8).repeat(16, 12).named(values::noYes);
inline constexpr FieldInfo dwell = FieldInfo::u32("dwell", base + 12)
                                       .repeat(16, 12)
                                       .named(values::alarmOutDwell)
                                       .labelled("Dwell Time");
inline constexpr FieldInfo days = FieldInfo::u32("days", alarmOutLines)
                                      .repeat(21, 20)
                                      .hex()
                                      .named(values::dayBits)
                                      .labelled("Day");
inline constexpr FieldInfo startHour
    = FieldInfo::u16("start-hour", alarmOutLines + 4).repeat(21, 20).range(0, 23);
inline constexpr FieldInfo startMinute
    = FieldInfo::u16("start-minute", alarmOutLines + 6).repeat(21, 20).range(0, 59);
inline constexpr FieldInfo endHour
    = FieldInfo::u16("end-hour", alarmOutLines + 8).repeat(21, 20).range(0, 23);
inline constexpr FieldInfo endMinute
    = FieldInfo::u16("end-minute", alarmOutLines + 10).repeat(21, 20).range(0, 59);
inline constexpr FieldInfo events = FieldInfo::u32("events", alarmOutLines + 12)
                                        .repeat(21, 20)
                                        .hex()
                                        .named(values::alarmOutEvents)
                                        .labelled("Event");
inline constexpr FieldInfo alarmOut
    = FieldInfo::u32("alarm-out", alarmOutLines + 16).repeat(21, 20).hex().labelled("Alarm-Out");
inline constexpr FieldInfo all[]
    = {lineCount,   enabled, normallyClosed, dwell,  days,    startHour,
       startMinute, endHour, endMinute,      events, alarmOut};
} // namespace alarmOut

namespace videoLoss {
inline constexpr int base = at(Section::VideoLoss) + 8;
inline constexpr FieldInfo beep
    = FieldInfo::u32("beep", base).repeat(16, 16).named(values::offOn).labelled("Beep");
inline constexpr FieldInfo alarmOut = FieldInfo::u32("alarm-out", base + 8)
                                          .repeat(16, 16)
                                          .hex()
                                          .bits(values::alarmOutputBits)
                                          .labelled("Alarm-Out");
inline constexpr FieldInfo all[] = {beep, alarmOut};
} // namespace videoLoss

// ---- RECORD ----------------------------------------------------------------

// Index [mode][channel]: modes 0 Normal, 1 Event, 2 Pre-Event, 3 Panic.
namespace values {
inline constexpr ValueName widthCode[] = {{0, "Not Set"}, {1, "Full"}, {2, "Half"}};
inline constexpr ValueName heightCode[] = {{0, "Full"}, {1, "Half"}};
inline constexpr ValueName quality[] = {
    {0xFF00, "Highest"},
    {0xFF01, "High"},
    {0xFF02, "Normal"},
    {0xFF03, "Low"},
};
// In the order of the page's list: M motion, A alarm, M+A both.
inline constexpr ValueName preEventType[] = {{2, "M"}, {1, "A"}, {3, "M+A"}};
inline constexpr ValueName preEventDwell[] = {
    {1, "1 Sec"}, {2, "2 Sec"}, {3, "3 Sec"}, {4, "4 Sec"}, {5, "5 Sec"},
};
// The lists of the two video standards, by resolution index (width code
// 1 full or 2 half, then height code 0 full or 1 half) and frame-rate index.
inline constexpr ValueName resolutionNtsc[]
    = {{0, "704*480"}, {1, "704*240"}, {2, "352*480"}, {3, "352*240"}};
inline constexpr ValueName resolutionPal[]
    = {{0, "704*576"}, {1, "704*288"}, {2, "352*576"}, {3, "352*288"}};
inline constexpr ValueName frameRateNtsc[]
    = {{0, "1"}, {1, "2"}, {2, "5"}, {3, "10"}, {4, "15"}, {5, "30"}};
inline constexpr ValueName frameRatePal[]
    = {{0, "1"}, {1, "2"}, {2, "4"}, {3, "8"}, {4, "12"}, {5, "25"}};
} // namespace values
namespace record {
inline constexpr int base = at(Section::RecordSetup);
inline constexpr FieldInfo preEvent = FieldInfo::u32("pre-event", base)
                                          .grid(4, 640, 16, 40)
                                          .named(values::offOn)
                                          .labelled("Pre-Event");
inline constexpr FieldInfo widthCode
    = FieldInfo::u32("width-code", base + 4).grid(4, 640, 16, 40).named(values::widthCode);
inline constexpr FieldInfo heightCode
    = FieldInfo::u32("height-code", base + 8).grid(4, 640, 16, 40).named(values::heightCode);
inline constexpr FieldInfo frameRate
    = FieldInfo::u32("frame-rate", base + 12).grid(4, 640, 16, 40).range(0, 5);
inline constexpr FieldInfo frameRateCopy
    = FieldInfo::u32("frame-rate-copy", base + 16).grid(4, 640, 16, 40).range(0, 5);
inline constexpr FieldInfo quality
    = FieldInfo::u16("quality", base + 20).grid(4, 640, 16, 40).hex().named(values::quality);
inline constexpr FieldInfo qualityCopy
    = FieldInfo::u16("quality-copy", base + 22).grid(4, 640, 16, 40).hex().named(values::quality);
inline constexpr FieldInfo eventType = FieldInfo::u32("event-type", base + 32)
                                           .grid(4, 640, 16, 40)
                                           .named(values::preEventType)
                                           .labelled("Type");
inline constexpr FieldInfo dwell = FieldInfo::u32("dwell", base + 36)
                                       .grid(4, 640, 16, 40)
                                       .named(values::preEventDwell)
                                       .labelled("Dwell Time");
inline constexpr FieldInfo all[] = {preEvent, widthCode,   heightCode, frameRate, frameRateCopy,
                                    quality,  qualityCopy, eventType,  dwell};
// What the page edits as one value, each spanning the fields above that
// hold it (so not listed in `all`): the two resolution codes, a frame rate
// and its copy, a quality and its copy.
inline constexpr FieldInfo resolution
    = FieldInfo::bytes("resolution", base + 4, 8).grid(4, 640, 16, 40).labelled("Resolution");
inline constexpr FieldInfo frameRates
    = FieldInfo::bytes("frame-rates", base + 12, 8).grid(4, 640, 16, 40).labelled("FPS");
inline constexpr FieldInfo qualities
    = FieldInfo::bytes("qualities", base + 20, 4).grid(4, 640, 16, 40).labelled("Quality");
} // namespace record

namespace values {
// In the order of the schedule page's lists.
inline constexpr ValueName scheduleDay[] = {
    {1, "SUN"},  {2, "MON"},  {4, "TUE"},   {8, "WED"},   {16, "THU"},
    {32, "FRI"}, {64, "SAT"}, {128, "HOL"}, {127, "ALL"},
};
inline constexpr ValueName scheduleMode[] = {
    {16, "Alarm"}, {32, "Motion"}, {48, "A+M"}, {1, "Continue"}, {33, "M+C"},
};
} // namespace values
namespace schedule {
inline constexpr int base = at(Section::Schedule);
inline constexpr int capacity = 40;
inline constexpr FieldInfo count = FieldInfo::u32("count", base).range(0, capacity);
inline constexpr FieldInfo day = FieldInfo::u32("day", base + 4)
                                     .repeat(capacity, 24)
                                     .named(values::scheduleDay)
                                     .labelled("Day");
inline constexpr FieldInfo startHour
    = FieldInfo::u16("start-hour", base + 8).repeat(capacity, 24).range(0, 23);
inline constexpr FieldInfo startMinute
    = FieldInfo::u16("start-minute", base + 10).repeat(capacity, 24).range(0, 59);
inline constexpr FieldInfo endHour
    = FieldInfo::u16("end-hour", base + 12).repeat(capacity, 24).range(0, 23);
inline constexpr FieldInfo endMinute
    = FieldInfo::u16("end-minute", base + 14).repeat(capacity, 24).range(0, 59);
inline constexpr FieldInfo mode = FieldInfo::u32("mode", base + 16)
                                      .repeat(capacity, 24)
                                      .named(values::scheduleMode)
                                      .labelled("Mode");
inline constexpr FieldInfo channels = FieldInfo::u32("channels", base + 20)
                                          .repeat(capacity, 24)
                                          .hex()
                                          .bits(values::channelBits)
                                          .labelled("Channel");
inline constexpr FieldInfo all[]
    = {count, day, startHour, startMinute, endHour, endMinute, mode, channels};
// An entry as the page edits it: the fields above (so not listed in `all`).
inline constexpr FieldInfo entry
    = FieldInfo::bytes("entry", base + 4, 20).repeat(capacity, 24).labelled("No.");
} // namespace schedule

namespace values {
inline constexpr ValueName holidayKind[] = {{0, "None"}, {1, "Fixed Date"}, {2, "Weekday"}};
} // namespace values
namespace holiday {
inline constexpr int base = at(Section::Holiday);
inline constexpr FieldInfo enabled
    = FieldInfo::u8("enabled", base).named(values::offOn).labelled("Use Holidays");
inline constexpr FieldInfo count = FieldInfo::u8("count", base + 2).range(0, 220);
inline constexpr FieldInfo kind
    = FieldInfo::u32("kind", base + 4).repeat(220, 8).named(values::holidayKind);
// Unused entries hold 0 in both.
inline constexpr FieldInfo month = FieldInfo::u8("month", base + 8).repeat(220, 8).range(0, 12);
inline constexpr FieldInfo day = FieldInfo::u8("day", base + 9).repeat(220, 8).range(0, 31);
inline constexpr FieldInfo weekday
    = FieldInfo::u8("weekday", base + 10).repeat(220, 8).named(values::weekdays);
inline constexpr FieldInfo all[] = {enabled, count, kind, month, day, weekday};
// The list as the page edits it, count and entries: the fields above (so
// not listed in `all`).
inline constexpr FieldInfo entries
    = FieldInfo::bytes("entries", base + 2, 1762).labelled("Holiday");
} // namespace holiday

// ---- DEVICE ----------------------------------------------------------------

// The line settings a serial port of the recorder accepts.
namespace values {
inline constexpr ValueName serialBaudRate[] = {
    {1200, "1200"},   {2400, "2400"},   {4800, "4800"},   {9600, "9600"},
    {19200, "19200"}, {38400, "38400"}, {57600, "57600"}, {115200, "115200"},
};
inline constexpr ValueName serialDataBits[] = {{7, "7"}, {8, "8"}};
inline constexpr ValueName serialStopBits[] = {{1, "1"}, {2, "2"}};
inline constexpr ValueName serialUsage[] = {{0, "Off"}, {1, "Remote Control"}, {2, "Text Input"}};
} // namespace values
namespace rs232c {
inline constexpr int base = at(Section::Rs232c);
inline constexpr FieldInfo baudRate
    = FieldInfo::u32("baud-rate", base).named(values::serialBaudRate).labelled("Baudrate");
inline constexpr FieldInfo dataBits
    = FieldInfo::u8("data-bits", base + 4).named(values::serialDataBits).labelled("Data Bits");
inline constexpr FieldInfo parity
    = FieldInfo::u8("parity", base + 5).named(values::parity).labelled("Parity");
inline constexpr FieldInfo stopBits
    = FieldInfo::u8("stop-bits", base + 6).named(values::serialStopBits).labelled("Stop Bits");
inline constexpr FieldInfo flowControl
    = FieldInfo::u8("flow-control", base + 7).named(values::flowControl).labelled("Flow Control");
inline constexpr FieldInfo usage
    = FieldInfo::u32("usage", base + 8).named(values::serialUsage).labelled("Port Usage");
inline constexpr FieldInfo deviceId
    = FieldInfo::u32("device-id", base + 12).range(0, 255).labelled("Device ID");
inline constexpr FieldInfo textChannels = FieldInfo::u32("text-channels", base + 16)
                                              .hex()
                                              .bits(values::channelBits)
                                              .labelled("Text Channels");
inline constexpr FieldInfo all[]
    = {baudRate, dataBits, parity, stopBits, flowControl, usage, deviceId, textChannels};
} // namespace rs232c

namespace values {
inline constexpr ValueName keyboardProtocol[] = {{0, "Native"}, {1, "Pelco-D"}, {2, "Pelco-P"}};
} // namespace values
namespace keyboard {
inline constexpr int base = at(Section::Keyboard);
inline constexpr FieldInfo enabled
    = FieldInfo::u32("enabled", base).named(values::offOn).labelled("Control Keyboard");
inline constexpr FieldInfo protocol
    = FieldInfo::u32("protocol", base + 4).named(values::keyboardProtocol).labelled("Protocol");
inline constexpr FieldInfo recorderId
    = FieldInfo::u32("recorder-id", base + 8).range(0, 255).labelled("DVR ID");
inline constexpr FieldInfo baudRate
    = FieldInfo::u32("baud-rate", base + 12).named(values::serialBaudRate).labelled("Baudrate");
inline constexpr FieldInfo dataBits
    = FieldInfo::u8("data-bits", base + 16).named(values::serialDataBits).labelled("Data Bits");
inline constexpr FieldInfo parity
    = FieldInfo::u8("parity", base + 17).named(values::parity).labelled("Parity");
inline constexpr FieldInfo stopBits
    = FieldInfo::u8("stop-bits", base + 18).named(values::serialStopBits).labelled("Stop Bits");
inline constexpr FieldInfo flowControl
    = FieldInfo::u8("flow-control", base + 19).named(values::flowControl).labelled("Flow Control");
inline constexpr FieldInfo ptzControl
    = FieldInfo::u32("ptz-control", base + 20).named(values::offOn).labelled("PTZ Control");
inline constexpr FieldInfo all[] = {enabled, protocol, recorderId,  baudRate,  dataBits,
                                    parity,  stopBits, flowControl, ptzControl};
} // namespace keyboard

namespace values {
inline constexpr ValueName remoteId[] = {{0, "All"}};
} // namespace values
namespace remoteControl {
inline constexpr int base = at(Section::RemoteControl);
inline constexpr FieldInfo remoteId = FieldInfo::u32("remote-id", base)
                                          .named(values::remoteId)
                                          .range(0, 99)
                                          .labelled("Remote Control ID");
inline constexpr FieldInfo enabled
    = FieldInfo::u32("enabled", base + 4).named(values::offOn).labelled("Remote Control");
inline constexpr FieldInfo all[] = {remoteId, enabled};
} // namespace remoteControl

namespace values {
inline constexpr ValueName backupMedia[] = {{0, "USB Memory"}, {1, "USB Disk"}, {2, "DVD"}};
// The single days of dayBits, for a check box each.
inline constexpr std::span<const ValueName> weekdayBits(dayBits, 7);
} // namespace values
namespace smartBackup {
inline constexpr int base = at(Section::SmartBackup);
inline constexpr FieldInfo enabled
    = FieldInfo::u32("enabled", base).named(values::offOn).labelled("Smart Backup");
inline constexpr FieldInfo media
    = FieldInfo::u32("media", base + 4).named(values::backupMedia).labelled("Backup Media");
inline constexpr FieldInfo channels
    = FieldInfo::u32("channels", base + 8).hex().bits(values::channelBits).labelled("Channels");
inline constexpr FieldInfo days = FieldInfo::u32("days", base + 12)
                                      .hex()
                                      .named(values::dayBits)
                                      .bits(values::weekdayBits)
                                      .labelled("Backup Days");
inline constexpr FieldInfo startHour
    = FieldInfo::u16("start-hour", base + 16).range(0, 23).labelled("Start Hour");
inline constexpr FieldInfo startMinute
    = FieldInfo::u16("start-minute", base + 18).range(0, 59).labelled("Start Minute");
inline constexpr FieldInfo spanHours
    = FieldInfo::u32("span-hours", base + 20).range(1, 24).labelled("Backup Span (Hours)");
inline constexpr FieldInfo overwrite
    = FieldInfo::u32("overwrite", base + 24).named(values::offOn).labelled("Overwrite");
inline constexpr FieldInfo all[]
    = {enabled, media, channels, days, startHour, startMinute, spanHours, overwrite};
} // namespace smartBackup

// ---- NETWORK ---------------------------------------------------------------

// The stream page writes the whole NETWORK block. It owns the 276 bytes before
// the notification section (the recorder's network identity and per-channel
// stream settings, which import and factory default leave alone) and the four
// 40-byte central monitoring server entries after it.
namespace values {
inline constexpr ValueName ipMode[] = {{0, "Static"}, {1, "DHCP"}};
inline constexpr ValueName streamResolution[] = {
    {0, "704x480/576"},
    {1, "704x240/288"},
    {2, "352x480/576"},
    {3, "352x240/288"},
};
// Frames per second on NTSC / PAL recorders.
inline constexpr ValueName streamFrameRate[] = {
    {0, "1/1"}, {1, "2/2"}, {2, "5/4"}, {3, "10/8"}, {4, "15/12"}, {5, "30/25"},
};
inline constexpr ValueName monitoredEventBits[] = {
    {0x1, "Alarm"},
    {0x2, "Motion"},
    {0x4, "Video Loss"},
};
} // namespace values
namespace stream {
inline constexpr int base = at(Section::Stream);
inline constexpr int streamChannels = base + 84;
inline constexpr int monitorServers = at(Section::Notification) + 836;
inline constexpr FieldInfo ipMode
    = FieldInfo::u32("ip-mode", base).named(values::ipMode).labelled("IP Mode");
inline constexpr FieldInfo ipAddress
    = FieldInfo::bytes("ip-address", base + 4, 4).dotted().labelled("IP Address");
inline constexpr FieldInfo subnetMask
    = FieldInfo::bytes("subnet-mask", base + 8, 4).dotted().labelled("Subnet Mask");
inline constexpr FieldInfo gateway
    = FieldInfo::bytes("gateway", base + 12, 4).dotted().labelled("Gateway");
inline constexpr FieldInfo dnsServer
    = FieldInfo::bytes("dns-server", base + 16, 4).dotted().labelled("DNS Server");
inline constexpr FieldInfo remotePort
    = FieldInfo::u16("remote-port", base + 20).range(1, 65535).labelled("Remote Port");
inline constexpr FieldInfo webPort
    = FieldInfo::u16("web-port", base + 22).range(1, 65535).labelled("Web Port");
inline constexpr FieldInfo maxBandwidth
    = FieldInfo::u32("max-bandwidth", base + 24).range(0, 100000).labelled("Max Bandwidth (kbps)");
inline constexpr FieldInfo ddns
    = FieldInfo::u32("ddns", base + 28).named(values::offOn).labelled("DDNS");
inline constexpr FieldInfo ddnsHost
    = FieldInfo::text("ddns-host", base + 32, 48).labelled("DDNS Host Name");
inline constexpr FieldInfo audio
    = FieldInfo::u32("audio", base + 80).named(values::offOn).labelled("Stream Audio");
inline constexpr FieldInfo enabled = FieldInfo::u8("enabled", streamChannels)
                                         .repeat(16, 12)
                                         .named(values::offOn)
                                         .labelled("Streaming");
inline constexpr FieldInfo resolution = FieldInfo::u8("resolution", streamChannels + 1)
                                            .repeat(16, 12)
                                            .named(values::streamResolution)
                                            .labelled("Resolution");
inline constexpr FieldInfo frameRate = FieldInfo::u8("frame-rate", streamChannels + 2)
                                           .repeat(16, 12)
                                           .named(values::streamFrameRate)
                                           .labelled("Frame Rate");
inline constexpr FieldInfo quality = FieldInfo::u8("quality", streamChannels + 3)
                                         .repeat(16, 12)
                                         .named(values::levels)
                                         .labelled("Quality");
inline constexpr FieldInfo bitrate = FieldInfo::u32("bitrate", streamChannels + 4)
                                         .repeat(16, 12)
                                         .range(64, 16384)
                                         .labelled("Bit Rate (kbps)");
inline constexpr FieldInfo keyFrameInterval
    = FieldInfo::u32("key-frame-interval", streamChannels + 8)
          .repeat(16, 12)
          .range(1, 300)
          .labelled("Key Frame Interval");
inline constexpr FieldInfo cmsEnabled = FieldInfo::u32("cms-enabled", monitorServers)
                                            .repeat(4, 40)
                                            .named(values::offOn)
                                            .labelled("Monitoring Server");
inline constexpr FieldInfo cmsHost
    = FieldInfo::text("cms-host", monitorServers + 4, 32).repeat(4, 40).labelled("Server Host");
inline constexpr FieldInfo cmsPort = FieldInfo::u16("cms-port", monitorServers + 36)
                                         .repeat(4, 40)
                                         .range(1, 65535)
                                         .labelled("Server Port");
inline constexpr FieldInfo cmsEvents = FieldInfo::u16("cms-events", monitorServers + 38)
                                           .repeat(4, 40)
                                           .hex()
                                           .bits(values::monitoredEventBits)
                                           .labelled("Reported Events");
inline constexpr FieldInfo all[]
    = {ipMode,       ipAddress, subnetMask,       gateway,    dnsServer, remotePort, webPort,
       maxBandwidth, ddns,      ddnsHost,         audio,      enabled,   resolution, frameRate,
       quality,      bitrate,   keyFrameInterval, cmsEnabled, cmsHost,   cmsPort,    cmsEvents};
} // namespace stream

namespace values {
inline constexpr ValueName mailSecurity[] = {{0, "None"}, {1, "SSL"}, {2, "TLS"}};
} // namespace values
namespace email {
inline constexpr int base = at(Section::Email);
inline constexpr FieldInfo enabled
    = FieldInfo::u32("enabled", base).named(values::offOn).labelled("Send E-Mail");
inline constexpr FieldInfo smtpServer
    = FieldInfo::text("smtp-server", base + 4, 64).labelled("SMTP Server");
inline constexpr FieldInfo smtpPort
    = FieldInfo::u16("smtp-port", base + 68).range(1, 65535).labelled("SMTP Port");
inline constexpr FieldInfo security
    = FieldInfo::u16("security", base + 70).named(values::mailSecurity).labelled("Security");
inline constexpr FieldInfo user = FieldInfo::text("user", base + 72, 32).labelled("User Name");
inline constexpr FieldInfo password
    = FieldInfo::text("password", base + 104, 32).labelled("Password");
inline constexpr FieldInfo sender = FieldInfo::text("sender", base + 136, 64).labelled("Sender");
inline constexpr FieldInfo recipient
    = FieldInfo::text("recipient", base + 200, 64).repeat(3, 64).labelled("Recipient");
inline constexpr FieldInfo subject = FieldInfo::text("subject", base + 392, 32).labelled("Subject");
inline constexpr FieldInfo attachImage
    = FieldInfo::u32("attach-image", base + 424).named(values::offOn).labelled("Attach Image");
inline constexpr FieldInfo authentication
    = FieldInfo::u32("authentication", base + 428).named(values::offOn).labelled("Authentication");
inline constexpr FieldInfo all[]
    = {enabled, smtpServer, smtpPort, security,    user,          password,
       sender,  recipient,  subject,  attachImage, authentication};
} // namespace email

// Who hears of an event: bit set of every `-actions` field.
namespace values {
inline constexpr ValueName notifyActionBits[] = {
    {0x1, "E-Mail"},
    {0x2, "Clients"},
    {0x4, "Monitoring Servers"},
};
} // namespace values
namespace networkEvent {
inline constexpr int base = at(Section::NetworkEvent);
inline constexpr FieldInfo notify
    = FieldInfo::u32("notify", base).named(values::offOn).labelled("Event Notification");
inline constexpr FieldInfo minInterval
    = FieldInfo::u32("min-interval", base + 4).range(0, 3600).labelled("Min Interval (Sec)");
inline constexpr FieldInfo alarmEnabled
    = FieldInfo::u32("alarm-enabled", base + 8).named(values::offOn).labelled("Alarm");
inline constexpr FieldInfo alarmChannels = FieldInfo::u32("alarm-channels", base + 12)
                                               .hex()
                                               .bits(values::channelBits)
                                               .labelled("Alarm Channels");
inline constexpr FieldInfo alarmActions = FieldInfo::u32("alarm-actions", base + 16)
                                              .hex()
                                              .bits(values::notifyActionBits)
                                              .labelled("Alarm Notify");
inline constexpr FieldInfo motionEnabled
    = FieldInfo::u32("motion-enabled", base + 20).named(values::offOn).labelled("Motion");
inline constexpr FieldInfo motionChannels = FieldInfo::u32("motion-channels", base + 24)
                                                .hex()
                                                .bits(values::channelBits)
                                                .labelled("Motion Channels");
inline constexpr FieldInfo motionActions = FieldInfo::u32("motion-actions", base + 28)
                                               .hex()
                                               .bits(values::notifyActionBits)
                                               .labelled("Motion Notify");
inline constexpr FieldInfo videoLossEnabled
    = FieldInfo::u32("video-loss-enabled", base + 32).named(values::offOn).labelled("Video Loss");
inline constexpr FieldInfo videoLossChannels = FieldInfo::u32("video-loss-channels", base + 36)
                                                   .hex()
                                                   .bits(values::channelBits)
                                                   .labelled("Video Loss Channels");
inline constexpr FieldInfo videoLossActions = FieldInfo::u32("video-loss-actions", base + 40)
                                                  .hex()
                                                  .bits(values::notifyActionBits)
                                                  .labelled("Video Loss Notify");
inline constexpr FieldInfo diskFullEnabled
    = FieldInfo::u32("disk-full-enabled", base + 44).named(values::offOn).labelled("Disk Full");
inline constexpr FieldInfo diskFullActions = FieldInfo::u32("disk-full-actions", base + 48)
                                                 .hex()
                                                 .bits(values::notifyActionBits)
                                                 .labelled("Disk Full Notify");
inline constexpr FieldInfo diskErrorEnabled
    = FieldInfo::u32("disk-error-enabled", base + 52).named(values::offOn).labelled("Disk Error");
inline constexpr FieldInfo diskErrorActions = FieldInfo::u32("disk-error-actions", base + 56)
                                                  .hex()
                                                  .bits(values::notifyActionBits)
                                                  .labelled("Disk Error Notify");
inline constexpr FieldInfo powerOnEnabled
    = FieldInfo::u32("power-on-enabled", base + 60).named(values::offOn).labelled("Power On");
inline constexpr FieldInfo powerOnActions = FieldInfo::u32("power-on-actions", base + 64)
                                                .hex()
                                                .bits(values::notifyActionBits)
                                                .labelled("Power On Notify");
inline constexpr FieldInfo loginFailureEnabled = FieldInfo::u32("login-failure-enabled", base + 68)
                                                     .named(values::offOn)
                                                     .labelled("Login Failure");
inline constexpr FieldInfo loginFailureActions = FieldInfo::u32("login-failure-actions", base + 72)
                                                     .hex()
                                                     .bits(values::notifyActionBits)
                                                     .labelled("Login Failure Notify");
inline constexpr FieldInfo all[] = {
    notify,           minInterval,     alarmEnabled,        alarmChannels,      alarmActions,
    motionEnabled,    motionChannels,  motionActions,       videoLossEnabled,   videoLossChannels,
    videoLossActions, diskFullEnabled, diskFullActions,     diskErrorEnabled,   diskErrorActions,
    powerOnEnabled,   powerOnActions,  loginFailureEnabled, loginFailureActions};
} // namespace networkEvent

} // namespace setup::fields
