// Result: the failed checks of one validation run under one caller-chosen
// id, in insertion order, with questions about their severities and a way
// to log them. Grows only. Readers may share it while nobody adds.
//
// Threads: a Result may be read by several threads while nobody writes it;
// LogResults takes the lock of the logger it is given while a record is open.
#ifndef LEGACY_ORU_RESULT_H
#define LEGACY_ORU_RESULT_H

#include <memory>
#include <string>
#include <vector>

#include <vintor/logging.h>
#include <vintor/severity.h>

#include <legacy/oru/export.h>
#include <legacy/oru/resultelem.h>

namespace Legacy {
namespace Oru {

class ORU_API Result {
public:
    using Elements = std::vector<std::shared_ptr<ResultElem const>>;

    explicit Result(unsigned int id);
    // Shares the elements of other.
    Result(Result const& other);
    Result& operator=(Result const&) = default;

    // A copy in a new shared_ptr.
    virtual std::shared_ptr<Result> Clone() const;
    virtual ~Result();

    // Appends the element; a null one is dropped.
    void AddResultElem(std::shared_ptr<ResultElem const> element);
    // Appends each non-null element whose severity is not below minimum.
    void AddResults(Elements const& elements, Vintor::SeverityLevel_t minimum);
    // The same with the elements of other; nothing for null or this object.
    void AddResults(std::shared_ptr<Result const> const& other, Vintor::SeverityLevel_t minimum);

    unsigned int const& GetId() const noexcept { return id_; }
    Elements const& GetResultArray() const noexcept { return results_; }
    unsigned long long GetNumResults() const noexcept { return results_.size(); }
    // True if any element's severity is not below level.
    bool ContainsResultOfSeverity(Vintor::SeverityLevel_t level) const noexcept;
    // Elements have no promptable kind: always false.
    bool ContainsPromptableResultElem() const noexcept { return false; }
    // Nothing to remove: elements have no promptable kind.
    void RemovePromptableResultElems() noexcept {}

    // Writes one record per element whose level the logger enables; the
    // message is prefix followed by the element's (empty) text, with a
    // "Location" attribute.
    void LogResults(std::shared_ptr<Vintor::LoggerFacade> logger, std::string const& prefix) const;

private:
    unsigned int id_;
    Elements results_;
};

}  // namespace Oru
}  // namespace Legacy

#endif
