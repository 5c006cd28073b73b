// All of the base services.
#ifndef VINTOR_VINTOR_H
#define VINTOR_VINTOR_H

#include <vintor/atomic32.h>
#include <vintor/codelocation.h>
#include <vintor/colour.h>
#include <vintor/exception.h>
#include <vintor/export.h>
#include <vintor/intrusivebase.h>
#include <vintor/localization.h>
#include <vintor/logging.h>
#include <vintor/noncopyable.h>
#include <vintor/severity.h>
#include <vintor/strptrlen.h>

#endif
