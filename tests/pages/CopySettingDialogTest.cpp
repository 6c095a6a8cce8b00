#include "pages/common/CRemoteCameraCopySettingDlg.h"

#include "tests/pages/PageTestSupport.h"

#include <QCheckBox>
#include <QComboBox>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using pagetest::named;

namespace {

QCheckBox *target(const QWidget *dialog, int channel)
{
    return named<QCheckBox>(dialog, QString::asprintf("To Ch %02d", channel));
}

} // namespace

TEST(CopySettingDialog, EachCopyModeOffersItsProperties)
{
    const std::pair<int, QStringList> modes[] = {
        {1, {u"Title"_s, u"Covert"_s, u"Audio"_s}},
        {2, {u"Type"_s, u"Beep"_s, u"Alarm-Out"_s}},
        {3, {u"Type"_s, u"Dwell Time"_s}},
        {4, {u"Beep"_s, u"Alarm-Out"_s}},
        {12, {u"Beep"_s, u"Alarm-Out"_s}},
        {5, {u"Day Time"_s}},
        {6, {u"Min Blocks"_s, u"Sensitivity"_s, u"Mask Zone"_s}},
        {7, {u"Min Blocks"_s, u"Sensitivity"_s, u"Mask Zone"_s}},
        {13,
         {u"Protocol"_s, u"Baudrate"_s, u"Data Bits"_s, u"Stop Bits"_s, u"Parity"_s,
          u"PTZ Speed"_s}},
        {8, {}},
        {0, {}},
    };
    CRemoteCameraCopySettingDlg dialog;
    for (const auto &[mode, properties] : modes) {
        dialog.setCopyMode(mode);
        dialog.open();
        QStringList shown;
        for (QCheckBox *box : dialog.findChildren<QCheckBox *>()) {
            if (box->isVisible() && !box->accessibleName().contains(u"Ch "_s)
                && box->accessibleName() != u"Select All"_s)
                shown.append(box->accessibleName());
        }
        EXPECT_EQ(shown, properties) << "mode " << mode;
        dialog.reject();
    }
}

TEST(CopySettingDialog, SelectAllNeverTicksTheSource)
{
    CRemoteCameraCopySettingDlg dialog;
    dialog.setChannelCount(4);
    dialog.open();
    EXPECT_EQ(dialog.size(), QSize(350, 500));
    auto *from = named<QComboBox>(&dialog, u"From"_s);
    EXPECT_EQ(from->currentIndex(), 0);
    for (int channel = 1; channel <= 16; ++channel) {
        EXPECT_EQ(target(&dialog, channel)->isVisible(), channel <= 4) << channel;
        EXPECT_EQ(target(&dialog, channel)->isEnabled(), channel != 1) << channel;
    }

    target(&dialog, 3)->setChecked(true);
    from->setCurrentIndex(2);
    named<QCheckBox>(&dialog, u"Select All"_s)->click();
    for (int channel = 1; channel <= 16; ++channel)
        EXPECT_EQ(target(&dialog, channel)->isChecked(), channel != 3) << channel;

    // A new source frees the old one's box and locks its own, ticked or not.
    from->setCurrentIndex(4);
    EXPECT_TRUE(target(&dialog, 3)->isEnabled());
    EXPECT_FALSE(target(&dialog, 5)->isEnabled());
    EXPECT_TRUE(target(&dialog, 5)->isChecked());

    named<QCheckBox>(&dialog, u"Select All"_s)->click();
    for (int channel = 1; channel <= 16; ++channel)
        EXPECT_FALSE(target(&dialog, channel)->isChecked()) << channel;
}

TEST(CopySettingDialog, OkKeepsTheChoicesAndCancelForgetsThem)
{
    CRemoteCameraCopySettingDlg dialog;
    dialog.setCopyMode(1);
    dialog.open();
    named<QComboBox>(&dialog, u"From"_s)->setCurrentIndex(1);
    named<QCheckBox>(&dialog, u"Covert"_s)->setChecked(true);
    target(&dialog, 16)->setChecked(true);
    target(&dialog, 1)->setChecked(true);
    pagetest::button(&dialog, u"OK"_s)->click();

    std::vector<std::pair<int, int>> copies;
    dialog.applyCopy([&](int source, int to, const CRemoteCameraCopySettingDlg::Properties &p) {
        EXPECT_EQ(p, (CRemoteCameraCopySettingDlg::Properties {0, 1}));
        copies.emplace_back(source, to);
    });
    EXPECT_EQ(copies, (std::vector<std::pair<int, int>> {{1, 0}, {1, 15}}));

    dialog.open();
    named<QCheckBox>(&dialog, u"Title"_s)->setChecked(true);
    target(&dialog, 2)->setChecked(true);
    pagetest::button(&dialog, u"Cancel"_s)->click();
    dialog.open();
    EXPECT_FALSE(named<QCheckBox>(&dialog, u"Title"_s)->isChecked());
    EXPECT_FALSE(target(&dialog, 2)->isChecked());
    EXPECT_TRUE(target(&dialog, 16)->isChecked());
}
