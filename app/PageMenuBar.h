// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMenuBar>

#include <vector>

// The navigation: one menu per group of settings and one item per page, in
// catalog order. An item is enabled only while its page exists and no
// firmware upload runs.
class PageMenuBar : public QMenuBar
{
    Q_OBJECT

public:
    explicit PageMenuBar(QWidget *parent = nullptr);

    QMenu *menu(int index) const { return m_menus[index]; }
    QAction *item(int catalogIndex) const { return m_items[catalogIndex]; }

    void setPageAvailable(int catalogIndex, bool available);
    // While an upload runs every item is disabled; the menus stay.
    void setUploadRunning(bool running);
    // Takes an item out of its menu or puts it back in its place.
    void setItemPresent(int catalogIndex, bool present);

Q_SIGNALS:
    void pageSelected(int catalogIndex);

private:
    void updateItem(int catalogIndex);

    std::vector<QMenu *> m_menus;
    std::vector<QAction *> m_items;
    std::vector<bool> m_available;
    bool m_uploadRunning = false;
};
