#pragma once
// Shared test helpers: an isolated program folder and settings file per test,
// and a scripted answerer for message boxes.

#include "frame/GlobalFunctions.h"

#include <QList>
#include <QTemporaryDir>

// Records every box and answers from a script (AnswerOk/Yes/No...); when
// the script runs dry, it answers with defaultAnswer. Restores the previous
// handler when it goes out of scope.
class MessageRecorder
{
public:
    explicit MessageRecorder(int defaultAnswer = AnswerOk);
    ~MessageRecorder();
    MessageRecorder(const MessageRecorder &) = delete;
    MessageRecorder &operator=(const MessageRecorder &) = delete;

    void script(QList<int> answers) { m_script = std::move(answers); }
    [[nodiscard]] const QList<MessageRequest> &requests() const { return m_requests; }
    [[nodiscard]] int count() const { return int(m_requests.size()); }
    [[nodiscard]] MessageRequest last() const { return m_requests.isEmpty() ? MessageRequest{} : m_requests.last(); }
    void clear() { m_requests.clear(); }

private:
    QList<MessageRequest> m_requests;
    QList<int> m_script;
    int m_defaultAnswer;
    MessageHandler m_previous;
};

// A temporary program folder (with the real reference database copied in
// when withReferenceDb is set), a temporary settings file with all defaults
// written, and a temporary (not yet created) profile folder. Restores the previous folders when it goes out of scope.
class TestEnvironment
{
public:
    explicit TestEnvironment(bool withReferenceDb = true, bool withDefaults = true);
    ~TestEnvironment();
    TestEnvironment(const TestEnvironment &) = delete;
    TestEnvironment &operator=(const TestEnvironment &) = delete;

    [[nodiscard]] QString folder() const { return m_dir.path(); }
    [[nodiscard]] QString settingsFile() const;
    [[nodiscard]] QString readLog() const;

private:
    QTemporaryDir m_dir;
    QString m_previousFolder;
    QString m_previousDataFolder;
    QString m_previousSettings;
    QString m_previousProfile;
};

// The path of the real reference database built beside the executables.
QString BuiltReferenceDb();
