// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/ConnectionSettings.h"

#include "i18n/CodePage.h"
#include "session/ConnectionRecord.h"

bool ConnectionSettings::fillRecord(ConnectionRecord &record) const
{
    const nelib::CodePage &codePage = nelib::CodePage::system();
    const QString domain = address.trimmed();
    if (domain.isEmpty())
        return false;

    QByteArray host;
    quint32 portNumber = 0;
    if (mode == Mode::Manual) {
        bool ok = false;
        portNumber = port.toUInt(&ok);
        if (!ok || portNumber < MinPort || portNumber > MaxPort)
            return false;
        host = codePage.encode(domain);
    } else {
        const QString name = hostName.trimmed();
        if (name.isEmpty())
            return false;
        portNumber = DdnsPort;
        host = codePage.encode(name + u'.' + domain);
    }
    // A cut name would reach some other host.
    if (host.size() > ConnectionRecord::AddressSize - 1)
        return false;

    record.address = host;
    record.port = portNumber;
    record.memberId = codePage.encode(userId, ConnectionRecord::MemberIdSize - 1);
    record.password = codePage.encode(password, ConnectionRecord::PasswordSize - 1);
    return true;
}
