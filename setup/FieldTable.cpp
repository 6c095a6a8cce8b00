// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/FieldTable.h"

#include "setup/Fields.h"
#include "setup/SectionEdit.h"

#include <QLatin1StringView>

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
    return SectionView(record, 0).number(field, i, j);
}

QByteArrayView FieldTable::bytes(QByteArrayView record, const FieldInfo &field, int i, int j)
{
    return SectionView(record, 0).bytes(field, i, j);
}

QByteArray FieldTable::text(QByteArrayView record, const FieldInfo &field, int i, int j)
{
    return SectionView(record, 0).text(field, i, j);
}

bool FieldTable::setNumber(QByteArray &record, const FieldInfo &field, quint32 value, int i, int j)
{
    return SectionEdit(record, 0).setNumber(field, value, i, j);
}

bool FieldTable::setBytes(QByteArray &record, const FieldInfo &field, QByteArrayView value, int i,
                          int j)
{
    return SectionEdit(record, 0).setBytes(field, value, i, j);
}

} // namespace setup
