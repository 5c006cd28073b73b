// Symbol visibility of the base library: everything is hidden unless marked.
#ifndef VINTOR_EXPORT_H
#define VINTOR_EXPORT_H

#define VINTOR_API __attribute__((visibility("default")))

#endif
