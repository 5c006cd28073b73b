// Device: the directory behind an oru.Directory. It records each change of an
// Item for the script to pull, and keeps the description of its settings by
// path for info(). Python threads may share one Device: every use of the
// directory holds its mutex, and nothing waits for the GIL while holding it.
#ifndef ORU_PYTHON_DEVICE_H
#define ORU_PYTHON_DEVICE_H

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/infoitemdirectory.h>
#include <legacy/oru/infoitemholderdefs.h>

namespace OruPython {

class Device : public Legacy::Oru::InfoItemDirectory {
public:
    // One change of an Item: what it was (null for the first), what it
    // became (null when removed), and its slot.
    struct Change {
        boost::intrusive_ptr<Legacy::Oru::ItemHolder const> oldItem;
        boost::intrusive_ptr<Legacy::Oru::ItemHolder const> newItem;
        boost::intrusive_ptr<Legacy::Oru::InfoItemHolder const> slot;
    };

    Device() = default;
    Device(Device const&) = delete;
    Device& operator=(Device const&) = delete;

    // Held for every use of the directory.
    std::mutex& Mutex() { return mutex_; }

    // A script that never pulls its events must not hold every old value:
    // past this many waiting changes the oldest are dropped, and counted.
    static constexpr std::size_t k_maxPendingChanges = 65536;

    // The changes recorded since the last call, oldest first; when there are
    // none, waits up to timeout seconds for one. Takes no directory lock.
    std::vector<Change> TakeChanges(double timeout);

    // How many changes were dropped unread since the directory was made.
    std::uint64_t LostChanges();

    // "Audio/Input/Gain" for the Info of a setting of this directory. Under Mutex().
    std::string PathOf(Legacy::Oru::InfoBase const& info) const;

    // The description of the setting at path as a JSON object, as a
    // description file gives it; null when there is no such setting. Under Mutex().
    std::string const* DescriptionOf(std::string const& path);

protected:
    void InfoChanged_(
        boost::intrusive_ptr<Legacy::Oru::InfoHolder const> const& oldInfo,
        boost::intrusive_ptr<Legacy::Oru::InfoItemHolder const> const& holder) override;
    void ItemChanged_(
        boost::intrusive_ptr<Legacy::Oru::ItemHolder const> const& oldItem,
        boost::intrusive_ptr<Legacy::Oru::InfoItemHolder const> const& holder) override;

private:
    std::mutex mutex_;

    std::mutex changesMutex_;
    std::condition_variable changed_;
    std::deque<Change> changes_;
    std::uint64_t lost_ = 0;

    // Filled from the files layer's description on first use, dropped when an Info changes.
    bool descriptionsValid_ = false;
    std::unordered_map<std::string, std::string> descriptions_;
};

}  // namespace OruPython

#endif
