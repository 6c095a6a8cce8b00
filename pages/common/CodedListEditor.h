// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/FieldEditor.h"

#include <QStringList>

QT_BEGIN_NAMESPACE
class QComboBox;
QT_END_NAMESPACE

// A list over one element whose value the recorder spreads over several
// fields: `view` spans them all. Subclasses say which item the stored fields
// stand for and how an item is stored. Gather writes only when the shown item
// differs from the stored one, so codes that mean an item without being its
// own (and values without an item, which select nothing) stay as received.
// The item texts may be renamed later, for lists that follow the recorder's
// video standard.
class CodedListEditor : public FieldEditor
{
    Q_OBJECT

public:
    CodedListEditor(const setup::FieldInfo &view, int i, int j, const QStringList &items,
                    QWidget *parent);
    ~CodedListEditor() override;

    QComboBox *list() const { return m_list; }
    void setItemTexts(const QStringList &texts);

    QWidget *widget() const override;
    void fill(const setup::SectionView &section) override;
    void gather(setup::SectionEdit &section) const override;
    void copyFrom(const FieldEditor &other) override;

protected:
    // The item the stored fields stand for, or -1.
    virtual int itemOf(const setup::SectionView &section) const = 0;
    virtual void store(setup::SectionEdit &section, int item) const = 0;

    // Element [i][j] of another field of the same element.
    quint32 part(const setup::SectionView &section, const setup::FieldInfo &field) const;
    void setPart(setup::SectionEdit &section, const setup::FieldInfo &field, quint32 value) const;

private:
    QComboBox *m_list;
};
