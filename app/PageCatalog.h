// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QWidget>

#include <span>

class CSetupPage;

// The settings pages in navigation order: which menu holds each, its item
// text, its window title and its page identifier. Pages not written yet have
// no factory; their items stay disabled rather than showing an empty page.
class PageCatalog
{
public:
    using Factory = CSetupPage *(*)(QWidget *parent);

    enum Menu { System, Display, Camera, Record, Device, Network };

    struct Entry
    {
        Menu menu;
        const char *label; // English item text
        const char *titleFormat; // "%s" stands for the recorder address
        int pageId; // 0: the page has no Save action and sets none
        Factory create; // null while the page does not exist
    };

    // The English texts of the six menus, left to right.
    static std::span<const char *const> menus();
    static std::span<const Entry> entries();
    static int count() { return int(entries().size()); }
    static const Entry &entry(int index) { return entries()[index]; }
    // The catalog index of the item labelled `label`, or -1.
    static int indexOf(const char *label);
};
