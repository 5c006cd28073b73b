// The extension oru._oru: directories, Items, change sets, records and the
// files layer's verdicts for Python. Every value a script sets goes through
// the files layer as the JSON text of a values file, so a script meets the
// same refusals, in the same words, as `oru check`.
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <legacy/oru/files/files.h>
#include <legacy/oru/oru.h>
#include <legacy/oru/version.h>

#include "bridge.h"
#include "convert.h"
#include "device.h"

// Items and Infos live under the library's own counts: a Python object and
// the directory share one Item, and either may go first.
PYBIND11_DECLARE_HOLDER_TYPE(T, boost::intrusive_ptr<T>, true)

namespace py = pybind11;

namespace OruPython {

using namespace Legacy::Oru;

namespace {

using ItemPtr = boost::intrusive_ptr<ItemBase>;
using DevicePtr = std::shared_ptr<Device>;

// Values of more JSON than this are applied without the GIL; files, the dry
// run, decoding and waiting for events always run without it.
constexpr std::size_t k_longWork = 64 * 1024;

// One problem as a script sees it.
struct PyProblem {
    std::string path;
    std::string message;
    std::string pointer;
};

py::handle g_checkError;

std::vector<PyProblem> ToPy(Files::Problems const& problems, bool valuesFile) {
    std::vector<PyProblem> out;
    out.reserve(problems.size());
    for (Files::Problem const& each : problems) {
        out.push_back(PyProblem{valuesFile ? PathOf(each) : each.path, each.message, each.pointer});
    }
    return out;
}

std::string TextOf(PyProblem const& problem) {
    return problem.path.empty() ? problem.message : problem.path + ": " + problem.message;
}

[[noreturn]] void RaiseCheck(Files::Problems const& problems, bool valuesFile) {
    std::vector<PyProblem> const list = ToPy(problems, valuesFile);
    std::string text = list.empty() ? std::string("refused") : TextOf(list.front());
    if (list.size() > 1) {
        text += " (and " + std::to_string(list.size() - 1) + " more)";
    }
    py::object error = py::reinterpret_borrow<py::object>(g_checkError)(text);
    error.attr("problems") = py::cast(list);
    PyErr_SetObject(g_checkError.ptr(), error.ptr());
    throw py::error_already_set();
}

// A file's path from a str or os.PathLike.
std::string FsPath(py::handle file) {
    return py::str(py::module_::import("os").attr("fsdecode")(file)).cast<std::string>();
}

[[noreturn]] void RaiseOsError(std::string const& file, int error) {
    errno = error;
    PyErr_SetFromErrnoWithFilename(PyExc_OSError, file.c_str());
    throw py::error_already_set();
}

std::string ReadFile(std::string const& file) {
    int error = 0;
    std::string text;
    {
        py::gil_scoped_release free;
        std::ifstream in(file, std::ios::binary);
        if (!in) {
            error = errno ? errno : ENOENT;
        } else {
            std::ostringstream all;
            all << in.rdbuf();
            text = all.str();
            if (in.bad()) {
                error = errno ? errno : EIO;
            }
        }
    }
    if (error) {
        RaiseOsError(file, error);
    }
    return text;
}

// Writes beside the file and renames it into place, so that a reader sees
// the old file or the new one, never half of one.
void WriteFile(std::string const& file, std::string const& text) {
    int error = 0;
    {
        py::gil_scoped_release free;
        std::string const temporary = file + ".tmp";
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        out << text;
        out.close();
        if (!out) {
            error = errno ? errno : EIO;
            std::remove(temporary.c_str());
        } else if (std::rename(temporary.c_str(), file.c_str()) != 0) {
            error = errno;
            std::remove(temporary.c_str());
        }
    }
    if (error) {
        RaiseOsError(file, error);
    }
}

// The values of mapping as the JSON object of a values file.
std::string ValuesJson(py::handle mapping) {
    if (!PyDict_Check(mapping.ptr())) {
        throw py::type_error("values are given as a dict of setting paths and values");
    }
    std::string json = "{";
    bool first = true;
    for (auto const& member : py::reinterpret_borrow<py::dict>(mapping)) {
        if (!PyUnicode_Check(member.first.ptr())) {
            throw py::type_error("a setting path is a str");
        }
        if (!first) {
            json += ',';
        }
        first = false;
        AppendJsonString(json, member.first.cast<std::string>());
        json += ':';
        AppendJson(json, member.second);
    }
    json += '}';
    return json;
}

// Reads the values in json into device, all or nothing; CheckError when any is refused.
void ApplyValues(Device& device, std::string const& json) {
    Files::ValuesReport report;
    if (json.size() >= k_longWork) {
        py::gil_scoped_release free;
        std::lock_guard<std::mutex> lock(device.Mutex());
        report = Files::ReadValues(json, device, Files::Apply::AllOrNothing);
    } else {
        std::lock_guard<std::mutex> lock(device.Mutex());
        report = Files::ReadValues(json, device, Files::Apply::AllOrNothing);
    }
    if (!report.problems.empty()) {
        RaiseCheck(report.problems, true);
    }
}

std::vector<PyProblem> CheckValues(Device& device, std::string const& json) {
    Files::Problems problems;
    {
        py::gil_scoped_release free;
        std::lock_guard<std::mutex> lock(device.Mutex());
        problems = DryRun(json, device);
    }
    return ToPy(problems, true);
}

DevicePtr Load(std::string const& description, std::string const* values) {
    auto device = std::make_shared<Device>();
    Files::Problems problems;
    {
        py::gil_scoped_release free;
        std::lock_guard<std::mutex> lock(device->Mutex());
        problems = Files::ReadDescription(description, *device);
    }
    if (!problems.empty()) {
        RaiseCheck(problems, false);
    }
    if (values) {
        ApplyValues(*device, *values);
        // Loading is no change a script waits for.
        device->TakeChanges(0);
    }
    return device;
}

// Which numbers of the setting's values are floats; without its Info, what
// the Item's own family says.
Shape ShapeOf(Device* device, InfoBase const* info, ItemBase const& item) {
    Shape shape;
    if (!info) {
        shape.floats = HoldsFloats(FamilyOf(item));
        return shape;
    }
    std::string const family = FamilyOf(*info);
    if (family == "Composite" && device) {
        std::lock_guard<std::mutex> lock(device->Mutex());
        if (std::string const* description = device->DescriptionOf(device->PathOf(*info))) {
            return ShapeOfDescription(*description);
        }
    }
    shape.floats = HoldsFloats(family);
    return shape;
}

py::object ValueOf(ItemBase const& item, InfoBase const* info, Device* device = nullptr) {
    std::string const json = info ? Files::WriteValue(item, *info) : Files::WriteValue(item);
    return FromJson(json, ShapeOf(device, info, item));
}

py::bytes RecordOf(ItemBase const& item) {
    ItemBase::SerialStruct_t record;
    int const code = item.Serialize(&record);
    if (code != 0) {
        throw py::value_error("the Item writes no record (code " + std::to_string(code) + ")");
    }
    std::string bytes(10 + record.GetDataSize(), '\0');
    // The first ten bytes of the packed record are the header as the wire has it.
    std::memcpy(&bytes[0], &record, 10);
    if (record.GetDataSize() != 0) {
        std::memcpy(&bytes[10], record.GetData(), record.GetDataSize());
    }
    return py::bytes(bytes);
}

// The slot at path, or KeyError.
boost::intrusive_ptr<InfoItemHolder const> SlotAt(Device& device, std::string const& path) {
    boost::intrusive_ptr<InfoItemHolder const> slot;
    {
        std::lock_guard<std::mutex> lock(device.Mutex());
        slot = device.FindInfoItem(path);
    }
    if (!slot) {
        throw py::key_error(path);
    }
    return slot;
}

ItemPtr ItemAt(Device& device, std::string const& path) {
    auto const slot = SlotAt(device, path);
    if (!slot->GetItemHolder()) {
        return ItemPtr();
    }
    return slot->GetItemHolder()->GetItem();
}

// One change of an Item, as events() hands it out.
struct PyEvent {
    std::string path;
    unsigned int id = 0;
    std::string family;
    py::object value;
    py::object old;
    ItemPtr item;
};

std::uint32_t BigEndian32(unsigned char const* at) {
    return (std::uint32_t(at[0]) << 24) | (std::uint32_t(at[1]) << 16) |
           (std::uint32_t(at[2]) << 8) | std::uint32_t(at[3]);
}

// Reads the records one after another in data: each a ten-byte header and
// its payload.
py::list Decode(py::bytes const& data, DevicePtr const& device) {
    std::string const bytes = data;
    std::vector<ItemPtr> items;
    std::string problem;
    {
        py::gil_scoped_release free;
        std::size_t at = 0;
        while (at < bytes.size() && problem.empty()) {
            std::size_t const left = bytes.size() - at;
            auto const* header = reinterpret_cast<unsigned char const*>(bytes.data() + at);
            if (left < 10) {
                problem = "the record at byte " + std::to_string(at) +
                          " is cut short: " + std::to_string(left) +
                          " of its 10 header bytes are there";
                break;
            }
            std::uint32_t const size = BigEndian32(header + 4);
            if (size > left - 10) {
                problem = "the record at byte " + std::to_string(at) +
                          " is cut short: its payload has " + std::to_string(size) + " bytes, " +
                          std::to_string(left - 10) + " are there";
                break;
            }
            ItemBase::ConstSerialStruct_t view;
            view.SetHeader(BigEndian32(header), size, header[8], header[9]);
            view.data = header + 10;
            ItemPtr item;
            int const code = ItemBase::Deserialize(&view, item);
            if (code != 0 || !item) {
                problem = "the record at byte " + std::to_string(at) + " does not read (code " +
                          std::to_string(code) + ")";
                break;
            }
            items.push_back(std::move(item));
            at += 10 + size;
        }
    }
    if (!problem.empty()) {
        throw py::value_error(problem);
    }
    py::list out;
    for (ItemPtr const& item : items) {
        boost::intrusive_ptr<InfoHolder const> info;
        std::string path;
        if (device) {
            std::lock_guard<std::mutex> lock(device->Mutex());
            info = device->FindInfo(item->GetId());
            if (info) {
                path = device->PathOf(*info->GetInfo());
            }
        }
        py::object where = info ? py::object(py::str(path)) : py::object(py::int_(item->GetId()));
        out.append(
            py::make_tuple(where, FamilyOf(*item),
                           ValueOf(*item, info ? info->GetInfo().get() : nullptr, device.get())));
    }
    return out;
}

// A change set: values gathered by path, applied together or not at all.
class ChangeSet {
public:
    explicit ChangeSet(DevicePtr device) : device_(std::move(device)) {}

