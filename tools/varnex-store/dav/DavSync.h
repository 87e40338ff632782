#pragma once
// Two-way sync of a CardDAV/CalDAV account with its store in the profile.
//
// A sync goes collection by collection: first what changed on the server
// comes in (sync-collection of RFC 6578 where the server offers it, else
// the ETags of a PROPFIND; only changed resources are fetched, by multiget),
// then what changed in the store goes out (PUT with If-Match, If-None-Match: *
// for new items, DELETE with If-Match). Changes are told apart from the
// state of the last sync (DavState): a resource whose ETag differs changed
// on the server, an item whose change stamp and content hash differ changed
// in the store.
//
// Nothing is lost: when both sides changed (also when a write meets 412),
// the server's version goes into the folder and the local one into its
// subfolder "Konflikte"; a server delete of a locally changed item moves it
// there as well. The subfolder is not synced.
//
// Interrupted syncs: the sync token is kept only after all its changes
// are in the store; every item is saved before its state, and a resource
// found without state is matched to the item of its UID (equal content: no
// conflict), so that a sync killed at any point is settled by the next one.

#include "DavClient.h"
#include "DavState.h"

#include <functional>

struct DavSyncReport {
    int pulledNew = 0, pulledChanged = 0, pulledDeleted = 0;
    int pushedNew = 0, pushedChanged = 0, pushedDeleted = 0;
    QStringList conflicts; // German lines: what went to "Konflikte" and why
    QStringList skipped;   // resources or items that could not be taken
    // Called now and then: done of total steps of the collection named.
    std::function<void(int done, int total, const QString &collection)> progress;
    // The German report of the sync.
    [[nodiscard]] QString summary(const QString &account) const;
};

// Syncs every collection of the account. Throws DavError when the server
// cannot be reached or refuses the account, StoreError when the store fails;
// what was done until then stays done and is settled by the next sync.
void SyncDavAccount(DavState &state, const DavAccount &account, DavClient &client, DavSyncReport &report);

// Discovers the collections at the account's address, creates the store
// (named like the account) with a folder per collection (an address book
// a contacts folder, a calendar a folder per kind it holds: appointments,
// tasks, journal) and remembers the account. Returns the folder names.
// Throws DavError, or StoreError when a store of that name exists.
QStringList AddDavAccount(DavState &state, DavAccount account, DavClient &client);

// Forgets the account and takes its store out of the profile; the store
// file is kept under a new name, which is returned.
QString RemoveDavAccount(DavState &state, const DavAccount &account);
