#include "device.h"

#include <chrono>

#include <nlohmann/json.hpp>

#include <legacy/oru/files/description.h>
#include <legacy/oru/sectionid.h>

namespace OruPython {

using namespace Legacy::Oru;

std::vector<Device::Change> Device::TakeChanges(double timeout) {
    std::unique_lock<std::mutex> lock(changesMutex_);
    if (changes_.empty() && timeout > 0) {
        changed_.wait_for(lock, std::chrono::duration<double>(timeout),
                          [this] { return !changes_.empty(); });
    }
    std::vector<Change> out(std::make_move_iterator(changes_.begin()),
                            std::make_move_iterator(changes_.end()));
    changes_.clear();
    return out;
}

std::uint64_t Device::LostChanges() {
    std::lock_guard<std::mutex> lock(changesMutex_);
    return lost_;
}

std::string Device::PathOf(InfoBase const& info) const {
    return FindSection(InfoItemSectionId(info.GetId())).GetSectionName() + "/" + info.GetName();
}

std::string const* Device::DescriptionOf(std::string const& path) {
    if (!descriptionsValid_) {
        descriptions_.clear();
        nlohmann::json const all = nlohmann::json::parse(Files::WriteDescription(*this));
        for (auto const& setting : all.at("settings")) {
            descriptions_[setting.at("path").get<std::string>()] =
                setting.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
        }
        descriptionsValid_ = true;
    }
    auto const found = descriptions_.find(path);
    return found == descriptions_.end() ? nullptr : &found->second;
}

void Device::InfoChanged_(boost::intrusive_ptr<InfoHolder const> const& /*oldInfo*/,
                          boost::intrusive_ptr<InfoItemHolder const> const& /*holder*/) {
    descriptionsValid_ = false;
}

void Device::ItemChanged_(boost::intrusive_ptr<ItemHolder const> const& oldItem,
                          boost::intrusive_ptr<InfoItemHolder const> const& holder) {
    {
        std::lock_guard<std::mutex> lock(changesMutex_);
        if (changes_.size() == k_maxPendingChanges) {
            changes_.pop_front();
            ++lost_;
        }
        changes_.push_back(Change{oldItem, holder->GetItemHolder(), holder});
    }
    changed_.notify_all();
}

}  // namespace OruPython
