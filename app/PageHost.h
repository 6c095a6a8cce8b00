// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QWidget>

#include <vector>

QT_BEGIN_NAMESPACE
class QLabel;
class QStackedWidget;
QT_END_NAMESPACE

class CSetupPage;

// The area of the main window that shows one settings page at a time. Pages
// are created once, from the catalog, and live as long as the host; until
// then a short hint stands in their place.
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

    // Hands every page the recorder's setup record and channel count.
    void loadPages(const QByteArray &mirror, int channelCount);

    void showPage(int index);
    // The catalog index of the page on display, or -1 while the hint shows.
    int currentEntry() const { return m_current; }
    CSetupPage *currentPage() const { return page(m_current); }

private:
    QStackedWidget *m_stack;
    QLabel *m_hint;
    std::vector<CSetupPage *> m_pages; // by catalog index
    int m_current = -1;
    bool m_built = false;
};
