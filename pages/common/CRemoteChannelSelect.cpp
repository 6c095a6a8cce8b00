// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/CRemoteChannelSelect.h"

namespace {

constexpr int FirstGroup = 4;

} // namespace

CRemoteChannelSelect::CRemoteChannelSelect(QWidget *parent)
    : ChannelSelectionDialog(parent)
{
    addGroup(0, FirstGroup, false);
    addGroup(FirstGroup, Channels, true);
}

void CRemoteChannelSelect::setFlags(const Flags &flags)
{
    quint16 selection = 0;
    for (int c = 0; c < Channels; ++c)
        selection |= flags[c] ? 1u << c : 0;
    setSelection(selection);
}

CRemoteChannelSelect::Flags CRemoteChannelSelect::flags() const
{
    Flags flags {};
    for (int c = 0; c < Channels; ++c)
        flags[c] = (selection() >> c) & 1;
    return flags;
}
