// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/PageMenuBar.h"

#include "app/PageCatalog.h"
#include "i18n/Translator.h"

#include <QMenu>

PageMenuBar::PageMenuBar(QWidget *parent)
    : QMenuBar(parent)
    , m_available(PageCatalog::count(), false)
{
    for (const char *menu : PageCatalog::menus())
        m_menus.push_back(addMenu(nelib::tr(menu)));
    for (int i = 0; i < PageCatalog::count(); ++i) {
        const PageCatalog::Entry &entry = PageCatalog::entry(i);
        QAction *action = m_menus[entry.menu]->addAction(nelib::tr(entry.label));
        connect(action, &QAction::triggered, this, [this, i] { Q_EMIT pageSelected(i); });
        m_items.push_back(action);
        updateItem(i);
    }
}

void PageMenuBar::setPageAvailable(int catalogIndex, bool available)
{
    m_available[catalogIndex] = available;
    updateItem(catalogIndex);
}

void PageMenuBar::setUploadRunning(bool running)
{
    m_uploadRunning = running;
    for (int i = 0; i < PageCatalog::count(); ++i)
        updateItem(i);
}

void PageMenuBar::updateItem(int catalogIndex)
{
    m_items[catalogIndex]->setEnabled(m_available[catalogIndex] && !m_uploadRunning);
}

void PageMenuBar::setItemPresent(int catalogIndex, bool present)
{
    QAction *action = m_items[catalogIndex];
    QMenu *menu = m_menus[PageCatalog::entry(catalogIndex).menu];
    if (menu->actions().contains(action) == present)
        return;
    if (!present) {
        menu->removeAction(action);
        return;
    }
    // Back in front of the next item of the same menu that is still there.
    for (int next = catalogIndex + 1; next < PageCatalog::count(); ++next) {
        if (menu->actions().contains(m_items[next])) {
            menu->insertAction(m_items[next], action);
            return;
        }
    }
    menu->addAction(action);
}
