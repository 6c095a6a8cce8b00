// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/display/CRemoteDisplayEventDlg.h"

#include "i18n/Translator.h"
#include "pages/common/BitGroupEditor.h"
#include "pages/common/CTransparentStatic.h"
#include "pages/common/ChannelSelectionEditor.h"
#include "setup/Fields.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QSpinBox>
#include <QVBoxLayout>

namespace fields = setup::fields::eventDisplay;
using Kind = FieldEditor::Kind;

namespace {

constexpr quint32 SpotOff = 0;
constexpr quint32 SpotEvent = 2;

} // namespace

CRemoteDisplayEventDlg::CRemoteDisplayEventDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::EventDisplay);
}

CRemoteDisplayEventDlg::~CRemoteDisplayEventDlg() = default;

void CRemoteDisplayEventDlg::buildControls()
{
    QWidget *area = contentArea();
    auto *main = new QGroupBox(nelib::tr("Main Monitor"), area);
    main->setLayout(binder().form(main, {
                                            {fields::mainOutput, Kind::List},
                                            {fields::vgaResolution, Kind::List},
                                            {fields::brightness, Kind::Number},
                                            {fields::contrast, Kind::Number},
                                            {fields::eventPopup, Kind::Check},
                                            {fields::popupDwell, Kind::Number},
                                        }));

    auto *spot = new QGroupBox(nelib::tr("Spot Monitor"), area);
    QFormLayout *spotForm = binder().form(spot, {
                                                    {fields::spotMode, Kind::List},
                                                    {fields::spotPopup, Kind::Check},
                                                });
    // The channels are chosen in the spot dialog, which holds to the mode's limit.
    m_spotChannels = new ChannelSelectionEditor(ChannelSelectionEditor::Dialog::Spot,
                                                fields::spotChannel, 0, 0, spot);
    binder().add(m_spotChannels);
    const QString spotLabel = nelib::tr(fields::spotChannel.label);
    m_spotChannels->setAccessibleName(spotLabel);
    auto *channelsText = new CTransparentStatic(spotLabel, spot);
    channelsText->setBuddy(m_spotChannels->text());
    spotForm->insertRow(1, channelsText, m_spotChannels->widget());
    spot->setLayout(spotForm);

    m_sequence = new BitGroupEditor(fields::sequenceChannels, 2, area);
    binder().add(m_sequence);

    for (const setup::FieldInfo &f : {fields::mainOutput, fields::spotMode})
        connect(binder().widget<QComboBox>(f), &QComboBox::currentIndexChanged, this,
                &CRemoteDisplayEventDlg::updateControls);
    connect(binder().widget<QCheckBox>(fields::eventPopup), &QCheckBox::toggled, this,
            &CRemoteDisplayEventDlg::updateControls);

    auto *columns = new QHBoxLayout;
    auto *left = new QVBoxLayout;
    left->addWidget(main);
    left->addWidget(spot);
    left->addStretch(1);
    columns->addLayout(left, 3);
    columns->addWidget(m_sequence->widget(), 1, Qt::AlignTop);
    auto *layout = new QVBoxLayout(area);
    layout->addLayout(columns);
}

int CRemoteDisplayEventDlg::spotChannelLimit() const
{
    const auto *mode = binder().widget<QComboBox>(fields::spotMode);
    return mode->currentData().toUInt() == SpotEvent && mode->currentIndex() >= 0
               ? EventSpotChannels
               : MaxChannels;
}

void CRemoteDisplayEventDlg::afterFill()
{
    m_sequence->setShownBits(channelCount());
    updateControls();
}

void CRemoteDisplayEventDlg::updateControls()
{
    const auto *output = binder().widget<QComboBox>(fields::mainOutput);
    binder()
        .widget<QComboBox>(fields::vgaResolution)
        ->setEnabled(output->currentIndex() < 0 || output->currentData().toUInt() != 0);
    binder()
        .widget<QSpinBox>(fields::popupDwell)
        ->setEnabled(binder().widget<QCheckBox>(fields::eventPopup)->isChecked());

    const auto *mode = binder().widget<QComboBox>(fields::spotMode);
    const bool spotOn = mode->currentIndex() < 0 || mode->currentData().toUInt() != SpotOff;
    m_spotChannels->setLimit(spotChannelLimit());
    m_spotChannels->widget()->setEnabled(spotOn);
    binder().widget<QCheckBox>(fields::spotPopup)->setEnabled(spotOn);
}
