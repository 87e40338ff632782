#pragma once
// How store files write their transactions. The default is the write-ahead
// log with synchronous NORMAL: a commit is one append to the log, so a
// program that is killed loses nothing it saved, and a power failure can
// lose the last commits but never leaves a half item. FULL adds a flush to
// the disk at every commit; the rollback journal is the classic mode. The
// benchmark measures all three (figures in the README). Applies to stores
// opened afterwards.

enum class StoreDurability { WalNormal, WalFull, RollbackFull };

void SetStoreDurability(StoreDurability durability);
[[nodiscard]] StoreDurability CurrentStoreDurability();
