#include <legacy/oru/localizedstring.h>

#include <exception>

#include <vintor/localization.h>

namespace Legacy {
namespace Oru {

LocalizedString::LocalizedString() : arguments_(new Arguments()) {}

LocalizedString::LocalizedString(std::string const& key) : key_(key), arguments_(new Arguments()) {}

LocalizedString::LocalizedString(LocalizedString const& other)
    : key_(other.key_), arguments_(new Arguments(*other.arguments_)) {}

LocalizedString const& LocalizedString::operator=(LocalizedString const& other) {
    if (this != &other) {
        key_ = other.key_;
        *arguments_ = *other.arguments_;
    }
    return *this;
}

LocalizedString::~LocalizedString() {
    delete arguments_;
}

bool LocalizedString::operator==(LocalizedString const& other) const {
    return key_ == other.key_ && *arguments_ == *other.arguments_;
}

void LocalizedString::AddArgument(boost::intrusive_ptr<ItemBase const> const& argument) {
    arguments_->push_back(argument);
}

void LocalizedString::SetKey(std::string const& key) {
    if (&key != &key_) {
        key_ = key;
    }
}

std::string LocalizedString::GetString(std::string const& selector) const {
    if (key_.empty()) {
        return std::string();
    }
    try {
        Vintor::LocalizationHelper helper = Vintor::Localization::GetString(key_, selector);
        for (auto const& argument : *arguments_) {
            helper % argument->GetValAsString();
        }
        return static_cast<std::string>(helper);
    } catch (std::exception const&) {
        // A missing key or a bad pattern yields no text rather than an error.
        return std::string();
    }
}

}  // namespace Oru
}  // namespace Legacy
