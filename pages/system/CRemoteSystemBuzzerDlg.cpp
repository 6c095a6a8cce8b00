// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/system/CRemoteSystemBuzzerDlg.h"

#include "setup/Fields.h"

#include <QFormLayout>
#include <QVBoxLayout>

namespace fields = setup::fields::buzzer;
using Kind = FieldEditor::Kind;

CRemoteSystemBuzzerDlg::CRemoteSystemBuzzerDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::Buzzer);
}

CRemoteSystemBuzzerDlg::~CRemoteSystemBuzzerDlg() = default;

void CRemoteSystemBuzzerDlg::buildControls()
{
    QFormLayout *form = binder().form(contentArea(), {
                                                         {fields::keyTone, Kind::List},
                                                         {fields::eventBuzzer, Kind::List},
                                                         {fields::diskFull, Kind::List},
                                                         {fields::diskError, Kind::List},
                                                         {fields::beepTime, Kind::List},
                                                     });
    auto *layout = new QVBoxLayout(contentArea());
    layout->addLayout(form);
    layout->addStretch(1);
}
