#pragma once
// The options dialog: every setting of the program except the number format,
// bound to its controls by their names.

#include "options/OptionsLogic.h"

#include <QDialog>
#include <array>

class QCheckBox;
class QFrame;
class QGroupBox;
class QLabel;
class QLineEdit;
class QRadioButton;
class QSlider;
class QTabBar;

class frmOptions : public QDialog
{
    Q_OBJECT
public:
    explicit frmOptions(QWidget *parent = nullptr);

    // The buttons to the telephone dialogs open these; the telephone part
    // installs them (the dialogs live there).
    static void setTelephoneDialogs(std::function<void(QWidget *)> openFormat,
                                    std::function<void(QWidget *)> openTables);

    // Exposed for the tests: OK with its check, the slider repair.
    void clickOk();
    [[nodiscard]] std::array<int, 3> sliderValues() const;

private:
    void buildDuplicatePage(QFrame *page);
    void buildTelephonePage(QFrame *page);
    void buildAttachmentPage(QFrame *page);
    void buildNamePage(QFrame *page);
    void buildGeneralPage(QFrame *page);
    void load();
    void showMainPage(int index);
    void showTypePage(int index);
    void sliderChanged(int index);
    void countrySelected(const QString &entry);
    void setFilterEnabled(bool on, bool includingCountryFilter);
    QWidget *chosenLayoutField() const;
    LayoutEditor &chosenLayoutEditor();
    void updateExample();
    bool checkPassed();

    QTabBar *m_tabMain = nullptr;
    QTabBar *m_tabStrip1 = nullptr;
    std::array<QFrame *, 5> m_frMain{};
    std::array<QFrame *, 6> m_frmTab{};
    std::array<QSlider *, 3> m_sldPrio{};
    std::array<int, 3> m_sliderValues{0, 1, 2};
    bool m_repairing = false;
    QGroupBox *m_frFilterTel = nullptr;
    QLineEdit *m_txtCountryCode = nullptr;
    QLineEdit *m_txtIDDP = nullptr;
    QLineEdit *m_txtNDDP = nullptr;
    QWidget *m_cmbFileAsLayoutEx = nullptr;
    QWidget *m_cmbSubjectLayout = nullptr;
    QRadioButton *m_optSaveAs = nullptr;
    QRadioButton *m_optBetreff = nullptr;
    QLabel *m_lblExample = nullptr;
    LayoutEditor m_fileAsEditor;
    LayoutEditor m_subjectEditor;
};
