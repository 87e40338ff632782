#pragma once
// "Telefonnummer Optionen": the output format of the number normaliser,
// that is the international prefix, the separators and the number blocks,
// with two example numbers that follow every change at once.
//
// The 19 entry controls are text fields named "cmb" plus their settings key
// (cmbIDDPOut for IDDPOut); the dialog finds a control's key by cutting the
// prefix off its name and nothing else ties them. OK writes them unaltered
// (no trimming: a separator may be empty or carry blanks), Abbrechen writes
// nothing.

#include <QDialog>

class QGroupBox;
class QGridLayout;
class QLabel;
class QVBoxLayout;
class sevText;

class frmVorwahlen : public QDialog
{
    Q_OBJECT
public:
    explicit frmVorwahlen(QWidget *parent = nullptr);

    // Refreshes both example lines from the controls.
    void ShowExample();
    // The text cut into blocks like FormatNumberBlocks, but with the widths
    // and the separator of the controls instead of the settings. A width too
    // large is reported as error 304 and gives text unaltered.
    [[nodiscard]] QString BlocksFromControls(const QString &text, const QString &blockKey);
    // The text of the entry control of key, or defaultValue without one.
    [[nodiscard]] QString ControlValue(const QString &key, const QString &defaultValue) const;

private:
    void buildFormatWithArea(QVBoxLayout *layout);
    void buildFormatWithoutArea(QVBoxLayout *layout);
    QGroupBox *blockFrame(const QString &name, QWidget *parent, QGridLayout *&grid);
    sevText *entry(const QString &name, QWidget *parent);
    void cmdOK();

    QGroupBox *m_frmNumberBlocksAreaPres = nullptr;
    QGroupBox *m_frmNumberBlocksAreaNo = nullptr;
    QLabel *m_lblTel = nullptr;
    QLabel *m_lblTelo = nullptr;
};

// Opens the dialog modally (the options dialog's "benutzerdefiniertes
// Telefonnummernformat...").
void OpenNumberFormatEditor(QWidget *parent);
