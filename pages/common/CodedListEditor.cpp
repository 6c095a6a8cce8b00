// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/CodedListEditor.h"

#include "setup/FieldTable.h"

#include <QComboBox>

using setup::FieldInfo;
using setup::FieldTable;

namespace {

FieldInfo shifted(FieldInfo field, int base)
{
    field.offset -= base;
    return field;
}

} // namespace

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

void CodedListEditor::fill(QByteArrayView section, int base)
{
    m_list->setCurrentIndex(itemOf(section, base));
}

void CodedListEditor::gather(QByteArray &section, int base) const
{
    const int item = m_list->currentIndex();
    if (item >= 0 && item != itemOf(section, base))
        store(section, base, item);
}

void CodedListEditor::copyFrom(const FieldEditor &other)
{
    m_list->setCurrentIndex(static_cast<const CodedListEditor &>(other).m_list->currentIndex());
}

quint32 CodedListEditor::part(QByteArrayView section, int base, const FieldInfo &field) const
{
    return FieldTable::number(section, shifted(field, base), index(), index2());
}

void CodedListEditor::setPart(QByteArray &section, int base, const FieldInfo &field,
                              quint32 value) const
{
    FieldTable::setNumber(section, shifted(field, base), value, index(), index2());
}
