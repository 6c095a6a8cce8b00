// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CodedListEditor.h"

// A recording resolution, kept as two codes: width (1 full, 2 half; 0 not
// set) and height (0 full, 1 half). Item = 2 for half width + 1 for half
// height; a width code other than 1 reads as half width, and an unset width
// selects nothing.
class ResolutionEditor : public CodedListEditor
{
    Q_OBJECT

public:
    ResolutionEditor(const setup::FieldInfo &view, const setup::FieldInfo &width,
                     const setup::FieldInfo &height, const QStringList &items, int i, int j,
                     QWidget *parent);

protected:
    int itemOf(const setup::SectionView &section) const override;
    void store(setup::SectionEdit &section, int item) const override;

private:
    setup::FieldInfo m_width;
    setup::FieldInfo m_height;
};
