// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/record/CRemoteRecordScheduleDlg.h"

#include "i18n/Translator.h"
#include "pages/common/CTransparentStatic.h"
#include "pages/common/ScheduleEntryEditor.h"
#include "session/MessageSink.h"
#include "setup/Fields.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <span>

using namespace Qt::StringLiterals;
namespace fields = setup::fields::schedule;

namespace {

int storedCount(const setup::SectionView &section)
{
    return int(std::min<quint32>(section.number(fields::count), fields::capacity));
}

// The screen page that shows entry `count` (1 for an empty list).
int screenOf(int count)
{
    return std::max(1, (count + CRemoteRecordScheduleDlg::RowsPerScreen - 1)
                           / CRemoteRecordScheduleDlg::RowsPerScreen);
}

} // namespace

CRemoteRecordScheduleDlg::CRemoteRecordScheduleDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::Schedule);
}

CRemoteRecordScheduleDlg::~CRemoteRecordScheduleDlg() = default;

// Screen pages are built as entries reach them: most recorders use one.
void CRemoteRecordScheduleDlg::buildScreens(int screens)
{
    const QString headings[]
        = {nelib::tr("No."),      nelib::tr(fields::day.label),  nelib::tr("Start Time"),
           nelib::tr("End Time"), nelib::tr(fields::mode.label), nelib::tr(fields::channels.label)};
    const int headingColumns[] = {0, 2, 3, 6, 9, 10};
    const int headingSpans[] = {2, 1, 3, 3, 1, 2};
    while (m_screens->count() < screens) {
        const int screen = m_screens->count();
        auto *page = new QWidget(m_screens);
        auto *grid = new QGridLayout(page);
        grid->setContentsMargins(0, 0, 0, 0);
        grid->setVerticalSpacing(4);
        for (int h = 0; h < 6; ++h)
            grid->addWidget(new CTransparentStatic(headings[h], page), 0, headingColumns[h], 1,
                            headingSpans[h]);
        for (int row = 0; row < RowsPerScreen; ++row) {
            const int slot = screen * RowsPerScreen + row;
            auto *mark = new QCheckBox(page);
            auto *entry = new ScheduleEntryEditor(slot, page);
            entry->setChannelCount(channelCount());
            mark->setAccessibleName(nelib::tr("Delete") + u' ' + QString::number(slot + 1));
            connect(mark, &QCheckBox::clicked, this, &CRemoteRecordScheduleDlg::entryBoxClicked);
            const int y = row + 1;
            grid->addWidget(mark, y, 0);
            int column = 1;
            for (QWidget *w : entry->rowWidgets())
                grid->addWidget(w, y, column++);
            binder().add(entry);
            m_entries[slot] = entry;
            m_marks[slot] = mark;
        }
        grid->setColumnStretch(10, 1);
        grid->setRowStretch(RowsPerScreen + 1, 1);
        m_screens->addWidget(page);
    }
}

int CRemoteRecordScheduleDlg::builtSlots() const
{
    return m_screens->count() * RowsPerScreen;
}

void CRemoteRecordScheduleDlg::buildControls()
{
    m_screens = new QStackedWidget(contentArea());
    buildScreens(1);
    // The first entry's day stays as the recorder has it.
    m_entries[0]->numberLabel()->setEnabled(false);
    m_entries[0]->dayList()->setEnabled(false);

    m_selectAll = new QCheckBox(nelib::tr("Select All"), contentArea());
    m_selectAll->setAccessibleName(m_selectAll->text());
    auto *add = new QPushButton(nelib::tr("Add"), contentArea());
    auto *remove = new QPushButton(nelib::tr("Delete"), contentArea());
    auto *previous = new QPushButton(nelib::tr("Previous"), contentArea());
    auto *next = new QPushButton(nelib::tr("Next"), contentArea());
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_selectAll);
    buttons->addStretch(1);
    for (QPushButton *b : {add, remove, previous, next})
        buttons->addWidget(b);

    auto *layout = new QVBoxLayout(contentArea());
    layout->addWidget(m_screens, 1);
    layout->addLayout(buttons);

    connect(add, &QPushButton::clicked, this, &CRemoteRecordScheduleDlg::addEntry);
    connect(remove, &QPushButton::clicked, this, &CRemoteRecordScheduleDlg::deleteCheckedEntries);
    connect(previous, &QPushButton::clicked, this, [this] { showScreen(m_screen - 1); });
    connect(next, &QPushButton::clicked, this, [this] { showScreen(m_screen + 1); });
    connect(m_selectAll, &QCheckBox::clicked, this, &CRemoteRecordScheduleDlg::selectAllClicked);
}

