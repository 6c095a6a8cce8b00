// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/ResolutionEditor.h"

using setup::FieldInfo;

namespace {

constexpr quint32 FullWidth = 1;
constexpr quint32 HalfWidth = 2;
constexpr quint32 FullHeight = 0;
constexpr quint32 HalfHeight = 1;

} // namespace

ResolutionEditor::ResolutionEditor(const FieldInfo &view, const FieldInfo &width,
                                   const FieldInfo &height, const QStringList &items, int i, int j,
                                   QWidget *parent)
    : CodedListEditor(view, i, j, items, parent)
    , m_width(width)
    , m_height(height)
{ }

int ResolutionEditor::itemOf(const setup::SectionView &section) const
{
    const quint32 width = part(section, m_width);
    if (width == 0)
        return -1;
    return (width == FullWidth ? 0 : 2) + (part(section, m_height) != FullHeight ? 1 : 0);
}

void ResolutionEditor::store(setup::SectionEdit &section, int item) const
{
    if (item > 3)
        return;
    setPart(section, m_width, item >= 2 ? HalfWidth : FullWidth);
    setPart(section, m_height, item % 2 ? HalfHeight : FullHeight);
}
