// Symbol visibility of the model library: everything is hidden unless marked.
// Class templates carry the mark on their declaration so that their explicit
// instantiations, vtables and type info are exported with them.
#ifndef LEGACY_ORU_EXPORT_H
#define LEGACY_ORU_EXPORT_H

// Every public header includes this one, so that an older language mode stops
// here with one line rather than deep inside a header. A missing include is
// the one diagnostic compilers treat as fatal (after #error they go on).
#if __cplusplus < 201703L
#include "Oru needs C++17: compile with -std=c++17 or later"
#endif

#define ORU_API __attribute__((visibility("default")))

#endif
