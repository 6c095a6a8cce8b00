// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/PageHost.h"

#include "app/PageCatalog.h"
#include "i18n/Translator.h"
#include "pages/common/CSetupPage.h"
#include "session/CWork.h"
#include "setup/SetupFiles.h"

#include <QLabel>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <malloc.h>

#include <algorithm>

namespace {

constexpr QSize MinimumPageSize(570, 500);

// The worker whose mirror the pages show: a ready session's, or one holding
// a setup opened from a file.
CWork *recordHolder()
{
    CWork *work = CWork::instance();
    return work && (work->state() == CWork::Ready || work->holdsRecordOnly()) ? work : nullptr;
}

} // namespace

PageHost::PageHost(QWidget *parent)
    : QWidget(parent)
    , m_stack(new QStackedWidget(this))
    , m_hint(new QLabel(m_stack))
    , m_pages(PageCatalog::count(), nullptr)
{
    // Room for a whole page before any exists, so that the window keeps its
    // size when the pages arrive.
    setMinimumSize(MinimumPageSize);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_stack);

    m_hint->setText(nelib::tr("Enter the recorder's address and press CONNECT."));
    m_hint->setAlignment(Qt::AlignCenter);
    m_hint->setWordWrap(true);
    m_hint->setEnabled(false);
    m_stack->addWidget(m_hint);

    // Once the released pages are gone, their memory goes back to the
    // system: freed in small pieces, the allocator would keep it.
    m_trim.setSingleShot(true);
    connect(&m_trim, &QTimer::timeout, this, [] { malloc_trim(0); });
}

void PageHost::buildPages()
{
    if (m_built)
        return;
    m_built = true;
    for (int i = 0; i < PageCatalog::count(); ++i) {
        if (PageCatalog::entry(i).create) {
            m_pages[i] = createPage(i);
            m_stack->addWidget(m_pages[i]);
        }
    }
}

CSetupPage *PageHost::createPage(int index)
{
    CSetupPage *page = PageCatalog::entry(index).create(m_stack);
    // Pages reach the session and the default file only through these.
    page->setSectionWriter([this, page](setup::Section section, const QByteArray &bytes) {
        return writeSection(page, section, bytes);
    });
    page->setAcknowledgementSilencer([] {
        CWork *work = CWork::instance();
        if (work && work->state() == CWork::Ready)
            work->setSilentNextAcknowledgement();
    });
    page->setRecordSource([] {
        const CWork *work = recordHolder();
        return work ? work->mirror() : QByteArray();
    });
    page->setDefaultSource(
        [] { return setup::SetupFiles::readDefaultFile(CSetupPage::defaultSetupPath()).bytes; });
    page->setClock(
        []() -> std::optional<RecorderTime> {
            const CWork *work = CWork::instance();
            if (!work || work->state() != CWork::Ready || !work->clockValid())
                return std::nullopt;
            return work->clock();
        },
        [](const RecorderTime &time) {
            CWork *work = CWork::instance();
            return work && work->state() == CWork::Ready ? work->dateTimeCommand(2, time) : 0;
        });
    return page;
}

CSetupPage *PageHost::page(int index) const
{
    return index >= 0 && index < int(m_pages.size()) ? m_pages[index] : nullptr;
}

int PageHost::firstPage() const
{
    for (int i = 0; i < int(m_pages.size()); ++i) {
        if (m_pages[i])
            return i;
    }
    return -1;
}

void PageHost::loadPages(const QByteArray &mirror, int channelCount)
{
    m_held = mirror;
    m_channelCount = channelCount;
    m_unanswered.clear();
    m_quietSaves = 0;
    for (CSetupPage *page : m_pages) {
        if (page && page->isBuilt())
            page->load(mirror, channelCount);
        else if (page)
            page->keepSection(mirror, channelCount);
    }
}

QByteArray PageHost::recordFor(const CSetupPage *page) const
{
    // The page's own section is the newest: other pages' saves reach it.
    QByteArray record = m_held;
    if (record.size() == setup::SetupRecordMap::RecordSize && page->section())
        record.replace(page->recordOffset(), page->sectionBuffer().size(), page->sectionBuffer());
    return record;
}

