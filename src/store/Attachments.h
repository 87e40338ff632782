#pragma once
// The attachments of an item. By value (olByValue, 1): the bytes live in the
// store. By reference (olByReference, 4): only the path of a file, read back
// by the property 0x3708001E (PR_ATTACH_PATHNAME). Hidden attachments carry
// 0x7FFE000B (PR_ATTACHMENT_HIDDEN) True. Adding and deleting change the
// item; they reach the file with its Save.

#include <QString>
#include <QVariant>

#include <memory>

struct ItemData;
struct AttachmentRecord;

class Attachment
{
public:
    Attachment() = default;
    Attachment(std::shared_ptr<ItemData> item, int key);

    [[nodiscard]] QString FileName() const;
    [[nodiscard]] QString DisplayName() const;
    [[nodiscard]] int Type() const;
    // Bytes of the content; 0 for a link.
    [[nodiscard]] qint64 Size() const;
    // 1-based position in the item's attachments.
    [[nodiscard]] int Index() const;
    // Writes the content to the file; a link copies its file. Throws
    // StoreError when the file cannot be written (also an existing one is
    // replaced, as the platform does) or a linked file is missing.
    void SaveAsFile(const QString &path) const;
    // The bytes of an attachment by value (exporters); empty for a link.
    [[nodiscard]] QByteArray Content() const;
    void Delete();
    // A MAPI property by tag: PR_ATTACH_PATHNAME (text, an invalid QVariant
    // when the attachment has no path) and PR_ATTACHMENT_HIDDEN (bool).
    // Other tags throw StoreError.
    [[nodiscard]] QVariant GetProperty(unsigned int tag) const;
    void SetProperty(unsigned int tag, const QVariant &value);
    void setHidden(bool hidden) { SetProperty(0x7FFE000B, hidden); }

private:
    AttachmentRecord &record() const;
    std::shared_ptr<ItemData> m_item;
    int m_key = 0; // the attachment's key within the item, stable while it lives
};

class Attachments
{
public:
    Attachments() = default;
    explicit Attachments(std::shared_ptr<ItemData> item);

    [[nodiscard]] int Count() const;
    // 1-based.
    [[nodiscard]] Attachment Item(int index) const;
    // Adds the file source: its bytes (olByValue) or its path (olByReference).
    // position: 1-based place among the attachments, 0 for the end.
    // displayName: "" for the file name. A missing source file throws
    // StoreError for olByValue; a link may point to a missing file.
    Attachment Add(const QString &source, int type = 1, int position = 0, const QString &displayName = QString());
    // Adds bytes that do not come from a file (importers, tests, the demo).
    Attachment AddData(const QByteArray &content, const QString &fileName, const QString &displayName = QString());
    void Remove(int index);

private:
    std::shared_ptr<ItemData> m_item;
};
