// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

#include <array>

class CRemoteDisplayOSDMargin;

// Display / OSD: what the recorder writes over its live and playback
// pictures, its menu language, the time after which its menu closes, and
// (in the "Margin" dialog) the margins of the overlay.
class CRemoteDisplayOSDDlg : public CSetupPage
{
    Q_OBJECT

public:
    explicit CRemoteDisplayOSDDlg(QWidget *parent = nullptr);
    ~CRemoteDisplayOSDDlg() override;

    CRemoteDisplayOSDMargin *marginDialog() const { return m_margin; }

protected:
    void buildControls() override;
    void fillControls(QByteArrayView section, Source source) override;

private:
    void openMargins();
    void marginsClosed(int result);

    CRemoteDisplayOSDMargin *m_margin = nullptr;
    std::array<int, 4> m_marginsShown {};
};
