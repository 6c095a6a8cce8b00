// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/FieldTable.h"

#include "setup/Fields.h"
#include "setup/LittleEndian.h"

#include <QLatin1StringView>

using nelib::LittleEndian;

namespace setup {

namespace {

// ---- the groups ------------------------------------------------------------

constexpr FieldGroup group(Section id, std::span<const FieldInfo> fields)
{
    const SectionInfo &s = SetupRecordMap::Sections[std::size_t(id)];
    return {s.key, s.offset, s.length, fields};
}

constexpr FieldGroup allGroups[] = {
    {"header", 0, SetupRecordMap::HeaderSize, fields::header::all},
    group(Section::Users, fields::users::all),
    group(Section::Audio, fields::audio::all),
    group(Section::Buzzer, fields::buzzer::all),
    group(Section::DateTime, fields::dateTime::all),
    group(Section::DaylightSaving, fields::dst::all),
    group(Section::Osd, fields::osd::all),
    group(Section::EventDisplay, fields::eventDisplay::all),
    group(Section::Interval, fields::interval::all),
    group(Section::Camera, fields::camera::all),
    group(Section::Ptz, fields::ptz::all),
    group(Section::Motion, fields::motion::all),
    group(Section::AlarmIn, fields::alarmIn::all),
    group(Section::AlarmOut, fields::alarmOut::all),
    group(Section::VideoLoss, fields::videoLoss::all),
    group(Section::RecordSetup, fields::record::all),
    group(Section::Schedule, fields::schedule::all),
    group(Section::Holiday, fields::holiday::all),
    group(Section::Rs232c, fields::rs232c::all),
    group(Section::Keyboard, fields::keyboard::all),
    group(Section::RemoteControl, fields::remoteControl::all),
    group(Section::SmartBackup, fields::smartBackup::all),
    group(Section::Stream, fields::stream::all),
    group(Section::Notification, {}),
    group(Section::Email, fields::email::all),
    group(Section::NetworkEvent, fields::networkEvent::all),
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
