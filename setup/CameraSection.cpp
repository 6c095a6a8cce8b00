#include "setup/CameraSection.h"

#include "setup/FieldTable.h"
#include "setup/LittleEndian.h"

#include <algorithm>

namespace setup {

namespace {

using nelib::LittleEndian;

// The record map knows the fields by record offset; the page works on its
// own slice, so each element's offset is taken relative to the section.
struct SectionField
{
    const FieldInfo &info;

    int offset(int index) const
    {
        return info.elementOffset(index) - SetupRecordMap::section(Section::Camera).offset;
    }
};

SectionField field(const char *name)
{
    return {*FieldTable::findField(FieldTable::section(Section::Camera), name)};
}

// The audio byte is the last one the page owns in a record.
bool hasChannel(QByteArrayView section, int index)
{
    return index >= 0 && index < CameraSection::Channels
           && field("audio").offset(index) < section.size();
}

} // namespace

CameraSection::Channel CameraSection::channel(QByteArrayView section, int index)
{
    Channel values;
    if (!hasChannel(section, index))
        return values;
    const SectionField title = field("title");
    values.title = LittleEndian::text(section, title.offset(index), title.info.width);
    values.covert = LittleEndian::u8(section, field("covert").offset(index)) != 0;
    values.audio = LittleEndian::u8(section, field("audio").offset(index));
    return values;
}

bool CameraSection::setChannel(QByteArray &section, int index, const Channel &values)
{
    if (!hasChannel(section, index))
        return false;
    const SectionField title = field("title");
    LittleEndian::setText(section, title.offset(index), title.info.width, values.title);
    LittleEndian::setU8(section, field("covert").offset(index), values.covert ? 1 : 0);
    LittleEndian::setU8(section, field("audio").offset(index), values.audio);
    return true;
}

int CameraSection::audioIndex(quint8 audio)
{
    const auto *found = std::find(AudioInputs.begin(), AudioInputs.end(), audio);
    return found == AudioInputs.end() ? 0 : int(found - AudioInputs.begin());
}

} // namespace setup
