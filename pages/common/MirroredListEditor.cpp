// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/MirroredListEditor.h"

#include "i18n/Translator.h"

using setup::FieldInfo;

namespace {

QStringList textsOf(std::span<const setup::ValueName> items)
{
    QStringList texts;
    for (const setup::ValueName &item : items)
        texts.append(nelib::tr(item.name));
    return texts;
}

} // namespace

MirroredListEditor::MirroredListEditor(const FieldInfo &view, const FieldInfo &value,
                                       const FieldInfo &copy,
                                       std::span<const setup::ValueName> items, int i, int j,
                                       QWidget *parent)
    : CodedListEditor(view, i, j, textsOf(items), parent)
    , m_value(value)
    , m_copy(copy)
    , m_items(items)
{ }

int MirroredListEditor::itemOf(const setup::SectionView &section) const
{
    const quint32 stored = part(section, m_value);
    for (std::size_t k = 0; k < m_items.size(); ++k) {
        if (m_items[k].value == stored)
            return int(k);
    }
    return -1;
}

void MirroredListEditor::store(setup::SectionEdit &section, int item) const
{
    setPart(section, m_value, m_items[item].value);
    setPart(section, m_copy, m_items[item].value);
}
