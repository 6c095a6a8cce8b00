// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CRemoteCameraMotionMaskDlg.h"
#include "pages/common/SectionBinder.h"

#include <QPointer>

QT_BEGIN_NAMESPACE
class QToolButton;
QT_END_NAMESPACE

// The mask zone of one channel: a button showing a small picture of the
// mask that opens the mask editor. It edits the 24 row words [i][0..23] of a
// mask field. Words the editor has not changed are written back as they were
// received, bits 30 and 31 included; an edited mask has them clear.
class MotionMaskEditor : public FieldEditor
{
    Q_OBJECT

public:
    using Mask = MotionMaskGrid::Mask;

    MotionMaskEditor(const setup::FieldInfo &field, int i, bool night, QWidget *parent);
    ~MotionMaskEditor() override;

    // Builds the editors of a binder column over a mask field.
    static SectionBinder::Factory factory(bool night);

    QWidget *widget() const override;
    void fill(const setup::SectionView &section) override;
    void gather(setup::SectionEdit &section) const override;
    void copyFrom(const FieldEditor &other) override;

    const Mask &mask() const { return m_mask; }
    // Opens the mask editor; its OK takes the edited mask.
    void edit();
    CRemoteCameraMotionMaskDlg *dialog() const { return m_dialog; }

private:
    void showMask();

    bool m_night;
    QToolButton *m_button;
    QPointer<CRemoteCameraMotionMaskDlg> m_dialog;
    Mask m_mask {};
};
