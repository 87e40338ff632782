#include "frame/frmHaupt.h"

#include "frame/Main.h"

#include <QCloseEvent>
#include <QLabel>
#include <QProgressBar>
#include <QStatusBar>
#include <QVBoxLayout>

frmHaupt::frmHaupt(QWidget *parent)
    : QMainWindow(parent)
{
    setObjectName(QStringLiteral("frmHaupt"));
    auto *central = new QWidget(this);
    new QVBoxLayout(central);
    setCentralWidget(central);

    m_lblStatus = new QLabel(this);
    m_lblStatus->setObjectName(QStringLiteral("lblStatus"));
    m_progressBar = new QProgressBar(this);
    m_progressBar->setObjectName(QStringLiteral("ProgressBar1"));
    m_progressBar->setMinimum(0);
    m_progressBar->setTextVisible(false);
    statusBar()->addWidget(m_lblStatus, 1);
    statusBar()->addPermanentWidget(m_progressBar);
    resize(1280, 800);
}

void frmHaupt::load()
{
    m_lblStatus->setText(QStringLiteral("Bereit"));
    setWindowTitle(QStringLiteral("Varnex"));
}

void frmHaupt::closeEvent(QCloseEvent *event)
{
    event->accept();
    EndProcess();
}
