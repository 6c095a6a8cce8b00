// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace cli {

class GlobalOptions;

// What a login sends, in the recorder's code page. Each text must fit its
// field whole and hold only characters of the code page: a cut or
// substituted text ('?' for what the code page lacks) would name another
// host, account or password. Checked before any recorder is contacted.
struct LoginFields
{
    QByteArray address;
    QByteArray memberId;
    QByteArray password;

    // The host, user and password of `options` (the password read as
    // GlobalOptions::password reads it), or nullopt with `error` set.
    static std::optional<LoginFields> from(const GlobalOptions &options, QString *error);
    // A user id, as a hosts file may name one.
    static std::optional<QByteArray> memberIdOf(const QString &user, QString *error);
};

} // namespace cli
