// Python values to the JSON text of values files and back. The files layer
// reads that text and gives every verdict; this side only spells a Python
// value the way a values file would: an int by its digits (exact at any
// size, so a value that does not fit is refused rather than wrapped), a float
// by the shortest digits that read back the same double, a bool as
// true/false, never as a number.
//
// Called with the GIL held.
#ifndef ORU_PYTHON_CONVERT_H
#define ORU_PYTHON_CONVERT_H

#include <string>
#include <vector>

#include <pybind11/pybind11.h>

namespace OruPython {

// Appends the JSON text of value; TypeError for what a values file cannot hold.
void AppendJson(std::string& out, pybind11::handle value);

// A JSON string literal.
void AppendJsonString(std::string& out, std::string const& text);

// Which numbers of a value are floats: all of them in a value of a float
// family, where the text "2" stands for 2.0 and "NaN", "Infinity" and
// "-Infinity" for the numbers JSON lacks; a composite's parts each by their own.
struct Shape {
    bool floats = false;
    std::vector<Shape> parts;
};

// The shape of the values of a setting from its description (a JSON object
// with "type" and, for a composite, "children").
Shape ShapeOfDescription(std::string const& description);

// The Python value of the JSON text of one value, as the files layer writes
// it, its members in the order written.
pybind11::object FromJson(std::string const& json, Shape const& shape = Shape());

}  // namespace OruPython

#endif
