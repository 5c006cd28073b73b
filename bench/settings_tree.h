// The settings every directory benchmark runs on, built once per size and
// shared: a few top-level sections, each three levels deep, with numeric
// settings spread over the leaf sections, and the same settings in what a
// team would use instead (plain maps, a Boost.PropertyTree of the same Item
// handles). The plain maps come twice: packed (nothing else allocated while
// they grow, so their nodes sit side by side) and scattered (each node
// between other allocations, as a program that builds its settings among
// its other work has them, and as the directory's own nodes are).
#ifndef ORU_BENCH_SETTINGS_TREE_H
#define ORU_BENCH_SETTINGS_TREE_H

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include <legacy/oru/oru.h>
#include <boost/property_tree/ptree.hpp>

#include "measure.h"

namespace Bench {

using Legacy::Oru::InfoItemDirectory;
using Legacy::Oru::InfoItemSectionId;
using ItemPtr = boost::intrusive_ptr<Legacy::Oru::ItemHolder const>;
using PropertyTree = boost::property_tree::basic_ptree<std::string, ItemPtr>;

// Where the directory's bytes per setting go, and what the documented
// structures cannot do without: one holder, one node in each of the id map
// and the name map, one node in each of the section's two maps of Infos.
struct DirectoryBytes {
    double holder = 0;
    double idMap = 0;
    double nameMap = 0;
    double sectionMap = 0;
    double floor = 0;
    double Total() const { return holder + idMap + nameMap + sectionMap; }
};

// "Audio/Unit3/Group1/Gain42": four top-level sections, `fanOut` units under
// each and `fanOut` groups under each unit; settings go round the leaf groups,
// about 128 to a group.
class SettingsTree {
public:
    explicit SettingsTree(std::size_t count) : count_(count) {
        using namespace Legacy::Oru;
        static char const* const k_top[] = {"Audio", "Video", "Network", "System"};
        static char const* const k_kinds[] = {"Gain",   "Level",     "Mode",
                                              "Enable", "Threshold", "Delay"};
        std::size_t const fanOut = std::max<std::size_t>(
            1, static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(count) / 512.0))));
        // The caller's Infos, holders and the benchmark's own vectors are
        // made outside the measured scopes: the bytes per setting are what
        // the directory allocates (sections, holders, maps), split by
        // structure, beside the floor of its documented layout.
        std::vector<SectionId> leaves;
        std::vector<std::string> leafNames;
        leaves.reserve(4 * fanOut * fanOut);
        leafNames.reserve(4 * fanOut * fanOut);
        idsInOrder_.reserve(count);
        pathsInOrder_.reserve(count);
        items_.reserve(count);
        ids.reserve(count);
        paths.reserve(count);
        replacements.reserve(count);
        for (char const* top : k_top) {
            for (std::size_t unit = 0; unit < fanOut; ++unit) {
                std::string const unitName = std::string(top) + "/Unit" + std::to_string(unit);
                for (std::size_t group = 0; group < fanOut; ++group) {
                    leafNames.push_back(unitName + "/Group" + std::to_string(group));
                }
            }
        }
        leafNames_ = leafNames;
        std::int64_t sections = 0;
        {
            SectionId scratch;
            AllocationScope const sectionBytes;
            for (std::string const& name : leafNames) {
                dir.AddSection(name, scratch);
            }
            sections = sectionBytes.Bytes();
        }
        for (std::string const& name : leafNames) {
            leaves.push_back(dir.FindSection(name));
        }
        std::vector<boost::intrusive_ptr<InfoHolder const>>& infos = infos_;
        infos.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            std::size_t const leaf = i % leaves.size();
            std::size_t const number = i / leaves.size();
            unsigned int const id = leaves[leaf].GetInfoItemSectionId().CreateInfoItemId(number);
            std::string const name = k_kinds[number % 6] + std::to_string(number);
            infos.emplace_back(new InfoHolder(boost::intrusive_ptr<InfoBase>(
                new NumericInfo<U32Traits>(id, name, Permission_t(3)))));
            idsInOrder_.push_back(id);
            pathsInOrder_.push_back(leafNames[leaf] + "/" + name);
        }
        AllocationScope const infoBytes;
        for (auto const& info : infos) {
            dir.AddInfo(info);
        }
        std::int64_t const added = infoBytes.Bytes();
        MeasureSplit(infos, sections, added);
        {
            AllocationScope const itemBytes;
            for (std::size_t i = 0; i < count; ++i) {
                items_.emplace_back(new ItemHolder(boost::intrusive_ptr<ItemBase>(
                    NumericItem<U32Traits>::Create(idsInOrder_[i], static_cast<unsigned int>(i)))));
            }
            itemBytes_ = itemBytes.Bytes();
        }
        AllocationScope const setBytes;
        for (std::size_t i = 0; i < count; ++i) {
            dir.SetItem(items_[i]);
        }
        directoryBytes_ = sections + added + setBytes.Bytes();
        // The section whose subtree FindItems walks: the first unit of "Audio".
        subtree_ = dir.FindSection("Audio/Unit0");
        subtreePath_ = "Audio/Unit0";
        std::vector<std::size_t> order(count);
        for (std::size_t i = 0; i < count; ++i) {
            order[i] = i;
        }
        std::mt19937 random(42);
        std::shuffle(order.begin(), order.end(), random);
        for (std::size_t i : order) {
            ids.push_back(idsInOrder_[i]);
            paths.push_back(pathsInOrder_[i]);
            replacements.emplace_back(new ItemHolder(boost::intrusive_ptr<ItemBase>(
                NumericItem<U32Traits>::Create(idsInOrder_[i], static_cast<unsigned int>(i + 1)))));
        }
    }

    std::size_t Count() const { return count_; }
    // Bytes the directory allocated per setting: Info, holders, section
    // tree and maps; the Item itself not included.
    double DirectoryBytesPerSetting() const {
        return static_cast<double>(directoryBytes_) / static_cast<double>(count_);
    }
    // Bytes of one Item with its holder, shared by the directory and the maps.
    double ItemBytesPerSetting() const {
        return static_cast<double>(itemBytes_) / static_cast<double>(count_);
    }
    DirectoryBytes const& Split() const { return split_; }
    // The caller's Infos in the order AddInfo took them, and the leaf
    // sections' paths, to build the same directory again.
    std::vector<boost::intrusive_ptr<Legacy::Oru::InfoHolder const>> const& Infos() const {
        return infos_;
    }
    std::vector<std::string> const& LeafNames() const { return leafNames_; }
    // The section FindItems walks, and its path.
    Legacy::Oru::SectionId const& Subtree() const { return subtree_; }
    std::string const& SubtreePath() const { return subtreePath_; }

    // The peers, built on first use with the same Items and names; each
    // records its own bytes per setting in `bytesPerSetting`.
    std::map<unsigned int, ItemPtr> const& ById(double& bytesPerSetting) {
        if (!byId_) {
            AllocationScope const bytes;
            byId_.reset(new std::map<unsigned int, ItemPtr>());
            for (std::size_t i = 0; i < count_; ++i) {
                byId_->emplace(idsInOrder_[i], items_[i]);
            }
            byIdBytes_ = bytes.Bytes();
        }
        bytesPerSetting = static_cast<double>(byIdBytes_) / static_cast<double>(count_);
        return *byId_;
    }
    // The same map, each node allocated between blocks of other sizes that
    // stay: its nodes lie apart in memory, as in a program that builds it
    // among its other work.
    std::map<unsigned int, ItemPtr>& ScatteredById(double& bytesPerSetting) {
        if (!scatteredById_) {
            std::mt19937 random(7);
            std::uniform_int_distribution<std::size_t> sizes(16, 96);
            scatteredById_.reset(new std::map<unsigned int, ItemPtr>());
            std::int64_t bytes = 0;
            for (std::size_t i = 0; i < count_; ++i) {
                AllocationScope const node;
                scatteredById_->emplace(idsInOrder_[i], items_[i]);
                bytes += node.Bytes();
                clutter_.emplace_back(new char[sizes(random)]);
            }
            scatteredByIdBytes_ = bytes;
        }
        bytesPerSetting = static_cast<double>(scatteredByIdBytes_) / static_cast<double>(count_);
        return *scatteredById_;
    }
    std::unordered_map<unsigned int, ItemPtr> const& HashedById(double& bytesPerSetting) {
        if (!hashedById_) {
            AllocationScope const bytes;
            hashedById_.reset(new std::unordered_map<unsigned int, ItemPtr>());
            for (std::size_t i = 0; i < count_; ++i) {
                hashedById_->emplace(idsInOrder_[i], items_[i]);
            }
            hashedByIdBytes_ = bytes.Bytes();
        }
        bytesPerSetting = static_cast<double>(hashedByIdBytes_) / static_cast<double>(count_);
        return *hashedById_;
    }
    std::map<std::string, ItemPtr> const& ByPath(double& bytesPerSetting) {
        if (!byPath_) {
            AllocationScope const bytes;
            byPath_.reset(new std::map<std::string, ItemPtr>());
            for (std::size_t i = 0; i < count_; ++i) {
                byPath_->emplace(pathsInOrder_[i], items_[i]);
            }
            byPathBytes_ = bytes.Bytes();
        }
        bytesPerSetting = static_cast<double>(byPathBytes_) / static_cast<double>(count_);
        return *byPath_;
    }
    std::unordered_map<std::string, ItemPtr> const& HashedByPath(double& bytesPerSetting) {
        if (!hashedByPath_) {
            AllocationScope const bytes;
            hashedByPath_.reset(new std::unordered_map<std::string, ItemPtr>());
            for (std::size_t i = 0; i < count_; ++i) {
                hashedByPath_->emplace(pathsInOrder_[i], items_[i]);
            }
            hashedByPathBytes_ = bytes.Bytes();
        }
        bytesPerSetting = static_cast<double>(hashedByPathBytes_) / static_cast<double>(count_);
        return *hashedByPath_;
    }
    // A property tree whose leaves hold the same Item handles.
    PropertyTree const& Tree(double& bytesPerSetting) {
        if (!tree_) {
            AllocationScope const bytes;
            tree_.reset(new PropertyTree());
            for (std::size_t i = 0; i < count_; ++i) {
                tree_->put_child(PropertyTree::path_type(pathsInOrder_[i], '/'),
                                 PropertyTree(items_[i]));
            }
            treeBytes_ = bytes.Bytes();
        }
        bytesPerSetting = static_cast<double>(treeBytes_) / static_cast<double>(count_);
        return *tree_;
    }

    InfoItemDirectory dir;
    // Every setting's id and path, in one shuffled order; lookups walk them.
    std::vector<unsigned int> ids;
    std::vector<std::string> paths;
    // A new Item for each setting, in the same order.
    std::vector<ItemPtr> replacements;

