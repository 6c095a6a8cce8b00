// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QWidget>

#include <span>

class CSetupPage;

// The settings pages in navigation order: which menu holds each, its item
// text, its window title, its page identifier and what the window does with
// it beyond showing it. Pages not written yet have no factory; their items
// stay disabled rather than showing an empty page.
class PageCatalog
{
public:
    using Factory = CSetupPage *(*)(QWidget *parent);

    enum Menu { System, Display, Camera, Record, Device, Network };

    enum Capability : unsigned {
        // The window's Save writes the page's section itself; the page's own
        // Save stays as it was.
        WindowSaves = 1u << 0,
        // A new session opens on this page.
        OpensSession = 1u << 1,
        // Recorders with four channels have none of the page's settings.
        NotOnFourChannels = 1u << 2,
        // The page acts on a recorder alone: with a setup file open it
        // shows, disabled.
        NeedsRecorder = 1u << 3,
    };

    struct Entry
    {
        Menu menu;
        const char *label; // English item text
        const char *titleFormat; // "%s" stands for the recorder address or file name
        int pageId; // 0: the page has no Save action and sets none
        Factory create; // null while the page does not exist
        unsigned capabilities = 0;

        bool can(Capability capability) const { return capabilities & capability; }
    };

    // The English texts of the six menus, left to right.
    static std::span<const char *const> menus();
    static std::span<const Entry> entries();
    static int count() { return int(entries().size()); }
    static const Entry &entry(int index) { return entries()[index]; }
    // The catalog index of the item labelled `label`, or -1.
    static int indexOf(const char *label);
    // The catalog index of the first page that has `capability`, or -1.
    static int indexOf(Capability capability);
};
