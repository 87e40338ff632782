// The demo contacts: every form of name and number the runs have to cope with.
#include "DemoData.h"

#include "store/Store.h"

namespace {

struct DemoContact {
    const char *fullName;
    const char *company;
    const char *business;
    const char *mobile;
    const char *home;
    const char *fax;
    const char *address;
    const char *email;
    const char *birthday;
};

// Full names in all forms, numbers typed in all ways, companies.
const DemoContact s_contacts[] = {
    {"Dr. Hans-Peter Müller", "Müller GmbH & Co. KG", "089/1234-56", "0171 1234567", "", "089/1234-99",
     "Leopoldstr. 12\r\n80802 München", "hp.mueller@mueller-kg.example", "14.03.1961"},
    {"Müller, Hans", "", "", "+49 171 7654321", "(089) 55 66 77", "", "Sendlinger Str. 3\r\n80331 München",
     "hans.mueller@example.de", ""},
    {"Prof. Dr. med. Anna von Berg", "Klinikum Nord", "+49 (30) 123456-0", "0160-98765432", "", "+49 (30) 123456-99",
     "Charitéplatz 1\r\n10117 Berlin", "a.vonberg@klinikum-nord.example", "02.09.1968"},
    {"Sabine Schulze", "", "", "01522 3344556", "040 / 22 33 44", "", "Mönckebergstr. 7\r\n20095 Hamburg",
     "sabine.schulze@example.de", "30.11.1985"},
    {"Schmidt, Karl Otto", "Schmidt Elektro", "0711 98 76 54", "", "07 11 / 12 34 56", "0711 98 76 55",
     "Königstr. 20\r\n70173 Stuttgart", "k.schmidt@schmidt-elektro.example", ""},
    {"Urs Meier", "Meier AG", "0041 44 1234567", "+41 79 123 45 67", "", "0041 44 1234568",
     "Bahnhofstrasse 3\r\n8001 Zürich\r\nSchweiz", "urs.meier@meier-ag.example", "21.06.1972"},
    {"Mag. Eva Huber", "", "+43 1 5123456", "0664 1234567", "", "", "Kärntner Straße 5\r\n1010 Wien\r\nÖsterreich",
     "eva.huber@example.at", ""},
    {"Weber, Thomas", "Weber & Söhne", "0221 / 4 56 78-0", "0175 2345678", "", "Fax: 0221 45678-99",
     "Hohe Str. 40\r\n50667 Köln", "t.weber@weber-soehne.example", "05.01.1979"},
    {"Fischer Julia", "", "", "0176 34 56 78 90", "0351 8877665", "", "Prager Str. 1\r\n01069 Dresden",
     "julia.fischer@example.de", ""},
    {"Herr Michael Wagner jun.", "Wagner Logistik", "06172-123456", "", "", "06172 123457",
     "Industriestr. 9\r\n61348 Bad Homburg", "m.wagner@wagner-logistik.example", ""},
    {"Müller GmbH & Co. KG", "", "089 1234560", "", "", "089 1234599", "Leopoldstr. 12\r\n80802 München",
     "info@mueller-kg.example", ""},
    {"Stefanie Becker", "Stadtwerke Bonn", "0228 711-0", "0151 11223344", "", "", "Sandkaule 2\r\n53111 Bonn",
     "s.becker@stadtwerke-bonn.example", "17.07.1990"},
    {"Lukas Hoffmann", "", "", "0049 172 9988776", "030-44556677", "", "Kastanienallee 30\r\n10435 Berlin",
     "lukas.hoffmann@example.de", ""},
    {"Dipl.-Ing. Frank Schäfer", "Schäfer Planung", "0611/3 45 67", "0170 5566778", "", "0611/3 45 68",
     "Wilhelmstr. 15\r\n65183 Wiesbaden", "f.schaefer@schaefer-planung.example", ""},
    {"Claudia Koch", "", "", "+49(0)160 4455667", "0911 223344", "", "Königstr. 2\r\n90402 Nürnberg",
     "claudia.koch@example.de", "09.02.1983"},
    {"Notdienst Hausverwaltung", "Hausverwaltung Richter", "110", "", "", "", "", "notdienst@richter.example", ""},
    {"Sekretariat", "Bauer Consulting", "030 1234 5678 ext 12", "", "", "", "Unter den Linden 10\r\n10117 Berlin",
     "sekretariat@bauer.example", ""},
    {"Jana Wolf", "", "", "0172-ABCDEF", "", "", "", "jana.wolf@example.de", ""},
};

// Contacts that lie in "Kontakte Alt" once more, with small differences.
const int s_duplicatedInOld[] = {0, 3, 5, 11};

void fillContact(Item &item, const DemoContact &c, int age)
{
    item.set(QStringLiteral("FullName"), QString::fromUtf8(c.fullName));
    item.set(QStringLiteral("CompanyName"), QString::fromUtf8(c.company));
    item.set(QStringLiteral("BusinessTelephoneNumber"), QString::fromUtf8(c.business));
    item.set(QStringLiteral("MobileTelephoneNumber"), QString::fromUtf8(c.mobile));
    item.set(QStringLiteral("HomeTelephoneNumber"), QString::fromUtf8(c.home));
    item.set(QStringLiteral("BusinessFaxNumber"), QString::fromUtf8(c.fax));
    item.set(QStringLiteral("BusinessAddress"), QString::fromUtf8(c.address));
    item.set(QStringLiteral("Email1Address"), QString::fromUtf8(c.email));
    item.set(QStringLiteral("Birthday"), QString::fromUtf8(c.birthday));
    const QString last = item.text(QStringLiteral("LastName"));
    const QString first = item.text(QStringLiteral("FirstName"));
    item.set(QStringLiteral("FileAs"), first.isEmpty() ? QString::fromUtf8(c.fullName) : last + QStringLiteral(", ") + first);
    item.set(QStringLiteral("CreationTime"), DemoTime(age));
}

} // namespace

int FillDemoContacts(const MAPIFolder &contacts, const MAPIFolder &old)
{
    int count = 0;
    int age = 900;
    for (const DemoContact &c : s_contacts) {
        Item item = contacts.Items().Add();
        fillContact(item, c, age -= 37);
        item.Save();
        ++count;
    }
    for (int index : s_duplicatedInOld) {
        Item item = old.Items().Add();
        fillContact(item, s_contacts[index], 1400 + index);
        item.set(QStringLiteral("Body"), QStringLiteral("Aus dem alten Adressbuch übernommen."));
        if (index == 5)
            item.set(QStringLiteral("BusinessTelephoneNumber"), QStringLiteral("+41 (44) 123 45 67"));
        item.Save();
        ++count;
    }
    // The same person twice in one folder, typed differently.
    Item twin = contacts.Items().Add();
    fillContact(twin, s_contacts[3], 20);
    twin.set(QStringLiteral("MobileTelephoneNumber"), QStringLiteral("+49 1522 3344556"));
    twin.Save();
    ++count;

    Item list = contacts.Items().Add(olDistributionList);
    list.set(QStringLiteral("DLName"), QStringLiteral("Projektteam Umbau"));
    list.setSubject(QStringLiteral("Projektteam Umbau"));
    list.set(QStringLiteral("MemberCount"), 4);
    list.Save();
    return count;
}
