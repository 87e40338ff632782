#include "folders/FolderFunctions.h"

#include "folders/FolderState.h"
#include "folders/FolderTreeNodes.h"
#include "frame/GlobalFunctions.h"
#include "folders/FolderStructureFunctions.h"
#include "store/Application.h"
#include "store/Items.h"
#include "store/StoreError.h"

namespace {

const QString IpmNote = QStringLiteral("IPM.Note");
const QString IpmPost = QStringLiteral("IPM.Post");

// Whether a folder of this default class is acceptable for folderKind, and
// the message for one that is not.
struct KindTest {
    QStringList classes; // empty: every class passes
    QString refusal;
};

KindTest kindTest(const QString &folderKind)
{
    const QString sameKind = QStringLiteral("Bitte wählen Sie für diese Funktion nur gleichartige Ordner aus.");
    if (folderKind == QLatin1String(FolderKind::OnlyContacts))
        return {{QStringLiteral("IPM.Contact")},
                QStringLiteral("Bitte wählen Sie für diese Funktion ausschließlich Kontakte-Ordner aus.")};
    if (folderKind == QLatin1String(FolderKind::OnlyAppointment))
        return {{QStringLiteral("IPM.Appointment")},
                QStringLiteral("Bitte wählen Sie für diese Funktion ausschließlich Kalender-Ordner aus.")};
    if (folderKind == QLatin1String(FolderKind::OnlyMail))
        return {{IpmNote, IpmPost},
                QStringLiteral("Bitte wählen Sie für diese Funktion ausschließlich Mail-Ordner aus.")};
    if (folderKind == QLatin1String(FolderKind::AllTypes))
        return {{}, QString()};
    if (folderKind == IpmNote)
        return {{IpmNote, IpmPost}, sameKind};
    return {{folderKind}, sameKind};
}

void hint(const QString &text)
{
    ShowMessage(text, MsgExclamation, QStringLiteral("Hinweis!"));
}

// The one folder of another user is the whole selection: no test of its
// kind and none for an empty folder.
FolderSelection sharedSelection(const MAPIFolder &folder)
{
    FolderSelection selection;
    selection.folders = {folder};
    selection.itemCount = folder.Items().Count();
    selection.markedIndex = 0;
    selection.ok = true;
    return selection;
}

// The ticked folders in node order; false when the user declined to tick the
// marked node.
bool collectTicked(FolderTreeNodes &tree, FolderSelection &selection)
{
    const int marked = tree.selectedIndex();
    if (!tree.isChecked(marked)) {
        if (ShowMessage(QStringLiteral("Der markierte Ordner ist nicht aktiviert. Möchten Sie Ihn aktivieren?"),
                        MsgQuestion, QStringLiteral("Frage?"))
            != AnswerYes)
            return false;
        tree.setChecked(marked, true);
    }
    const int count = tree.nodeCount();
    for (int i = 1; i <= count; ++i) {
        if (!tree.isChecked(i))
            continue;
        if (i == marked)
            selection.markedIndex = int(selection.folders.size());
        selection.folders.append(GetFolderByKey(tree.nodeKey(i)));
    }
    return true;
}

} // namespace

MAPIFolder GetFolderByKey(const QString &key)
{
    bool numeric = false;
    const int number = key.mid(1).toInt(&numeric);
    if (!numeric)
        throw StoreError(13, QStringLiteral("Typen unverträglich"));
    if (number < 0 || number > MaxFolderNodes)
        throw StoreError(6, QStringLiteral("Überlauf"));
    const FolderState &state = FolderData();
    const NameSpace nameSpace = Application().GetNamespace(QStringLiteral("MAPI"));
    return nameSpace.GetFolderFromID(state.entryIDs.value(number), state.storeIDs.value(number));
}

QString GetSelectedFolderClass()
{
    const FolderState &state = FolderData();
    try {
        if (!state.sharedFolder.isNull())
            return state.sharedFolder.DefaultMessageClass();
        const int marked = state.tree ? state.tree->selectedIndex() : 0;
        if (marked == 0)
            return QString();
        return GetFolderByKey(state.tree->nodeKey(marked)).DefaultMessageClass();
    } catch (const StoreError &error) {
        ShowError(error.description(), error.number(), 55);
        return QString();
    }
}

FolderSelection CollectFolders(const QString &folderKind, bool allowEmpty)
{
    const FolderState &state = FolderData();
    FolderSelection selection;
    try {
        if (!state.sharedFolder.isNull())
            return sharedSelection(state.sharedFolder);
        // No marked node (an empty tree, or one just read): nothing to do,
        // and nothing to say.
        if (!state.tree || state.tree->selectedIndex() == 0)
            return selection;
        if (!collectTicked(*state.tree, selection))
            return selection;
        const KindTest test = kindTest(folderKind);
        if (!test.classes.isEmpty()) {
            for (const MAPIFolder &folder : std::as_const(selection.folders)) {
                if (!test.classes.contains(folder.DefaultMessageClass())) {
                    hint(test.refusal);
                    return selection;
                }
            }
        }
        for (const MAPIFolder &folder : std::as_const(selection.folders))
            selection.itemCount += folder.Items().Count();
        if (selection.itemCount == 0 && !allowEmpty) {
            hint(QStringLiteral("Keine Elemente vorhanden."));
            return selection;
        }
        selection.ok = true;
    } catch (const StoreError &error) {
        // A folder gone since the tree was read: the box tells the user, and
        // no run starts from a half-filled list.
        ShowError(error.description(), error.number(), 55);
        selection.ok = false;
    }
    return selection;
}
