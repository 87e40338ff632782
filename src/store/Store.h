#pragma once
// The mail store in one include: the object model (Application, NameSpace,
// MAPIFolder, Folders, Items, Item, UserProperties, Attachments, Recipient,
// Inspector, MAPITable, MAPIUtils), its constants and failure, profiles,
// the shared routines and the test faults.

#include "store/Application.h"
#include "store/Attachments.h"
#include "store/Inspector.h"
#include "store/Item.h"
#include "store/ItemSchema.h"
#include "store/Items.h"
#include "store/MAPIFolder.h"
#include "store/MAPITable.h"
#include "store/MAPIUtils.h"
#include "store/Profile.h"
#include "store/Recipient.h"
#include "store/StoreConstants.h"
#include "store/StoreError.h"
#include "store/StoreFaults.h"
#include "store/StoreRoutines.h"
#include "store/UserProperties.h"
