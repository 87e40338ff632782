#pragma once
// Attachment export: moves the attachments of mail and post items into files
// in the folder of the setting AttPath and leaves a link attachment (type 4,
// naming the file) in the place of each. The file names are made here.

#include <QString>

// The name without the nine characters \ / : * ? " < > | (all others stay in
// order), trimmed; "ohneName" when nothing remains.
[[nodiscard]] QString CleanFileName(const QString &name);

// A path that does not exist yet: the path itself, or the path with "(1)",
// "(2)", ... set in front of its last "." (at the end when it has none). The
// last "." of the whole path counts, even one in a folder name. Anything at
// the path counts as existing: a file, a folder, or a link that points
// nowhere.
[[nodiscard]] QString UniqueFileName(const QString &path);
