// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/camera/CRemoteCameraVideoLoss.h"

#include "i18n/Translator.h"
#include "pages/common/ColumnCheckBox.h"
#include "setup/Fields.h"

#include <QGridLayout>
#include <QVBoxLayout>

namespace fields = setup::fields::videoLoss;
using Kind = FieldEditor::Kind;

CRemoteCameraVideoLoss::CRemoteCameraVideoLoss(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::VideoLoss);
}

CRemoteCameraVideoLoss::~CRemoteCameraVideoLoss() = default;

void CRemoteCameraVideoLoss::buildControls()
{
    QGridLayout *grid = binder().channelGrid(
        contentArea(), {
                           {fields::beep, Kind::Check, RS_TEXT("Beep"), true},
                           {fields::alarmOut, Kind::AlarmOutputs, RS_TEXT("Alarm-Out")},
                       });
    grid->setColumnStretch(3, 1);
    auto *layout = new QVBoxLayout(contentArea());
    layout->addLayout(grid);
    layout->addStretch(1);
    addCopySettings();
}

void CRemoteCameraVideoLoss::fillControls(QByteArrayView section, Source source)
{
    CSetupPage::fillControls(section, source);
    if (source == Source::DefaultFile)
        binder().headerBox(fields::beep)->updateFirstRows(channelCount());
}
