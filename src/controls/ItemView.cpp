#include "controls/ItemView.h"

#include "store/Attachments.h"
#include "store/Inspector.h"
#include "store/ItemSchema.h"
#include "store/UserProperties.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLocale>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

QString kindOf(int itemClass)
{
    switch (itemClass) {
    case olAppointment: return QStringLiteral("Termin");
    case olContact: return QStringLiteral("Kontakt");
    case olJournal: return QStringLiteral("Journaleintrag");
    case olMail: return QStringLiteral("E-Mail");
    case olNote: return QStringLiteral("Notiz");
    case olPost: return QStringLiteral("Bereitstellung");
    case olTask: return QStringLiteral("Aufgabe");
    case olDistributionList: return QStringLiteral("Verteilerliste");
    default: return QStringLiteral("Element");
    }
}

bool isEmpty(const QVariant &value)
{
    if (value.typeId() == QMetaType::QDateTime)
        return IsNoDate(value.toDateTime());
    if (value.typeId() == QMetaType::QString)
        return value.toString().isEmpty();
    return false;
}

QString sizeText(qint64 bytes)
{
    return QLocale(QLocale::German, QLocale::Germany).formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat);
}

} // namespace

ItemView::ItemView(const Item &item, QWidget *parent)
    : QDialog(parent)
    , m_table(new QTableWidget(0, 2, this))
{
    setObjectName(QStringLiteral("ItemView"));
    const QString subject = item.Subject();
    setWindowTitle(subject.isEmpty() ? kindOf(item.Class()) : kindOf(item.Class()) + QStringLiteral(": ") + subject);
    m_table->setHorizontalHeaderLabels({QStringLiteral("Feld"), QStringLiteral("Wert")});
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    m_table->horizontalHeader()->setStretchLastSection(true);
    m_table->setWordWrap(false);

    for (const QString &name : item.PropertyNames()) {
        const QVariant value = item.get(name);
        if (!isEmpty(value))
            addRow(name, TextOfValue(value).replace(QStringLiteral("\r\n"), QStringLiteral(" / ")));
    }
    const UserProperties properties = item.UserProperties();
    for (int i = 1; i <= properties.Count(); ++i)
        addRow(properties.Item(i).Name(), properties.Item(i).Value().toString());
    const Attachments attachments = item.Attachments();
    for (int i = 1; i <= attachments.Count(); ++i) {
        const Attachment a = attachments.Item(i);
        const QString what = a.Type() == olByReference
                                 ? QStringLiteral("Verknüpfung auf %1").arg(a.GetProperty(PR_ATTACH_PATHNAME).toString())
                                 : sizeText(a.Size());
        addRow(QStringLiteral("Anlage %1").arg(i), QStringLiteral("%1 (%2)").arg(a.DisplayName(), what));
    }
    m_table->resizeColumnToContents(0);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setText(QStringLiteral("Schließen"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_table);
    layout->addWidget(buttons);
    resize(560, 460);
}

void ItemView::addRow(const QString &field, const QString &value)
{
    const int row = m_table->rowCount();
    m_table->insertRow(row);
    m_table->setItem(row, 0, new QTableWidgetItem(field));
    m_table->setItem(row, 1, new QTableWidgetItem(value));
}

void InstallItemView()
{
    SetInspectorHandler([](const Item &item, bool modal) {
        auto *view = new ItemView(item, QApplication::activeWindow());
        view->setAttribute(Qt::WA_DeleteOnClose);
        if (modal)
            view->exec();
        else
            view->show();
    });
}
