// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace cli {

// The options that come before the command: where the recorder is and who
// logs in. The password is never taken from the command line, where other
// users of the machine could read it.
class GlobalOptions
{
public:
    QString host = QStringLiteral("127.0.0.1");
    quint16 port = 9000;
    QString user = QStringLiteral("Admin");
    QString passwordFile;
    // Where the password comes from without a password file; a hosts file
    // may name another variable for one recorder.
    static constexpr const char *DefaultPasswordEnv = "REMOTE_SETUP_PASSWORD";
    QString passwordEnv = QString::fromLatin1(DefaultPasswordEnv);
    int timeoutSeconds = 30;
    // A fleet: the recorders of this file instead of --host, --jobs at once.
    QString hostsFile;
    int jobs = 8;
    // Passwords in the output as they are instead of masked.
    bool showSecrets = false;
    // Results as JSON (with --hosts, one JSON object a line).
    bool json = false;
    static constexpr int MaxJobs = 256;

    // Parses the arguments after the program name up to the command. On
    // success `rest` holds the command and its own arguments (possibly
    // empty); on failure `error` says what was wrong.
    static std::optional<GlobalOptions> parse(const QStringList &arguments, QStringList *rest,
                                              QString *error, bool *helpRequested);

    // The longest first line of a password file that is read.
    static constexpr qint64 MaxPasswordLine = 4096;

    // The first line of --password-file, else the variable passwordEnv
    // (empty when $REMOTE_SETUP_PASSWORD is unset; another one must be set).
    std::optional<QString> password(QString *error) const;
};

} // namespace cli
