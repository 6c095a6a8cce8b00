// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/camera/CRemoteCameraPTZDlg.h"

#include "i18n/Placeholders.h"
#include "i18n/Translator.h"
#include "pages/camera/PtzProtocolEditor.h"
#include "pages/common/CTransparentStatic.h"
#include "setup/Fields.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace fields = setup::fields::ptz;
using Kind = FieldEditor::Kind;

namespace {

QString channelItem(int index)
{
    return nelib::Placeholders::fill(index < 9 ? nelib::tr("CH 0%d") : nelib::tr("CH %d"),
                                     {index + 1});
}

} // namespace

CRemoteCameraPTZDlg::CRemoteCameraPTZDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::Ptz);
}

CRemoteCameraPTZDlg::~CRemoteCameraPTZDlg() = default;

void CRemoteCameraPTZDlg::buildControls()
{
    QWidget *area = contentArea();
    m_channel = new QComboBox(area);
    m_channel->setAccessibleName(nelib::tr("Channel"));
    auto *channelLabel = new CTransparentStatic(nelib::tr("Channel"), area);
    channelLabel->setBuddy(m_channel);
    m_channels = binder().channelForms(
        area, {
                  {fields::protocol, Kind::List, RS_TEXT("Protocol"), false, -1,
                   [](const setup::FieldInfo &, int i, int, QWidget *parent) -> FieldEditor * {
                       return new PtzProtocolEditor(fields::inUse, fields::protocol, i, parent);
                   }},
                  {fields::baudRate, Kind::List, RS_TEXT("Baudrate")},
                  {fields::dataBits, Kind::List, RS_TEXT("Data Bits")},
                  {fields::stopBits, Kind::List, RS_TEXT("Stop Bits")},
                  {fields::parity, Kind::List, RS_TEXT("Parity")},
                  {fields::controlId, Kind::Number},
                  {fields::panSpeed, Kind::Number, RS_TEXT("PTZ Speed")},
                  {fields::tiltSpeed, Kind::Number, RS_TEXT("PTZ Speed")},
                  {fields::zoomSpeed, Kind::Number, RS_TEXT("PTZ Speed")},
              });
    for (const SectionBinder::Binding &b : binder().bindings())
        b.editor->widget()->setMinimumWidth(120);
    connect(m_channel, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (index >= 0)
            m_channels->setCurrentIndex(index);
    });

    auto *channelRow = new QHBoxLayout;
    channelRow->addWidget(channelLabel);
    channelRow->addWidget(m_channel);
    channelRow->addStretch(1);
    auto *layout = new QVBoxLayout(area);
    layout->addLayout(channelRow);
    layout->addSpacing(8);
    layout->addWidget(m_channels);
    layout->addStretch(1);
    addCopySettings();
}

// The list holds one item per channel of the recorder.
void CRemoteCameraPTZDlg::afterFill()
{
    if (m_channel->count() == channelCount())
        return;
    const int current = std::max(m_channel->currentIndex(), 0);
    m_channel->clear();
    for (int row = 0; row < channelCount(); ++row)
        m_channel->addItem(channelItem(row));
    m_channel->setCurrentIndex(std::min(current, channelCount() - 1));
}

void CRemoteCameraPTZDlg::fillControls(QByteArrayView section, Source source)
{
    CSetupPage::fillControls(section, source);
    if (source == Source::DefaultFile)
        m_channel->setCurrentIndex(0);
}
