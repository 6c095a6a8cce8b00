// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

QT_BEGIN_NAMESPACE
class QGridLayout;
QT_END_NAMESPACE

// Network / Stream: the recorder's place on the site's network (a static
// address or DHCP, its ports, bandwidth and DDNS name), the stream of every
// channel and the central monitoring servers it reports to. The page writes
// the whole NETWORK block; the e-mail and event bytes inside it go out as the
// other pages last sent them. Recorders with four channels have no such page.
class CRemoteNetworkStreamDlg : public CSetupPage
{
    Q_OBJECT

public:
    explicit CRemoteNetworkStreamDlg(QWidget *parent = nullptr);
    ~CRemoteNetworkStreamDlg() override;

    // Sends nothing while an entry is refused.
    int save() override;

protected:
    void buildControls() override;
    void afterFill() override;

private:
    void buildNetworkTab(QWidget *tab);
    void addChannelTab(QWidget *tab, QGridLayout *grid);
    void buildServersTab(QWidget *tab);
    bool isStatic() const;
};
