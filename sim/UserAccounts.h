// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace sim {

// The eleven fixed accounts of the users section and how a recorder checks
// a login against them. Account k has its password at record offset 32 + 12k
// (12 bytes, zero-padded) and its rights word at 172 + 4k.
class UserAccounts
{
public:
    static constexpr int Count = 11;
    static constexpr int Admin = 0;
    static constexpr qsizetype PasswordWidth = 12;
    static constexpr qsizetype PasswordOffset = 32;
    static constexpr qsizetype RightsOffset = 172;
    static constexpr quint32 NetworkAccess = 1u << 8;

    // The login verdicts a recorder gives for the account itself; the limit
    // on sessions is the server's business.
    enum class Check { Accepted, UnknownAccount, WrongPassword, NoNetworkAccess };

    // The account a member id names, ignoring case; -1 for none.
    static int indexOf(QByteArrayView memberId);

    static Check check(QByteArrayView record, QByteArrayView memberId, QByteArrayView password);

    // The account's rights word (bit r = right r of the rights grid); Admin
    // holds every right.
    static quint32 rights(QByteArrayView record, int account);

    // Puts `password` into the account's slot; false when it is longer than
    // the slot or the record is too short.
    static bool setPassword(QByteArray &record, int account, QByteArrayView password);
};

} // namespace sim
