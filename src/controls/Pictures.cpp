#include "controls/Pictures.h"

#include <QPainter>
#include <QPainterPath>
#include <functional>

namespace {

// Every motif is drawn on a 32 x 32 canvas and scaled to the wanted size.
using Motif = std::function<void(QPainter &)>;

const QColor Ink(0x33, 0x3d, 0x4a);

QIcon pictureOf(const Motif &motif)
{
    QIcon icon;
    for (int size : {16, 24, 32, 48}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter p(&pixmap);
        p.setRenderHint(QPainter::Antialiasing);
        p.scale(size / 32.0, size / 32.0);
        motif(p);
        icon.addPixmap(pixmap);
    }
    return icon;
}

void outline(QPainter &p, const QColor &fill, qreal width = 1.6)
{
    p.setPen(QPen(Ink, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(fill);
}

void envelope(QPainter &p)
{
    outline(p, QColor(0xe8, 0xf1, 0xfb));
    p.drawRoundedRect(QRectF(3, 8, 26, 17), 2, 2);
    p.drawPolyline(QPolygonF({{3.5, 9}, {16, 18}, {28.5, 9}}));
}

void page(QPainter &p, const QColor &fill)
{
    outline(p, fill);
    p.drawRoundedRect(QRectF(6, 3, 20, 26), 2, 2);
}

void lines(QPainter &p, qreal left, qreal right, std::initializer_list<qreal> ys)
{
    p.setPen(QPen(Ink.lighter(160), 1.6, Qt::SolidLine, Qt::RoundCap));
    for (qreal y : ys)
        p.drawLine(QPointF(left, y), QPointF(right, y));
}

void tick(QPainter &p, const QColor &colour, QPointF at, qreal scale)
{
    p.setPen(QPen(colour, 3 * scale, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
    p.drawPolyline(QPolygonF({at + QPointF(0, 4 * scale), at + QPointF(4 * scale, 8 * scale),
                              at + QPointF(11 * scale, -1 * scale)}));
}

void task(QPainter &p)
{
    page(p, Qt::white);
    lines(p, 10, 22, {21, 25});
    tick(p, QColor(0x2e, 0x8b, 0x57), {10, 7}, 1.0);
}

void journal(QPainter &p)
{
    outline(p, QColor(0x8e, 0x6c, 0xc4));
    p.drawRoundedRect(QRectF(6, 3, 20, 26), 2, 2);
    p.setPen(QPen(Qt::white, 1.6));
    p.drawLine(QPointF(10, 4), QPointF(10, 28));
    p.setBrush(QColor(0xe7, 0x4c, 0x3c));
    p.setPen(Qt::NoPen);
    p.drawPolygon(QPolygonF({{18, 3}, {23, 3}, {23, 13}, {20.5, 10.5}, {18, 13}}));
}

void calendar(QPainter &p)
{
    outline(p, Qt::white);
    p.drawRoundedRect(QRectF(4, 6, 24, 22), 2, 2);
    p.setBrush(QColor(0xd9, 0x45, 0x3b));
    p.drawRoundedRect(QRectF(4, 6, 24, 7), 2, 2);
    p.setPen(QPen(Ink, 2, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(10, 3.5), QPointF(10, 8));
    p.drawLine(QPointF(22, 3.5), QPointF(22, 8));
    p.setPen(Qt::NoPen);
    p.setBrush(Ink.lighter(170));
    for (int row = 0; row < 3; ++row)
        for (int col = 0; col < 4; ++col)
            p.drawRect(QRectF(7.5 + col * 5, 15.5 + row * 4, 3, 2.5));
}

void person(QPainter &p, QRectF box, const QColor &colour)
{
    p.setPen(Qt::NoPen);
    p.setBrush(colour);
    const qreal w = box.width();
    p.drawEllipse(QRectF(box.left() + w * 0.3, box.top(), w * 0.4, w * 0.4));
    QPainterPath body;
    body.moveTo(box.left(), box.bottom());
    body.cubicTo(box.left(), box.top() + w * 0.45, box.right(), box.top() + w * 0.45, box.right(), box.bottom());
    body.closeSubpath();
    p.drawPath(body);
}

void contact(QPainter &p)
{
    outline(p, QColor(0xfd, 0xf3, 0xe1));
    p.drawRoundedRect(QRectF(3, 6, 26, 20), 2, 2);
    person(p, QRectF(6, 9, 10, 14), QColor(0x2b, 0x6c, 0xb0));
    lines(p, 19, 26, {13, 17, 21});
}

void stickyNote(QPainter &p)
{
    outline(p, QColor(0xff, 0xe0, 0x66));
    p.drawPolygon(QPolygonF({{5, 5}, {27, 5}, {27, 20}, {20, 27}, {5, 27}}));
    p.setBrush(QColor(0xe6, 0xc1, 0x3a));
    p.drawPolygon(QPolygonF({{27, 20}, {20, 20}, {20, 27}}));
}

void store(QPainter &p)
{
    outline(p, QColor(0xdd, 0xe6, 0xef));
    p.drawRoundedRect(QRectF(4, 5, 24, 10), 2, 2);
    p.drawRoundedRect(QRectF(4, 17, 24, 10), 2, 2);
    p.setPen(QPen(Ink, 2, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(13, 10), QPointF(19, 10));
    p.drawLine(QPointF(13, 22), QPointF(19, 22));
}

void duplicates(QPainter &p)
{
    outline(p, QColor(0xe8, 0xf1, 0xfb));
    p.drawRoundedRect(QRectF(3, 3, 17, 21), 2, 2);
    outline(p, Qt::white);
    p.drawRoundedRect(QRectF(11, 8, 17, 21), 2, 2);
    p.setPen(QPen(QColor(0xd9, 0x45, 0x3b), 3, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(15.5, 14), QPointF(23.5, 22));
    p.drawLine(QPointF(23.5, 14), QPointF(15.5, 22));
}

void search(QPainter &p)
{
    page(p, Qt::white);
    lines(p, 10, 22, {9, 13, 17});
    outline(p, QColor(0xcf, 0xe6, 0xfa, 200), 2.2);
    p.drawEllipse(QPointF(17, 19), 6, 6);
    p.setPen(QPen(Ink, 3.5, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(21.5, 23.5), QPointF(28, 30));
}

void paperclip(QPainter &p)
{
    p.setPen(QPen(QColor(0x55, 0x60, 0x70), 2.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
    QPainterPath clip;
    clip.moveTo(12, 12);
    clip.lineTo(12, 23);
    clip.arcTo(QRectF(12, 18, 10, 10), 180, 180);
    clip.lineTo(22, 8);
    clip.arcTo(QRectF(7, 2, 15, 12), 0, 180);
    clip.lineTo(7, 24);
    p.drawPath(clip.translated(1, 1));
}

void holidays(QPainter &p)
{
    calendar(p);
    p.setPen(QPen(QColor(0xf3, 0x9c, 0x12), 1.8, Qt::SolidLine, Qt::RoundCap));
    p.setBrush(QColor(0xf9, 0xc7, 0x4f));
    p.drawEllipse(QPointF(24, 24), 5, 5);
}

void messageClass(QPainter &p)
{
    page(p, Qt::white);
    lines(p, 10, 22, {8, 12});
    p.setPen(QPen(QColor(0x2b, 0x6c, 0xb0), 2.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
    p.drawArc(QRectF(10, 15, 12, 11), 30 * 16, 280 * 16);
    p.drawPolyline(QPolygonF({{22.5, 14.5}, {21.5, 18.5}, {17.5, 17.5}}));
}

void names(QPainter &p)
{
    contact(p);
    p.setPen(QPen(QColor(0x2e, 0x8b, 0x57), 2.6, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(19, 28), QPointF(29, 18));
    p.setPen(QPen(Ink, 1.2));
    p.setBrush(QColor(0xf3, 0x9c, 0x12));
    p.drawPolygon(QPolygonF({{19, 28}, {17.5, 30.5}, {20.5, 29.5}}));
}

void telephone(QPainter &p)
{
    outline(p, QColor(0x2e, 0x8b, 0x57), 1.4);
    QPainterPath handset;
    handset.moveTo(6, 9);
    handset.cubicTo(6, 20, 12, 26, 23, 26);
    handset.lineTo(26, 21);
    handset.lineTo(21, 17);
    handset.lineTo(18, 20);
    handset.cubicTo(15, 19, 13, 17, 12, 14);
    handset.lineTo(15, 11);
    handset.lineTo(11, 6);
    handset.closeSubpath();
    p.drawPath(handset);
}

void gear(QPainter &p)
{
    outline(p, QColor(0x90, 0x9a, 0xa8));
    QPainterPath wheel;
    const QPointF centre(16, 16);
    for (int i = 0; i < 8; ++i) {
        QTransform t;
        t.translate(centre.x(), centre.y());
        t.rotate(i * 45.0);
        wheel.addPolygon(t.map(QPolygonF(QRectF(-2.5, -13, 5, 6))));
    }
    wheel.addEllipse(centre, 10, 10);
    p.drawPath(wheel.simplified());
    p.setBrush(Qt::white);
    p.drawEllipse(centre, 4, 4);
}

void help(QPainter &p)
{
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0x2b, 0x6c, 0xb0));
    p.drawEllipse(QPointF(16, 16), 13, 13);
    QFont font(QStringLiteral("Sans Serif"));
    font.setPixelSize(20);
    font.setBold(true);
    p.setFont(font);
    p.setPen(Qt::white);
    p.drawText(QRectF(3, 3, 26, 26), Qt::AlignCenter, QStringLiteral("?"));
}

} // namespace

QIcon CommandPicture(const QString &key)
{
    static const QHash<QString, QIcon> pictures{
        {QStringLiteral("Dup"), pictureOf(duplicates)}, {QStringLiteral("Suc"), pictureOf(search)},
        {QStringLiteral("Att"), pictureOf(paperclip)},  {QStringLiteral("Hol"), pictureOf(holidays)},
        {QStringLiteral("For"), pictureOf(messageClass)}, {QStringLiteral("Nam"), pictureOf(names)},
        {QStringLiteral("Tel"), pictureOf(telephone)},  {QStringLiteral("Opt"), pictureOf(gear)},
        {QStringLiteral("Hil"), pictureOf(help)},
    };
    return pictures.value(key);
}

const QHash<QString, QIcon> &FolderImageList()
{
    static const QHash<QString, QIcon> images{
        {QStringLiteral("IPF.Note"), pictureOf(envelope)},
        {QStringLiteral("IPF.Task"), pictureOf(task)},
        {QStringLiteral("IPF.Journal"), pictureOf(journal)},
        {QStringLiteral("IPF.Appointment"), pictureOf(calendar)},
        {QStringLiteral("IPF.Contact"), pictureOf(contact)},
        {QStringLiteral("IPF.StickyNote"), pictureOf(stickyNote)},
        {QStringLiteral("Post"), pictureOf(store)},
    };
    return images;
}

const QHash<QString, QIcon> &DuplicateImageList()
{
    static const QHash<QString, QIcon> images{
        {QStringLiteral("Note"), pictureOf(envelope)},     {QStringLiteral("Task"), pictureOf(task)},
        {QStringLiteral("Activity"), pictureOf(journal)},  {QStringLiteral("Appointment"), pictureOf(calendar)},
        {QStringLiteral("Contact"), pictureOf(contact)},   {QStringLiteral("StickyNote"), pictureOf(stickyNote)},
        {QStringLiteral("Post"), pictureOf(envelope)},
    };
    return images;
}
