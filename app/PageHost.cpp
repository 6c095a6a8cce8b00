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

namespace {

constexpr QSize MinimumPageSize(570, 500);

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
}

void PageHost::buildPages()
{
    if (m_built)
        return;
    m_built = true;
    for (int i = 0; i < PageCatalog::count(); ++i) {
        if (const PageCatalog::Factory create = PageCatalog::entry(i).create) {
            CSetupPage *page = create(m_stack);
            // Pages reach the session and the default file only through these.
            page->setSectionWriter([this, page](setup::Section section, const QByteArray &bytes) {
                CWork *work = CWork::instance();
                const int sent = work ? work->writeSection(section, bytes) : 0;
                // Sections overlap (a whole block, e-mail inside notification):
                // the other pages must not send their old copy of these bytes.
                if (sent) {
                    const int offset = setup::SetupRecordMap::section(section).offset;
                    for (CSetupPage *other : m_pages) {
                        if (other && other != page)
                            other->recordWritten(offset, bytes);
                    }
                }
                return sent;
            });
            page->setRecordSource([] {
                const CWork *work = CWork::instance();
                return work && work->state() == CWork::Ready ? work->mirror() : QByteArray();
            });
            page->setDefaultSource([] {
                return setup::SetupFiles::readDefaultFile(CSetupPage::defaultSetupPath()).bytes;
            });
            page->setClock(
                []() -> std::optional<RecorderTime> {
                    const CWork *work = CWork::instance();
                    if (!work || work->state() != CWork::Ready || !work->clockValid())
                        return std::nullopt;
                    return work->clock();
                },
                [](const RecorderTime &time) {
                    CWork *work = CWork::instance();
                    return work && work->state() == CWork::Ready ? work->dateTimeCommand(2, time)
                                                                 : 0;
                });
            m_pages[i] = page;
            m_stack->addWidget(page);
        }
    }
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
    for (CSetupPage *page : m_pages) {
        if (page)
            page->load(mirror, channelCount);
    }
}

void PageHost::showPage(int index)
{
    CSetupPage *shown = page(index);
    if (!shown)
        return;
    m_current = index;
    m_stack->setCurrentWidget(shown);
}
