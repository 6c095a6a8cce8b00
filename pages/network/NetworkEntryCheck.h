// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/FieldInfo.h"

#include <QString>

class SectionBinder;
QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

// The entry checks of the network pages, made before anything is sent. Each
// check that fails shows its message, puts the focus on the control and
// returns false, so a page chains them: `check.a() && check.b()`.
class NetworkEntryCheck
{
public:
    explicit NetworkEntryCheck(const SectionBinder &binder);

    // Each element that is not empty is a host name or an IPv4 address.
    bool hostNames(const setup::FieldInfo &field) const;
    // An IPv4 address (QHostAddress, dotted decimal only).
    bool ipv4(const setup::FieldInfo &field) const;
    // An IPv4 address whose ones all stand before its zeros.
    bool subnetMask(const setup::FieldInfo &field) const;
    // Two ports of the recorder itself, which cannot share a number.
    bool distinctPorts(const setup::FieldInfo &a, const setup::FieldInfo &b) const;
    // Each element that is not empty is an address with a domain, and no two
    // are the same address.
    bool mailAddresses(const setup::FieldInfo &field) const;

private:
    QString textOf(const setup::FieldInfo &field, int i = 0) const;
    bool refuse(const setup::FieldInfo &field, int i, const char *message) const;

    const SectionBinder &m_binder;
};
