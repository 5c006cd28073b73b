#include "numericconv.h"
#include "codes.h"

#include <legacy/oru/bool.h>
#include <legacy/oru/coordinate.h>
#include <legacy/oru/enum.h>
#include <legacy/oru/numeric.h>
#include <legacy/oru/numericarray.h>

#include "geometry.h"

namespace Legacy {
namespace Oru {

int ReadSourceNumber(ItemBase const& source, unsigned int index, SourceNumber& out) {
    switch (source.GetType()) {
        case OruType_t::Bool: {
            // 1 or 0; a single flag has no index to look at.
            auto const* const from = dynamic_cast<BoolItem const*>(&source);
            if (!from) {
                return Codes::k_unsupported;
            }
            out.Set<U8Traits>(from->GetVal() ? 1 : 0);
            return 0;
        }
        case OruType_t::Enum: {
            auto const* const from = dynamic_cast<EnumItem const*>(&source);
            if (!from) {
                return Codes::k_unsupported;
            }
            out.Set<S32Traits>(from->GetVal());
            return 0;
        }
        case OruType_t::Numeric: {
            bool read = false;
            VisitNumericType(source.GetNumericType(), [&](auto tag) {
                using S = typename decltype(tag)::Traits;
                if (auto const* const from = dynamic_cast<NumericItem<S> const*>(&source)) {
                    out.Set<S>(from->GetVal());
                    read = true;
                }
            });
            return read ? Codes::k_ok : Codes::k_unsupported;
        }
        case OruType_t::NumericArray: {
            int code = Codes::k_unsupported;
            VisitNumericType(source.GetNumericType(), [&](auto tag) {
                using S = typename decltype(tag)::Traits;
                if (auto const* const from = dynamic_cast<NumericArrayItem<S> const*>(&source)) {
                    if (index < from->Val().size()) {
                        out.Set<S>(from->Val()[index]);
                        code = 0;
                    } else {
                        code = Codes::k_invalid;
                    }
                }
            });
            return code;
        }
        default:
            return Codes::k_unsupported;
    }
}

int ReadSourceRectangle(ItemBase const& source, SourceNumber (&out)[4]) {
    if (source.GetType() != OruType_t::Rectangle) {
        return Codes::k_unsupported;
    }
    bool const read = VisitGeometry<RectItem>(source, [&](auto const& from) {
        using S = typename std::decay_t<decltype(from)>::Traits;
        out[0].Set<S>(from.TopLeft()->X()->GetVal());
        out[1].Set<S>(from.TopLeft()->Y()->GetVal());
        out[2].Set<S>(from.BottomRight()->X()->GetVal());
        out[3].Set<S>(from.BottomRight()->Y()->GetVal());
    });
    return read ? Codes::k_ok : Codes::k_unsupported;
}

}  // namespace Oru
}  // namespace Legacy