    void Set(std::string const& path, py::handle value) {
        Open();
        std::string json;
        AppendJson(json, value);
        auto const found = index_.find(path);
        if (found != index_.end()) {
            values_[found->second].second = std::move(json);
        } else {
            index_.emplace(path, values_.size());
            values_.emplace_back(path, std::move(json));
        }
    }

    std::size_t Size() const { return values_.size(); }

    std::vector<PyProblem> Check() const { return CheckValues(*device_, Json()); }

    void Apply() {
        Open();
        done_ = true;
        if (!values_.empty()) {
            ApplyValues(*device_, Json());
        }
    }

    void Discard() { done_ = true; }

private:
    void Open() const {
        if (done_) {
            throw py::value_error("the change set is closed");
        }
    }

    std::string Json() const {
        std::string json = "{";
        for (auto const& each : values_) {
            if (json.size() > 1) {
                json += ',';
            }
            AppendJsonString(json, each.first);
            json += ':';
            json += each.second;
        }
        json += '}';
        return json;
    }

    DevicePtr device_;
    std::vector<std::pair<std::string, std::string>> values_;
    std::unordered_map<std::string, std::size_t> index_;
    bool done_ = false;
};

std::vector<std::string> Paths(Device& device) {
    std::vector<boost::intrusive_ptr<InfoItemHolder const>> slots;
    std::vector<std::string> paths;
    std::lock_guard<std::mutex> lock(device.Mutex());
    device.GetAllInfoItems(slots);
    paths.reserve(slots.size());
    for (auto const& slot : slots) {
        paths.push_back(device.PathOf(*slot->GetInfoHolder()->GetInfo()));
    }
    return paths;
}

std::string HexId(unsigned int id) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", id);
    return text;
}

}  // namespace

}  // namespace OruPython

