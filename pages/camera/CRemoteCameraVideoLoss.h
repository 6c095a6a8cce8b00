// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

// Camera / Video Loss: what the recorder does when a channel's picture is
// lost, per channel: beep, and which alarm outputs it drives.
class CRemoteCameraVideoLoss : public CSetupPage
{
    Q_OBJECT

public:
    explicit CRemoteCameraVideoLoss(QWidget *parent = nullptr);
    ~CRemoteCameraVideoLoss() override;

protected:
    void buildControls() override;
    void fillControls(QByteArrayView section, Source source) override;
};
