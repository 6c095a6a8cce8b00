// SPDX-License-Identifier: GPL-3.0-or-later

// remote-setup-screenshots: pictures of the real main window for the
// documentation. Starts a simulated recorder with a fresh record, connects to
// it through the connection panel and saves the window as PNG files: the
// disconnected window, one picture per page and one with a menu open.

#include "app/CRemoteKSetupDlg.h"
#include "app/ConnectionPanel.h"
#include "app/PageCatalog.h"
#include "app/PageHost.h"
#include "app/PageMenuBar.h"
#include "session/MessageSink.h"
#include "session/ProgramExit.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDeadlineTimer>
#include <QDir>
#include <QEventLoop>
#include <QMenu>
#include <QPainter>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QStyleFactory>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

constexpr int ConnectTimeoutMs = 30000;

class PrintingSink : public MessageSink
{
public:
    void showMessage(const QString &text) override
    {
        std::fprintf(stderr, "message: %s\n", qPrintable(text));
    }
};

void fail(const QString &why)
{
    std::fprintf(stderr, "remote-setup-screenshots: %s\n", qPrintable(why));
    std::exit(1);
}

bool waitFor(const std::function<bool()> &done, int timeoutMs)
{
    // The window keeps running its event loop while the tool waits.
    const QDeadlineTimer deadline(timeoutMs);
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (done() || deadline.hasExpired())
            loop.quit();
    });
    poll.start(5);
    if (!done())
        loop.exec();
    return done();
}

// Lets layouts settle and pending paints run before a picture is taken.
void settle()
{
    for (int i = 0; i < 5; ++i)
        QCoreApplication::processEvents();
}

QString slug(const char *label)
{
    return QString::fromUtf8(label).toLower().replace(QRegularExpression(u"[^a-z0-9]+"_s), u"-"_s);
}

void save(const QPixmap &picture, const QDir &folder, const QString &name)
{
    const QString path = folder.absoluteFilePath(name + u".png"_s);
    if (!picture.save(path))
        fail(u"cannot write %1"_s.arg(path));
    std::printf("%s\n", qPrintable(path));
    std::fflush(stdout);
}

// The window with one menu opened below its title in the menu bar.
QPixmap withMenuOpen(CRemoteKSetupDlg &window, int menuIndex)
{
    PageMenuBar *menus = window.pageMenus();
    QMenu *menu = menus->menu(menuIndex);
    menus->setActiveAction(menu->menuAction());
    menu->ensurePolished();
    menu->resize(menu->sizeHint());
    settle();
    QPixmap picture = window.grab();
    QPainter painter(&picture);
    const QRect title = menus->actionGeometry(menu->menuAction());
    painter.drawPixmap(menus->mapTo(&window, title.bottomLeft()), menu->grab());
    menus->setActiveAction(nullptr);
    return picture;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    app.setStyle(QStyleFactory::create(u"Fusion"_s));

    QCommandLineParser parser;
    parser.setApplicationDescription(u"Saves pictures of the Remote Setup window."_s);
    parser.addHelpOption();
    const QCommandLineOption language(u"language"_s, u"Language number of language.config."_s,
                                      u"N"_s);
    const QCommandLineOption channels(u"channels"_s, u"Channels of the simulated recorder."_s,
                                      u"N"_s, u"16"_s);
    parser.addOption(language);
    parser.addOption(channels);
    parser.addPositionalArgument(u"folder"_s, u"Where the PNG files go."_s);
    parser.process(app);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(2);
    if (parser.isSet(language))
        qputenv("REMOTE_SETUP_LANGUAGE", parser.value(language).toUtf8());

    const QDir folder(parser.positionalArguments().constFirst());
    if (!QDir().mkpath(folder.path()))
        fail(u"cannot create %1"_s.arg(folder.path()));

    PrintingSink sink;
    MessageSink::install(&sink);
    ProgramExit::install([](int) { fail(u"the session ended the program"_s); });

    QTemporaryDir recorderDir;
    QProcess recorder;
    recorder.setStandardErrorFile(recorderDir.filePath(u"recorder-sim.log"_s));
    recorder.start(QCoreApplication::applicationDirPath() + u"/recorder-sim"_s,
                   {u"--listen"_s, u"127.0.0.1:0"_s, u"--record"_s,
                    recorderDir.filePath(u"recorder-setup.dat"_s), u"--channels"_s,
                    parser.value(channels)});
    if (!recorder.waitForStarted())
        fail(u"recorder-sim did not start"_s);
    waitFor([&recorder] { return recorder.canReadLine(); }, 10000);
    const QByteArray listening = recorder.readLine().trimmed();
    const QString port = QString::fromLatin1(listening.mid(listening.lastIndexOf(':') + 1));
    if (port.toUInt() == 0)
        fail(u"recorder-sim did not listen: %1"_s.arg(QString::fromUtf8(listening)));

    {
        CRemoteKSetupDlg window;
        window.show();
        ConnectionSettings settings;
        settings.address = u"127.0.0.1"_s;
        settings.port = port;
        settings.userId = u"Admin"_s;
        window.connectionPanel()->enter(settings);
        settle();
        save(window.grab(), folder, u"window-disconnected"_s);

        window.connectionPanel()->connectButton()->click();
        if (!waitFor([&] { return window.pageHost()->currentEntry() >= 0; }, ConnectTimeoutMs))
            fail(u"no page within %1 s"_s.arg(ConnectTimeoutMs / 1000));
        waitFor([&] { return window.connectionPanel()->disconnectButton()->isEnabled(); },
                ConnectTimeoutMs);

        const int first = window.pageHost()->currentEntry();
        save(withMenuOpen(window, PageCatalog::entry(first).menu), folder,
             u"menu-"_s + slug(PageCatalog::menus()[PageCatalog::entry(first).menu]));
        for (int i = 0; i < PageCatalog::count(); ++i) {
            if (!window.pageHost()->page(i))
                continue;
            window.pageMenus()->item(i)->trigger();
            settle();
            save(window.grab(), folder, u"page-"_s + slug(PageCatalog::entry(i).label));
        }
    }
    recorder.kill();
    recorder.waitForFinished();
    return 0;
}
