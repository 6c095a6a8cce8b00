// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/BitGroupEditor.h"

#include "i18n/Translator.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QVBoxLayout>

#include <algorithm>
#include <bit>

BitGroupEditor::BitGroupEditor(const setup::FieldInfo &field, int columns, QWidget *parent)
    : FieldEditor(field, 0, 0, parent)
    , m_group(new QGroupBox(field.label ? nelib::tr(field.label) : QString(), parent))
    , m_shown(int(field.bitNames.size()))
{
    const QString title = m_group->title();
    m_group->setAccessibleName(title);
    auto *grid = new QGridLayout;
    const int perColumn = (int(field.bitNames.size()) + columns - 1) / std::max(columns, 1);
    for (const setup::ValueName &bit : field.bitNames) {
        auto *box = new QCheckBox(nelib::tr(bit.name), m_group);
        box->setAccessibleName(title + u' ' + box->text());
        grid->addWidget(box, int(m_bits.size()) % perColumn, int(m_bits.size()) / perColumn);
        m_bits.append(box);
        m_named |= bit.value;
        connect(box, &QCheckBox::clicked, this, [this] {
            updateSelectAll();
            Q_EMIT edited();
        });
    }
    // Made after the bit boxes, so that the group's first check box is a
    // bit; it still comes first on screen and in the tab order.
    m_selectAll = new QCheckBox(nelib::tr("Select All"), m_group);
    m_selectAll->setAccessibleName(title + u' ' + m_selectAll->text());
    auto *layout = new QVBoxLayout(m_group);
    layout->addWidget(m_selectAll);
    layout->addLayout(grid);
    QWidget *previous = m_selectAll;
    for (QCheckBox *box : std::as_const(m_bits)) {
        QWidget::setTabOrder(previous, box);
        previous = box;
    }
    connect(m_selectAll, &QCheckBox::clicked, this, [this](bool checked) {
        for (int k = 0; k < m_shown; ++k)
            m_bits[k]->setChecked(checked);
        Q_EMIT edited();
    });
}

QWidget *BitGroupEditor::widget() const
{
    return m_group;
}

void BitGroupEditor::fill(const setup::SectionView &section)
{
    const quint32 value = number(section);
    m_kept = value & ~m_named;
    for (qsizetype k = 0; k < m_bits.size(); ++k)
        m_bits[k]->setChecked(value & field().bitNames[k].value);
    updateSelectAll();
}

void BitGroupEditor::gather(setup::SectionEdit &section) const
{
    quint32 value = number(section) & ~m_named;
    for (qsizetype k = 0; k < m_bits.size(); ++k) {
        if (m_bits[k]->isChecked())
            value |= field().bitNames[k].value;
    }
    setNumber(section, value);
}

void BitGroupEditor::copyFrom(const FieldEditor &other)
{
    const auto &from = static_cast<const BitGroupEditor &>(other);
    for (qsizetype k = 0; k < m_bits.size(); ++k)
        m_bits[k]->setChecked(from.m_bits[k]->isChecked());
    updateSelectAll();
}

void BitGroupEditor::setShownBits(int count)
{
    m_shown = std::clamp(count, 0, int(m_bits.size()));
    for (qsizetype k = 0; k < m_bits.size(); ++k)
        m_bits[k]->setVisible(k < m_shown);
    updateSelectAll();
}

void BitGroupEditor::updateSelectAll()
{
    // The bits are the low bits in order; the named bits past the shown
    // boxes count like bits without a box.
    quint32 value = m_kept;
    for (qsizetype k = 0; k < m_bits.size(); ++k) {
        if (m_bits[k]->isChecked())
            value |= field().bitNames[k].value;
    }
    const quint32 low = m_shown >= 31 ? 0xFFFFFFFFu : (1u << (m_shown + 1)) - 1;
    m_selectAll->setChecked(std::popcount(value & low) == m_shown);
}
