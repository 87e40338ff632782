// The blob of an item row: a version byte, then the properties as
// (property number, value) pairs, the numbers taken from the store's own
// dictionary of names (so that a later version with more properties reads
// the same file), then the user properties with their names. Values carry a
// tag byte; text is stored as UTF-16 so that decoding is a copy.
#include "store/ItemData_p.h"

#include "store/ItemSchema.h"
#include "store/StoreError.h"
#include "store/StoreFile_p.h"
#include "store/StoreTime_p.h"

#include <cstring>

namespace {

enum Tag : quint8 { TagNull = 0, TagText = 1, TagDate = 2, TagBool = 3, TagInt = 4, TagDouble = 5, TagBytes = 6 };

constexpr quint8 s_version = 1;

void putVarint(QByteArray &out, quint64 v)
{
    while (v >= 0x80) {
        out.append(char((v & 0x7F) | 0x80));
        v >>= 7;
    }
    out.append(char(v));
}

void putRaw(QByteArray &out, const void *p, qsizetype n)
{
    out.append(static_cast<const char *>(p), n);
}

void putValue(QByteArray &out, const QVariant &v)
{
    switch (v.typeId()) {
    case QMetaType::QString: {
        const QString s = v.toString();
        out.append(char(TagText));
        putVarint(out, quint64(s.size()));
        putRaw(out, s.constData(), s.size() * qsizetype(sizeof(QChar)));
        break;
    }
    case QMetaType::QDateTime: {
        // Local wall-clock time, as the user entered it: day number and
        // milliseconds of the day, free of time zones.
        const qint64 ms = EncodeStoreTime(v.toDateTime());
        out.append(char(TagDate));
        putRaw(out, &ms, sizeof ms);
        break;
    }
    case QMetaType::Bool:
        out.append(char(TagBool));
        out.append(char(v.toBool() ? 1 : 0));
        break;
    case QMetaType::Int:
    case QMetaType::LongLong: {
        const qint64 n = v.toLongLong();
        out.append(char(TagInt));
        putRaw(out, &n, sizeof n);
        break;
    }
    case QMetaType::Double: {
        const double d = v.toDouble();
        out.append(char(TagDouble));
        putRaw(out, &d, sizeof d);
        break;
    }
    case QMetaType::QByteArray: {
        const QByteArray b = v.toByteArray();
        out.append(char(TagBytes));
        putVarint(out, quint64(b.size()));
        out.append(b);
        break;
    }
    default:
        if (v.isValid()) {
            const QString s = v.toString();
            putValue(out, s);
        } else {
            out.append(char(TagNull));
        }
    }
}

class Reader
{
public:
    explicit Reader(const QByteArray &b) : m_p(b.constData()), m_end(b.constData() + b.size()) {}

    quint64 varint()
    {
        quint64 v = 0;
        for (int shift = 0; shift < 64; shift += 7) {
            const quint8 c = byte();
            v |= quint64(c & 0x7F) << shift;
            if (!(c & 0x80))
                return v;
        }
        damaged();
    }
    quint8 byte()
    {
        need(1);
        return quint8(*m_p++);
    }
    template<typename T> T raw()
    {
        T t;
        need(sizeof t);
        std::memcpy(&t, m_p, sizeof t);
        m_p += sizeof t;
        return t;
    }
    QVariant value()
    {
        switch (byte()) {
        case TagNull: return {};
        case TagText: {
            const qsizetype n = length(sizeof(QChar));
            QString s(n, Qt::Uninitialized);
            std::memcpy(s.data(), m_p, size_t(n) * sizeof(QChar));
            m_p += n * qsizetype(sizeof(QChar));
            return s;
        }
        case TagDate: {
            return DecodeItemTime(raw<qint64>());
        }
        case TagBool: return byte() != 0;
        case TagInt: return int(raw<qint64>());
        case TagDouble: return raw<double>();
        case TagBytes: {
            const qsizetype n = length(1);
            QByteArray b(m_p, n);
            m_p += n;
            return b;
        }
        default: damaged();
        }
    }
    // A count of entries that each take at least minBytes: one that the
    // bytes left cannot hold is damage, found before anything is allocated.
    quint64 count(quint64 minBytes)
    {
        const quint64 n = varint();
        if (n > quint64(m_end - m_p) / minBytes)
            damaged();
        return n;
    }
    bool atEnd() const { return m_p == m_end; }
    [[noreturn]] static void damaged()
    {
        throw StoreError(StoreErrCorrupt, QStringLiteral("Die Daten eines Elements sind beschädigt."));
    }

private:
    // The length of a run of units of unitSize bytes that must lie in the
    // bytes left; compared before multiplying, so that no length overflows.
    qsizetype length(quint64 unitSize)
    {
        const quint64 n = varint();
        if (n > quint64(m_end - m_p) / unitSize)
            damaged();
        return qsizetype(n);
    }
    void need(qsizetype n)
    {
        if (m_end - m_p < n)
            damaged();
    }
    const char *m_p;
    const char *m_end;
};

} // namespace

