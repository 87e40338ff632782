#include "controls/DataGrid.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <algorithm>
#include <functional>

namespace {

QVariant nullText()
{
    return QVariant(QMetaType::fromType<QString>());
}

// Numbers in numeric order, NULL first, anything else in text order.
int compareValues(const QVariant &a, const QVariant &b)
{
    if (a.isNull() || b.isNull())
        return a.isNull() == b.isNull() ? 0 : (a.isNull() ? -1 : 1);
    bool aNumber = false;
    bool bNumber = false;
    const qlonglong x = a.toString().toLongLong(&aNumber);
    const qlonglong y = b.toString().toLongLong(&bNumber);
    if (aNumber && bNumber && x != y)
        return x < y ? -1 : 1;
    return a.toString().compare(b.toString());
}

} // namespace

// The rows of one table in memory, written through to the table.
class DataGridModel : public QAbstractTableModel
{
public:
    struct Row {
        qint64 rowid = 0; // 0: a new row not yet in the table
        QList<QVariant> values;
    };

    DataGridModel(const QSqlDatabase &db, const QString &table, QObject *parent)
        : QAbstractTableModel(parent), m_db(db)
        , m_table(db.driver()->escapeIdentifier(table, QSqlDriver::TableName)) {}

    bool load(const QString &arrangeColumn, QString &error);

    int rowCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : int(m_rows.size()); }
    int columnCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : int(m_columns.size()); }
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

    int appendNewRow();
    // The row of a new row, or -1.
    int newRow() const;
    // Writes the new row; false with the reason when the table refused it
    // (the row is dropped). An empty new row is dropped without a word.
    bool insertNewRow(QString &error);
    bool deleteRow(int row, QString &error);

    const QStringList &columns() const { return m_columns; }
    const Row &row(int row) const { return m_rows.at(row); }
    QHash<QString, QString> captions;
    std::function<void(const QString &)> onWriteFailed;
    std::function<void()> onWritten;

private:
    QString column(int index) const { return m_db.driver()->escapeIdentifier(m_columns.at(index), QSqlDriver::FieldName); }
    void dropRow(int row);

    QSqlDatabase m_db;
    QString m_table;
    QStringList m_columns;
    QList<Row> m_rows;
};

bool DataGridModel::load(const QString &arrangeColumn, QString &error)
{
    QSqlQuery query(m_db);
    if (!query.exec(QStringLiteral("SELECT rowid, * FROM ") + m_table)) {
        error = query.lastError().text();
        return false;
    }
    const QSqlRecord record = query.record();
    for (int i = 1; i < record.count(); ++i)
        m_columns.append(record.fieldName(i));
    while (query.next()) {
        Row row{query.value(0).toLongLong(), {}};
        for (int i = 1; i < record.count(); ++i)
            row.values.append(query.value(i));
        m_rows.append(row);
    }
    // The arranging column first, then the others from left to right.
    QList<int> order{int(m_columns.indexOf(arrangeColumn))};
    for (int i = 0; i < m_columns.size(); ++i) {
        if (i != order.first())
            order.append(i);
    }
    order.removeAll(-1);
    std::stable_sort(m_rows.begin(), m_rows.end(), [&order](const Row &a, const Row &b) {
        for (int column : order) {
            if (const int result = compareValues(a.values.at(column), b.values.at(column)))
                return result < 0;
        }
        return false;
    });
    return true;
}

QVariant DataGridModel::data(const QModelIndex &index, int role) const
{
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return {};
    const QVariant &value = m_rows.at(index.row()).values.at(index.column());
    return value.isNull() ? QString() : value.toString();
}

QVariant DataGridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return m_rows.at(section).rowid == 0 ? QStringLiteral("*") : QString::number(section + 1);
    return captions.value(m_columns.at(section), m_columns.at(section));
}

Qt::ItemFlags DataGridModel::flags(const QModelIndex &index) const
{
    return QAbstractTableModel::flags(index) | Qt::ItemIsEditable;
}

bool DataGridModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !index.isValid())
        return false;
    const QVariant stored = value.toString().isEmpty() ? nullText() : QVariant(value.toString());
    Row &row = m_rows[index.row()];
    QVariant &cell = row.values[index.column()];
    if (cell.isNull() == stored.isNull() && cell.toString() == stored.toString())
        return true;
    if (row.rowid != 0) {
        QSqlQuery query(m_db);
        query.prepare(QStringLiteral("UPDATE %1 SET %2 = ? WHERE rowid = ?").arg(m_table, column(index.column())));
        query.addBindValue(stored);
        query.addBindValue(row.rowid);
        if (!query.exec()) {
            if (onWriteFailed)
                onWriteFailed(query.lastError().text());
            return false;
        }
    }
    cell = stored;
    emit dataChanged(index, index);
    if (row.rowid != 0 && onWritten)
        onWritten();
    return true;
}

int DataGridModel::appendNewRow()
{
    const int at = int(m_rows.size());
    beginInsertRows({}, at, at);
    m_rows.append(Row{0, QList<QVariant>(m_columns.size(), nullText())});
    endInsertRows();
    return at;
}

