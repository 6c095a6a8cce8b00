// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/UserAccounts.h"

#include "setup/LittleEndian.h"
#include "sim/SectionRights.h"

#include <array>

using nelib::LittleEndian;

namespace sim {

namespace {

constexpr std::array<const char *, UserAccounts::Count> Names {
    "Admin", "Manager1", "Manager2", "Manager3", "User1", "User2",
    "User3", "User4",    "User5",    "User6",    "User7",
};

qsizetype passwordAt(int account)
{
    return UserAccounts::PasswordOffset + UserAccounts::PasswordWidth * account;
}

} // namespace

int UserAccounts::indexOf(QByteArrayView memberId)
{
    for (int k = 0; k < Count; ++k) {
        if (memberId.compare(QByteArrayView(Names[std::size_t(k)]), Qt::CaseInsensitive) == 0)
            return k;
    }
    return -1;
}

UserAccounts::Check UserAccounts::check(QByteArrayView record, QByteArrayView memberId,
                                        QByteArrayView password)
{
    const int account = indexOf(memberId);
    if (account < 0)
        return Check::UnknownAccount;

    // Both sides as 12 zero-padded bytes; a longer password can match no slot.
    if (password.size() > PasswordWidth
        || !LittleEndian::fits(record.size(), passwordAt(account), PasswordWidth))
        return Check::WrongPassword;
    QByteArray given = password.toByteArray();
    given.resize(PasswordWidth, '\0');
    if (record.sliced(passwordAt(account), PasswordWidth) != given)
        return Check::WrongPassword;

    if (!(rights(record, account) & NetworkAccess))
        return Check::NoNetworkAccess;
    return Check::Accepted;
}

quint32 UserAccounts::rights(QByteArrayView record, int account)
{
    // Admin holds every right whatever its rights word says.
    if (account == Admin)
        return SectionRights::All;
    return LittleEndian::u32(record, RightsOffset + 4 * account) & SectionRights::All;
}

bool UserAccounts::setPassword(QByteArray &record, int account, QByteArrayView password)
{
    if (account < 0 || account >= Count || password.size() > PasswordWidth)
        return false;
    return LittleEndian::setText(record, passwordAt(account), PasswordWidth, password);
}

} // namespace sim
