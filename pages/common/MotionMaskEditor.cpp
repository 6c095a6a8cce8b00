// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/MotionMaskEditor.h"

#include "i18n/Translator.h"
#include "pages/common/CRemoteCameraMotionMaskDlg.h"

#include <QImage>
#include <QPixmap>
#include <QToolButton>

using setup::FieldInfo;

MotionMaskEditor::MotionMaskEditor(const FieldInfo &field, int i, bool night, QWidget *parent)
    : FieldEditor(field, i, 0, parent)
    , m_night(night)
    , m_button(new QToolButton(parent))
{
    // Small enough to keep sixteen rows on the page.
    m_button->setIconSize({25, 20});
    connect(m_button, &QToolButton::clicked, this, &MotionMaskEditor::edit);
}

MotionMaskEditor::~MotionMaskEditor() = default;

SectionBinder::Factory MotionMaskEditor::factory(bool night)
{
    return [night](const FieldInfo &field, int i, int, QWidget *parent) {
        return new MotionMaskEditor(field, i, night, parent);
    };
}

QWidget *MotionMaskEditor::widget() const
{
    return m_button;
}

void MotionMaskEditor::fill(const setup::SectionView &section)
{
    for (int row = 0; row < MotionMaskGrid::Rows; ++row)
        m_mask[row] = section.number(field(), index(), row);
    showMask();
}

void MotionMaskEditor::gather(setup::SectionEdit &section) const
{
    for (int row = 0; row < MotionMaskGrid::Rows; ++row)
        section.setNumber(field(), m_mask[row], index(), row);
}

void MotionMaskEditor::copyFrom(const FieldEditor &other)
{
    m_mask = static_cast<const MotionMaskEditor &>(other).m_mask;
    showMask();
}

// The mask at a glance in its row.
void MotionMaskEditor::showMask()
{
    QImage picture(MotionMaskGrid::Columns, MotionMaskGrid::Rows, QImage::Format_RGB32);
    for (int r = 0; r < MotionMaskGrid::Rows; ++r) {
        auto *line = reinterpret_cast<QRgb *>(picture.scanLine(r));
        for (int c = 0; c < MotionMaskGrid::Columns; ++c)
            line[c] = (m_mask[r] >> (MotionMaskGrid::Columns - 1 - c)) & 1 ? qRgb(255, 140, 0)
                                                                           : qRgb(40, 45, 55);
    }
    m_button->setIcon(QPixmap::fromImage(
        picture.scaled(m_button->iconSize(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation)));
}

void MotionMaskEditor::edit()
{
    if (!m_dialog) {
        m_dialog = new CRemoteCameraMotionMaskDlg(m_button->window());
        connect(m_dialog, &QDialog::accepted, this, [this] {
            const Mask edited = m_dialog->mask();
            if (edited == m_mask)
                return;
            m_mask = edited;
            showMask();
            Q_EMIT FieldEditor::edited();
        });
    }
    m_dialog->setMask(m_mask, index() + 1, m_night, nelib::tr("Motion"));
    m_dialog->open();
}
