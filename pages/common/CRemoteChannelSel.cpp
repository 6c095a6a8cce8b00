// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/CRemoteChannelSel.h"

CRemoteChannelSel::CRemoteChannelSel(QWidget *parent)
    : ChannelSelectionDialog(parent)
{
    addGroup(0, Channels, true);
}

void CRemoteChannelSel::setFlags(const Flags &flags)
{
    quint16 selection = 0;
    for (int c = 0; c < Channels; ++c)
        selection |= flags[c] ? 1u << c : 0;
    setSelection(selection);
}

CRemoteChannelSel::Flags CRemoteChannelSel::flags() const
{
    Flags flags {};
    for (int c = 0; c < Channels; ++c)
        flags[c] = (selection() >> c) & 1;
    return flags;
}
