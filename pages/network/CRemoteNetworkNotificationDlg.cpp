// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/network/CRemoteNetworkNotificationDlg.h"

#include "i18n/Translator.h"
#include "pages/network/NetworkEntryCheck.h"
#include "pages/network/NotificationForms.h"

CRemoteNetworkNotificationDlg::CRemoteNetworkNotificationDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::Notification);
}

CRemoteNetworkNotificationDlg::~CRemoteNetworkNotificationDlg() = default;

void CRemoteNetworkNotificationDlg::buildControls()
{
    setTabs({nelib::tr("E-Mail"), nelib::tr("Camera Events"), nelib::tr("System Events")});
    NotificationForms::email(binder(), tabContent(0));
    NotificationForms::cameraEvents(binder(), tabContent(1));
    NotificationForms::systemEvents(binder(), tabContent(2));
}

int CRemoteNetworkNotificationDlg::save()
{
    if (!NotificationForms::emailAccepted(NetworkEntryCheck(binder())))
        return 0;
    return CSetupPage::save();
}
