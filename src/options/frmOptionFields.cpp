#include "options/frmOptionFields.h"

#include "controls/sevText.h"
#include "options/OptionsLogic.h"

#include <QCollator>
#include <QComboBox>
#include <QEvent>
#include <QLineEdit>
#include <QRegularExpressionValidator>

#include <algorithm>

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
    auto *field = new sevText(parent);
    field->setObjectName(name);
    field->setList(listFile, listTitle, true);
    return field;
}

QWidget *CreateNumberField(const QString &name, int maximum, QWidget *parent)
{
    auto *field = new sevText(parent);
    field->setObjectName(name);
    field->setNumberMode(maximum);
    field->setMaximumWidth(90);
    return field;
}

QWidget *CreateFolderField(const QString &name, QWidget *parent)
{
    auto *field = new sevText(parent);
    field->setObjectName(name);
    field->setFolderMode();
    return field;
}

void OnTextChanged(QWidget *field, QObject *context, std::function<void()> handler)
{
    if (auto *text = qobject_cast<sevText *>(field))
        QObject::connect(text, &sevText::textChanged, context, [handler] { handler(); });
    else if (auto *edit = qobject_cast<QLineEdit *>(field))
        QObject::connect(edit, &QLineEdit::textChanged, context, [handler] { handler(); });
}

void OnFocusIn(QWidget *field, QObject *context, std::function<void()> handler)
{
    // A composite field takes the focus in its editor.
    QWidget *target = field->focusProxy() ? field->focusProxy() : field;
    target->installEventFilter(new FocusWatcher(context, std::move(handler)));
}

QLineEdit *CreateDigitsField(const QString &name, int maxLength, const QString &pattern, QWidget *parent)
{
    auto *field = new QLineEdit(parent);
    field->setObjectName(name);
    field->setMaxLength(maxLength);
    field->setValidator(new QRegularExpressionValidator(QRegularExpression(pattern), field));
    field->setMaximumWidth(80);
    return field;
}

QComboBox *CreateCountrySelectBox(QWidget *parent)
{
    auto *box = new QComboBox(parent);
    box->setObjectName(QStringLiteral("cmbCountrySelect"));
    box->setProperty("Tag", QStringLiteral("n"));
    // German order whatever the machine's locale: "Österreich" after
    // "Niederlande", not after "Vereinigtes Königreich" as under C.UTF-8.
    QStringList sorted = CountrySelectEntries();
    const QCollator german(QLocale(QLocale::German, QLocale::Germany));
    std::sort(sorted.begin(), sorted.end(), german);
    box->addItems(sorted);
    box->setCurrentIndex(-1);
    return box;
}
