// LocalizedString: a message that is not yet text, a key into the
// localisation catalogue and ordered Item arguments. GetString turns it into
// text as late as possible. Not thread-safe for writers.
#ifndef LEGACY_ORU_LOCALIZEDSTRING_H
#define LEGACY_ORU_LOCALIZEDSTRING_H

#include <string>
#include <vector>

#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/export.h>
#include <legacy/oru/itembase.h>

namespace Legacy {
namespace Oru {

class ORU_API LocalizedString {
public:
    using Arguments = std::vector<boost::intrusive_ptr<ItemBase const>>;

    LocalizedString();
    explicit LocalizedString(std::string const& key);
    // The copy has its own list holding the same Items.
    LocalizedString(LocalizedString const& other);
    // Replaces key and arguments; the own list stays.
    LocalizedString const& operator=(LocalizedString const& other);
    virtual ~LocalizedString();

    // Same key and the very same Item pointers in the same order.
    bool operator==(LocalizedString const& other) const;
    bool operator!=(LocalizedString const& other) const { return !(*this == other); }

    // Appends an argument; a null pointer is stored like any other.
    void AddArgument(boost::intrusive_ptr<ItemBase const> const& argument);
    std::string GetKey() const { return key_; }
    void SetKey(std::string const& key);
    Arguments const& GetArguments() const noexcept { return *arguments_; }
    // True if the key is empty, whatever the arguments.
    bool IsEmpty() const noexcept { return key_.empty(); }
    bool IsValid() const noexcept { return !key_.empty(); }

    // The text: the key's pattern with each argument's text substituted in
    // order. Empty for an empty key, an unknown key or a bad pattern.
    std::string GetString(std::string const& selector) const;

private:
    std::string key_;
    Arguments* arguments_;  // fixed-size indirection keeps the layout stable
};

}  // namespace Oru
}  // namespace Legacy

#endif
