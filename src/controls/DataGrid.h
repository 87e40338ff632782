#pragma once
// An editable grid bound to one table of an SQLite database, with immediate
// write-through: a changed cell is written at once, a deleted row is deleted
// at once, and a new row is written as soon as the user leaves it (or the
// grid is asked to finish), so that a half-typed row never reaches the
// table. There is no Save and no Cancel.
//
// The grid reads the whole table when it is bound and serves the rows from
// then on; rows are identified by their rowid, so rows with NULL fields are
// updated and deleted exactly. An empty cell is stored as NULL.
//
// Events for the form: beforeDelete (cancellable), addFailed (the database
// refused a new row, which is then dropped), writeFailed (a change was
// refused and the cell keeps its old value), and written after every change
// that reached the table.

#include <QHash>
#include <QSqlDatabase>
#include <QTableView>
#include <optional>

class DataGridModel;

class DataGrid : public QTableView
{
    Q_OBJECT
public:
    explicit DataGrid(QWidget *parent = nullptr);

    // Reads every row and column of table, arranged by arrangeColumn (in
    // numeric order where both values are numbers, else in text order).
    // Returns false, with the reason in error, when the table cannot be read;
    // the grid is empty then.
    bool bind(const QSqlDatabase &db, const QString &table, const QString &arrangeColumn, QString &error);

    // The caption shown for a column (without one, the column's name).
    void setColumnCaption(const QString &column, const QString &caption);

    // Appends an empty row and starts editing its first cell.
    void addRow();
    // Asks through beforeDelete, then deletes the current row.
    void deleteCurrentRow();
    // Writes a new row that is still being entered. False when the table
    // refused it (addFailed has been sent and the row is gone).
    bool finishNewRow();

    [[nodiscard]] int rowCountShown() const;
    // The value of a cell as shown; nullopt for NULL.
    [[nodiscard]] std::optional<QString> cellValue(int row, const QString &column) const;

signals:
    void beforeDelete(bool &cancel);
    void addFailed(const QString &reason);
    void writeFailed(const QString &reason);
    void written();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;

private:
    DataGridModel *m_model = nullptr;
    QHash<QString, QString> m_captions;
    bool m_finishing = false;
};
