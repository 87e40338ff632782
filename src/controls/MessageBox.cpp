#include "controls/MessageBox.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

int ShowMessageBox(const MessageRequest &request, QWidget *parent)
{
    if (!parent)
        parent = QApplication::activeWindow();
    QMessageBox box(parent);
    box.setWindowTitle(request.title);
    box.setText(QString(request.prompt).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));

    const int style = request.buttons;
    const bool question = (style & 0x0F) == 4; // Yes and No
    switch (style & 0xF0) {
    case MsgStop: box.setIcon(QMessageBox::Critical); break;
    case 32: box.setIcon(QMessageBox::Question); break;
    case MsgExclamation: box.setIcon(QMessageBox::Warning); break;
    case MsgInformation: box.setIcon(QMessageBox::Information); break;
    default: box.setIcon(QMessageBox::NoIcon); break;
    }

    QHash<QAbstractButton *, int> answers;
    if (question) {
        QPushButton *yes = box.addButton(QStringLiteral("&Ja"), QMessageBox::YesRole);
        QPushButton *no = box.addButton(QStringLiteral("&Nein"), QMessageBox::NoRole);
        answers.insert(yes, AnswerYes);
        answers.insert(no, AnswerNo);
        // 256 makes the second button the default one.
        box.setDefaultButton((style & 0x100) ? no : yes);
        box.setEscapeButton(no);
    } else {
        QPushButton *ok = box.addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
        answers.insert(ok, AnswerOk);
        box.setDefaultButton(ok);
        box.setEscapeButton(ok);
    }

    bool timedOut = false;
    if (request.timeoutSeconds > 0) {
        QTimer::singleShot(request.timeoutSeconds * 1000, &box, [&box, &timedOut] {
            timedOut = true;
            box.done(0);
        });
    }
    box.exec();
    if (timedOut)
        return 0;
    return answers.value(box.clickedButton(), 0);
}

void InstallMessageBoxHandler()
{
    SetMessageHandler([](const MessageRequest &request) { return ShowMessageBox(request); });
}
