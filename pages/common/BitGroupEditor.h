// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/FieldEditor.h"

#include <QList>

QT_BEGIN_NAMESPACE
class QCheckBox;
class QGroupBox;
QT_END_NAMESPACE

// A bit mask shown as a framed group: the field's label as the title, a
// "Select All" box and one check box per named bit, in `columns` columns.
// "Select All" sets or clears every named bit; it shows checked when as many
// of the low bits (one more than there are boxes) are set as there are boxes,
// which is how the recorder's own menu judges it (only shown boxes count): with five boxes, a mask
// of 0x1F is all selected and 0x3F is not. Bits without a box are kept.
class BitGroupEditor : public FieldEditor
{
    Q_OBJECT

public:
    BitGroupEditor(const setup::FieldInfo &field, int columns, QWidget *parent);

    QWidget *widget() const override;
    void fill(const setup::SectionView &section) override;
    void gather(setup::SectionEdit &section) const override;
    void copyFrom(const FieldEditor &other) override;

    // Shows only the boxes of the first `count` bits (a channel mask on a
    // recorder with fewer channels); "Select All" then covers those.
    void setShownBits(int count);

private:
    void updateSelectAll();

    QGroupBox *m_group;
    QCheckBox *m_selectAll = nullptr;
    QList<QCheckBox *> m_bits;
    quint32 m_named = 0;
    quint32 m_kept = 0; // the bits without a box, as filled
    int m_shown;
};
