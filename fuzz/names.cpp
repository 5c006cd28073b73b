// Section names, info paths and URIs from outside: parsed, added, found and
// written back without a crash, with the invariants of the named ids kept.
#include <cstdint>
#include <string>
#include <type_traits>

#include <legacy/oru/oru.h>

#include "serialcodec.h"

using namespace Legacy::Oru;

namespace {

void Check(bool condition) {
    if (!condition) {
        __builtin_trap();
    }
}

// A named id is either valid with as many levels as its id has depth, or the
// cleared one.
void CheckInvariant(SectionId const& section) {
    if (section.IsValid()) {
        Check(section.GetSectionDepth() == section.GetInfoItemSectionId().Depth());
        Check(section.GetInfoItemSectionId().IsValidSectionId());
    } else {
        Check(section.GetSectionName().empty());
        Check(section.GetInfoItemSectionId() == 0xFFFFFFFFu);
        Check(section.GetSectionDepth() == 0);
    }
}

// A URI read, written and read again: what was written reads back as the
// same endpoint and writes the same URI. The reader skips every ':' and '/'
// after the scheme ("x://h" and "x:h" are one endpoint), so an address that
// is empty or begins with one of them cannot come back, nor can an endpoint
// whose text begins with "rtsp://" (its URI is that text, whatever its
// protocol); their URIs must still settle.
template <class Endpoint>
void Uri(std::string const& text) {
    Endpoint const endpoint = Endpoint::FromUri(text);
    std::string const uri = endpoint.ToUri();
    Endpoint const again = Endpoint::FromUri(uri);
    std::string const addressText = endpoint.GetEndpoint().GetAddr().ToString();
    bool const wholeUri = endpoint.GetEndpoint().ToString().compare(0, 7, "rtsp://") == 0;
    if (!addressText.empty() && addressText[0] != ':' && addressText[0] != '/' && !wholeUri) {
        Check(again == endpoint);
        Check(again.ToUri() == uri);
    } else {
        // Each pass can strip what stands before the next "rtsp://" or one
        // more leading character, so the URI settles. On the way it grows
        // once at most: an empty address reads as "0" and gains the ":0" of
        // a port (3 bytes), or an address with a ':' that stood alone gains
        // its brackets and the ":0" (4 bytes: "rtsp://1::2" becomes
        // "rtsp://[1::2]:0").
        std::string current = again.ToUri();
        std::size_t const limit = current.size() + 4;
        bool settled = false;
        for (std::size_t pass = 0; pass <= limit && !settled; ++pass) {
            std::string const next = Endpoint::FromUri(current).ToUri();
            Check(next.size() <= limit);
            settled = next == current;
            current = next;
        }
        Check(settled);
    }
    (void)endpoint.ToString();
    // Records carry an endpoint as its text, so the text must read back equal.
    auto const& address = endpoint.GetEndpoint();
    using Address = std::decay_t<decltype(address)>;
    Check(Address::FromString(address.ToString()) == address);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size < 5) {
        return 0;
    }
    auto const raw = Legacy::Oru::Serial::GetBigEndian<std::uint32_t>(data + 1);
    std::string const text(reinterpret_cast<char const*>(data + 5), size - 5);
    switch (data[0] % 4) {
        case 0: {
            SectionId const section(text, InfoItemSectionId(raw));
            CheckInvariant(section);
            SectionId copy = section;
            SectionId const child = copy.CreateSectionId(text, static_cast<unsigned char>(raw));
            CheckInvariant(child);
            break;
        }
        case 1: {
            // Several names, split at newlines, into one map.
            SectionMap map;
            std::size_t start = 0;
            while (start <= text.size()) {
                std::size_t const end = std::min(text.find('\n', start), text.size());
                std::string const name = text.substr(start, end - start);
                SectionId added;
                int const code = map.AddSection(name, added);
                CheckInvariant(added);
                if (code == 0) {
                    SectionId found;
                    Check(map.FindSection(name, found) == 0);
                    Check(found.GetInfoItemSectionId() == added.GetInfoItemSectionId());
                    SectionId byId;
                    Check(map.FindSection(added.GetInfoItemSectionId(), byId) == 0);
                    Check(byId.GetInfoItemSectionId() == added.GetInfoItemSectionId());
                }
                start = end + 1;
            }
            break;
        }
        case 2: {
            InfoItemDirectory directory;
            SectionId section;
            directory.AddSection("a/b", section);
            boost::intrusive_ptr<InfoBase> info(new NumericInfo<U8Traits>(
                section.GetInfoItemSectionId().CreateInfoItemId(1), "c", Permission_t()));
            directory.AddInfo(boost::intrusive_ptr<InfoHolder const>(new InfoHolder(info)));
            auto const item = directory.FindItem(text);
            auto const slot = directory.FindInfoItem(text);
            auto const infoFound = directory.FindInfo(text, text);
            (void)item;
            (void)infoFound;
            if (slot) {
                Check(slot->GetInfoHolder()->GetInfo()->GetId() == info->GetId());
            }
            break;
        }
        case 3:
            // The same text as a named and as a numeric endpoint.
            Uri<AppEndpoint<Net::Endpoint<Net::AddrStr>>>(text);
            Uri<AppEndpoint<Net::Endpoint<Net::AddrIp>>>(text);
            break;
    }
    return 0;
}
