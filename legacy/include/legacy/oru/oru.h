// Every public class and function of the settings model.
#ifndef LEGACY_ORU_ORU_H
#define LEGACY_ORU_ORU_H

#include <lanpath/lanpath.h>
#include <vintor/vintor.h>

#include <legacy/oru/addr.h>
#include <legacy/oru/appendpoint.h>
#include <legacy/oru/appprotocol.h>
#include <legacy/oru/bool.h>
#include <legacy/oru/catalogue.h>
#include <legacy/oru/collection.h>
#include <legacy/oru/colour.h>
#include <legacy/oru/composite.h>
#include <legacy/oru/coordinate.h>
#include <legacy/oru/creators.h>
#include <legacy/oru/enum.h>
#include <legacy/oru/export.h>
#include <legacy/oru/extended.h>
#include <legacy/oru/genericcontainer.h>
#include <legacy/oru/holdercontainers.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/infoitemdirectory.h>
#include <legacy/oru/infoitemdirectorydelta.h>
#include <legacy/oru/infoitemholderdefs.h>
#include <legacy/oru/itembase.h>
#include <legacy/oru/localizedstring.h>
#include <legacy/oru/localizedstringvalue.h>
#include <legacy/oru/numeric.h>
#include <legacy/oru/numericarray.h>
#include <legacy/oru/numericsparse.h>
#include <legacy/oru/rectarray.h>
#include <legacy/oru/result.h>
#include <legacy/oru/resultelem.h>
#include <legacy/oru/section.h>
#include <legacy/oru/sectionid.h>
#include <legacy/oru/sectionmap.h>
#include <legacy/oru/stringarray.h>
#include <legacy/oru/stringvalue.h>
#include <legacy/oru/traits.h>
#include <legacy/oru/types.h>
#include <legacy/oru/version.h>

#endif
