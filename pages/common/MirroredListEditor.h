// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CodedListEditor.h"

#include <span>

// A list whose value the recorder keeps twice (a frame rate and its copy, a
// quality code and its copy): the first copy is read, both are written.
// Item k stands for `items[k].value`.
class MirroredListEditor : public CodedListEditor
{
    Q_OBJECT

public:
    MirroredListEditor(const setup::FieldInfo &view, const setup::FieldInfo &value,
                       const setup::FieldInfo &copy, std::span<const setup::ValueName> items, int i,
                       int j, QWidget *parent);

protected:
    int itemOf(const setup::SectionView &section) const override;
    void store(setup::SectionEdit &section, int item) const override;

private:
    setup::FieldInfo m_value;
    setup::FieldInfo m_copy;
    std::span<const setup::ValueName> m_items;
};
