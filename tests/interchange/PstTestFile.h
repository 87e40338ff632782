#pragma once
// A small PST file (Unicode, unencrypted) written by the test itself, since
// no PST writer is at hand: the message store, a top folder, subfolders
// and messages, each a property context on its own data block; two index
// pages (blocks and nodes) of one leaf each. Only what a reader needs to
// walk the folder tree and read the properties; no attachments, no tables.
// Layout after the published PST format: header with the index roots at
// 0xD8..0xF0, 512-byte index pages with the entry count at 0x1E8 and the
// page's own id at 0x1F8, heap-on-node blocks with a property B-tree.

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QtEndian>

class PstTestFile
{
public:
    struct Prop {
        quint16 id;
        quint16 type;
        quint32 inlineValue = 0; // ints and booleans
        QByteArray data;         // the rest, on the heap
    };
    static Prop text(quint16 id, const QString &value)
    {
        QByteArray utf16(reinterpret_cast<const char *>(value.utf16()), value.size() * 2);
        return {id, 0x001F, 0, utf16};
    }
    static Prop int32(quint16 id, qint32 value) { return {id, 0x0003, quint32(value), {}}; }
    static Prop boolean(quint16 id, bool value) { return {id, 0x000B, value ? 1u : 0u, {}}; }
    static Prop time(quint16 id, const QDateTime &when)
    {
        const quint64 ticks = quint64(when.toSecsSinceEpoch() + Q_INT64_C(11644473600)) * 10000000ULL;
        QByteArray bytes(8, 0);
        qToLittleEndian(ticks, bytes.data());
        return {id, 0x0040, 0, bytes};
    }

    // The message store (node 0x21); name its top folder with entryIdOf.
    void addStore(const QList<Prop> &props) { m_nodes.append({0x21, 0, heapOnNode(props)}); }
    // Adds a folder (give it PR_CONTENT_COUNT 0x3602) or a message below
    // the parent node (0 for the top folder); returns its node id.
    quint32 add(quint32 parent, const QList<Prop> &props, bool folder)
    {
        const quint32 nid = folder ? 0x8002 + 0x20 * ++m_folders : 0x200004 + 0x20 * m_messages++;
        m_nodes.append({nid, parent, heapOnNode(props)});
        return nid;
    }

    // A message whose block holds the bytes as they are (a damaged one).
    quint32 addDamaged(quint32 parent, const QByteArray &block)
    {
        const quint32 nid = 0x200004 + 0x20 * m_messages++;
        m_nodes.append({nid, parent, block});
        return nid;
    }

    // The whole file.
    [[nodiscard]] QByteArray bytes() const
    {
        QList<Node> nodes = m_nodes;
        std::sort(nodes.begin(), nodes.end(), [](const Node &a, const Node &b) { return a.nid < b.nid; });
        QByteArray file(1024, 0);
        QByteArray bbt = page(), nbt = page();
        int entry = 0;
        for (const Node &node : nodes) {
            const quint64 bid = 4 * quint64(entry + 1);
            const quint64 offset = quint64(file.size());
            file += node.block;
            file += QByteArray((64 - node.block.size() % 64) % 64, 0);
            char *b = bbt.data() + entry * 24;
            qToLittleEndian(bid, b);
            qToLittleEndian(offset, b + 8);
            qToLittleEndian(quint16(node.block.size()), b + 16);
            qToLittleEndian(quint16(2), b + 18);
            char *n = nbt.data() + entry * 32;
            qToLittleEndian(quint64(node.nid), n);
            qToLittleEndian(bid, n + 8);
            qToLittleEndian(node.parent, n + 24);
            ++entry;
        }
        const quint64 bbtBid = 0x10001, nbtBid = 0x10005;
        finishPage(bbt, entry, 20, 24, 0x80, bbtBid);
        finishPage(nbt, entry, 15, 32, 0x81, nbtBid);
        file += QByteArray((512 - file.size() % 512) % 512, 0);
        const quint64 bbtOffset = quint64(file.size());
        file += bbt;
        const quint64 nbtOffset = quint64(file.size());
        file += nbt;
        char *h = file.data();
        memcpy(h, "!BDN", 4);
        memcpy(h + 8, "SM", 2);
        h[0x0A] = 0x17; // Unicode
        h[0x0C] = 19;
        qToLittleEndian(quint64(file.size()), h + 0xB8);
        qToLittleEndian(nbtBid, h + 0xD8);
        qToLittleEndian(nbtOffset, h + 0xE0);
        qToLittleEndian(bbtBid, h + 0xE8);
        qToLittleEndian(bbtOffset, h + 0xF0);
        h[0x201] = 0; // not encrypted
        return file;
    }

    // The entry id of a node, as the message store names its top folder.
    static Prop entryIdOf(quint16 id, quint32 nid)
    {
        QByteArray bytes(24, 0);
        qToLittleEndian(nid, bytes.data() + 20);
        return {id, 0x0102, 0, bytes};
    }

private:
    struct Node {
        quint32 nid;
        quint32 parent;
        QByteArray block;
    };

    static QByteArray page() { return QByteArray(512, 0); }

    static void finishPage(QByteArray &page, int count, int max, int size, char type, quint64 bid)
    {
        page[0x1E8] = char(count);
        page[0x1E9] = char(max);
        page[0x1EA] = char(size);
        page[0x1EB] = 0; // a leaf
        page[0x1F0] = type;
        page[0x1F1] = type;
        qToLittleEndian(bid, page.data() + 0x1F8);
    }

    // A heap whose first allocation is the B-tree header, the second the
    // property records, the others the values that do not fit in 4 bytes.
    static QByteArray heapOnNode(const QList<Prop> &props)
    {
        QList<QByteArray> allocations{QByteArray(8, 0), QByteArray()};
        for (const Prop &p : props) {
            QByteArray record(8, 0);
            qToLittleEndian(p.id, record.data());
            qToLittleEndian(p.type, record.data() + 2);
            quint32 value = p.inlineValue;
            if (!p.data.isEmpty()) {
                allocations.append(p.data);
                value = quint32(allocations.size()) << 5;
            }
            qToLittleEndian(value, record.data() + 4);
            allocations[1] += record;
        }
        allocations[0] = QByteArray("\xB5\x02\x06\x00", 4) + QByteArray(4, 0);
        qToLittleEndian(quint32(2) << 5, allocations[0].data() + 4);
        QByteArray block(12, 0);
        QList<quint16> starts;
        for (const QByteArray &a : allocations) {
            starts << quint16(block.size());
            block += a;
        }
        starts << quint16(block.size());
        if (block.size() % 2)
            block += '\0';
        const quint16 pageMap = quint16(block.size());
        QByteArray map(4 + 2 * starts.size(), 0);
        qToLittleEndian(quint16(allocations.size()), map.data());
        for (int i = 0; i < starts.size(); ++i)
            qToLittleEndian(starts[i], map.data() + 4 + 2 * i);
        block += map;
        qToLittleEndian(pageMap, block.data());
        block[2] = char(0xEC);
        block[3] = char(0xBC);
        qToLittleEndian(quint32(1) << 5, block.data() + 4);
        return block;
    }

    QList<Node> m_nodes;
    int m_folders = 0;
    int m_messages = 0;
};
