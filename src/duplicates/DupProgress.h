#pragma once
// Status line, progress bar and the turn of the event loop for the long
// loops of the duplicate search. Turning the event loop for each of 100,000
// items would cost more than the work itself, so a step is shown at most
// every 40 ms; the window stays responsive and the end command still ends
// the program between two items.

#include "frame/RunHost.h"

#include <QElapsedTimer>

class DupProgress
{
public:
    DupProgress() { m_clock.start(); }

    // Shows text() and value when the last showing is 40 ms ago, and lets
    // the event loop run once. The first step is always shown, and so is a
    // step marked last: the closing message must not stand beside an older
    // count.
    template <typename TextFn>
    void step(int value, TextFn &&text, bool last = false)
    {
        if (!last && m_shown && m_clock.elapsed() < kIntervalMs)
            return;
        m_shown = true;
        m_clock.restart();
        RunHost &host = CurrentRunHost();
        host.setStatusText(text());
        host.setProgressValue(value);
        host.processEvents();
    }

private:
    static constexpr qint64 kIntervalMs = 40;
    QElapsedTimer m_clock;
    bool m_shown = false;
};
