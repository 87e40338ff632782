#pragma once
// An activity bar without a value: a block runs to and fro while the program
// is busy, to show that it is alive.

#include <QTimer>
#include <QWidget>

class WaitBar : public QWidget
{
    Q_OBJECT
public:
    explicit WaitBar(QWidget *parent = nullptr);

    void start();
    void stop();
    [[nodiscard]] bool isRunning() const { return m_timer.isActive(); }
    [[nodiscard]] QSize sizeHint() const override { return {240, 14}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QTimer m_timer;
    int m_position = 0;
    int m_direction = 1;
};
