// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/record/CRemoteRecordCopySettingDlg.h"

#include "i18n/Translator.h"

namespace {

constexpr const char *PropertyNames[] = {
    RS_TEXT("Resolution"), RS_TEXT("Quality"),    RS_TEXT("FPS"),
    RS_TEXT("Type"),       RS_TEXT("Dwell Time"),
};
static_assert(std::size(PropertyNames) == CRemoteRecordCopySettingDlg::PropertyCount);

} // namespace

CRemoteRecordCopySettingDlg::CRemoteRecordCopySettingDlg(QWidget *parent)
    : CopySettingDialog(PropertyNames, parent)
{ }
