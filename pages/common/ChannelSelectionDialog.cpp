// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/ChannelSelectionDialog.h"

#include "i18n/Translator.h"
#include "pages/common/DialogButtons.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr const char *ChannelNames[] = {
    RS_TEXT("Ch 01"), RS_TEXT("Ch 02"), RS_TEXT("Ch 03"), RS_TEXT("Ch 04"),
    RS_TEXT("Ch 05"), RS_TEXT("Ch 06"), RS_TEXT("Ch 07"), RS_TEXT("Ch 08"),
    RS_TEXT("Ch 09"), RS_TEXT("Ch 10"), RS_TEXT("Ch 11"), RS_TEXT("Ch 12"),
    RS_TEXT("Ch 13"), RS_TEXT("Ch 14"), RS_TEXT("Ch 15"), RS_TEXT("Ch 16"),
};
static_assert(std::size(ChannelNames) == ChannelSelectionDialog::Channels);

constexpr int BoxesPerRow = 4;

} // namespace

ChannelSelectionDialog::ChannelSelectionDialog(QWidget *parent)
    : QDialog(parent)
    , m_groupLayout(new QVBoxLayout)
    , m_buttons(DialogButtons::okCancel(this))
{
    for (int c = 0; c < Channels; ++c) {
        m_boxes[c] = new QCheckBox(nelib::tr(ChannelNames[c]), this);
        m_boxes[c]->setAccessibleName(m_boxes[c]->text());
        connect(m_boxes[c], &QCheckBox::clicked, this, [this, c](bool checked) {
            m_selection = checked ? m_selection | (1u << c) : m_selection & ~(1u << c);
            refresh();
        });
    }

    auto *layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addLayout(m_groupLayout);
    layout->addWidget(m_buttons);
}

QCheckBox *ChannelSelectionDialog::addGroup(int first, int end, bool onlyShown)
{
    auto *selectAll = new QCheckBox(nelib::tr("Select All"), this);
    const Group group {selectAll, first, end, onlyShown};
    connect(selectAll, &QCheckBox::clicked, this,
            [this, group](bool checked) { selectAllClicked(group, checked); });
    m_groups.append(group);

    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(16);
    for (int c = first; c < end; ++c)
        grid->addWidget(m_boxes[c], (c - first) / BoxesPerRow, (c - first) % BoxesPerRow);
    if (m_groupLayout->count() > 0)
        m_groupLayout->addSpacing(8);
    m_groupLayout->addWidget(selectAll);
    m_groupLayout->addLayout(grid);

    // Two groups need names that tell their boxes apart.
    selectAll->setAccessibleName(selectAll->text());
    if (m_groups.size() > 1) {
        for (const Group &g : std::as_const(m_groups)) {
            g.selectAll->setAccessibleName(g.selectAll->text() + u' ' + m_boxes[g.first]->text()
                                           + QStringLiteral(" - ") + m_boxes[g.end - 1]->text());
        }
    }
    return selectAll;
}

QPushButton *ChannelSelectionDialog::okButton() const
{
    return m_buttons->button(QDialogButtonBox::Ok);
}

void ChannelSelectionDialog::setChannelCount(int count)
{
    m_channelCount = std::clamp(count, 1, int(Channels));
}

void ChannelSelectionDialog::setSelection(quint16 selection)
{
    m_selection = selection;
    if (isVisible())
        refresh();
}

void ChannelSelectionDialog::setVisible(bool visible)
{
    if (visible && !isVisible())
        refresh();
    QDialog::setVisible(visible);
}

int ChannelSelectionDialog::coveredEnd(const Group &group) const
{
    return group.onlyShown ? std::min(group.end, m_channelCount) : group.end;
}

void ChannelSelectionDialog::selectAllClicked(const Group &group, bool checked)
{
    for (int c = group.first; c < coveredEnd(group); ++c)
        m_selection = checked ? m_selection | (1u << c) : m_selection & ~(1u << c);
    refresh();
}

// Shows the selection; a "Select All" box shows checked when every box it
// covers is, and is disabled when it covers none.
void ChannelSelectionDialog::refresh()
{
    for (int c = 0; c < Channels; ++c) {
        m_boxes[c]->setChecked(m_selection & (1u << c));
        m_boxes[c]->setVisible(c < m_channelCount);
    }
    for (const Group &g : std::as_const(m_groups)) {
        const int end = coveredEnd(g);
        bool all = end > g.first;
        for (int c = g.first; c < end; ++c)
            all = all && (m_selection & (1u << c));
        g.selectAll->setChecked(all);
        g.selectAll->setEnabled(end > g.first);
        g.selectAll->setVisible(g.first < m_channelCount);
    }
    selectionChanged();
}
