// A directory that writes down each change notification it gets, as short
// strings, so tests can compare the sequence.
#ifndef ORU_TESTS_RECORDING_DIRECTORY_H
#define ORU_TESTS_RECORDING_DIRECTORY_H

#include <sstream>
#include <string>
#include <vector>

#include <legacy/oru/infoitemdirectory.h>

#include "directory_test_util.h"

namespace OruTest {

class RecordingDirectory : public InfoItemDirectory {
public:
    RecordingDirectory() = default;
    RecordingDirectory(RecordingDirectory const& other) : InfoItemDirectory(other) {}

    // "info <id hex> old=<null|name> now=<name>" or
    // "item <id hex> old=<null|value> now=<value> info=<name>".
    std::vector<std::string> log;
    // The old holders, in the order they came.
    std::vector<InfoHolderPtr> oldInfos;
    std::vector<ItemHolderPtr> oldItems;
    // Set to throw from the next notification.
    bool throwNext = false;

protected:
    void InfoChanged_(InfoHolderPtr const& oldInfo, SlotPtr const& holder) override {
        std::ostringstream line;
        line << "info " << std::hex << holder->GetInfoHolder()->GetInfo()->GetId()
             << " old=" << (oldInfo ? oldInfo->GetInfo()->GetName() : "null")
             << " now=" << holder->GetInfoHolder()->GetInfo()->GetName();
        Note(line.str());
        oldInfos.push_back(oldInfo);
    }
    void ItemChanged_(ItemHolderPtr const& oldItem, SlotPtr const& holder) override {
        std::ostringstream line;
        line << "item " << std::hex << holder->GetInfoHolder()->GetInfo()->GetId() << std::dec
             << " old=" << (oldItem ? oldItem->GetItem()->GetValAsString() : "null")
             << " now=" << holder->GetItemHolder()->GetItem()->GetValAsString()
             << " info=" << holder->GetInfoHolder()->GetInfo()->GetName();
        Note(line.str());
        oldItems.push_back(oldItem);
    }

private:
    void Note(std::string const& line) {
        log.push_back(line);
        if (throwNext) {
            throwNext = false;
            throw std::runtime_error("observer failed");
        }
    }
};

}  // namespace OruTest

#endif