void CRemoteRecordScheduleDlg::fillControls(QByteArrayView section, Source source)
{
    m_count = storedCount(view(section));
    buildScreens(screenOf(m_count));
    // Slots past the count start afresh, with an emptied slot's values.
    for (int slot = 0; slot < builtSlots(); ++slot) {
        m_entries[slot]->setInUse(slot < m_count);
        if (slot >= m_count)
            m_entries[slot]->setEntry(ScheduleEntryEditor::Entry {});
        m_marks[slot]->setChecked(false);
    }
    CSetupPage::fillControls(section, source);
}

void CRemoteRecordScheduleDlg::gatherControls(QByteArray &section)
{
    CSetupPage::gatherControls(section);
    // A count past the list's room reads as full; only a changed count is written.
    if (storedCount(view(section)) != m_count)
        edit(section).setNumber(fields::count, quint32(m_count));
}

void CRemoteRecordScheduleDlg::afterFill()
{
    for (int slot = 0; slot < builtSlots(); ++slot)
        m_entries[slot]->setChannelCount(channelCount());
    showScreen(1);
}

void CRemoteRecordScheduleDlg::addEntry()
{
    if (m_count == Capacity)
        return;
    buildScreens(screenOf(m_count + 1));
    m_entries[m_count]->setInUse(true);
    ++m_count;
    showScreenOf(m_count);
    markModified();
}

void CRemoteRecordScheduleDlg::deleteCheckedEntries()
{
    const auto marks = std::span(m_marks).first(builtSlots());
    const auto marked = std::count_if(marks.begin(), marks.end(),
                                      [](const QCheckBox *mark) { return mark->isChecked(); });
    if (marked == 0) {
        MessageSink::show(nelib::tr("You can delete only the entry that is checked."));
        return;
    }
    // The unticked entries move up in their order; the ticked ones are dropped.
    int kept = 0;
    for (int slot = 0; slot < builtSlots(); ++slot) {
        if (m_marks[slot]->isChecked())
            continue;
        if (kept != slot)
            m_entries[kept]->setEntry(m_entries[slot]->entry());
        ++kept;
    }
    m_count -= int(marked);
    for (int slot = 0; slot < builtSlots(); ++slot) {
        m_marks[slot]->setChecked(false);
        if (slot >= m_count) {
            m_entries[slot]->setEntry(ScheduleEntryEditor::Entry {});
            m_entries[slot]->setInUse(false);
        }
    }
    showScreenOf(m_count);
    markModified();
}

void CRemoteRecordScheduleDlg::showScreenOf(int count)
{
    showScreen(screenOf(count));
}

void CRemoteRecordScheduleDlg::showScreen(int screen)
{
    m_screen = std::clamp(screen, 1, screenOf(m_count));
    m_screens->setCurrentIndex(m_screen - 1);
    for (int slot = 0; slot < builtSlots(); ++slot) {
        const bool shown = slot < m_count;
        m_marks[slot]->setVisible(shown);
        for (QWidget *w : m_entries[slot]->rowWidgets())
            w->setVisible(shown);
    }
}

// Ticks or clears entries 2 to the last; the first entry's box stays as it is.
void CRemoteRecordScheduleDlg::selectAllClicked(bool checked)
{
    for (int slot = 1; slot < m_count; ++slot)
        m_marks[slot]->setChecked(checked);
    markModified();
}

void CRemoteRecordScheduleDlg::entryBoxClicked()
{
    if (builtSlots() == Capacity
        && std::all_of(m_marks.begin(), m_marks.end(),
                       [](const QCheckBox *mark) { return mark->isChecked(); }))
        m_selectAll->setChecked(true);
}