int DataGridModel::newRow() const
{
    for (int i = int(m_rows.size()) - 1; i >= 0; --i) {
        if (m_rows.at(i).rowid == 0)
            return i;
    }
    return -1;
}

void DataGridModel::dropRow(int row)
{
    beginRemoveRows({}, row, row);
    m_rows.removeAt(row);
    endRemoveRows();
}

bool DataGridModel::insertNewRow(QString &error)
{
    const int at = newRow();
    if (at < 0)
        return true;
    const Row &row = m_rows.at(at);
    if (std::all_of(row.values.begin(), row.values.end(), [](const QVariant &v) { return v.isNull(); })) {
        dropRow(at);
        return true;
    }
    QStringList names;
    for (int i = 0; i < m_columns.size(); ++i)
        names.append(column(i));
    QSqlQuery query(m_db);
    query.prepare(QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                      .arg(m_table, names.join(u','), QStringList(names.size(), QStringLiteral("?")).join(u',')));
    for (const QVariant &value : row.values)
        query.addBindValue(value);
    if (!query.exec()) {
        error = query.lastError().text();
        dropRow(at);
        return false;
    }
    m_rows[at].rowid = query.lastInsertId().toLongLong();
    emit headerDataChanged(Qt::Vertical, at, at);
    if (onWritten)
        onWritten();
    return true;
}

bool DataGridModel::deleteRow(int row, QString &error)
{
    if (m_rows.at(row).rowid != 0) {
        QSqlQuery query(m_db);
        query.prepare(QStringLiteral("DELETE FROM %1 WHERE rowid = ?").arg(m_table));
        query.addBindValue(m_rows.at(row).rowid);
        if (!query.exec()) {
            error = query.lastError().text();
            return false;
        }
    }
    const bool wasInTable = m_rows.at(row).rowid != 0;
    dropRow(row);
    if (wasInTable && onWritten)
        onWritten();
    return true;
}

DataGrid::DataGrid(QWidget *parent)
    : QTableView(parent)
{
    setSelectionBehavior(QAbstractItemView::SelectItems);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed
                    | QAbstractItemView::AnyKeyPressed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    horizontalHeader()->setStretchLastSection(true);
}

bool DataGrid::bind(const QSqlDatabase &db, const QString &table, const QString &arrangeColumn, QString &error)
{
    auto *model = new DataGridModel(db, table, this);
    model->captions = m_captions;
    if (!model->load(arrangeColumn, error)) {
        delete model;
        return false;
    }
    model->onWriteFailed = [this](const QString &reason) { emit writeFailed(reason); };
    model->onWritten = [this] { emit written(); };
    setModel(model);
    delete m_model;
    m_model = model;
    resizeColumnsToContents();
    return true;
}

void DataGrid::setColumnCaption(const QString &column, const QString &caption)
{
    m_captions.insert(column, caption);
    if (m_model)
        m_model->captions = m_captions;
}

void DataGrid::addRow()
{
    if (!m_model || m_model->columns().isEmpty() || !finishNewRow())
        return;
    const QModelIndex first = m_model->index(m_model->appendNewRow(), 0);
    setCurrentIndex(first);
    scrollTo(first);
    setFocus();
    edit(first);
}

void DataGrid::deleteCurrentRow()
{
    const QModelIndex current = currentIndex();
    if (!m_model || !current.isValid())
        return;
    bool cancel = false;
    emit beforeDelete(cancel);
    if (cancel)
        return;
    QString error;
    if (!m_model->deleteRow(current.row(), error))
        emit writeFailed(error);
}

bool DataGrid::finishNewRow()
{
    // Dropping a refused row moves the current row off it, which lands here
    // again while the row is still on its way out; that row is done already.
    if (m_finishing || !m_model || m_model->newRow() < 0)
        return true;
    const QScopedValueRollback finishing(m_finishing, true);
    // An editor still open on the new row gives its text first.
    QWidget *editor = QApplication::focusWidget();
    if (state() == EditingState && editor && viewport()->isAncestorOf(editor)) {
        commitData(editor);
        closeEditor(editor, QAbstractItemDelegate::NoHint);
    }
    QString error;
    if (m_model->insertNewRow(error))
        return true;
    emit addFailed(error);
    return false;
}

int DataGrid::rowCountShown() const
{
    return m_model ? m_model->rowCount() : 0;
}

std::optional<QString> DataGrid::cellValue(int row, const QString &column) const
{
    const qsizetype index = m_model ? m_model->columns().indexOf(column) : -1;
    if (index < 0 || row < 0 || row >= m_model->rowCount())
        return std::nullopt;
    const QVariant &value = m_model->row(row).values.at(index);
    return value.isNull() ? std::nullopt : std::optional<QString>(value.toString());
}

void DataGrid::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Delete && state() != EditingState) {
        deleteCurrentRow();
        return;
    }
    QTableView::keyPressEvent(event);
}

void DataGrid::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTableView::currentChanged(current, previous);
    // Leaving the new row writes it.
    if (m_model && previous.isValid() && previous.row() == m_model->newRow() && current.row() != previous.row())
        finishNewRow();
}
