// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/network/CRemoteNetworkEmailDlg.h"

#include "pages/network/NetworkEntryCheck.h"
#include "pages/network/NotificationForms.h"

CRemoteNetworkEmailDlg::CRemoteNetworkEmailDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::Email);
}

CRemoteNetworkEmailDlg::~CRemoteNetworkEmailDlg() = default;

void CRemoteNetworkEmailDlg::buildControls()
{
    NotificationForms::email(binder(), contentArea());
}

int CRemoteNetworkEmailDlg::save()
{
    if (!NotificationForms::emailAccepted(NetworkEntryCheck(binder())))
        return 0;
    return CSetupPage::save();
}
