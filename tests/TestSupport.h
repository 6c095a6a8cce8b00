#pragma once

#include <QByteArray>
#include <QString>

namespace testsupport {

// The folder the build puts executables, language.config and DEFDVRSETUP.DAT in.
QString dataDir();
// The source tree, for tests that read shipped files.
QString sourceDir();

QByteArray readFile(const QString &path);
void writeFile(const QString &path, const QByteArray &bytes);

} // namespace testsupport

#include <ostream>

// Readable failure messages for Qt's string types.
void PrintTo(const QString &s, std::ostream *os);
void PrintTo(const QByteArray &b, std::ostream *os);
