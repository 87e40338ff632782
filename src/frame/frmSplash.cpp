#include "frame/frmSplash.h"

#include "controls/WaitBar.h"
#include "frame/GlobalFunctions.h"

#include <QCoreApplication>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace {

// The splash picture: the program's name on a calm blue gradient.
QPixmap splashPicture()
{
    QPixmap pixmap(420, 170);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient g(0, 0, 420, 170);
    g.setColorAt(0, QColor(0x1f, 0x4e, 0x79));
    g.setColorAt(1, QColor(0x2e, 0x86, 0xc1));
    p.fillRect(pixmap.rect(), g);
    p.setPen(Qt::white);
    QFont title(QStringLiteral("Sans Serif"), 34, QFont::Bold);
    p.setFont(title);
    p.drawText(QRect(0, 20, 420, 80), Qt::AlignCenter, QStringLiteral("Varnex"));
    QFont sub(QStringLiteral("Sans Serif"), 11);
    p.setFont(sub);
    p.drawText(QRect(0, 100, 420, 30), Qt::AlignCenter,
               QStringLiteral("Kontakte, Termine und Nachrichten aufräumen"));
    return pixmap;
}

} // namespace

frmSplash::frmSplash(QWidget *parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("frmSplash"));
    m_image = new QLabel(this);
    m_image->setObjectName(QStringLiteral("Image1"));
    m_image->setPixmap(splashPicture());

    m_lblVersion = new QLabel(this);
    m_lblVersion->setObjectName(QStringLiteral("lblVersion"));
    m_lblVersion->setAlignment(Qt::AlignRight);

    m_waitBar = new WaitBar(this);
    m_waitBar->setObjectName(QStringLiteral("sevWaitBar1"));

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 10);
    layout->addWidget(m_image);
    auto *bottom = new QVBoxLayout;
    bottom->setContentsMargins(14, 0, 14, 0);
    bottom->addWidget(m_lblVersion);
    bottom->addWidget(m_waitBar);
    layout->addLayout(bottom);

    // The load handler: version, animation, and one turn of the event loop so
    // that the window paints before the long work begins.
    m_lblVersion->setText(ProgramVersion());
    m_waitBar->start();
}
