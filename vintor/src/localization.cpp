#include <vintor/localization.h>

#include <mutex>
#include <shared_mutex>
#include <unordered_map>

#include <boost/format.hpp>

#include <vintor/exception.h>

namespace Vintor {

namespace {

// English texts of the validation keys of the settings model. Keys are kept
// exactly as callers send them, misspellings included.
std::unordered_map<std::string, std::string> DefaultCatalogue() {
    return {
        {"TypesSystemValidateTypeMismatch",
         "Setting '%1%': the definition is of type %2%, the value of type %3%"},
        {"TypesSystemIllegalValidatationError",
         "Setting '%1%': a value of type %2% cannot be checked this way"},
        {"TypesSystemNumericValidationMin", "Setting '%1%': the value is below the minimum %2%"},
        {"TypesSystemNumericValidationMax", "Setting '%1%': the value is above the maximum %2%"},
        {"TypesSystemNumericArrayValidationMinSize",
         "Setting '%1%': the array has fewer than %2% elements"},
        {"TypesSystemNumericArrayValidationMaxSize",
         "Setting '%1%': the array has more than %2% elements"},
        {"TypesSystemStringArrayValidationMinSize",
         "Setting '%1%': the list has fewer than %2% strings"},
        {"TypesSystemStringArrayValidationMaxSize",
         "Setting '%1%': the list has more than %2% strings"},
        {"BoolArrayValidationMinSize",
         "Setting '%1%': the number of flags breaks the size bound %2%"},
        {"TypesSystemStringValidationLength",
         "Setting '%1%': the text is longer than %2% characters"},
        {"TypesSystemBoolValidationFixedVal", "Setting '%1%': the value must be %2%"},
        {"TypesSystemEnumValidationValue", "Setting '%1%': %2% is not an allowed value"},
        {"TypesSystemCompositeValidationSize",
         "Setting '%1%': %2% parts do not match the definition"},
        {"TypesSystemCompositeTypeMismatch", "Setting '%1%': part %2% has the wrong type"},
    };
}

struct Catalogue {
    std::shared_mutex mutex;
    std::unordered_map<std::string, std::string> texts = DefaultCatalogue();
};

Catalogue& TheCatalogue() {
    static Catalogue catalogue;
    return catalogue;
}

}  // namespace

struct LocalizationHelper::Impl {
    explicit Impl(std::string const& pattern) : format(pattern) {}
    boost::format format;
};

LocalizationHelper::LocalizationHelper(std::string const& pattern)
    : impl_(std::make_unique<Impl>(pattern)) {}
LocalizationHelper::LocalizationHelper(LocalizationHelper&&) noexcept = default;
LocalizationHelper& LocalizationHelper::operator=(LocalizationHelper&&) noexcept = default;
LocalizationHelper::~LocalizationHelper() = default;

LocalizationHelper& LocalizationHelper::operator%(std::string const& argument) {
    impl_->format % argument;
    return *this;
}

LocalizationHelper::operator std::string() const {
    return impl_->format.str();
}

LocalizationHelper Localization::GetString(std::string const& key, std::string const& selector) {
    Catalogue& catalogue = TheCatalogue();
    std::shared_lock<std::shared_mutex> lock(catalogue.mutex);
    if (!selector.empty()) {
        auto const variant = catalogue.texts.find(key + "@" + selector);
        if (variant != catalogue.texts.end()) {
            return LocalizationHelper(variant->second);
        }
    }
    auto const found = catalogue.texts.find(key);
    if (found == catalogue.texts.end()) {
        throw LocalizationError(
            "no text for message key '" + key + "'",
            CodeLocation(__FILE__, "Vintor::Localization::GetString", __LINE__));
    }
    return LocalizationHelper(found->second);
}

void Localization::SetString(std::string const& key, std::string const& pattern) {
    Catalogue& catalogue = TheCatalogue();
    std::unique_lock<std::shared_mutex> lock(catalogue.mutex);
    catalogue.texts[key] = pattern;
}

bool Localization::HasString(std::string const& key) {
    Catalogue& catalogue = TheCatalogue();
    std::shared_lock<std::shared_mutex> lock(catalogue.mutex);
    return catalogue.texts.count(key) != 0;
}

}  // namespace Vintor
