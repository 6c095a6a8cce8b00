// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/PageCatalog.h"

#include "i18n/Translator.h"
#include "pages/camera/CRemoteCameraAlarmDlg.h"
#include "pages/camera/CRemoteCameraAlarmOutDlg.h"
#include "pages/camera/CRemoteCameraCameraDlg.h"
#include "pages/camera/CRemoteCameraMotionDlg.h"
#include "pages/camera/CRemoteCameraPTZDlg.h"
#include "pages/camera/CRemoteCameraVideoLoss.h"
#include "pages/device/CRemoteDeviceKeyboardCtrlDlg.h"
#include "pages/device/CRemoteDeviceRS232CDlg.h"
#include "pages/device/CRemoteDeviceRemoteCtrlDlg.h"
#include "pages/device/CRemoteDeviceSmartBackupDlg.h"
#include "pages/display/CRemoteDisplayDateTimeDlg.h"
#include "pages/display/CRemoteDisplayEventDlg.h"
#include "pages/display/CRemoteDisplayIntervalDlg.h"
#include "pages/display/CRemoteDisplayOSDDlg.h"
#include "pages/network/CRemoteNetworkEmailDlg.h"
#include "pages/network/CRemoteNetworkEventDlg.h"
#include "pages/network/CRemoteNetworkNotificationDlg.h"
#include "pages/network/CRemoteNetworkStreamDlg.h"
#include "pages/record/CRemoteRecordHolidayDlg.h"
#include "pages/record/CRemoteRecordScheduleDlg.h"
#include "pages/record/CRemoteRecordSetupDlg.h"
#include "pages/system/CRemoteSystemAudioDlg.h"
#include "pages/system/CRemoteSystemBuzzerDlg.h"
#include "pages/system/CRemoteSystemConfigDlg.h"
#include "pages/system/CRemoteSystemPasswdDlg.h"
#include "pages/system/CRemoteSystemUpdateDlg.h"

#include <array>
#include <cstring>

