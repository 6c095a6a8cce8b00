// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/RecorderTypeDialog.h"

#include "i18n/Translator.h"
#include "pages/common/DialogButtons.h"
#include "setup/SetupRecordMap.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include <utility>

RecorderTypeDialog::RecorderTypeDialog(int channels, int videoStandard, QWidget *parent)
    : QDialog(parent)
    , m_channels(new QSpinBox(this))
    , m_videoStandard(new QComboBox(this))
{
    setWindowTitle(nelib::tr("OPEN FILE"));
    m_channels->setRange(1, setup::SetupRecordMap::MaxChannels);
    m_channels->setValue(channels);
    m_videoStandard->addItems({nelib::tr("NTSC"), nelib::tr("PAL")});
    m_videoStandard->setCurrentIndex(videoStandard ? 1 : 0);

    auto *form = new QFormLayout;
    for (const auto &[text, field] :
         {std::pair<QString, QWidget *> {nelib::tr("Channels"), m_channels},
          {nelib::tr("Video Standard"), m_videoStandard}}) {
        auto *label = new QLabel(text, this);
        label->setBuddy(field);
        field->setAccessibleName(text);
        form->addRow(label, field);
    }
    auto *buttons = DialogButtons::okCancel(this);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
}

int RecorderTypeDialog::channels() const
{
    return m_channels->value();
}

int RecorderTypeDialog::videoStandard() const
{
    return m_videoStandard->currentIndex();
}
