#include "frame/FileWatch.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>

#include <atomic>
#include <cerrno>
#include <ctime>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <vector>

#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>
#if defined(__linux__)
#include <sys/inotify.h>
#endif

struct FileWatchSlot {
    QByteArray folder;                // encoded for the system calls
    QByteArray name;                  // the file's name in that folder
    QByteArray encodedPath;           // folder/name, for stat
    std::atomic<quint64> changes{0};  // counted by the watcher
    std::atomic<bool> watched{false}; // false: the events do not serve it
    int wd = -1;                      // the folder's watch; guarded by the watcher's mutex
};

namespace {

#if defined(__linux__)
constexpr uint32_t kMask = IN_MODIFY | IN_ATTRIB | IN_CLOSE_WRITE | IN_MOVED_FROM | IN_MOVED_TO | IN_CREATE
    | IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

// Whether an event on name concerns the watched file: the file itself, or
// the journal or log SQLite keeps beside a database.
bool concerns(const char *name, const QByteArray &watched)
{
    const qsizetype length = qsizetype(strlen(name));
    if (length < watched.size() || memcmp(name, watched.constData(), size_t(watched.size())) != 0)
        return false;
    const char *rest = name + watched.size();
    return *rest == '\0' || strcmp(rest, "-journal") == 0 || strcmp(rest, "-wal") == 0;
}
#endif

// The one watcher of the process. It lives as long as the process, so that
// its thread never sees it destroyed.
class Watcher
{
public:
    static Watcher *instance()
    {
        static Watcher *const watcher = new Watcher;
        return watcher;
    }

    // Watches the slot's folder; false when the events cannot serve it.
    bool watch(const std::shared_ptr<FileWatchSlot> &slot)
    {
#if defined(__linux__)
        std::lock_guard lock(m_mutex);
        if (m_fd < 0)
            return false;
        forget(*slot);
        const int wd = inotify_add_watch(m_fd, slot->folder.constData(), kMask);
        if (wd < 0)
            return false;
        slot->wd = wd;
        m_slots[wd].push_back(slot);
        slot->watched.store(true, std::memory_order_release);
        return true;
#else
        Q_UNUSED(slot);
        return false;
#endif
    }

    void release(FileWatchSlot &slot)
    {
        std::lock_guard lock(m_mutex);
        forget(slot);
    }

    void sync()
    {
        std::lock_guard lock(m_mutex);
        drain();
    }

private:
    Watcher()
    {
#if defined(__linux__)
        m_fd = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
        if (m_fd >= 0)
            std::thread([this] { run(); }).detach();
#endif
    }

    // Removes the slot from its folder's watch; the last one ends the watch.
    void forget(FileWatchSlot &slot)
    {
#if defined(__linux__)
        slot.watched.store(false, std::memory_order_release);
        const auto found = m_slots.find(slot.wd);
        slot.wd = -1;
        if (found == m_slots.end())
            return;
        std::erase_if(found->second, [&](const auto &s) { return s.get() == &slot; });
        if (found->second.empty()) {
            inotify_rm_watch(m_fd, found->first);
            m_slots.erase(found);
        }
#else
        Q_UNUSED(slot);
#endif
    }

    void run()
    {
        pollfd ready{m_fd, POLLIN, 0};
        for (;;) {
            if (poll(&ready, 1, -1) < 0 && errno != EINTR)
                return;
            std::lock_guard lock(m_mutex);
            drain();
        }
    }

