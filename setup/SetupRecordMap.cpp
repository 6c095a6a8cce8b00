// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/SetupRecordMap.h"

#include <QLatin1StringView>

namespace setup {

namespace {

constexpr bool tablesAreConsistent()
{
    int expected = SetupRecordMap::HeaderSize;
    for (std::size_t i = 0; i < SetupRecordMap::Blocks.size(); ++i) {
        const BlockInfo &b = SetupRecordMap::Blocks[i];
        if (b.id != Block(i) || b.offset != expected)
            return false;
        expected = b.end();
    }
    if (expected != SetupRecordMap::RecordSize)
        return false;
    for (std::size_t i = 0; i < SetupRecordMap::Sections.size(); ++i) {
        const SectionInfo &s = SetupRecordMap::Sections[i];
        const BlockInfo &b = SetupRecordMap::Blocks[std::size_t(s.block)];
        if (s.id != Section(i) || s.offset < b.offset || s.end() > b.end())
            return false;
    }
    return true;
}
static_assert(tablesAreConsistent(), "blocks must tile the record and sections lie in their block");

} // namespace

const BlockInfo &SetupRecordMap::block(Block id)
{
    return Blocks[std::size_t(id)];
}

const SectionInfo &SetupRecordMap::section(Section id)
{
    return Sections[std::size_t(id)];
}

const SectionInfo *SetupRecordMap::findSection(QAnyStringView key)
{
    for (const SectionInfo &s : Sections) {
        if (QAnyStringView::compare(key, QLatin1StringView(s.key)) == 0)
            return &s;
    }
    return nullptr;
}

const BlockInfo *SetupRecordMap::blockAt(int offset)
{
    for (const BlockInfo &b : Blocks) {
        if (offset >= b.offset && offset < b.end())
            return &b;
    }
    return nullptr;
}

} // namespace setup
