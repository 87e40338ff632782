#include "attachments/AttachmentSaveFunctions.h"

#include <QFileInfo>

namespace {

bool pathTaken(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

} // namespace

QString CleanFileName(const QString &name)
{
    static const QString forbidden = QStringLiteral("\\/:*?\"<>|");
    QString kept;
    kept.reserve(name.size());
    for (const QChar c : name) {
        if (!forbidden.contains(c))
            kept.append(c);
    }
    kept = kept.trimmed();
    return kept.isEmpty() ? QStringLiteral("ohneName") : kept;
}

QString UniqueFileName(const QString &path)
{
    if (!pathTaken(path))
        return path;
    const qsizetype dot = path.lastIndexOf(u'.');
    const QString stem = dot < 0 ? path : path.left(dot);
    const QString extension = dot < 0 ? QString() : path.mid(dot);
    for (qint64 n = 1;; ++n) {
        const QString candidate = stem + u'(' + QString::number(n) + u')' + extension;
        if (!pathTaken(candidate))
            return candidate;
    }
}
