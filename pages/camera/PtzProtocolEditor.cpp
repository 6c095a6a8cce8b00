// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/camera/PtzProtocolEditor.h"

#include "i18n/Translator.h"

#include <QComboBox>

using setup::FieldInfo;

namespace {

FieldInfo spanning(const FieldInfo &inUse, const FieldInfo &protocol)
{
    return FieldInfo::bytes("ptz-protocol", inUse.offset,
                            protocol.offset + protocol.width - inUse.offset)
        .repeat(inUse.count, inUse.stride)
        .labelled(protocol.label);
}

} // namespace

PtzProtocolEditor::PtzProtocolEditor(const FieldInfo &inUse, const FieldInfo &protocol, int i,
                                     QWidget *parent)
    : FieldEditor(spanning(inUse, protocol), i, 0, parent)
    , m_inUse(inUse)
    , m_protocol(protocol)
    , m_list(new QComboBox(parent))
{
    m_list->addItem(nelib::tr("None"));
    for (const setup::ValueName &name : protocol.valueNames)
        m_list->addItem(nelib::tr(name.name));
    m_list->setCurrentIndex(-1);
    connect(m_list, &QComboBox::activated, this, &FieldEditor::edited);
}

QWidget *PtzProtocolEditor::widget() const
{
    return m_list;
}

void PtzProtocolEditor::fill(const setup::SectionView &section)
{
    m_filledInUse = section.number(m_inUse, index());
    m_filledProtocol = section.number(m_protocol, index());
    if (m_filledInUse == 0)
        m_list->setCurrentIndex(0);
    else
        m_list->setCurrentIndex(
            m_filledProtocol < quint32(m_list->count() - 1) ? int(m_filledProtocol) + 1 : -1);
}

void PtzProtocolEditor::gather(setup::SectionEdit &section) const
{
    const int item = m_list->currentIndex();
    if (item < 0)
        return;
    quint32 inUse = item == 0 ? 0 : 1;
    const quint32 protocol = item == 0 ? 0 : quint32(item - 1);
    if (inUse && m_filledInUse && protocol == m_filledProtocol)
        inUse = m_filledInUse;
    section.setNumber(m_inUse, inUse, index());
    section.setNumber(m_protocol, protocol, index());
}

void PtzProtocolEditor::copyFrom(const FieldEditor &other)
{
    m_list->setCurrentIndex(static_cast<const PtzProtocolEditor &>(other).m_list->currentIndex());
}
