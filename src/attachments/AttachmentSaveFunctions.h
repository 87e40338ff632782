#pragma once
// Attachment export: moves the attachments of mail and post items into files
// in the folder of the setting AttPath and leaves a link attachment (type 4,
// naming the file) in the place of each. The file names are made here.

#include <QString>

// The name without the nine characters \ / : * ? " < > | and NUL (all
// others stay in order), trimmed; "ohneName" when nothing remains.
[[nodiscard]] QString CleanFileName(const QString &name);

// The name cut to at most maxBytes bytes of UTF-8, the form file names take
// on the disk: the end of the stem goes, the extension (from the last ".",
// when it is shorter than half the room) stays, and no character is cut in
// two (nor a letter from its accent). A name that fits is returned as it is.
[[nodiscard]] QString FitFileName(const QString &name, int maxBytes);

// The longest file name in bytes that the folder's file system takes (255
// where it does not say).
[[nodiscard]] int FileNameLimit(const QString &folder);

// A path that does not exist yet: the path itself, or the path with "(1)",
// "(2)", ... set in front of its last "." (at the end when it has none). The
// last "." of the whole path counts, even one in a folder name. Anything at
// the path counts as existing: a file, a folder, or a link that points
// nowhere.
[[nodiscard]] QString UniqueFileName(const QString &path);

// The export (menu "&Anlagen speichern", bar key "Att"): every attachment by
// value of the mail and post items of the ticked folders that has at least
// AttSize KB and is not hidden goes into a file in AttPath and is replaced by
// a link to that file, which keeps the attachment's name as display name.
// A file is complete and on the disk before its attachment leaves the item.
// Failures are shown as error 1501.
void SaveAttachments();

// The re-import (menu "&Anlagen wiederherstellen..."): every link attachment
// of the ticked mail folders whose file exists becomes an attachment by value
// again, and the file is deleted once the item is saved. Links whose file is
// gone stay and are counted. Failures are shown as error 1502.
void ImportAttachments();

// The move (menu "Anlagen &verschieben..."): asks for a target folder and
// moves the linked files of the ticked mail folders there (numbered when the
// name is taken), renewing the links. Failures are shown as error 1503.
void MoveAttachments();
