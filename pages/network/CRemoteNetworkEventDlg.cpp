// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/network/CRemoteNetworkEventDlg.h"

#include "i18n/Translator.h"
#include "pages/network/NotificationForms.h"

CRemoteNetworkEventDlg::CRemoteNetworkEventDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::NetworkEvent);
}

CRemoteNetworkEventDlg::~CRemoteNetworkEventDlg() = default;

void CRemoteNetworkEventDlg::buildControls()
{
    setTabs({nelib::tr("Camera Events"), nelib::tr("System Events")});
    NotificationForms::cameraEvents(binder(), tabContent(0));
    NotificationForms::systemEvents(binder(), tabContent(1));
}
