// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/BitGridEditor.h"

#include "i18n/Translator.h"
#include "pages/common/ColumnCheckBox.h"

#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QVBoxLayout>

BitGridEditor::BitGridEditor(const setup::FieldInfo &field, int i, int columns, QWidget *parent)
    : FieldEditor(field, i, 0, parent)
    , m_widget(new QWidget(parent))
    , m_all(new QCheckBox(nelib::tr("all"), m_widget))
{
    m_all->setAccessibleName(m_all->text());
    auto *line = new QFrame(m_widget);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);

    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(20);
    columns = std::max(columns, 1);
    for (const setup::ValueName &bit : field.bitNames) {
        auto *box = new QCheckBox(nelib::tr(bit.name), m_widget);
        box->setAccessibleName(box->text());
        grid->addWidget(box, int(m_bits.size()) / columns, int(m_bits.size()) % columns);
        m_bits.append(box);
        m_named |= bit.value;
    }

    auto *layout = new QVBoxLayout(m_widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_all);
    layout->addWidget(line);
    layout->addLayout(grid);

    m_allRule = new ColumnCheckBox(m_all, m_bits, this);
    connect(m_allRule, &ColumnCheckBox::columnClicked, this, &FieldEditor::edited);
}

BitGridEditor::~BitGridEditor() = default;

void BitGridEditor::fill(const setup::SectionView &section)
{
    const quint32 value = number(section);
    for (qsizetype k = 0; k < m_bits.size(); ++k)
        m_bits[k]->setChecked(value & field().bitNames[k].value);
    m_allRule->update();
}

void BitGridEditor::gather(setup::SectionEdit &section) const
{
    quint32 value = number(section) & ~m_named;
    for (qsizetype k = 0; k < m_bits.size(); ++k) {
        if (m_bits[k]->isChecked())
            value |= field().bitNames[k].value;
    }
    setNumber(section, value);
}

void BitGridEditor::copyFrom(const FieldEditor &other)
{
    const auto &from = static_cast<const BitGridEditor &>(other);
    for (qsizetype k = 0; k < m_bits.size(); ++k)
        m_bits[k]->setChecked(from.m_bits[k]->isChecked());
    m_allRule->update();
}

void BitGridEditor::setChangeable(bool changeable)
{
    m_all->setEnabled(changeable);
    for (QCheckBox *box : std::as_const(m_bits))
        box->setEnabled(changeable);
}
