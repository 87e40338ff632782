#pragma once
// Many saves of one store in one transaction, for imports of thousands of
// items: each Save inside the batch is a step of its own (a failed Save
// undoes only itself), and commit() writes the steps so far at once. What
// is not committed when the batch ends without commit (a kill, a crash)
// never reaches the file, so the store holds whole items only. Changes are
// seen by other programs after the commit.

#include <memory>

class MAPIFolder;
class StoreFile;

class StoreBatch
{
public:
    // Begins a batch on the store of the folder.
    explicit StoreBatch(const MAPIFolder &folder);
    // Commits what the batch holds; an error here is swallowed (use
    // commit() to see it).
    ~StoreBatch();
    StoreBatch(const StoreBatch &) = delete;
    StoreBatch &operator=(const StoreBatch &) = delete;

    // Writes the saves so far and begins anew. Throws StoreError when the
    // commit fails (then the saves since the last commit are gone).
    void commit();

private:
    std::shared_ptr<StoreFile> m_store;
    bool m_open = false;
};
