#pragma once
// A run host that keeps every status text, progress maximum and progress
// value a run shows, in order, so tests can check what the user saw.

#include "frame/RunHost.h"

#include <QList>
#include <QStringList>

class RecordingRunHost : public QuietRunHost
{
public:
    void setStatusText(const QString &text) override
    {
        QuietRunHost::setStatusText(text);
        statusTexts << text;
    }
    void setProgressMax(int max) override
    {
        QuietRunHost::setProgressMax(max);
        progressMaxima << max;
    }
    void setProgressValue(int value) override
    {
        QuietRunHost::setProgressValue(value);
        progressValues << value;
    }
    QStringList statusTexts;
    QList<int> progressMaxima;
    QList<int> progressValues;
};
