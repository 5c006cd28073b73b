// Symbol visibility of the model library: everything is hidden unless marked.
// Class templates carry the mark on their declaration so that their explicit
// instantiations, vtables and type info are exported with them.
#ifndef LEGACY_ORU_EXPORT_H
#define LEGACY_ORU_EXPORT_H

#define ORU_API __attribute__((visibility("default")))

#endif
