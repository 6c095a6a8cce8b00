// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

// Camera / Alarm-In: for every alarm input (one per channel) its contact type
// on the "Setting" tab, and on the "Action" tab what an alarm does: beep,
// drive alarm outputs, record channels, and for how long.
class CRemoteCameraAlarmDlg : public CSetupPage
{
    Q_OBJECT

public:
    explicit CRemoteCameraAlarmDlg(QWidget *parent = nullptr);
    ~CRemoteCameraAlarmDlg() override;

protected:
    void buildControls() override;
    void fillControls(QByteArrayView section, Source source) override;
};
