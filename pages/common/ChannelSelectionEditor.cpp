// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/ChannelSelectionEditor.h"

#include "i18n/Placeholders.h"
#include "i18n/Translator.h"
#include "pages/common/CRemoteChannelSel.h"
#include "pages/common/CRemoteChannelSel_Spot.h"
#include "pages/common/CRemoteChannelSelect.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;
using setup::FieldInfo;

ChannelSelectionEditor::ChannelSelectionEditor(Dialog dialog, const FieldInfo &field, int i, int j,
                                               QWidget *parent)
    : FieldEditor(field, dialog == Dialog::Spot ? 0 : i, j, parent)
    , m_kind(dialog)
    , m_box(new QWidget(parent))
    , m_text(new ElidedLineEdit(m_box))
    , m_button(new QPushButton(u"..."_s, m_box))
{
    // Room for a few channels when space is short; longer choices are cut visibly.
    m_text->setMinimumWidth(m_text->fontMetrics().horizontalAdvance(u"01,02,"_s) + 12);
    m_button->setFixedWidth(m_button->fontMetrics().horizontalAdvance(u"..."_s) + 20);
    auto *layout = new QHBoxLayout(m_box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_button);
    connect(m_button, &QPushButton::clicked, this, &ChannelSelectionEditor::choose);
}

ChannelSelectionEditor::~ChannelSelectionEditor() = default;

QString ChannelSelectionEditor::selectionText(quint16 selection)
{
    const QString format = nelib::tr("%02d,");
    QString text;
    for (int c = 0; c < Channels; ++c) {
        if (selection & (1u << c))
            text += nelib::Placeholders::fill(format, {c + 1});
    }
    return text;
}

void ChannelSelectionEditor::setAccessibleName(const QString &name)
{
    m_box->setAccessibleName(name);
    m_text->setAccessibleName(name);
    // The ellipsis tells that the button opens a dialog for the same field.
    m_button->setAccessibleName(name + u"..."_s);
}

quint16 ChannelSelectionEditor::selection() const
{
    if (m_kind != Dialog::Spot)
        return quint16(m_word);
    quint16 selection = 0;
    for (int c = 0; c < Channels; ++c)
        selection |= m_elements[c] ? 1u << c : 0;
    return selection;
}

void ChannelSelectionEditor::showSelection()
{
    m_text->setFullText(selectionText(selection()));
}

void ChannelSelectionEditor::select(quint16 selection)
{
    if (m_kind != Dialog::Spot) {
        m_word = (m_word & 0xFFFF0000u) | selection;
    } else {
        for (int c = 0; c < Channels; ++c) {
            const bool chosen = selection & (1u << c);
            if (!chosen)
                m_elements[c] = 0;
            else if (!m_elements[c])
                m_elements[c] = 1;
        }
    }
    showSelection();
}

void ChannelSelectionEditor::fill(const setup::SectionView &section)
{
    if (m_kind != Dialog::Spot) {
        m_word = number(section);
    } else {
        for (int c = 0; c < Channels; ++c)
            m_elements[c] = section.number(field(), c, index2());
    }
    showSelection();
}

void ChannelSelectionEditor::gather(setup::SectionEdit &section) const
{
    if (m_kind != Dialog::Spot) {
        setNumber(section, m_word);
        return;
    }
    for (int c = 0; c < Channels; ++c)
        section.setNumber(field(), m_elements[c], c, index2());
}

void ChannelSelectionEditor::copyFrom(const FieldEditor &other)
{
    const auto &from = static_cast<const ChannelSelectionEditor &>(other);
    m_word = from.m_word;
    m_elements = from.m_elements;
    showSelection();
}

ChannelSelectionDialog *ChannelSelectionEditor::dialog()
{
    if (!m_dialog) {
        QWidget *owner = m_box->window();
        switch (m_kind) {
        case Dialog::Channels:
            m_dialog = new CRemoteChannelSel(owner);
            break;
        case Dialog::Spot:
            m_dialog = new CRemoteChannelSel_Spot(owner);
            break;
        case Dialog::AlarmOutputs:
            m_dialog = new CRemoteChannelSelect(owner);
            break;
        }
        connect(m_dialog, &QDialog::accepted, this, [this] {
            const quint16 chosen = m_dialog->selection();
            if (chosen == selection())
                return;
            select(chosen);
            Q_EMIT edited();
        });
    }
    return m_dialog;
}

void ChannelSelectionEditor::choose()
{
    ChannelSelectionDialog *d = dialog();
    d->setWindowTitle(field().label ? nelib::tr(field().label) : m_box->accessibleName());
    d->setChannelCount(m_channelCount);
    if (auto *spot = qobject_cast<CRemoteChannelSel_Spot *>(d))
        spot->setLimit(m_limit);
    d->setSelection(selection());
    d->open();
}
