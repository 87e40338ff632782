#pragma once
// The command bar: groups with a key and a caption, each holding picture
// buttons with a key and a tooltip (captions hidden). A click on a button is
// announced with the group, the button and the mouse button, numbered as the
// platform numbers them (1 first, 2 second, 4 middle); the keyboard counts as
// the first button. The bar is enabled or disabled as a whole.

#include <QIcon>
#include <QWidget>

class QToolButton;
class QVBoxLayout;

class OutBar : public QWidget
{
    Q_OBJECT
public:
    explicit OutBar(QWidget *parent = nullptr);

    void addGroup(const QString &groupKey, const QString &caption);
    // Adds a button to a group that exists; returns the button, which carries
    // the key as its objectName.
    QToolButton *addItem(const QString &groupKey, const QString &itemKey, const QString &toolTip,
                         const QIcon &picture);

    [[nodiscard]] QToolButton *item(const QString &itemKey) const;
    [[nodiscard]] QStringList groupKeys() const;
    [[nodiscard]] QStringList itemKeys(const QString &groupKey) const;
    [[nodiscard]] QString groupCaption(const QString &groupKey) const;

    [[nodiscard]] QSize sizeHint() const override;

signals:
    void itemClick(const QString &groupKey, const QString &itemKey, int mouseButton);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    struct Group {
        QString key;
        QString caption;
        QVBoxLayout *layout = nullptr;
        QStringList items;
    };
    Group *group(const QString &groupKey);

    QVBoxLayout *m_layout = nullptr;
    QList<Group> m_groups;
};
