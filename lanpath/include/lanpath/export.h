// Symbol visibility of the net services library: everything is hidden unless
// marked. Class templates carry the mark on their declaration so that their
// explicit instantiations are exported with them.
#ifndef LANPATH_EXPORT_H
#define LANPATH_EXPORT_H

#define LANPATH_API __attribute__((visibility("default")))

#endif
