#include "replace/ReplaceFields.h"

#include <array>

namespace {

constexpr bool Date = true;

constexpr ReplaceField appointmentFields[] = {
    {"Beginn um", "Start", Date},
    {"Betreff", "Subject"},
    {"Endet um", "End", Date},
    {"Kategorien", "Categories"},
    {"Notiz", "Body"},
    {"Ort", "Location"},
};

constexpr ReplaceField taskFields[] = {
    {"Abrechnungsinfo", "BillingInformation"},
    {"Betreff", "Subject"},
    {"Erledigt am", "DateCompleted", Date},
    {"Fällig am", "DueDate", Date},
    {"Firmen", "Companies"},
    {"Kategorien", "Categories"},
    {"Kontaktnamen", "ContactNames"},
    {"Notiz", "Body"},
    {"Reisekilometer", "Mileage"},
    {"Start am", "StartDate", Date},
    {"Zuständig", "Role"},
};

// Mail, post and journal entries offer the same two fields.
constexpr ReplaceField subjectAndTextFields[] = {
    {"Betreff", "Subject"},
    {"Text", "Body"},
};

constexpr ReplaceField stickyNoteFields[] = {
    {"Text", "Body"},
};

// Captions ending in " !" change subfields of the contact when written. The
// typos ("Tefefon Firma") and the spelling "Fullname" are the list's own.
constexpr ReplaceField contactFields[] = {
    {"Abrechnungsinformationen", "BillingInformation"},
    {"Abteilung", "Department"},
    {"Adresse geschäftlich !", "BusinessAddress"},
    {"Adresse privat !", "HomeAddress"},
    {"Adresse weitere !", "OtherAddress"},
    {"Anrede", "Title"},
    {"Beruf", "Profession"},
    {"Betreff", "Subject"},
    {"Bundesland geschäftlich", "BusinessAddressState"},
    {"Bundesland privat", "HomeAddressState"},
    {"Bundesland weitere", "OtherAddressState"},
    {"Bürostandort", "OfficeLocation"},
    {"Computernetzwerkname", "ComputerNetworkName"},
    {"Email1 Adresse", "Email1Address"},
    {"Email1 Adresstyp", "Email1AddressType"},
    {"Email1 Anzeigename", "Email1DisplayName"},
    {"Email2 Adresse", "Email2Address"},
    {"Email2 Adresstyp", "Email2AddressType"},
    {"Email2 Anzeigename", "Email2DisplayName"},
    {"Email3 Adresse", "Email3Address"},
    {"Email3 Adresstyp", "Email3AddressType"},
    {"Email3 Anzeigename", "Email3DisplayName"},
    {"empfohlen von", "ReferredBy"},
    {"Faxnummer geschäftlich", "BusinessFaxNumber"},
    {"Faxnummer privat", "HomeFaxNumber"},
    {"Faxnummer weitere", "OtherFaxNumber"},
    {"FTP Seite", "FTPSite"},
    {"Geburtstag", "Birthday", Date},
    {"Hobby", "Hobby"},
    {"IM-Adresse", "IMAddress"},
    {"Initialen", "Initials"},
    {"Jahrestag", "Anniversary", Date},
    {"Kategorien", "Categories"},
    {"Kinder", "Children"},
    {"Konto", "Account"},
    {"Kunden-ID", "CustomerID"},
    {"Land geschäftlich", "BusinessAddressCountry"},
    {"Land privat", "HomeAddressCountry"},
    {"Land weitere", "OtherAddressCountry"},
    {"Nachname", "LastName"},
    {"Nachrichtenklasse", "MessageClass"},
    {"Name (vollständig) !", "Fullname"},
    {"Namenszusatz", "Suffix"},
    {"Netmeeting Alias", "NetMeetingAlias"},
    {"Netmeeting Server", "NetMeetingServer"},
    {"Notiz", "Body"},
    {"Organisationsnummer", "OrganizationalIDNumber"},
    {"Partner", "Spouse"},
    {"PLZ geschäftlich", "BusinessAddressPostalCode"},
    {"PLZ privat", "HomeAddressPostalCode"},
    {"PLZ weitere", "OtherAddressPostalCode"},
    {"Position", "JobTitle"},
    {"Postfach geschäftlich", "BusinessAddressPostOfficeBox"},
    {"Postfach privat", "HomeAddressPostOfficeBox"},
    {"Postfach weitere", "OtherAddressPostOfficeBox"},
    {"Regierungsnummer", "GovernmentIDNumber"},
    {"Reisekilometer", "Mileage"},
    {"Schedule+-Benutzer 1", "User1"},
    {"Schedule+-Benutzer 2", "User2"},
    {"Schedule+-Benutzer 3", "User3"},
    {"Schedule+-Benutzer 4", "User4"},
    {"Sekretär(in)", "AssistantName"},
    {"Speichern unter", "FileAs"},
    {"Spitzname", "NickName"},
    {"Stadt geschäftlich", "BusinessAddressCity"},
    {"Stadt privat", "HomeAddressCity"},
    {"Stadt weitere", "OtherAddressCity"},
    {"Straße geschäftlich", "BusinessAddressStreet"},
    {"Straße privat", "HomeAddressStreet"},
    {"Straße weitere", "OtherAddressStreet"},
    {"Tefefon Firma", "CompanyMainTelephoneNumber"},
    {"Telefon ISDN", "ISDNNumber"},
    {"Telefonnummer Auto", "CarTelephoneNumber"},
    {"Telefonnummer Funk", "RadioTelephoneNumber"},
    {"Telefonnummer geschäftlich", "BusinessTelephoneNumber"},
    {"Telefonnummer geschäftlich 2", "Business2TelephoneNumber"},
    {"Telefonnummer Haupt", "PrimaryTelephoneNumber"},
    {"Telefonnummer Mobil", "MobileTelephoneNumber"},
    {"Telefonnummer Pager", "PagerNumber"},
    {"Telefonnummer privat", "HomeTelephoneNumber"},
    {"Telefonnummer privat 2", "Home2TelephoneNumber"},
    {"Telefonnummer Rückmeldung", "CallbackTelephoneNumber"},
    {"Telefonnummer Sekretär(in)", "AssistantTelephoneNumber"},
    {"Telefonnummer weitere", "OtherTelephoneNumber"},
    {"Telexnummer", "TelexNumber"},
    {"Texttelefon", "TTYTDDTelephoneNumber"},
    {"Unternehmen", "Companies"},
    {"Unternehmensname", "CompanyName"},
    {"URL für Frei/Gebucht-Informationen", "InternetFreeBusyAddress"},
    {"Vorgesetzter", "ManagerName"},
    {"Vorname", "FirstName"},
    {"Webseite", "WebPage"},
    {"Webseite geschäftlich", "BusinessHomePage"},
    {"Webseite privat", "PersonalHomePage"},
    {"weitere Vorn.", "MiddleName"},
};

// Item Class numbers of the store.
constexpr int ClassAppointment = 26;
constexpr int ClassContact = 40;
constexpr int ClassJournal = 42;
constexpr int ClassMail = 43;
constexpr int ClassNote = 44;
constexpr int ClassPost = 45;
constexpr int ClassTask = 48;

constexpr auto noDate = ReplaceDateRule::EmptyMeansNoDate;

constexpr std::array<ReplaceItemType, 7> itemTypes{{
    {"IPM.Appointment", ClassAppointment, ReplaceDateRule::EmptyWritesNothing, appointmentFields},
    {"IPM.Task", ClassTask, noDate, taskFields},
    {"IPM.Note", ClassMail, noDate, subjectAndTextFields},
    {"IPM.Post", ClassPost, noDate, subjectAndTextFields},
    {"IPM.Activity", ClassJournal, noDate, subjectAndTextFields},
    {"IPM.StickyNote", ClassNote, noDate, stickyNoteFields},
    {"IPM.Contact", ClassContact, noDate, contactFields},
}};

static_assert(std::size(contactFields) == 95);
static_assert(std::size(taskFields) == 11);
static_assert(std::size(appointmentFields) == 6);

} // namespace

const ReplaceField *ReplaceItemType::field(int index) const
{
    if (index < 0 || index >= int(fields.size()))
        return nullptr;
    return &fields[size_t(index)];
}

const ReplaceItemType *ReplaceTypeForClass(const QString &folderClass)
{
    for (const ReplaceItemType &type : itemTypes) {
        if (folderClass == QLatin1String(type.folderClass))
            return &type;
    }
    return nullptr;
}

std::span<const ReplaceItemType> ReplaceItemTypes()
{
    return itemTypes;
}
