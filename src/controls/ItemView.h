#pragma once
// The read-only view of one item of the mail store: what the inspector's
// Display shows inside Varnex. Lists the fields that hold a value, the user
// properties and the attachments. Reading happens while the view is built,
// so a store failure reaches the caller of Display before anything shows.

#include "store/Item.h"

#include <QDialog>

class QTableWidget;

class ItemView : public QDialog
{
    Q_OBJECT
public:
    // Throws StoreError when the item cannot be read.
    explicit ItemView(const Item &item, QWidget *parent = nullptr);

    [[nodiscard]] QTableWidget *table() const { return m_table; }

private:
    void addRow(const QString &field, const QString &value);
    QTableWidget *m_table;
};

// Installs the view as the handler of Inspector::Display: modal on request,
// otherwise a window of its own that closes by itself.
void InstallItemView();
