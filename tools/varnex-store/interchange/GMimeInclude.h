#pragma once
// GMime for files that also use Qt: GLib names a struct member "signals",
// which Qt defines as a macro.
#pragma push_macro("signals")
#undef signals
#include <gmime/gmime.h>
#pragma pop_macro("signals")
