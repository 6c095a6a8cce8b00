// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CopySettingDialog.h"

// Copies the recording profile columns of one channel to others on the
// Record Setup page. The page sets the channel count, opens the dialog and,
// after OK, reads the source channel, the ticked properties and the target
// channels.
class CRemoteRecordCopySettingDlg : public CopySettingDialog
{
    Q_OBJECT

public:
    enum Property { Resolution, Quality, Fps, Type, DwellTime, PropertyCount };

    explicit CRemoteRecordCopySettingDlg(QWidget *parent = nullptr);

    // A ticked channel of the recorder other than the source.
    bool isTarget(int channel) const
    {
        return targetTicked(channel) && channel != sourceChannel() && channel < channelCount();
    }
};
