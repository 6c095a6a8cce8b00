// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAnyStringView>
#include <QByteArrayView>

#include <array>
#include <span>

namespace setup {

// The six top-level blocks of the setup record, in record order. They are the
// slices of a whole-record write and match the six groups of the navigation.
enum class Block { System, Display, Camera, Record, Device, Network };

// Every slice of the setup record that one setup write sends, ordered by offset.
enum class Section {
    Users,
    Audio,
    Buzzer,
    DateTime,
    DaylightSaving,
    Osd,
    EventDisplay,
    Interval,
    Camera,
    Ptz,
    Motion,
    AlarmIn,
    AlarmOut,
    VideoLoss,
    RecordSetup,
    Schedule,
    Holiday,
    Rs232c,
    Keyboard,
    RemoteControl,
    SmartBackup,
    Stream,
    Notification,
    Email,
    NetworkEvent,
};

struct BlockInfo
{
    Block id;
    const char *name;
    int offset;
    int length;

    constexpr int end() const { return offset + length; }
};

struct SectionInfo
{
    Section id;
    const char *key; // stable short name, used on command lines and in dumps
    quint32 category;
    int offset;
    int length;
    Block block;
    bool readable; // the main window also copies it out of the mirror whole

    constexpr int end() const { return offset + length; }
};

class SetupRecordMap
{
public:
    static constexpr int RecordSize = 15148;
    static constexpr int HeaderSize = 32;
    // The channels whose settings the record holds; a recorder uses the first
    // of them up to its channel count.
    static constexpr int MaxChannels = 16;

    // Header fields (never written to a recorder by the client).
    static constexpr quint32 LayoutVersion = 0x00010011;
    static constexpr int LayoutVersionOffset = 0;
    static constexpr int SoftwareVersionOffset = 4; // bytes a, b, c, d
    static constexpr int ModelIdOffset = 16;

    // Categories that belong to no single section.
    static constexpr quint32 WholeBlockCategory = 8;
    static constexpr quint32 CommitCategory = 9;

    static constexpr std::array<BlockInfo, 6> Blocks {{
        {Block::System, "SYSTEM", 32, 572},
        {Block::Display, "DISPLAY", 604, 696},
        {Block::Camera, "CAMERA", 1300, 7172},
        {Block::Record, "RECORD", 8472, 5312},
        {Block::Device, "DEVICE", 13784, 92},
        {Block::Network, "NETWORK", 13876, 1272},
    }};

    static constexpr std::array<SectionInfo, 25> Sections {{
        {Section::Users, "users", 10, 32, 532, Block::System, false},
        {Section::Audio, "audio", 3, 564, 24, Block::System, true},
        {Section::Buzzer, "buzzer", 6, 588, 8, Block::System, false},
        {Section::DateTime, "date-time", 7, 604, 32, Block::Display, false},
        {Section::DaylightSaving, "dst", 7, 636, 20, Block::Display, true},
        {Section::Osd, "osd", 4, 656, 28, Block::Display, false},
        {Section::EventDisplay, "event-display", 0, 604, 696, Block::Display, false},
        {Section::Interval, "interval", 0, 1268, 24, Block::Display, true},
        {Section::Camera, "camera", 5, 1300, 768, Block::Camera, false},
        {Section::Ptz, "ptz", 5, 2068, 640, Block::Camera, false},
        {Section::Motion, "motion", 5, 2708, 4500, Block::Camera, false},
        {Section::AlarmIn, "alarm-in", 5, 7208, 388, Block::Camera, false},
        {Section::AlarmOut, "alarm-out", 5, 7596, 616, Block::Camera, false},
        {Section::VideoLoss, "video-loss", 5, 8212, 260, Block::Camera, false},
        {Section::RecordSetup, "record", 0, 8472, 5312, Block::Record, false},
        {Section::Schedule, "schedule", 0, 11032, 988, Block::Record, false},
        {Section::Holiday, "holiday", 0, 12020, 1764, Block::Record, false},
        {Section::Rs232c, "rs232c", 11, 13792, 20, Block::Device, true},
        {Section::Keyboard, "keyboard", 12, 13812, 28, Block::Device, false},
        {Section::RemoteControl, "remote-control", 0, 13840, 8, Block::Device, false},
        {Section::SmartBackup, "smart-backup", 0, 13848, 28, Block::Device, false},
        {Section::Stream, "stream", 1, 13876, 1272, Block::Network, false},
        {Section::Notification, "notification", 0, 14152, 836, Block::Network, false},
        {Section::Email, "email", 0, 14152, 432, Block::Network, false},
        {Section::NetworkEvent, "network-event", 0, 14584, 404, Block::Network, false},
    }};

    static const BlockInfo &block(Block id);
    static const SectionInfo &section(Section id);

    // By key ("camera", "alarm-in", ...); null when there is none.
    static const SectionInfo *findSection(QAnyStringView key);
    // The block that holds record offset `offset`; null in the header or past the end.
    static const BlockInfo *blockAt(int offset);
};

} // namespace setup
