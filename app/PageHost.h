// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/SetupRecordMap.h"

#include <QByteArray>
#include <QTimer>
#include <QWidget>

#include <deque>
#include <vector>

QT_BEGIN_NAMESPACE
class QLabel;
class QStackedWidget;
QT_END_NAMESPACE

class CSetupPage;

// The area of the main window that shows one settings page at a time. Pages
// are created from the catalog and live as long as the host; until then a
// short hint stands in their place. A page builds its controls when it is
// first shown, so that a session opens without building all of them, and
// only the pages shown last keep them: an older page with nothing the
// operator could lose is replaced by a new one that holds its section and
// builds again when it is shown.
//
// Every section a page sends goes through the host, which keeps the writes
// the recorder has not answered yet: the recorder answers them in order,
// and a refused one is taken back from the session's mirror and from every
// page that shares its bytes.
class PageHost : public QWidget
{
    Q_OBJECT

public:
    explicit PageHost(QWidget *parent = nullptr);

    // Creates every page the catalog has a factory for; later calls do nothing.
    void buildPages();
    bool pagesBuilt() const { return m_built; }

    // The page of catalog entry `index`, or null when it does not exist.
    CSetupPage *page(int index) const;
    // The catalog index of the first page that exists, or -1.
    int firstPage() const;

    // Hands every page the recorder's setup record and channel count; the
    // pages not built yet keep their section until they are first shown.
    void loadPages(const QByteArray &mirror, int channelCount);

    void showPage(int index);
    // The catalog index of the page on display, or -1 while the hint shows.
    int currentEntry() const { return m_current; }
    CSetupPage *currentPage() const { return page(m_current); }

    // Sends `bytes` as `page`'s `section` through the session; returns
    // non-zero once they were sent.
    int writeSection(CSetupPage *page, setup::Section section, const QByteArray &bytes);
    // The recorder's answer to the oldest write it has not answered yet.
    void writeAcknowledged(bool applied);
    // Whether the next "Complete Save" belongs to a save of which a write
    // was refused, and is not to be shown: the refusal says it all.
    bool takeQuietSave();

Q_SIGNALS:
    // The recorder refused a write of the page of catalog entry `index`.
    void writeRefused(int index);

private:
    // The pages shown last that keep their controls, the one on display included.
    static constexpr std::size_t KeptPages = 2;

    CSetupPage *createPage(int index);
    // The setup record with `page`'s section as the page holds it.
    QByteArray recordFor(const CSetupPage *page) const;
    void releaseOldPages();

    struct Write
    {
        CSetupPage *page;
        int offset;
        QByteArray bytes;
        bool quiet = false; // the rest of a save of which a write was refused
    };

    QStackedWidget *m_stack;
    QLabel *m_hint;
    std::vector<CSetupPage *> m_pages; // by catalog index
    std::deque<int> m_recent; // catalog indexes, the page on display first
    int m_current = -1;
    bool m_built = false;
    int m_channelCount = 0;
    // The setup record as the recorder holds it, as far as it has answered.
    QByteArray m_held;
    std::deque<Write> m_unanswered;
    int m_quietSaves = 0;
    QTimer m_trim;
};
