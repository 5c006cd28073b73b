// Symbol visibility of the base library: everything is hidden unless marked.
#ifndef VINTOR_EXPORT_H
#define VINTOR_EXPORT_H

// Every public header includes this one, so that an older language mode stops
// here with one line rather than deep inside a header. A missing include is
// the one diagnostic compilers treat as fatal (after #error they go on).
#if __cplusplus < 201703L
#include "Oru needs C++17: compile with -std=c++17 or later"
#endif

#define VINTOR_API __attribute__((visibility("default")))

#endif
