// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/device/CRemoteDeviceRemoteCtrlDlg.h"

#include "i18n/Translator.h"
#include "setup/Fields.h"

#include <QFormLayout>
#include <QSpinBox>
#include <QVBoxLayout>

namespace fields = setup::fields::remoteControl;
using Kind = FieldEditor::Kind;

CRemoteDeviceRemoteCtrlDlg::CRemoteDeviceRemoteCtrlDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::RemoteControl);
}

CRemoteDeviceRemoteCtrlDlg::~CRemoteDeviceRemoteCtrlDlg() = default;

void CRemoteDeviceRemoteCtrlDlg::buildControls()
{
    QFormLayout *form = binder().form(contentArea(), {
                                                         {fields::enabled, Kind::List},
                                                         {fields::remoteId, Kind::Number},
                                                     });
    // Id 0 is no remote's own: the recorder obeys every remote.
    binder()
        .widget<QSpinBox>(fields::remoteId)
        ->setSpecialValueText(nelib::tr(fields::remoteId.valueName(0)));
    auto *layout = new QVBoxLayout(contentArea());
    layout->addLayout(form);
    layout->addStretch(1);
}
