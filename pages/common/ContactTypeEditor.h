// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/SectionBinder.h"

QT_BEGIN_NAMESPACE
class QComboBox;
QT_END_NAMESPACE

// The Type list of an alarm contact over two words, "enabled" and "normally
// closed": "Off" 0/0, "N.O" 1/0, "N.C" 1/1. Any other pair selects nothing
// and stays stored. The editor's field spans both words and is labelled "Type".
class ContactTypeEditor : public FieldEditor
{
    Q_OBJECT

public:
    ContactTypeEditor(const setup::FieldInfo &enabled, const setup::FieldInfo &normallyClosed,
                      int i, QWidget *parent);

    // Builds the editors of a binder column over `enabled`.
    static SectionBinder::Factory factory(const setup::FieldInfo &normallyClosed);

    QWidget *widget() const override;
    void fill(const setup::SectionView &section) override;
    void gather(setup::SectionEdit &section) const override;
    void copyFrom(const FieldEditor &other) override;

private:
    setup::FieldInfo m_enabled;
    setup::FieldInfo m_closed;
    QComboBox *m_list;
};
