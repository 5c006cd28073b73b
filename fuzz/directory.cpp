// A program of directory operations, run against the directory and against a
// plain model kept here; after every step the two agree. Section names are
// at times hostile, sections get more subsections than their numbers hold,
// and change sets fail part-way.
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <legacy/oru/oru.h>

using namespace Legacy::Oru;

namespace {

void Check(bool condition) {
    if (!condition) {
        __builtin_trap();
    }
}

struct Setting {
    std::string path;
    bool hasItem = false;
    unsigned int value = 0;
    bool valueKnown = true;  // false after SetInfo until the next SetItem
};

class Program {
public:
    Program(std::uint8_t const* data, std::size_t size) : data_(data), size_(size) {}

    void Run() {
        while (at_ < size_) {
            switch (Next() % 11) {
                case 0:
                    AddSection();
                    break;
                case 1:
                    AddInfo();
                    break;
                case 2:
                    SetItem();
                    break;
                case 3:
                    SetWrongItem();
                    break;
                case 4:
                    SetInfo();
                    break;
                case 5:
                    FindInSection();
                    break;
                case 6:
                    ApplyDelta();
                    break;
                case 7:
                    Copy();
                    break;
                case 8:
                    Clear();
                    break;
                case 9:
                    ManySubsections();
                    break;
                case 10:
                    ApplyFailingDelta();
                    break;
            }
            Verify();
        }
    }

private:
    std::uint8_t Next() { return at_ < size_ ? data_[at_++] : 0; }

    // Mostly tidy paths, so that settings accumulate; now and then one that
    // a peer should never send: empty levels, runs of "/", NUL and bytes
    // that are no UTF-8, very long names, more levels than ids hold.
    std::string SectionName() {
        static char const* const parts[] = {"a", "b", "c", "x"};
        static std::string const hostile[] = {"",
                                              "/",
                                              "a//b",
                                              "//a",
                                              "a/",
                                              "a/b/c/x/a/b",
                                              std::string("a\0b", 3),
                                              "\xff\xfe/\x80",
                                              std::string(300, 'n'),
                                              "a/" + std::string(200, '/') + "b"};
        std::uint8_t const pick = Next();
        if (pick >= 240) {
            return hostile[pick % (sizeof hostile / sizeof hostile[0])];
        }
        std::size_t const depth = 1 + pick % 4;
        std::string name;
        for (std::size_t i = 0; i < depth; ++i) {
            name += (i ? "/" : "") + std::string(parts[Next() % 4]);
        }
        return name;
    }

    std::string const* PickSection() {
        if (sections_.empty()) {
            return nullptr;
        }
        auto it = sections_.begin();
        std::advance(it, Next() % sections_.size());
        return &it->first;
    }

    std::map<unsigned int, Setting>::iterator PickSetting() {
        if (settings_.empty()) {
            return settings_.end();
        }
        auto it = settings_.begin();
        std::advance(it, Next() % settings_.size());
        return it;
    }

    static boost::intrusive_ptr<ItemHolder const> ItemOf(unsigned int id, unsigned int value) {
        boost::intrusive_ptr<ItemBase> item(NumericItem<U32Traits>::Create(id, value));
        return boost::intrusive_ptr<ItemHolder const>(new ItemHolder(item));
    }

    static boost::intrusive_ptr<InfoHolder const> InfoOf(unsigned int id, std::string const& name,
                                                         unsigned int max) {
        boost::intrusive_ptr<NumericInfo<U32Traits>> info(
            new NumericInfo<U32Traits>(id, name, Permission_t()));
        info->SetMax(max);
        return boost::intrusive_ptr<InfoHolder const>(new InfoHolder(info));
    }

    void AddSection() {
        std::string const given = SectionName();
        SectionId out;
        if (directory_.AddSection(given, out) == 0) {
            Check(out.IsValid());
            // The section goes by the name the directory gave it, which for a
            // hostile path need not be the text sent, and that name finds it.
            std::string const name = out.GetSectionName();
            Check(directory_.FindSection(name).GetInfoItemSectionId() ==
                  out.GetInfoItemSectionId());
            // Every level of the path exists now.
            for (std::size_t cut = name.find('/'); cut != std::string::npos;
                 cut = name.find('/', cut + 1)) {
                std::string const parent = name.substr(0, cut);
                SectionId const found = directory_.FindSection(parent);
                Check(found.IsValid());
                sections_[parent] = found.GetInfoItemSectionId();
            }
            sections_[name] = out.GetInfoItemSectionId();
        }
    }

    void AddInfo() {
        std::string const* const section = PickSection();
        if (!section) {
            return;
        }
        unsigned int const number = Next() % 8;
        std::string const name = "s" + std::to_string(Next() % 6);
        unsigned int const id = InfoItemSectionId(sections_[*section]).CreateInfoItemId(number);
        int const code = directory_.AddInfo(InfoOf(id, name, 1000));
        if (code == 0) {
            Check(settings_.count(id) == 0);
            settings_[id] = Setting{*section + "/" + name};
        }
    }

    void SetItem() {
        auto const it = PickSetting();
        if (it == settings_.end()) {
            return;
        }
        unsigned int const value = Next();
        Check(directory_.SetItem(ItemOf(it->first, value)) == 0);
        it->second.hasItem = true;
        it->second.value = value;
        it->second.valueKnown = true;
    }

    void SetWrongItem() {
        auto const it = PickSetting();
        if (it == settings_.end()) {
            return;
        }
        boost::intrusive_ptr<ItemBase> item(NumericItem<S16Traits>::Create(it->first, 1));
        Check(directory_.SetItem(boost::intrusive_ptr<ItemHolder const>(new ItemHolder(item))) !=
              0);
    }

