// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/CRemoteChannelSel_Spot.h"

#include <QCheckBox>
#include <QPushButton>

#include <bit>

CRemoteChannelSel_Spot::CRemoteChannelSel_Spot(QWidget *parent)
    : ChannelSelectionDialog(parent)
    , m_selectAll(addGroup(0, Channels, true))
{ }

void CRemoteChannelSel_Spot::setLimit(int limit)
{
    m_limit = std::max(limit, 0);
    selectionChanged();
}

void CRemoteChannelSel_Spot::setFlags(const Flags &flags)
{
    quint16 selection = 0;
    for (int c = 0; c < Channels; ++c)
        selection |= flags[c] ? 1u << c : 0;
    setSelection(selection);
}

CRemoteChannelSel_Spot::Flags CRemoteChannelSel_Spot::flags() const
{
    Flags flags {};
    for (int c = 0; c < Channels; ++c)
        flags[c] = (selection() >> c) & 1;
    return flags;
}

// Counts the chosen channels among all sixteen, hidden ones included.
void CRemoteChannelSel_Spot::selectionChanged()
{
    const int chosen = std::popcount(selection());
    for (int c = 0; c < Channels; ++c)
        channelBox(c)->setEnabled(chosen < m_limit || (selection() & (1u << c)));
    okButton()->setEnabled(chosen <= m_limit);
    if (m_limit < channelCount())
        m_selectAll->setEnabled(false);
}