namespace {

template<typename Page>
CSetupPage *create(QWidget *parent)
{
    return new Page(parent);
}

constexpr std::array<const char *, 6> Menus {
    RS_TEXT("SYSTEM"), RS_TEXT("DISPLAY"), RS_TEXT("CAMERA"),
    RS_TEXT("RECORD"), RS_TEXT("DEVICE"),  RS_TEXT("NETWORK"),
};

using enum PageCatalog::Menu;
using enum PageCatalog::Capability;

// Title formats are kept letter for letter as installers know them, the two
// blanks before "Alarm-In" included.
const std::array<PageCatalog::Entry, 26> Entries {{
    {System, RS_TEXT("Authority"), RS_TEXT("%s - Remote Setup / System / Authority"), 0x8003,
     create<CRemoteSystemPasswdDlg>, WindowSaves | OpensSession},
    {System, RS_TEXT("Audio"), RS_TEXT("%s - Remote Setup / System / Audio"), 0x8004,
     create<CRemoteSystemAudioDlg>, WindowSaves},
    {System, RS_TEXT("Buzzer"), RS_TEXT("%s - Remote Setup / System / Buzzer"), 0x8005,
     create<CRemoteSystemBuzzerDlg>, WindowSaves},
    {System, RS_TEXT("Configuration"), RS_TEXT("%s - Remote Setup / System / Configuration"), 0,
     create<CRemoteSystemConfigDlg>},
    {System, RS_TEXT("Update"), RS_TEXT("%s - Remote Setup / System / Update"), 0,
     create<CRemoteSystemUpdateDlg>, NeedsRecorder},
    {Display, RS_TEXT("Date / Time"), RS_TEXT("%s - Remote Setup / Display / Date/Time"), 0x8007,
     create<CRemoteDisplayDateTimeDlg>},
    {Display, RS_TEXT("OSD"), RS_TEXT("%s - Remote Setup / Display / OSD"), 0x8008,
     create<CRemoteDisplayOSDDlg>},
    {Display, RS_TEXT("Event Display"), RS_TEXT("%s - Remote Setup / Display / Event Display"),
     0x8018, create<CRemoteDisplayEventDlg>},
    {Display, RS_TEXT("Interval"), RS_TEXT("%s - Remote Setup / Display / Interval"), 0x8019,
     create<CRemoteDisplayIntervalDlg>},
    {Camera, RS_TEXT("Camera Setup"), RS_TEXT("%s - Remote Setup / Camera / Setup"), 0x8009,
     create<CRemoteCameraCameraDlg>},
    {Camera, RS_TEXT("PTZ"), RS_TEXT("%s - Remote Setup / Camera / PTZ"), 0x801C,
     create<CRemoteCameraPTZDlg>},
    {Camera, RS_TEXT("Alarm-In"), RS_TEXT("%s - Remote Setup / Camera /  Alarm-In"), 0x800A,
     create<CRemoteCameraAlarmDlg>},
    {Camera, RS_TEXT("Alarm-Out"), RS_TEXT("%s - Remote Setup / Camera / Alarm-Out"), 0x801F,
     create<CRemoteCameraAlarmOutDlg>},
    {Camera, RS_TEXT("Motion"), RS_TEXT("%s - Remote Setup / Camera / Motion"), 0x801D,
     create<CRemoteCameraMotionDlg>},
    {Camera, RS_TEXT("Video Loss"), RS_TEXT("%s - Remote Setup / Camera / Video Loss"), 0x801E,
     create<CRemoteCameraVideoLoss>},
    {Record, RS_TEXT("Setup"), RS_TEXT("%s - Remote Setup / Record / Setup"), 0x800C,
     create<CRemoteRecordSetupDlg>},
    {Record, RS_TEXT("Schedule"), RS_TEXT("%s - Remote Setup / Record / Schedule"), 0x800D,
     create<CRemoteRecordScheduleDlg>},
    {Record, RS_TEXT("Holiday"), RS_TEXT("%s - Remote Setup / Record / Holiday"), 0x800E,
     create<CRemoteRecordHolidayDlg>},
    {Device, RS_TEXT("RS-232C"), RS_TEXT("%s - Remote Setup / Device / RS-232C"), 0x801A,
     create<CRemoteDeviceRS232CDlg>},
    {Device, RS_TEXT("Keyboard Control"), RS_TEXT("%s - Remote Setup / Device / Keyboard Control"),
     0x8010, create<CRemoteDeviceKeyboardCtrlDlg>},
    {Device, RS_TEXT("Remote Control"), RS_TEXT("%s - Remote Setup / Device / Remote Control"),
     0x8011, create<CRemoteDeviceRemoteCtrlDlg>},
    {Device, RS_TEXT("Smart Backup"), RS_TEXT("%s - Remote Setup / Device / Smart Backup"), 0x801B,
     create<CRemoteDeviceSmartBackupDlg>},
    {Network, RS_TEXT("Notification"), RS_TEXT("%s - Remote Setup / Network / Notification"),
     0x8012, create<CRemoteNetworkNotificationDlg>},
    {Network, RS_TEXT("E-Mail"), RS_TEXT("%s - Remote Setup / Network / E-Mail"), 0x8017,
     create<CRemoteNetworkEmailDlg>},
    {Network, RS_TEXT("Event"), RS_TEXT("%s - Remote Setup / Network / Event"), 0x8014,
     create<CRemoteNetworkEventDlg>},
    {Network, RS_TEXT("Stream"), RS_TEXT("%s - Remote Setup / Network / Stream"), 0x8015,
     create<CRemoteNetworkStreamDlg>, NotOnFourChannels},
}};

} // namespace

std::span<const char *const> PageCatalog::menus()
{
    return Menus;
}

std::span<const PageCatalog::Entry> PageCatalog::entries()
{
    return Entries;
}

int PageCatalog::indexOf(const char *label)
{
    for (int i = 0; i < count(); ++i) {
        if (std::strcmp(Entries[i].label, label) == 0)
            return i;
    }
    return -1;
}

int PageCatalog::indexOf(Capability capability)
{
    for (int i = 0; i < count(); ++i) {
        if (Entries[i].can(capability))
            return i;
    }
    return -1;
}