QDateTime DecodeItemTime(qint64 code)
{
    if (!IsStoreTimeInRange(code))
        Reader::damaged();
    return DecodeStoreTime(code);
}

QByteArray EncodeItem(const ItemData &item, const StoreFile &store)
{
    QByteArray out;
    out.reserve(512);
    out.append(char(s_version));
    putVarint(out, quint64(item.props.size() + item.foreign.size()));
    for (const auto &[slot, value] : item.props) {
        putVarint(out, quint64(store.pidOfSlot(slot)));
        putValue(out, value);
    }
    for (const auto &[pid, value] : item.foreign) {
        putVarint(out, quint64(pid));
        putValue(out, value);
    }
    putVarint(out, quint64(item.userProps.size()));
    for (const UserPropRecord &u : item.userProps) {
        putValue(out, u.name);
        out.append(char(u.type));
        putValue(out, u.value);
    }
    return out;
}

// Decodes into fresh containers and takes them over only when the whole blob
// has been read: a damaged item keeps its bytes and is refused, never
// half-read (and so never written back from what could be read).
void DecodeItem(ItemData &item, const StoreFile &store)
{
    if (item.blob.isEmpty()) {
        item.props.clear();
        item.foreign.clear();
        item.userProps.clear();
        item.decoded = true;
        return;
    }
    Reader in(item.blob);
    if (in.byte() != s_version)
        throw StoreError(StoreErrCorrupt, QStringLiteral("Ein Element wurde von einer neueren Programmversion geschrieben."));
    // A property takes at least its number and a tag byte, a user property
    // a name, a type and a value.
    const quint64 count = in.count(2);
    std::vector<std::pair<int, QVariant>> props;
    std::vector<std::pair<qint64, QVariant>> foreign;
    props.reserve(size_t(count));
    for (quint64 i = 0; i < count; ++i) {
        const qint64 pid = qint64(in.varint());
        QVariant value = in.value();
        const int slot = store.slotOfPid(pid);
        if (slot >= 0)
            props.emplace_back(slot, std::move(value));
        else
            foreign.emplace_back(pid, std::move(value));
    }
    const auto bySlot = [](const auto &a, const auto &b) { return a.first < b.first; };
    if (!std::is_sorted(props.begin(), props.end(), bySlot))
        std::sort(props.begin(), props.end(), bySlot);
    const quint64 users = in.count(3);
    QList<UserPropRecord> userProps;
    userProps.reserve(qsizetype(users));
    for (quint64 i = 0; i < users; ++i) {
        UserPropRecord u;
        u.name = in.value().toString();
        u.type = in.byte();
        u.value = in.value();
        userProps << u;
    }
    if (!in.atEnd())
        Reader::damaged();
    item.props = std::move(props);
    item.foreign = std::move(foreign);
    item.userProps = std::move(userProps);
    item.blob = QByteArray(); // decoded: the bytes are no longer needed
    item.decoded = true;
}
