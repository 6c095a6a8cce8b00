// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/NumberListEditor.h"

#include "i18n/Placeholders.h"
#include "i18n/Translator.h"

#include <QComboBox>

NumberListEditor::NumberListEditor(const setup::FieldInfo &field, int i, int j, const char *format,
                                   QWidget *parent)
    : FieldEditor(field, i, j, parent)
    , m_list(new QComboBox(parent))
{
    const QString translated = nelib::tr(format);
    QStringList items;
    for (qint64 n = field.lowest(); n <= field.highest(); ++n)
        items.append(nelib::Placeholders::fill(translated, {int(n)}));
    m_list->addItems(items);
    m_list->setCurrentIndex(-1);
    connect(m_list, &QComboBox::activated, this, &FieldEditor::edited);
}

SectionBinder::Factory NumberListEditor::factory(const char *format)
{
    return [format](const setup::FieldInfo &field, int i, int j, QWidget *parent) {
        return new NumberListEditor(field, i, j, format, parent);
    };
}

QWidget *NumberListEditor::widget() const
{
    return m_list;
}

void NumberListEditor::fill(const setup::SectionView &section)
{
    const qint64 index = qint64(number(section)) - field().lowest();
    m_list->setCurrentIndex(index >= 0 && index < m_list->count() ? int(index) : -1);
}

void NumberListEditor::gather(setup::SectionEdit &section) const
{
    if (m_list->currentIndex() >= 0)
        setNumber(section, quint32(field().lowest() + m_list->currentIndex()));
}

void NumberListEditor::copyFrom(const FieldEditor &other)
{
    m_list->setCurrentIndex(static_cast<const NumberListEditor &>(other).m_list->currentIndex());
}
