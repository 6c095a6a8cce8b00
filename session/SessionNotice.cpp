// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/SessionNotice.h"

#include "i18n/Translator.h"
#include "session/SessionMessage.h"

#include <iterator>

SessionNotice SessionNotice::fromMessage(const SessionMessage &message)
{
    return {Kind(message.wParam()), int(message.lParam())};
}

QString SessionNotice::text() const
{
    static const char *const refusals[] = {
        RS_TEXT("Login failed"),
        RS_TEXT("Login failed"),
        RS_TEXT("Login failed by password error"),
        RS_TEXT("Login failed"),
        RS_TEXT("Login failed by exceeding maximum user"),
        RS_TEXT("Login failed by authority error"),
        RS_TEXT("Login failed by former user"),
        RS_TEXT("Login failed by menu operation"),
    };
    switch (kind) {
    case ConnectFail:
        return nelib::tr("Connect Fail");
    case LoginRefused:
        return nelib::tr(loginCode >= 0 && loginCode < int(std::size(refusals))
                             ? refusals[loginCode]
                             : refusals[0]);
    case NoSetupData:
        return nelib::tr("No Setup Data");
    case Saved:
        return nelib::tr("Complete Save   \t");
    case ImportSucceeded:
        return nelib::tr("Import Success");
    case DefaultSucceeded:
        return nelib::tr("Default Setup Success");
    case ImportFailed:
        return nelib::tr("Import Error!");
    case DefaultFailed:
        return nelib::tr("Default Setup Error!");
    case ConnectionLost:
        return nelib::tr("DVR has been disconnected.\nThe Remote Setup is terminated.\n"
                         "Please try to reconnect.");
    }
    return {};
}