void PageHost::showPage(int index)
{
    CSetupPage *shown = page(index);
    if (!shown)
        return;
    if (!shown->isBuilt())
        shown->load(recordFor(shown), m_channelCount);
    m_current = index;
    m_stack->setCurrentWidget(shown);
    std::erase(m_recent, index);
    m_recent.push_front(index);
    releaseOldPages();
}

void PageHost::releaseOldPages()
{
    while (m_recent.size() > KeptPages) {
        const int index = m_recent.back();
        m_recent.pop_back();
        CSetupPage *old = m_pages[index];
        const bool waiting = std::ranges::any_of(
            m_unanswered, [old](const Write &write) { return write.page == old; });
        // Only what the operator cannot lose: no edits, no page of its own
        // operations (upload, import), no write the recorder has not answered.
        if (!old->isBuilt() || !old->hasSaveAction() || old->isModified() || old->needsSave()
            || waiting)
            continue;
        CSetupPage *fresh = createPage(index);
        fresh->keepSection(recordFor(old), m_channelCount);
        fresh->setEnabled(old->isEnabled());
        m_stack->insertWidget(m_stack->indexOf(old), fresh);
        m_stack->removeWidget(old);
        m_pages[index] = fresh;
        old->deleteLater();
        m_trim.start();
    }
}

int PageHost::writeSection(CSetupPage *page, setup::Section section, const QByteArray &bytes)
{
    CWork *work = CWork::instance();
    const setup::SectionInfo &info = setup::SetupRecordMap::section(section);
    const int offset = info.offset;
    if (work && work->holdsRecordOnly()) {
        // No recorder to answer: the record takes the section at once.
        if (bytes.size() != info.length || m_held.size() != setup::SetupRecordMap::RecordSize)
            return 0;
        work->restoreMirror(offset, bytes);
        m_held.replace(offset, bytes.size(), bytes);
    } else if (!work || !work->writeSection(section, bytes)) {
        return 0;
    } else {
        m_unanswered.push_back({page, offset, bytes});
    }
    // Sections overlap (a whole block, e-mail inside notification): the
    // other pages must not send their old copy of these bytes.
    for (CSetupPage *other : m_pages) {
        if (other && other != page)
            other->recordWritten(offset, bytes);
    }
    return 1;
}

void PageHost::writeAcknowledged(bool applied)
{
    if (m_unanswered.empty())
        return;
    const Write write = m_unanswered.front();
    m_unanswered.pop_front();
    const qsizetype length = write.bytes.size();
    if (m_held.size() != setup::SetupRecordMap::RecordSize)
        return;
    if (applied) {
        m_held.replace(write.offset, length, write.bytes);
        m_quietSaves += write.quiet ? 1 : 0;
        return;
    }
    // A page sends the writes of one save one after another.
    for (Write &later : m_unanswered) {
        if (later.page != write.page)
            break;
        later.quiet = true;
    }
    // What the recorder holds now, except where a later write still waits
    // for its answer: those bytes stay until that answer.
    QByteArray held = m_held.mid(write.offset, length);
    for (const Write &later : m_unanswered) {
        const int from = std::max(write.offset, later.offset);
        const int to = std::min(write.offset + int(length), later.offset + int(later.bytes.size()));
        if (from < to)
            held.replace(from - write.offset, to - from,
                         later.bytes.mid(from - later.offset, to - from));
    }
    if (CWork *work = CWork::instance())
        work->restoreMirror(write.offset, held);
    for (CSetupPage *other : m_pages) {
        if (other && other != write.page)
            other->recordWritten(write.offset, held);
    }
    write.page->writeRefused(write.offset, held);
    const auto index = std::find(m_pages.begin(), m_pages.end(), write.page) - m_pages.begin();
    Q_EMIT writeRefused(int(index));
}

bool PageHost::takeQuietSave()
{
    if (m_quietSaves == 0)
        return false;
    --m_quietSaves;
    return true;
}