PYBIND11_MODULE(_oru, m) {
    using namespace OruPython;
    m.doc() = "Device settings for test scripts: the same checks, words and records as the library";
    m.attr("__version__") = Legacy::Oru::Version();

    g_checkError = PyErr_NewExceptionWithDoc(
        "oru.CheckError",
        "A value, a change set or a file was refused; .problems says which and why.",
        PyExc_ValueError, nullptr);
    m.attr("CheckError") = g_checkError;

    py::class_<PyProblem>(m, "Problem",
                          "One refusal: the setting's path, why, and where in the JSON")
        .def_readonly("path", &PyProblem::path)
        .def_readonly("message", &PyProblem::message)
        .def_readonly("pointer", &PyProblem::pointer)
        .def("__str__", &TextOf)
        .def("__repr__",
             [](PyProblem const& self) {
                 return "Problem(path=" + py::repr(py::str(self.path)).cast<std::string>() +
                        ", message=" + py::repr(py::str(self.message)).cast<std::string>() +
                        ", pointer=" + py::repr(py::str(self.pointer)).cast<std::string>() + ")";
             })
        .def("__eq__", [](PyProblem const& self, PyProblem const& other) {
            return self.path == other.path && self.message == other.message &&
                   self.pointer == other.pointer;
        });

    py::class_<ItemBase, ItemPtr>(m, "Item",
                                  "One value under a setting's id, shared with the directory")
        .def_property_readonly("id", [](ItemBase const& self) { return self.GetId(); })
        .def_property_readonly("family", [](ItemBase const& self) { return FamilyOf(self); })
        .def_property_readonly("value", [](ItemBase const& self) { return ValueOf(self, nullptr); })
        .def_property_readonly("text", [](ItemBase const& self) { return self.GetValAsString(); })
        .def("record", [](ItemBase const& self) { return RecordOf(self); })
        .def("__repr__", [](ItemBase const& self) {
            return "<oru.Item " + HexId(self.GetId()) + " " + FamilyOf(self) + " " +
                   Files::WriteValue(self) + ">";
        });

    py::class_<PyEvent>(m, "Event", "One change of a setting's value")
        .def_readonly("path", &PyEvent::path)
        .def_readonly("id", &PyEvent::id)
        .def_readonly("family", &PyEvent::family)
        .def_readonly("value", &PyEvent::value)
        .def_readonly("old", &PyEvent::old)
        .def_readonly("item", &PyEvent::item)
        .def("__repr__", [](PyEvent const& self) {
            return "Event(path=" + py::repr(py::str(self.path)).cast<std::string>() +
                   ", old=" + py::repr(self.old).cast<std::string>() +
                   ", value=" + py::repr(self.value).cast<std::string>() + ")";
        });

    py::class_<ChangeSet>(m, "ChangeSet", "Values set together: all or nothing, one event each")
        .def("__setitem__", &ChangeSet::Set)
        .def("__len__", &ChangeSet::Size)
        .def("check", &ChangeSet::Check)
        .def("apply", &ChangeSet::Apply)
        .def(
            "__enter__", [](ChangeSet& self) -> ChangeSet& { return self; },
            py::return_value_policy::reference_internal)
        .def("__exit__", [](ChangeSet& self, py::handle type, py::handle, py::handle) {
            if (type.is_none()) {
                self.Apply();
            } else {
                self.Discard();
            }
            return false;
        });

    py::class_<Device, DevicePtr>(m, "Directory", "A device's settings and their values")
        .def(py::init<>())
        .def_static(
            "load",
            [](py::object const& description, py::object const& values) {
                std::string const text = ReadFile(FsPath(description));
                if (values.is_none()) {
                    return Load(text, nullptr);
                }
                // A values file, or the values themselves as a dict.
                std::string const valuesText =
                    PyDict_Check(values.ptr()) ? ValuesJson(values) : ReadFile(FsPath(values));
                return Load(text, &valuesText);
            },
            py::arg("description"), py::arg("values") = py::none())
        .def_static(
            "from_json",
            [](std::string const& description, std::optional<std::string> const& values) {
                return Load(description, values ? &*values : nullptr);
            },
            py::arg("description"), py::arg("values") = py::none())
        .def(
            "load_values",
            [](Device& self, py::object const& file) { ApplyValues(self, ReadFile(FsPath(file))); })
        .def("update",
             [](Device& self, py::handle values) { ApplyValues(self, ValuesJson(values)); })
        .def("check",
             [](Device& self, py::handle values) { return CheckValues(self, ValuesJson(values)); })
        .def("change", [](DevicePtr const& self) { return ChangeSet(self); })
        .def("__getitem__",
             [](Device& self, std::string const& path) -> py::object {
                 auto const slot = SlotAt(self, path);
                 if (!slot->GetItemHolder()) {
                     return py::none();
                 }
                 return ValueOf(*slot->GetItemHolder()->GetItem(),
                                slot->GetInfoHolder()->GetInfo().get(), &self);
             })
        .def("__setitem__",
             [](Device& self, std::string const& path, py::handle value) {
                 std::string json = "{";
                 AppendJsonString(json, path);
                 json += ':';
                 AppendJson(json, value);
                 json += '}';
                 ApplyValues(self, json);
             })
        .def("__contains__",
             [](Device& self, std::string const& path) {
                 std::lock_guard<std::mutex> lock(self.Mutex());
                 return bool(self.FindInfoItem(path));
             })
        .def("__len__",
             [](Device& self) {
                 std::vector<boost::intrusive_ptr<InfoItemHolder const>> slots;
                 std::lock_guard<std::mutex> lock(self.Mutex());
                 self.GetAllInfoItems(slots);
                 return slots.size();
             })
        .def("__iter__", [](Device& self) { return py::iter(py::cast(Paths(self))); })
        .def("paths", &Paths)
        .def("item", &ItemAt)
        .def("info",
             [](Device& self, std::string const& path) {
                 std::string description;
                 {
                     std::lock_guard<std::mutex> lock(self.Mutex());
                     std::string const* found = self.DescriptionOf(path);
                     if (!found) {
                         throw py::key_error(path);
                     }
                     description = *found;
                 }
                 py::dict info = FromJson(description, ShapeOfDescription(description));
                 info["family"] = info["type"];
                 info["name"] = path.substr(path.rfind('/') + 1);
                 return info;
             })
        .def("record",
             [](Device& self, std::string const& path) {
                 ItemPtr const item = ItemAt(self, path);
                 if (!item) {
                     throw py::value_error(path + " has no value");
                 }
                 return RecordOf(*item);
             })
        .def(
            "events",
            [](DevicePtr const& self, double timeout) {
                std::vector<Device::Change> changes;
                {
                    py::gil_scoped_release free;
                    changes = self->TakeChanges(timeout);
                }
                std::vector<std::string> paths;
                {
                    std::lock_guard<std::mutex> lock(self->Mutex());
                    for (auto const& change : changes) {
                        paths.push_back(self->PathOf(*change.slot->GetInfoHolder()->GetInfo()));
                    }
                }
                py::list out;
                for (std::size_t i = 0; i < changes.size(); ++i) {
                    InfoBase const* info = changes[i].slot->GetInfoHolder()->GetInfo().get();
                    // The value this change made, not a later one.
                    auto const& now = changes[i].newItem;
                    PyEvent event;
                    event.path = paths[i];
                    event.id = info->GetId();
                    event.family = FamilyOf(*info);
                    event.item = now ? now->GetItem() : ItemPtr();
                    event.value = now ? ValueOf(*now->GetItem(), info, self.get()) : py::none();
                    event.old = changes[i].oldItem
                                    ? ValueOf(*changes[i].oldItem->GetItem(), info, self.get())
                                    : py::none();
                    out.append(py::cast(std::move(event)));
                }
                return out;
            },
            py::arg("timeout") = 0.0)
        .def_property_readonly("events_lost",
                               [](DevicePtr const& self) { return self->LostChanges(); })
        .def("values_json",
             [](Device& self) {
                 py::gil_scoped_release free;
                 std::lock_guard<std::mutex> lock(self.Mutex());
                 return Files::WriteValues(self);
             })
        .def("save_values",
             [](Device& self, py::object const& file) {
                 std::string text;
                 {
                     py::gil_scoped_release free;
                     std::lock_guard<std::mutex> lock(self.Mutex());
                     text = Files::WriteValues(self);
                 }
                 WriteFile(FsPath(file), text);
             })
        .def("describe", [](Device& self) {
            py::gil_scoped_release free;
            std::lock_guard<std::mutex> lock(self.Mutex());
            return Files::WriteDescription(self);
        });

    m.def(
        "decode",
        [](py::bytes const& record, std::optional<DevicePtr> const& device) {
            return Decode(record, device ? *device : DevicePtr());
        },
        py::arg("record"), py::arg("device") = py::none());
}
