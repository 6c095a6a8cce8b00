// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/CodedListEditor.h"

#include <QComboBox>

using setup::FieldInfo;

namespace { } // namespace

CodedListEditor::CodedListEditor(const FieldInfo &view, int i, int j, const QStringList &items,
                                 QWidget *parent)
    : FieldEditor(view, i, j, parent)
    , m_list(new QComboBox(parent))
{
    m_list->addItems(items);
    m_list->setCurrentIndex(-1);
    connect(m_list, &QComboBox::activated, this, &FieldEditor::edited);
}

CodedListEditor::~CodedListEditor() = default;

void CodedListEditor::setItemTexts(const QStringList &texts)
{
    for (int k = 0; k < m_list->count() && k < texts.size(); ++k)
        m_list->setItemText(k, texts[k]);
}

QWidget *CodedListEditor::widget() const
{
    return m_list;
}

void CodedListEditor::fill(const setup::SectionView &section)
{
    m_list->setCurrentIndex(itemOf(section));
}

void CodedListEditor::gather(setup::SectionEdit &section) const
{
    const int item = m_list->currentIndex();
    if (item >= 0 && item != itemOf(section))
        store(section, item);
}

void CodedListEditor::copyFrom(const FieldEditor &other)
{
    m_list->setCurrentIndex(static_cast<const CodedListEditor &>(other).m_list->currentIndex());
}

quint32 CodedListEditor::part(const setup::SectionView &section, const FieldInfo &field) const
{
    return section.number(field, index(), index2());
}

void CodedListEditor::setPart(setup::SectionEdit &section, const FieldInfo &field,
                              quint32 value) const
{
    section.setNumber(field, value, index(), index2());
}
