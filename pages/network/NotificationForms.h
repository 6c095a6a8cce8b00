// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

class NetworkEntryCheck;
class SectionBinder;
QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

// The e-mail and event settings, which the E-Mail and Event pages show alone
// and the Notification page together. Each builder binds its fields into
// `parent`, which it gives a layout.
class NotificationForms
{
public:
    static void email(SectionBinder &binder, QWidget *parent);
    // Notification on and off, its interval and the events of channels.
    static void cameraEvents(SectionBinder &binder, QWidget *parent);
    // Events of the recorder itself.
    static void systemEvents(SectionBinder &binder, QWidget *parent);

    // The checks of the e-mail form before a save.
    static bool emailAccepted(const NetworkEntryCheck &check);
};
