// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/FieldEditor.h"

#include <QList>

QT_BEGIN_NAMESPACE
class QCheckBox;
QT_END_NAMESPACE

class ColumnCheckBox;

// The named bits of a bit-mask element as a grid of check boxes, filled row
// by row, under an "all" box that ticks or clears every bit and shows ticked
// exactly when every bit is. Bits without a name keep their value. The rights
// of a user account are edited this way; any mask with many named bits can be.
class BitGridEditor : public FieldEditor
{
    Q_OBJECT

public:
    BitGridEditor(const setup::FieldInfo &field, int i, int columns, QWidget *parent);
    ~BitGridEditor() override;

    QWidget *widget() const override { return m_widget; }
    void fill(const setup::SectionView &section) override;
    void gather(setup::SectionEdit &section) const override;
    void copyFrom(const FieldEditor &other) override;

    // Off: the boxes show the bits but the operator cannot change them.
    void setChangeable(bool changeable);
    const QList<QCheckBox *> &bitBoxes() const { return m_bits; }

private:
    QWidget *m_widget;
    QCheckBox *m_all;
    QList<QCheckBox *> m_bits;
    ColumnCheckBox *m_allRule;
    quint32 m_named = 0;
};
