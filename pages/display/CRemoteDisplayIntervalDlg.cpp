// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/display/CRemoteDisplayIntervalDlg.h"

#include "i18n/Translator.h"
#include "pages/common/CTransparentStatic.h"
#include "setup/Fields.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace fields = setup::fields::interval;
using Kind = FieldEditor::Kind;

CRemoteDisplayIntervalDlg::CRemoteDisplayIntervalDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::Interval);
}

CRemoteDisplayIntervalDlg::~CRemoteDisplayIntervalDlg() = default;

void CRemoteDisplayIntervalDlg::buildControls()
{
    QWidget *area = contentArea();
    QFormLayout *form = binder().form(area, {
                                                {fields::sequence, Kind::Number},
                                                {fields::pip, Kind::Number},
                                                {fields::spot, Kind::Number},
                                                {fields::eventUpdate, Kind::Number},
                                            });
    auto *heading = new CTransparentStatic(nelib::tr("Switching Interval"), area);
    QFont bold = heading->font();
    bold.setBold(true);
    heading->setFont(bold);
    form->insertRow(0, heading);
    // "Time Out": the switch, then the time the list offers while it is on.
    FieldEditor *onOff
        = binder().add(FieldEditor::create(Kind::Check, fields::timeOutSwitch, 0, 0, area));
    FieldEditor *seconds
        = binder().add(FieldEditor::create(Kind::List, fields::timeOut, 0, 0, area));
    auto *box = qobject_cast<QCheckBox *>(onOff->widget());
    box->setText(nelib::tr("On"));
    const QString label = nelib::tr(fields::timeOut.label);
    box->setAccessibleName(label);
    seconds->widget()->setAccessibleName(label);
    auto *row = new QHBoxLayout;
    row->addWidget(box);
    row->addWidget(seconds->widget(), 1);
    auto *text = new CTransparentStatic(label, area);
    text->setBuddy(box);
    form->addRow(text, row);
    connect(box, &QCheckBox::toggled, seconds->widget(), &QWidget::setEnabled);

    auto *layout = new QVBoxLayout(area);
    layout->addLayout(form);
    layout->addStretch(1);
}

void CRemoteDisplayIntervalDlg::fillControls(QByteArrayView section, Source source)
{
    // A stored time-out that the list does not offer leaves the list as it
    // was; Save then stores the item shown.
    auto *list = binder().widget<QComboBox>(fields::timeOut);
    const int shown = list->currentIndex();
    CSetupPage::fillControls(section, source);
    if (list->currentIndex() < 0)
        list->setCurrentIndex(shown);
}

void CRemoteDisplayIntervalDlg::afterFill()
{
    binder()
        .widget<QComboBox>(fields::timeOut)
        ->setEnabled(binder().widget<QCheckBox>(fields::timeOutSwitch)->isChecked());
}
