// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/LoginFields.h"

#include "cli/GlobalOptions.h"
#include "i18n/CodePage.h"
#include "session/ConnectionRecord.h"

using namespace Qt::StringLiterals;

namespace cli {

namespace {

// `shown` is false for the password, which no message repeats.
std::optional<QByteArray> fieldText(const QString &text, int fieldSize, const QString &what,
                                    bool shown, QString *error)
{
    const nelib::CodePage &codePage = nelib::CodePage::system();
    const QString codePageName = QString::fromLatin1(codePage.name());
    const QByteArray bytes = codePage.encode(text);
    if (codePage.decode(bytes) != text) {
        QString missing;
        for (const QChar c : text) {
            if (codePage.decode(codePage.encode(QStringView(&c, 1))) != c) {
                missing = c;
                break;
            }
        }
        *error = shown ? u"the %1 '%2' holds '%3', which code page %4 cannot hold"_s.arg(
                     what, text, missing, codePageName)
                       : u"the %1 holds a character that code page %2 cannot hold"_s.arg(
                           what, codePageName);
        return std::nullopt;
    }
    if (bytes.size() <= fieldSize - 1)
        return bytes;
    *error = u"the %1 is %2 bytes in code page %3; at most %4 fit"_s.arg(
        what, QString::number(bytes.size()), codePageName, QString::number(fieldSize - 1));
    return std::nullopt;
}

} // namespace

std::optional<LoginFields> LoginFields::from(const GlobalOptions &options, QString *error)
{
    const auto password = options.password(error);
    if (!password)
        return std::nullopt;
    const auto address
        = fieldText(options.host, ConnectionRecord::AddressSize, u"host name"_s, true, error);
    if (!address)
        return std::nullopt;
    const auto memberId = memberIdOf(options.user, error);
    if (!memberId)
        return std::nullopt;
    const auto secret
        = fieldText(*password, ConnectionRecord::PasswordSize, u"password"_s, false, error);
    if (!secret)
        return std::nullopt;
    return LoginFields {*address, *memberId, *secret};
}

std::optional<QByteArray> LoginFields::memberIdOf(const QString &user, QString *error)
{
    return fieldText(user, ConnectionRecord::MemberIdSize, u"user id"_s, true, error);
}

} // namespace cli
