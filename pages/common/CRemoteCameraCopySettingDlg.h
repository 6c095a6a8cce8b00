// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CopySettingDialog.h"

#include <array>
#include <functional>

// Copies settings of one channel to others on the camera pages. The page sets
// the copy mode (which properties it can copy) and the channel count, opens
// the dialog and, after OK, copies with applyCopy().
class CRemoteCameraCopySettingDlg : public CopySettingDialog
{
    Q_OBJECT

public:
    enum Property {
        Title,
        Covert,
        Audio,
        Type,
        Beep,
        AlarmOut,
        DwellTime,
        DayTime,
        MinBlocks,
        Sensitivity,
        MaskZone,
        Protocol,
        Baudrate,
        DataBits,
        StopBits,
        Parity,
        PtzSpeed,
        PropertyCount
    };
    // One byte per property and per channel, 0 or 1, as the pages store them.
    using Properties = std::array<quint8, PropertyCount>;
    using Targets = std::array<quint8, Channels>;
    using CopyRow = std::function<void(int source, int target, const Properties &properties)>;

    explicit CRemoteCameraCopySettingDlg(QWidget *parent = nullptr);

    // Copy modes: 1 camera setup, 2 alarm-in, 3 alarm-out, 4 video loss,
    // 5, 6, 7 and 12 motion, 13 PTZ; any other mode offers no property.
    void setCopyMode(int mode);
    int copyMode() const { return m_copyMode; }

    // The choices of the last OK.
    Properties properties() const;
    Targets targets() const;

    // Calls `copyRow` for every target channel of the last OK, in channel order.
    void applyCopy(const CopyRow &copyRow) const;

    void setVisible(bool visible) override;

private:
    int m_copyMode = 0;
};
