// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/CopySettingDialog.h"

#include "i18n/Translator.h"
#include "pages/common/DialogButtons.h"
#include "setup/Fields.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

CopySettingDialog::CopySettingDialog(QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(nelib::tr("Copy Settings"));

    auto *fromLabel = new QLabel(nelib::tr("From"), this);
    m_from = new QComboBox(this);
    for (const auto &channel : setup::fields::values::channelBits)
        m_from->addItem(nelib::tr(channel.name));
    m_from->setAccessibleName(fromLabel->text());
    fromLabel->setBuddy(m_from);
    auto *fromRow = new QHBoxLayout;
    fromRow->addWidget(fromLabel);
    fromRow->addWidget(m_from);
    fromRow->addStretch(1);

    auto *propertyGroup = new QGroupBox(nelib::tr("Properties"), this);
    m_propertyLayout = new QVBoxLayout(propertyGroup);

    // Channel boxes four to a row, so that all sixteen fit the dialog.
    auto *targetGroup = new QGroupBox(nelib::tr("To"), this);
    auto *targetLayout = new QVBoxLayout(targetGroup);
    m_selectAll = new QCheckBox(nelib::tr("Select All"), targetGroup);
    m_selectAll->setAccessibleName(m_selectAll->text());
    targetLayout->addWidget(m_selectAll);
    auto *channelGrid = new QGridLayout;
    for (int c = 0; c < Channels; ++c) {
        m_channelBoxes[c] = new QCheckBox(m_from->itemText(c), targetGroup);
        m_channelBoxes[c]->setAccessibleName(nelib::tr("To") + u' ' + m_channelBoxes[c]->text());
        channelGrid->addWidget(m_channelBoxes[c], c / 4, c % 4);
    }
    targetLayout->addLayout(channelGrid);

    auto *buttons = DialogButtons::okCancel(this);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(fromRow);
    layout->addWidget(propertyGroup);
    layout->addWidget(targetGroup);
    layout->addStretch(1);
    layout->addWidget(buttons);

    connect(m_from, &QComboBox::currentIndexChanged, this, &CopySettingDialog::sourceChanged);
    connect(m_selectAll, &QCheckBox::clicked, this, [this](bool checked) {
        for (int c = 0; c < Channels; ++c)
            m_channelBoxes[c]->setChecked(checked && c != m_from->currentIndex());
    });
}

void CopySettingDialog::offer(std::span<const char *const> properties)
{
    for (Property &p : m_properties)
        p.box->hide();
    for (const char *name : properties) {
        auto known = std::find_if(m_properties.begin(), m_properties.end(),
                                  [&](const Property &p) { return p.name == name; });
        if (known == m_properties.end()) {
            auto *box = new QCheckBox(nelib::tr(name), m_propertyLayout->parentWidget());
            box->setAccessibleName(box->text());
            m_propertyLayout->addWidget(box);
            known = m_properties.insert(m_properties.end(), {name, box, false});
        }
        known->box->show();
    }
}

bool CopySettingDialog::copies(const char *property) const
{
    return property
           && std::any_of(m_properties.begin(), m_properties.end(),
                          [&](const Property &p) { return p.name == property && p.ticked; });
}

void CopySettingDialog::setChannelCount(int count)
{
    m_channelCount = std::clamp(count, 1, int(Channels));
}

// Every opening starts from the first channel as the source and shows the
// choices of the last OK.
void CopySettingDialog::setVisible(bool visible)
{
    if (visible && !isVisible()) {
        for (const Property &p : m_properties)
            p.box->setChecked(p.ticked);
        m_selectAll->setChecked(false);
        for (int c = 0; c < Channels; ++c) {
            m_channelBoxes[c]->setChecked(m_targets[c] != 0);
            m_channelBoxes[c]->setVisible(c < m_channelCount);
        }
        m_from->setCurrentIndex(0);
        sourceChanged(0);
    }
    QDialog::setVisible(visible);
}

void CopySettingDialog::sourceChanged(int index)
{
    for (int c = 0; c < Channels; ++c)
        m_channelBoxes[c]->setEnabled(c != index);
}

void CopySettingDialog::accept()
{
    m_source = m_from->currentIndex();
    for (Property &p : m_properties)
        p.ticked = p.box->isChecked();
    for (int c = 0; c < Channels; ++c)
        m_targets[c] = m_channelBoxes[c]->isChecked() ? 1 : 0;
    QDialog::accept();
}
