#include "controls/SettingsBinding.h"

#include "frame/RegistryFunctions.h"

#include <QCheckBox>
#include <QComboBox>
#include <QRadioButton>
#include <QVariant>
#include <QWidget>

namespace {

enum class BoundKind { None, Text, Check, Option };

BoundKind kindOf(const QWidget *control)
{
    const QString name = control->objectName();
    if (qobject_cast<const QCheckBox *>(control))
        return name.startsWith(QStringLiteral("chk")) ? BoundKind::Check : BoundKind::None;
    if (qobject_cast<const QRadioButton *>(control))
        return (name.startsWith(QStringLiteral("opt")) || name.startsWith(QStringLiteral("chk")))
            ? BoundKind::Option : BoundKind::None;
    if (!(name.startsWith(QStringLiteral("txt")) || name.startsWith(QStringLiteral("cmb"))))
        return BoundKind::None;
    const QMetaObject *meta = control->metaObject();
    if (meta->indexOfProperty("text") < 0 && !qobject_cast<const QComboBox *>(control))
        return BoundKind::None;
    if (control->property("Tag").toString() == QStringLiteral("n"))
        return BoundKind::None;
    return BoundKind::Text;
}

// The text of a field; an editable list box has its text as currentText.
QString textOf(const QWidget *control)
{
    if (auto *combo = qobject_cast<const QComboBox *>(control))
        return combo->currentText();
    return control->property("text").toString();
}

void setTextOf(QWidget *control, const QString &text)
{
    if (auto *combo = qobject_cast<QComboBox *>(control))
        combo->setCurrentText(text);
    else
        control->setProperty("text", text);
}

} // namespace

QString BoundSettingName(const QWidget *control)
{
    if (kindOf(control) == BoundKind::None)
        return {};
    return control->objectName().mid(3);
}

void LoadBoundSettings(QWidget *form)
{
    for (QWidget *control : form->findChildren<QWidget *>()) {
        const QString name = control->objectName().mid(3);
        switch (kindOf(control)) {
        case BoundKind::Text:
            setTextOf(control, GetSetting(name, QString()));
            break;
        case BoundKind::Check:
        case BoundKind::Option:
            static_cast<QAbstractButton *>(control)->setChecked(GetBoolSetting(name, false));
            break;
        case BoundKind::None:
            break;
        }
    }
}

SettingValues BoundSettingValues(QWidget *form)
{
    SettingValues values;
    for (QWidget *control : form->findChildren<QWidget *>()) {
        const QString name = control->objectName().mid(3);
        switch (kindOf(control)) {
        case BoundKind::Text:
            values.append({name, textOf(control)});
            break;
        case BoundKind::Check:
        case BoundKind::Option:
            values.append({name, static_cast<QAbstractButton *>(control)->isChecked() ? QStringLiteral("1")
                                                                                     : QStringLiteral("0")});
            break;
        case BoundKind::None:
            break;
        }
    }
    return values;
}

void SaveBoundSettings(QWidget *form)
{
    SaveSettings(BoundSettingValues(form));
}
