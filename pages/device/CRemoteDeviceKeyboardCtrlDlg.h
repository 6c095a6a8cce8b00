// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

// Device / Keyboard Control: a control keyboard on the recorder's keyboard
// port, its protocol, the id it addresses the recorder by, the line settings
// and whether its joystick steers PTZ cameras.
class CRemoteDeviceKeyboardCtrlDlg : public CSetupPage
{
    Q_OBJECT

public:
    explicit CRemoteDeviceKeyboardCtrlDlg(QWidget *parent = nullptr);
    ~CRemoteDeviceKeyboardCtrlDlg() override;

protected:
    void buildControls() override;
};
