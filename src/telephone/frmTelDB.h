#pragma once
// The two telephone tables of the reference database, T_CountryAndAreaCodes
// and T_CountryCodes, in two editable grids. Every change is written to the
// database at once and counts from the normaliser's next number on;
// closing the dialog undoes nothing.

#include <QDialog>
#include <memory>

class DataGrid;
class ReferenceDbConnection;

class frmTelDB : public QDialog
{
    Q_OBJECT
public:
    explicit frmTelDB(QWidget *parent = nullptr);
    ~frmTelDB() override;

    // Closing (OK, Escape, the window's close box) first writes a new row
    // that is still being entered.
    void done(int result) override;

private:
    QWidget *gridFrame(const QString &name, const QString &caption, DataGrid *grid, const QString &newButton);
    void bindGrids();

    std::unique_ptr<ReferenceDbConnection> m_connection;
    DataGrid *m_GridCountryArea = nullptr;
    DataGrid *m_GridNDDP = nullptr;
};

// Opens the dialog modally (the options dialog's "Tabellen für Vorwahlen...").
void OpenTelephoneTables(QWidget *parent);
