// The return codes of the model, named once. Operations answer them as plain
// ints (0 or negative); these names are for the code that returns or tests
// them, and Meaning() is what the oru program prints beside a number.
#ifndef LEGACY_ORU_SRC_CODES_H
#define LEGACY_ORU_SRC_CODES_H

namespace Legacy {
namespace Oru {
namespace Codes {

constexpr int k_ok = 0;
// The family has no serial form, or a child record failed.
constexpr int k_noSerialForm = -1;
// The numbers of a level or section are used up.
constexpr int k_exhausted = -22;
// The proposed default is not a member of the value set.
constexpr int k_notInValueSet = -23;
// No such element, id, name or section.
constexpr int k_notFound = -25;
// A source value that cannot be converted, or an operation the family lacks.
constexpr int k_unsupported = -26;
// The source pointer of an assignment or an insertion is null.
constexpr int k_nullSource = -31;
// The record or object pointer given is null.
constexpr int k_nullPointer = -32;
// MergeBounds between Infos of unequal type.
constexpr int k_typeMismatch = -36;
// A size outside the minimum and maximum size of the Info.
constexpr int k_sizeOutOfRange = -37;
// Invalid argument: a malformed or unknown record, an index out of range, a
// malformed section id, a change that would alter an id's name or type.
constexpr int k_invalid = -41;
// The name, number, id or element is already present.
constexpr int k_present = -47;
// The id is taken by another element of the container.
constexpr int k_idTaken = -51;
// The two ranges of MergeBounds do not overlap.
constexpr int k_disjoint = -55;

// A few words on a code, for people; "unknown code" for a number that is not
// one of the above.
inline char const* Meaning(int code) {
    switch (code) {
        case k_ok:
            return "success";
        case k_noSerialForm:
            return "no serial form, or a child record failed";
        case k_exhausted:
            return "the numbers of a level or section are used up";
        case k_notInValueSet:
            return "the default is not in the value set";
        case k_notFound:
            return "no such element, id, name or section";
        case k_unsupported:
            return "cannot convert, or the family has no such operation";
        case k_nullSource:
            return "null source";
        case k_nullPointer:
            return "null record or object";
        case k_typeMismatch:
            return "the types differ";
        case k_sizeOutOfRange:
            return "size outside the Info's range";
        case k_invalid:
            return "malformed or unknown record, or invalid argument";
        case k_present:
            return "already present";
        case k_idTaken:
            return "the id is taken";
        case k_disjoint:
            return "the ranges do not overlap";
        default:
            return "unknown code";
    }
}

}  // namespace Codes
}  // namespace Oru
}  // namespace Legacy

#endif