private:
    // Splits the bytes AddInfo allocated: a holder is measured by making
    // one, the id map's node by a map of the same type, and the name map's
    // by inserting into a holder map of the directory's type (which fills
    // both); what remains is the section map's. Infos are the caller's.
    void MeasureSplit(std::vector<boost::intrusive_ptr<Legacy::Oru::InfoHolder const>> const& infos,
                      std::int64_t sections, std::int64_t added) {
        using namespace Legacy::Oru;
        double const n = static_cast<double>(count_);
        std::vector<boost::intrusive_ptr<InfoItemHolder>> holders;
        holders.reserve(infos.size());
        std::int64_t holderBytes = 0;
        {
            AllocationScope const bytes;
            for (auto const& info : infos) {
                holders.emplace_back(new InfoItemHolder(info));
            }
            holderBytes = bytes.Bytes();
        }
        std::int64_t idBytes = 0;
        {
            InfoItemHolderMap::IdMap idMap;
            AllocationScope const bytes;
            for (auto const& holder : holders) {
                idMap.emplace(holder->GetInfoHolder()->GetInfo()->GetId(), holder);
            }
            idBytes = bytes.Bytes();
        }
        std::int64_t bothBytes = 0;
        {
            InfoItemHolderMap both;
            AllocationScope const bytes;
            for (auto const& holder : holders) {
                both.Insert(holder);
            }
            bothBytes = bytes.Bytes();
        }
        split_.holder = static_cast<double>(holderBytes) / n;
        split_.idMap = static_cast<double>(idBytes) / n;
        split_.nameMap = static_cast<double>(bothBytes - idBytes) / n;
        split_.sectionMap = static_cast<double>(added - bothBytes - holderBytes + sections) / n;
        // One tree node (four words of links and colour) and its value per
        // map entry; the names short enough to live inside their strings.
        double const link = 4 * sizeof(void*);
        double const idNode = link + sizeof(InfoItemHolderMap::IdMap::value_type);
        double const nameNode = link + sizeof(InfoItemHolderMap::NameMap::value_type);
        double const sectionByName = link + sizeof(std::pair<std::string const, InfoItemSectionId>);
        double const sectionById = link + sizeof(std::pair<InfoItemSectionId const, std::string>);
        split_.floor = sizeof(InfoItemHolder) + idNode + nameNode + sectionByName + sectionById;
    }

    std::size_t count_;
    std::vector<ItemPtr> items_;
    std::vector<unsigned int> idsInOrder_;
    std::vector<std::string> pathsInOrder_;
    std::int64_t directoryBytes_ = 0;
    std::int64_t itemBytes_ = 0;
    Legacy::Oru::SectionId subtree_;
    std::string subtreePath_;
    DirectoryBytes split_;
    std::vector<boost::intrusive_ptr<Legacy::Oru::InfoHolder const>> infos_;
    std::vector<std::string> leafNames_;
    std::unique_ptr<std::map<unsigned int, ItemPtr>> byId_;
    std::unique_ptr<std::map<unsigned int, ItemPtr>> scatteredById_;
    std::vector<std::unique_ptr<char[]>> clutter_;
    std::int64_t scatteredByIdBytes_ = 0;
    std::unique_ptr<std::unordered_map<unsigned int, ItemPtr>> hashedById_;
    std::unique_ptr<std::map<std::string, ItemPtr>> byPath_;
    std::unique_ptr<std::unordered_map<std::string, ItemPtr>> hashedByPath_;
    std::unique_ptr<PropertyTree> tree_;
    std::int64_t byIdBytes_ = 0;
    std::int64_t hashedByIdBytes_ = 0;
    std::int64_t byPathBytes_ = 0;
    std::int64_t hashedByPathBytes_ = 0;
    std::int64_t treeBytes_ = 0;
};

// The tree of `count` settings, built once: sizes up to 100,000 stay for the
// whole run, a larger one is dropped when another size is asked for.
inline SettingsTree& SharedTree(std::size_t count) {
    static std::map<std::size_t, std::unique_ptr<SettingsTree>> trees;
    auto found = trees.find(count);
    if (found != trees.end()) {
        return *found->second;
    }
    for (auto entry = trees.begin(); entry != trees.end();) {
        entry = entry->first > 100000 ? trees.erase(entry) : std::next(entry);
    }
    if (count > 100000) {
        trees.clear();
    }
    return *trees.emplace(count, std::make_unique<SettingsTree>(count)).first->second;
}

}  // namespace Bench

#endif
