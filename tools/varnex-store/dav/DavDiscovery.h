#pragma once
// Finding the address books and calendars of an account from the address
// the user gave: the address itself when it is a collection, else the
// principal of the user (current-user-principal on the address, then on
// /.well-known/carddav and /.well-known/caldav), its addressbook-home-set
// and calendar-home-set, and the collections below them.

#include "DavClient.h"

struct DavCollectionInfo {
    QString href; // percent-decoded path, ends in /
    QString name; // displayname, else the last segment of the path
    bool addressBook = false;
    QStringList components; // of a calendar: VEVENT, VTODO, VJOURNAL
    bool syncCollection = false; // offers the sync-collection report
};

// Throws DavError with a German text when nothing is found.
[[nodiscard]] QList<DavCollectionInfo> DiscoverCollections(DavClient &client);
