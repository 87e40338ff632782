#pragma once
// Message class change: gives every item of the ticked folders another custom
// form, or its standard form back. The user types only the short name of the
// form; each item keeps its base class ("IPM.Contact", ...) and gets the name
// appended.

#include <QString>

// The base class of an item of the given Class number whose MessageClass is
// messageClass: "IPM.Appointment" (26), "IPM.Contact" (40), "IPM.Task" (48),
// "IPM.Note" (43), "IPM.Post" (45), "IPM.Distlist" (69), "IPM.Activity" (42),
// provided that messageClass begins with it, exact in case. "" for any other
// Class (a note, 44) or a message class that does not begin with its base.
[[nodiscard]] QString BaseClassFor(int itemClass, const QString &messageClass);

// The class that the change gives an item: the base class, ".", and the name
// trimmed at both ends; the bare base class when the trimmed name is empty.
[[nodiscard]] QString NewMessageClass(const QString &baseClass, const QString &name);

class Item;
class MAPIFolder;

// The base class of the item (see BaseClassFor); "" if it has none.
[[nodiscard]] QString GetBaseClass(const Item &item);

// The run (dialog frmMClassChange): every item of the ticked folders, of any
// type, gets its base class with the name appended. No closing message; a
// failure of the run itself is shown as error 1001.
void ChangeMessageClass(const QString &name);

// The run over one folder. A failing item does not stop it: the item stays
// as it was, and the last failure is shown once for the folder (error 1002)
// when the folder is done. An empty folder is reported in a box that closes
// by itself after 5 seconds.
void ChangeFolderClass(const MAPIFolder &folder, const QString &name);
