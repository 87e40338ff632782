#include "options/frmOptionFields.h"

#include <QEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLineEdit>
#include <QToolButton>

namespace {

class FocusWatcher : public QObject
{
public:
    FocusWatcher(QObject *parent, std::function<void()> handler)
        : QObject(parent), m_handler(std::move(handler)) {}

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::FocusIn)
            m_handler();
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> m_handler;
};

} // namespace

QWidget *CreateListField(const QString &name, const QString &listFile, const QString &listTitle, QWidget *parent)
{
    auto *field = new QLineEdit(parent);
    field->setObjectName(name);
    field->setProperty("floskelfile", listFile);
    field->setProperty("floskeltitle", listTitle);
    return field;
}

QWidget *CreateNumberField(const QString &name, int maximum, QWidget *parent)
{
    auto *field = new QLineEdit(parent);
    field->setObjectName(name);
    field->setValidator(new QIntValidator(0, maximum, field));
    field->setMaxLength(QString::number(maximum).size());
    field->setMaximumWidth(90);
    return field;
}

QWidget *CreateFolderField(const QString &name, QWidget *parent)
{
    auto *field = new QLineEdit(parent);
    field->setObjectName(name);
    field->setReadOnly(true);
    return field;
}

void OnTextChanged(QWidget *field, QObject *context, std::function<void()> handler)
{
    if (auto *edit = qobject_cast<QLineEdit *>(field))
        QObject::connect(edit, &QLineEdit::textChanged, context, [handler] { handler(); });
}

void OnFocusIn(QWidget *field, QObject *context, std::function<void()> handler)
{
    field->installEventFilter(new FocusWatcher(context, std::move(handler)));
}
