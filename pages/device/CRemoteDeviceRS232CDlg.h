// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

// Device / RS-232C: the line settings of the recorder's serial port and what
// the port is for: remote control by another device, which addresses the
// recorder by its device id, or text input (point of sale) recorded with the
// chosen channels. The id and the channels are enabled only for their use.
class CRemoteDeviceRS232CDlg : public CSetupPage
{
    Q_OBJECT

public:
    explicit CRemoteDeviceRS232CDlg(QWidget *parent = nullptr);
    ~CRemoteDeviceRS232CDlg() override;

protected:
    void buildControls() override;
    void afterFill() override;
};
