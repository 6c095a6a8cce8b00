// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

// Device / Remote Control: whether the recorder obeys an infrared remote, and
// the id of the remote it obeys (0, shown as "All", for any remote).
class CRemoteDeviceRemoteCtrlDlg : public CSetupPage
{
    Q_OBJECT

public:
    explicit CRemoteDeviceRemoteCtrlDlg(QWidget *parent = nullptr);
    ~CRemoteDeviceRemoteCtrlDlg() override;

protected:
    void buildControls() override;
};
