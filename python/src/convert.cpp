#include "convert.h"

#include <cmath>
#include <limits>

#include <nlohmann/json.hpp>

#include "bridge.h"

namespace py = pybind11;

namespace OruPython {

namespace {

// Deep enough for any composite a description can declare; a cycle in the
// Python value would otherwise recurse without end.
constexpr int k_maxDepth = 64;

void Append(std::string& out, py::handle value, int depth) {
    if (depth > k_maxDepth) {
        throw py::value_error("the value is nested deeper than 64 levels");
    }
    if (value.is_none()) {
        out += "null";
    } else if (PyBool_Check(value.ptr())) {
        out += value.ptr() == Py_True ? "true" : "false";
    } else if (PyLong_Check(value.ptr())) {
        // The digits, whatever the size: the files layer says what does not fit.
        out += py::str(value).cast<std::string>();
    } else if (PyFloat_Check(value.ptr())) {
        double const number = PyFloat_AsDouble(value.ptr());
        if (std::isnan(number)) {
            out += "\"NaN\"";
        } else if (std::isinf(number)) {
            out += number > 0 ? "\"Infinity\"" : "\"-Infinity\"";
        } else {
            out += nlohmann::json(number).dump();
        }
    } else if (PyUnicode_Check(value.ptr())) {
        AppendJsonString(out, value.cast<std::string>());
    } else if (PyList_Check(value.ptr()) || PyTuple_Check(value.ptr())) {
        out += '[';
        bool first = true;
        for (py::handle each : value) {
            if (!first) {
                out += ',';
            }
            first = false;
            Append(out, each, depth + 1);
        }
        out += ']';
    } else if (PyDict_Check(value.ptr())) {
        out += '{';
        bool first = true;
        for (auto const& member : py::reinterpret_borrow<py::dict>(value)) {
            if (!PyUnicode_Check(member.first.ptr())) {
                throw py::type_error("a member name must be a str, not " +
                                     py::str(py::type::of(member.first)).cast<std::string>());
            }
            if (!first) {
                out += ',';
            }
            first = false;
            AppendJsonString(out, member.first.cast<std::string>());
            out += ':';
            Append(out, member.second, depth + 1);
        }
        out += '}';
    } else {
        throw py::type_error("a setting's value is a bool, int, float, str, list or dict, not " +
                             py::str(py::type::of(value)).cast<std::string>());
    }
}

using Json = nlohmann::ordered_json;

bool IsCount(std::string const& key) {
    for (char const* name : {"id", "permission", "minSize", "maxSize", "maxLength", "protocol",
                             "version", "compatVersion", "addrGroupPrefix"}) {
        if (key == name) {
            return true;
        }
    }
    return false;
}

py::object FromNode(Json const& node, Shape const& shape) {
    bool const floats = shape.floats;
    switch (node.type()) {
        case Json::value_t::null:
            return py::none();
        case Json::value_t::boolean:
            return py::bool_(node.get<bool>());
        case Json::value_t::number_integer:
            if (floats) {
                return py::float_(static_cast<double>(node.get<std::int64_t>()));
            }
            return py::int_(node.get<std::int64_t>());
        case Json::value_t::number_unsigned:
            if (floats) {
                return py::float_(static_cast<double>(node.get<std::uint64_t>()));
            }
            return py::int_(node.get<std::uint64_t>());
        case Json::value_t::number_float:
            return py::float_(node.get<double>());
        case Json::value_t::string: {
            std::string const& text = node.get_ref<std::string const&>();
            if (floats) {
                if (text == "NaN") {
                    return py::float_(std::numeric_limits<double>::quiet_NaN());
                }
                if (text == "Infinity" || text == "-Infinity") {
                    double const infinity = std::numeric_limits<double>::infinity();
                    return py::float_(text[0] == '-' ? -infinity : infinity);
                }
            }
            return py::str(text);
        }
        case Json::value_t::array: {
            py::list out;
            std::size_t i = 0;
            for (auto const& each : node) {
                out.append(FromNode(each, i < shape.parts.size() ? shape.parts[i] : shape));
                ++i;
            }
            return std::move(out);
        }
        case Json::value_t::object: {
            py::dict out;
            for (auto const& member : node.items()) {
                // Counts and identities in a description are whole numbers
                // whatever the family.
                bool const count = IsCount(member.key());
                // Descriptions write ids as hexadecimal text; a script compares them as numbers.
                if (member.key() == "id" && member.value().is_string()) {
                    std::string const& text = member.value().get_ref<std::string const&>();
                    out[py::str(member.key())] = py::int_(std::stoul(text, nullptr, 16));
                    continue;
                }
                out[py::str(member.key())] = FromNode(member.value(), count ? Shape() : shape);
            }
            return std::move(out);
        }
        default:
            return py::none();
    }
}

}  // namespace

void AppendJson(std::string& out, py::handle value) {
    Append(out, value, 0);
}

void AppendJsonString(std::string& out, std::string const& text) {
    // Text that is not UTF-8 is marked, not refused: the files layer then
    // names the value that does not read.
    out += nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

py::object FromJson(std::string const& json, Shape const& shape) {
    return FromNode(Json::parse(json), shape);
}

namespace {

Shape ShapeOfNode(Json const& description) {
    Shape shape;
    auto const type = description.find("type");
    if (type != description.end() && type->is_string()) {
        shape.floats = HoldsFloats(type->get<std::string>());
    }
    auto const children = description.find("children");
    if (children != description.end() && children->is_array()) {
        for (auto const& child : *children) {
            shape.parts.push_back(ShapeOfNode(child));
        }
    }
    return shape;
}

}  // namespace

Shape ShapeOfDescription(std::string const& description) {
    return ShapeOfNode(Json::parse(description));
}

}  // namespace OruPython
