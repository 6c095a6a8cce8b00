#pragma once

#include "pages/common/CSetupPage.h"

#include <array>

QT_BEGIN_NAMESPACE
class QCheckBox;
class QComboBox;
class QLineEdit;
QT_END_NAMESPACE

class ColumnCheckBox;
class TextLimitValidator;

// Camera / Setup: for every channel its title, whether it is covert and which
// audio input belongs to it. One row per channel; the covert column has a
// header box, and Copy Settings copies title, covert and audio between rows.
class CRemoteCameraCameraDlg : public CSetupPage
{
    Q_OBJECT

public:
    explicit CRemoteCameraCameraDlg(QWidget *parent = nullptr);
    ~CRemoteCameraCameraDlg() override;

protected:
    void buildControls() override;
    void fillControls(QByteArrayView section, Source source) override;
    void gatherControls(QByteArray &section) override;
    void afterFill() override;

private:
    struct Row
    {
        QLineEdit *title = nullptr;
        TextLimitValidator *titleLimit = nullptr;
        QCheckBox *covert = nullptr;
        QComboBox *audio = nullptr;
    };

    void titleChanged(Row &row);
    void copyRow(int source, int target, const CRemoteCameraCopySettingDlg::Properties &properties);

    std::array<Row, MaxChannels> m_rows;
    ColumnCheckBox *m_covertColumn = nullptr;
};
