#pragma once
// Where the contact fields live in a vCard. Fields that share a vCard
// property (19 telephone numbers in TEL, three addresses in ADR ...) carry
// the parameter X-VX-FIELD with the field's name, so that a card written
// here comes back into the same field; a card from elsewhere is sorted by
// its TYPE values. Fields without a home here are written as X-VX-<Field>
// lines, user properties as X-VX-USER (ItemFields.h).

#include "ContentLine.h"

#include <QString>

#include <span>

enum class VCardVersion { V3, V4 };

// The parameter that names the store field of a shared vCard property.
inline constexpr char FieldParam[] = "X-VX-FIELD";
// The prefix of extension lines: X-VX-FILEAS, X-VX-USER, X-VX-MESSAGECLASS.
inline constexpr char ExtensionPrefix[] = "X-VX-";

struct SharedField {
    const char *property; // store field
    const char *types;    // TYPE values written (vCard 3.0 spelling), comma separated
};

// Telephone numbers in TEL, in the order a card from elsewhere fills them.
inline constexpr SharedField TelephoneFields[] = {
    {"BusinessTelephoneNumber", "WORK,VOICE"},
    {"Business2TelephoneNumber", "WORK,VOICE"},
    {"HomeTelephoneNumber", "HOME,VOICE"},
    {"Home2TelephoneNumber", "HOME,VOICE"},
    {"MobileTelephoneNumber", "CELL,VOICE"},
    {"BusinessFaxNumber", "WORK,FAX"},
    {"HomeFaxNumber", "HOME,FAX"},
    {"OtherFaxNumber", "FAX"},
    {"PagerNumber", "PAGER"},
    {"CarTelephoneNumber", "CAR,VOICE"},
    {"ISDNNumber", "ISDN"},
    {"TTYTDDTelephoneNumber", "TEXTPHONE"},
    {"PrimaryTelephoneNumber", "PREF,VOICE"},
    {"CompanyMainTelephoneNumber", "WORK,VOICE"},
    {"AssistantTelephoneNumber", "WORK,VOICE"},
    {"CallbackTelephoneNumber", "VOICE"},
    {"RadioTelephoneNumber", "VOICE"},
    {"TelexNumber", "VOICE"},
    {"OtherTelephoneNumber", "VOICE"},
};

inline constexpr SharedField EmailFields[] = {
    {"Email1Address", "INTERNET"},
    {"Email2Address", "INTERNET"},
    {"Email3Address", "INTERNET"},
};

// The address fields are prefixes of their parts (BusinessAddressCity ...).
inline constexpr SharedField AddressFields[] = {
    {"BusinessAddress", "WORK"},
    {"HomeAddress", "HOME"},
    {"OtherAddress", "OTHER"},
};

inline constexpr SharedField WebFields[] = {
    {"BusinessHomePage", "WORK"},
    {"PersonalHomePage", "HOME"},
    {"WebPage", ""},
};

// Contact fields with a vCard property of their own (one value each).
struct SingleField {
    const char *property; // store field
    const char *v3;       // vCard 3.0 property
    const char *v4;       // vCard 4.0 property (with its fixed parameters)
};
inline constexpr SingleField SingleFields[] = {
    {"NickName", "NICKNAME", "NICKNAME"},
    {"JobTitle", "TITLE", "TITLE"},
    {"Profession", "ROLE", "ROLE"},
    {"Body", "NOTE", "NOTE"},
    {"IMAddress", "IMPP", "IMPP"},
    {"InternetFreeBusyAddress", "FBURL", "FBURL"},
    {"Spouse", "X-SPOUSE", "RELATED;TYPE=spouse;VALUE=text"},
};
