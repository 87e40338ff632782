#include "controls/WaitBar.h"

#include <QPainter>

WaitBar::WaitBar(QWidget *parent)
    : QWidget(parent)
{
    m_timer.setInterval(40);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        const int block = width() / 5;
        m_position += 6 * m_direction;
        if (m_position + block >= width() || m_position <= 0)
            m_direction = -m_direction;
        update();
    });
}

void WaitBar::start()
{
    m_timer.start();
}

void WaitBar::stop()
{
    m_timer.stop();
    update();
}

void WaitBar::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    // At rest the track takes the window's colour, so that it does not look
    // like an empty text field waiting for input.
    const bool running = m_timer.isActive();
    p.setPen(palette().color(QPalette::Mid));
    p.setBrush(running ? palette().color(QPalette::Base) : palette().color(QPalette::Window).darker(104));
    p.drawRoundedRect(frame, 3, 3);
    if (!running)
        return;
    const int block = width() / 5;
    QLinearGradient g(m_position, 0, m_position + block, 0);
    const QColor c = palette().color(QPalette::Highlight);
    g.setColorAt(0, c.lighter(160));
    g.setColorAt(0.5, c);
    g.setColorAt(1, c.lighter(160));
    p.setPen(Qt::NoPen);
    p.setBrush(g);
    p.drawRoundedRect(QRectF(m_position, 2, block, height() - 4), 2, 2);
}
