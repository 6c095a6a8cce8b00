// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/SectionBinder.h"

QT_BEGIN_NAMESPACE
class QComboBox;
QT_END_NAMESPACE

// A list of the numbers of a field's range, each shown through a format such
// as "%d Sec" (the dwell times). A stored number outside the range selects
// nothing and stays stored.
class NumberListEditor : public FieldEditor
{
    Q_OBJECT

public:
    NumberListEditor(const setup::FieldInfo &field, int i, int j, const char *format,
                     QWidget *parent);

    // Builds the editors of a binder column.
    static SectionBinder::Factory factory(const char *format);

    QWidget *widget() const override;
    void fill(const setup::SectionView &section) override;
    void gather(setup::SectionEdit &section) const override;
    void copyFrom(const FieldEditor &other) override;

private:
    QComboBox *m_list;
};