    // Counts every queued event; the caller holds the mutex.
    void drain()
    {
#if defined(__linux__)
        alignas(inotify_event) char buffer[16384];
        for (;;) {
            const ssize_t length = read(m_fd, buffer, sizeof buffer);
            if (length <= 0)
                return; // EAGAIN: nothing more is queued
            for (ssize_t at = 0; at < length;) {
                const auto *event = reinterpret_cast<const inotify_event *>(buffer + at);
                at += ssize_t(sizeof(inotify_event) + event->len);
                take(*event);
            }
        }
#endif
    }

#if defined(__linux__)
    void take(const inotify_event &event)
    {
        if (event.mask & IN_Q_OVERFLOW) { // events were lost: anything may have changed
            for (auto &entry : m_slots)
                for (const auto &slot : entry.second)
                    slot->changes.fetch_add(1, std::memory_order_release);
            return;
        }
        const auto found = m_slots.find(event.wd);
        if (found == m_slots.end())
            return;
        if (event.mask & (IN_IGNORED | IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT)) {
            // The folder is gone or elsewhere: its files are asked directly
            // until they can be watched again.
            for (const auto &slot : found->second) {
                slot->wd = -1;
                slot->watched.store(false, std::memory_order_release);
                slot->changes.fetch_add(1, std::memory_order_release);
            }
            if (!(event.mask & IN_IGNORED))
                inotify_rm_watch(m_fd, event.wd);
            m_slots.erase(found);
            return;
        }
        if (event.len == 0)
            return;
        for (const auto &slot : found->second) {
            if (concerns(event.name, slot->name))
                slot->changes.fetch_add(1, std::memory_order_release);
        }
    }
#endif

    std::mutex m_mutex;
    int m_fd = -1;
    std::unordered_map<int, std::vector<std::shared_ptr<FileWatchSlot>>> m_slots; // by watch descriptor
};

qint64 nanoseconds(const timespec &t)
{
    return qint64(t.tv_sec) * 1000000000 + t.tv_nsec;
}

} // namespace

FileWatch::~FileWatch()
{
    release();
}

void FileWatch::release()
{
    if (m_slot)
        Watcher::instance()->release(*m_slot);
    m_slot.reset();
}

void FileWatch::setPath(const QString &path)
{
    release();
    m_path = path;
    m_fresh = true;
    m_byEvents = false;
    m_stamp.reset();
    if (path.isEmpty())
        return;
    const QFileInfo info(path);
    m_slot = std::make_shared<FileWatchSlot>();
    m_slot->folder = QFile::encodeName(info.absolutePath());
    m_slot->name = QFile::encodeName(info.fileName());
    m_slot->encodedPath = QFile::encodeName(info.absoluteFilePath());
    Watcher::instance()->watch(m_slot);
}

bool FileWatch::usesEvents() const
{
    return m_slot && m_slot->watched.load(std::memory_order_acquire);
}

bool FileWatch::changed()
{
    if (!m_slot)
        return false;
    if (m_slot->watched.load(std::memory_order_acquire)) {
        const quint64 count = m_slot->changes.load(std::memory_order_acquire);
        const bool result = m_fresh || count != m_seen;
        m_fresh = false;
        m_seen = count;
        m_byEvents = true;
        return result;
    }
    if (m_byEvents) { // the events stopped (the folder went): read anew
        m_byEvents = false;
        m_fresh = true;
    }
    const bool result = changedByStat();
    // A file that is there (again) may be watchable now; from then on the
    // events count, beginning with the reading this answer causes.
    if (result && Watcher::instance()->watch(m_slot))
        m_seen = m_slot->changes.load(std::memory_order_acquire);
    return result;
}

bool FileWatch::changedByStat()
{
    struct stat info{};
    std::optional<Stamp> now;
    if (::stat(m_slot->encodedPath.constData(), &info) == 0) {
        timespec clock{};
        clock_gettime(CLOCK_REALTIME, &clock);
        now = Stamp{qint64(info.st_dev), qint64(info.st_ino), qint64(info.st_size), nanoseconds(info.st_mtim),
                    nanoseconds(info.st_ctim), false};
        now->young = nanoseconds(clock) - now->modifiedNs < 1000000000;
    }
    const bool result = m_fresh || now.has_value() != m_stamp.has_value() || (now && !(*now == *m_stamp))
        || (now && now->young);
    m_fresh = false;
    m_stamp = now;
    return result;
}

void SyncFileWatches()
{
    Watcher::instance()->sync();
}
