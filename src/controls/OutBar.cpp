#include "controls/OutBar.h"

#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

// A picture button that reports which mouse button released it. The plain
// tool button only knows the first one.
class OutBarButton : public QToolButton
{
    Q_OBJECT
public:
    using QToolButton::QToolButton;

signals:
    void mouseClick(int mouseButton);

protected:
    void mousePressEvent(QMouseEvent *event) override
    {
        m_pressed = event->button();
        setDown(true);
        event->accept();
    }
    void mouseReleaseEvent(QMouseEvent *event) override
    {
        setDown(false);
        event->accept();
        if (event->button() != m_pressed || !rect().contains(event->position().toPoint()))
            return;
        emit mouseClick(platformNumber(event->button()));
    }

private:
    static int platformNumber(Qt::MouseButton button)
    {
        switch (button) {
        case Qt::LeftButton: return 1;
        case Qt::RightButton: return 2;
        case Qt::MiddleButton: return 4;
        default: return 0;
        }
    }
    Qt::MouseButton m_pressed = Qt::NoButton;
};

} // namespace

OutBar::OutBar(QWidget *parent)
    : QWidget(parent)
{
    m_layout = new QVBoxLayout(this);
    m_layout->setContentsMargins(6, 8, 6, 8);
    m_layout->setSpacing(4);
    m_layout->addStretch(1);
}

void OutBar::addGroup(const QString &groupKey, const QString &caption)
{
    auto *header = new QLabel(caption, this);
    header->setObjectName(groupKey);
    header->setAlignment(Qt::AlignCenter);
    QFont bold = header->font();
    bold.setBold(true);
    header->setFont(bold);
    header->setStyleSheet(QStringLiteral("QLabel { color: #ffffff; background: #3d5a80; border-radius: 3px;"
                                         " padding: 3px 2px; }"));
    auto *buttons = new QVBoxLayout;
    buttons->setSpacing(2);
    buttons->setContentsMargins(0, 2, 0, 8);
    const int at = m_layout->count() - 1; // before the closing stretch
    m_layout->insertWidget(at, header);
    m_layout->insertLayout(at + 1, buttons);
    m_groups.append({groupKey, caption, buttons, {}});
}

OutBar::Group *OutBar::group(const QString &groupKey)
{
    for (Group &g : m_groups)
        if (g.key == groupKey)
            return &g;
    return nullptr;
}

QToolButton *OutBar::addItem(const QString &groupKey, const QString &itemKey, const QString &toolTip,
                             const QIcon &picture)
{
    Group *g = group(groupKey);
    if (!g)
        return nullptr;
    auto *button = new OutBarButton(this);
    button->setObjectName(itemKey);
    button->setToolTip(toolTip);
    button->setAccessibleName(toolTip);
    button->setIcon(picture);
    button->setIconSize(QSize(32, 32));
    button->setAutoRaise(true);
    button->setFixedSize(64, 52);
    button->setFocusPolicy(Qt::TabFocus);
    const QString key = groupKey;
    connect(button, &OutBarButton::mouseClick, this,
            [this, key, itemKey](int mouseButton) { emit itemClick(key, itemKey, mouseButton); });
    // Space or Enter on a focused button count as the first mouse button.
    connect(button, &QToolButton::clicked, this, [this, key, itemKey] { emit itemClick(key, itemKey, 1); });
    g->layout->addWidget(button, 0, Qt::AlignHCenter);
    g->items.append(itemKey);
    return button;
}

QToolButton *OutBar::item(const QString &itemKey) const
{
    return findChild<QToolButton *>(itemKey, Qt::FindDirectChildrenOnly);
}

QStringList OutBar::groupKeys() const
{
    QStringList keys;
    for (const Group &g : m_groups)
        keys.append(g.key);
    return keys;
}

QStringList OutBar::itemKeys(const QString &groupKey) const
{
    for (const Group &g : m_groups)
        if (g.key == groupKey)
            return g.items;
    return {};
}

QString OutBar::groupCaption(const QString &groupKey) const
{
    for (const Group &g : m_groups)
        if (g.key == groupKey)
            return g.caption;
    return {};
}

QSize OutBar::sizeHint() const
{
    return {88, QWidget::sizeHint().height()};
}

void OutBar::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    QLinearGradient g(0, 0, width(), 0);
    g.setColorAt(0, QColor(0xe4, 0xea, 0xf2));
    g.setColorAt(1, QColor(0xd5, 0xde, 0xea));
    p.fillRect(rect(), g);
    p.setPen(QColor(0xb5, 0xc2, 0xd3));
    p.drawLine(rect().topRight(), rect().bottomRight());
}

#include "OutBar.moc"
