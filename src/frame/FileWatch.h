#pragma once
// Whether a file may have changed, for the price of one atomic read.
//
// A thread of its own waits for the system's file events (inotify) on the
// folders of the watched files and counts every write, replacement, renaming
// or removal of a watched file, whoever makes it: this process, another one,
// an editor. The system queues the event inside the writer's own call, and
// the thread counts it as soon as it is scheduled, typically within
// microseconds; SyncFileWatches takes every queued event at once, for a
// caller that must see a change made a moment ago.
//
// Where the events are not available (no inotify, a folder that does not
// exist yet, the limit of watches reached) every question asks the file
// system instead (one stat), and a file modified within the last second
// counts as changed, since file times are coarse.
//
// A SQLite database is watched together with its journal and write-ahead
// log, so a commit of another connection counts whatever the journal mode.

#include <QString>

#include <memory>
#include <optional>

struct FileWatchSlot;

class FileWatch
{
public:
    FileWatch() = default;
    ~FileWatch();
    FileWatch(const FileWatch &) = delete;
    FileWatch &operator=(const FileWatch &) = delete;

    // Watches path from now on (an empty path: nothing); the next changed()
    // is true.
    void setPath(const QString &path);
    [[nodiscard]] const QString &path() const { return m_path; }

    // True when the file may have changed since the previous call (always
    // on the first call after setPath). Read the file after this call, so
    // that a change during the reading counts for the next one.
    [[nodiscard]] bool changed();

    // Whether the system's events serve this watch (false: it asks stat).
    [[nodiscard]] bool usesEvents() const;

private:
    struct Stamp {
        qint64 device = 0, inode = 0, size = -1, modifiedNs = 0, changedNs = 0;
        bool young = false; // modified within the last second: not trusted
        bool operator==(const Stamp &o) const
        {
            return device == o.device && inode == o.inode && size == o.size && modifiedNs == o.modifiedNs
                && changedNs == o.changedNs;
        }
    };
    bool changedByStat();
    void release();

    QString m_path;
    std::shared_ptr<FileWatchSlot> m_slot;
    quint64 m_seen = 0;
    bool m_fresh = true;     // nothing read since setPath
    bool m_byEvents = false; // the last answer came from the events
    std::optional<Stamp> m_stamp;
};

// Takes every file event the system has queued, so that a change finished
// before this call counts at the next FileWatch::changed(). One system call.
void SyncFileWatches();
