// The net services: addresses, endpoints, URIs, the field parser, the protobuf
// messages (namespaces Net::Pb and Legacy::Oru::Pb) and the conversions to them.
#ifndef LANPATH_LANPATH_H
#define LANPATH_LANPATH_H

#include <lanpath/addr.h>
#include <lanpath/appendpoint.h>
#include <lanpath/appendpoint.pb.h>
#include <lanpath/endpoint.h>
#include <lanpath/endpoint.pb.h>
#include <lanpath/export.h>
#include <lanpath/parser.h>
#include <lanpath/pbconvert.h>
#include <lanpath/uri.h>

#endif