    void SetInfo() {
        auto const it = PickSetting();
        if (it == settings_.end()) {
            return;
        }
        std::string const name = it->second.path.substr(it->second.path.rfind('/') + 1);
        if (directory_.SetInfo(InfoOf(it->first, name, 100u + Next())) == 0) {
            it->second.valueKnown = false;
        }
    }

    void FindInSection() {
        std::string const* const section = PickSection();
        if (!section) {
            return;
        }
        std::vector<boost::intrusive_ptr<ItemHolder const>> found;
        directory_.FindItems(sections_[*section], found);
        for (auto const& holder : found) {
            if (holder && holder->GetItem()) {
                auto const it = settings_.find(holder->GetItem()->GetId());
                Check(it != settings_.end());
                Check(it->second.path.compare(0, section->size() + 1, *section + "/") == 0);
            }
        }
    }

    void ApplyDelta() {
        auto delta = std::make_shared<InfoItemDirectoryDelta>();
        std::map<unsigned int, unsigned int> values;
        std::size_t const count = Next() % 4;
        for (std::size_t i = 0; i < count; ++i) {
            auto const it = PickSetting();
            if (it == settings_.end()) {
                break;
            }
            unsigned int const value = Next();
            // The first addition of an id wins.
            if (delta->AddItem(ItemOf(it->first, value)) == 0) {
                values.emplace(it->first, value);
            }
        }
        if (directory_.UpdateFromDelta(delta, false, true) == 0) {
            for (auto const& [id, value] : values) {
                settings_[id].hasItem = true;
                settings_[id].value = value;
                settings_[id].valueKnown = true;
            }
        }
    }

    // More subsections under one section than its 6-bit numbers hold: the
    // first 63 get numbers, the rest are refused, and all that were added
    // are found.
    void ManySubsections() {
        std::string const* const section = PickSection();
        if (!section) {
            return;
        }
        std::string const parent = *section;
        for (int i = 0; i < 70; ++i) {
            std::string const name = parent + "/m" + std::to_string(i);
            SectionId out;
            if (directory_.AddSection(name, out) == 0) {
                Check(directory_.FindSection(name).GetInfoItemSectionId() ==
                      out.GetInfoItemSectionId());
                sections_[out.GetSectionName()] = out.GetInfoItemSectionId();
            }
        }
    }

    // A change set with unknown ids and wrong types among good entries: the
    // items are applied in ascending order of id up to the first that fails,
    // and those stay applied.
    void ApplyFailingDelta() {
        auto delta = std::make_shared<InfoItemDirectoryDelta>();
        struct Entry {
            unsigned int value;
            bool good;
        };
        std::map<unsigned int, Entry> entries;
        std::size_t const count = 1 + Next() % 6;
        for (std::size_t i = 0; i < count; ++i) {
            std::uint8_t const kind = Next() % 4;
            unsigned int const value = Next();
            auto const it = PickSetting();
            unsigned int id = it == settings_.end() ? 0x00000001u : it->first;
            bool good = it != settings_.end();
            boost::intrusive_ptr<ItemBase> item;
            if (kind == 0 || !good) {
                // An id no setting has: the last number of some section.
                id = InfoItemSectionId(id).GetSectionId(InfoItemSectionId(id).Depth()) - 1;
                good = settings_.count(id) != 0;
                item.reset(NumericItem<U32Traits>::Create(id, value));
            } else if (kind == 1) {
                item.reset(NumericItem<S16Traits>::Create(id, 1));
                good = false;
            } else {
                item.reset(NumericItem<U32Traits>::Create(id, value));
            }
            if (delta->AddItem(boost::intrusive_ptr<ItemHolder const>(new ItemHolder(item))) == 0) {
                entries.emplace(id, Entry{value, good});
            }
        }
        int const code = directory_.UpdateFromDelta(delta, false, true);
        bool failed = false;
        for (auto const& [id, entry] : entries) {
            if (!entry.good) {
                failed = true;
                break;
            }
            settings_[id].hasItem = true;
            settings_[id].value = entry.value;
            settings_[id].valueKnown = true;
        }
        Check((code == 0) == !failed);
    }

    void Copy() {
        InfoItemDirectory copy(directory_);
        // Copies share their state: a change through one shows in the other.
        directory_ = copy;
    }

    void Clear() {
        directory_.Clear();
        sections_.clear();
        settings_.clear();
    }

    void Verify() {
        std::vector<boost::intrusive_ptr<InfoItemHolder const>> all;
        directory_.GetAllInfoItems(all);
        Check(all.size() == settings_.size());
        for (std::size_t i = 1; i < all.size(); ++i) {
            Check(all[i - 1]->GetInfoHolder()->GetInfo()->GetId() <
                  all[i]->GetInfoHolder()->GetInfo()->GetId());
        }
        for (auto const& [id, setting] : settings_) {
            auto const info = directory_.FindInfo(id);
            Check(info && info->GetInfo()->GetId() == id);
            auto const byId = directory_.FindItem(id);
            auto const byPath = directory_.FindItem(setting.path);
            Check(byId == byPath);
            bool const has = byId && byId->GetItem();
            Check(has == setting.hasItem);
            if (has && setting.valueKnown) {
                auto const* const item =
                    dynamic_cast<NumericItem<U32Traits> const*>(byId->GetItem().get());
                Check(item && item->GetVal() == setting.value);
            }
        }
    }

    std::uint8_t const* data_;
    std::size_t size_;
    std::size_t at_ = 0;
    InfoItemDirectory directory_;
    std::map<std::string, unsigned int> sections_;
    std::map<unsigned int, Setting> settings_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Program(data, size).Run();
    return 0;
}
