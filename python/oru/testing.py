"""Test values from a setting's description.

``edges(device.info(path))`` reads the plain data of one setting (its family,
bounds, default, table) and proposes values at its edges: those a device
should take (the bounds, the default, each enabled entry) and those it should
refuse (one past each bound, each disabled entry, a value of the wrong type).
It proposes only: whether a value passes is for the device to say, so a test
sets each value and compares the verdict with the proposal:

    for edge in oru.testing.edges(device.info("Audio/Input/Gain")).failing:
        with pytest.raises(oru.CheckError):
            device["Audio/Input/Gain"] = edge.value
"""

import math
import struct
from typing import Any, Callable, Dict, List, NamedTuple, Optional, Tuple

__all__ = ["Edge", "Edges", "edges"]

# Arrays longer than this are not proposed: their values would be the test's
# whole cost.
_LONGEST = 1024


class Edge(NamedTuple):
    """One proposed value and what it stands for ("max", "max + 1", "entry 'day'")."""

    label: str
    value: Any


class Edges(NamedTuple):
    """The values a setting should take and those it should refuse."""

    passing: List[Edge]
    failing: List[Edge]


def _element(family: str) -> str:
    return family.partition(":")[2]


def _is_float(element: str) -> bool:
    return element in ("Float", "Double")


def _next(value: Any, element: str, upward: bool) -> Optional[Any]:
    """The next value of the element type past value, or None where there is none."""
    if not _is_float(element):
        return value + 1 if upward else value - 1
    direction = math.inf if upward else -math.inf
    if element == "Double":
        step = math.nextafter(float(value), direction)
        return step if math.isfinite(step) else None
    # The next float: one unit in the last place of the 32-bit form.
    single = struct.unpack("<f", struct.pack("<f", float(value)))[0]
    bits = struct.unpack("<i", struct.pack("<f", single))[0]
    if single == 0.0:
        bits = 1 if upward else -2147483647
    elif (single > 0) == upward:
        bits += 1
    else:
        bits -= 1
    if bits >= 0:
        step = struct.unpack("<f", struct.pack("<i", bits))[0]
    else:
        step = struct.unpack("<f", struct.pack("<I", bits & 0xFFFFFFFF))[0]
    return step if math.isfinite(step) else None


def _wrong_type(sample: Any) -> List[Edge]:
    """Values of another JSON type than sample's."""
    if isinstance(sample, bool):
        return [Edge("a number for true/false", 1), Edge("text for true/false", "true")]
    if isinstance(sample, (int, float)):
        return [Edge("text for a number", "1"), Edge("a bool for a number", True)]
    if isinstance(sample, str):
        return [Edge("a number for text", 1)]
    if isinstance(sample, list):
        return [Edge("text for a list", "[]")]
    if isinstance(sample, dict):
        return [Edge("a number for an object", 1)]
    return [Edge("a list for a scalar", [])]


def _bounded(info: Dict[str, Any], element: str, keys: Tuple[str, str] = ("min", "max")) -> Edges:
    low, high = info[keys[0]], info[keys[1]]
    passing = [Edge("min", low), Edge("max", high), Edge("default", info["default"])]
    failing = []
    below, above = _next(low, element, False), _next(high, element, True)
    if below is not None:
        failing.append(Edge("min - 1", below))
    if above is not None:
        failing.append(Edge("max + 1", above))
    if not _is_float(element):
        failing.append(Edge("a fraction", low + 0.5))
    return Edges(passing, failing + _wrong_type(low))


def _sized(info: Dict[str, Any], element: Any) -> Edges:
    """Arrays: the counts at and one past the sizes, filled with element."""
    low, high = info.get("minSize", 0), info.get("maxSize", 0)
    passing = [Edge("default", info["default"])]
    failing = []
    if low <= _LONGEST:
        passing.append(Edge("minSize elements", [element] * low))
        if low > 0:
            failing.append(Edge("minSize - 1 elements", [element] * (low - 1)))
    if high <= _LONGEST:
        passing.append(Edge("maxSize elements", [element] * high))
        failing.append(Edge("maxSize + 1 elements", [element] * (high + 1)))
    return Edges(passing, failing + _wrong_type([]))


def _numeric(info: Dict[str, Any]) -> Edges:
    return _bounded(info, _element(info["family"]))


def _numeric_array(info: Dict[str, Any]) -> Edges:
    element = _element(info["family"])
    default = info.get("default") or [info["min"]]
    edges = _sized(info, default[0])
    low, high = info["min"], info["max"]
    # Arrays of a count the sizes allow, all but the first element from the default.
    count = max(1, info.get("minSize", 0))
    if count > info.get("maxSize", 0) or count > _LONGEST:
        return edges

    def with_first(first: Any) -> List[Any]:
        return [first] + [default[0]] * (count - 1)

    edges.passing.extend([Edge("an element at min", with_first(low)),
                          Edge("an element at max", with_first(high))])
    below, above = _next(low, element, False), _next(high, element, True)
    if below is not None:
        edges.failing.append(Edge("an element below min", with_first(below)))
    if above is not None:
        edges.failing.append(Edge("an element above max", with_first(above)))
    if not _is_float(element):
        edges.failing.append(Edge("an element that is no whole number", with_first(low + 0.5)))
    edges.failing.append(Edge("text as an element", with_first("1")))
    return edges


def _sparse(info: Dict[str, Any]) -> Edges:
    table = info["table"]
    passing = [Edge("default", info["default"])]
    passing += [Edge("entry %r" % (each,), each) for each in table]
    failing = []
    if table and isinstance(table[0], str):
        failing.append(Edge("no entry", _absent_text(table)))
    elif table:
        element = _element(info["family"])
        outside = _next(max(table), element, True)
        if outside is not None:
            failing.append(Edge("past the last entry", outside))
    return Edges(passing, failing + _wrong_type(table[0] if table else info["default"]))


def _absent_text(table: List[str]) -> str:
    text = "not-an-entry"
    while text in table:
        text += "-"
    return text


def _enum(info: Dict[str, Any]) -> Edges:
    passing = [Edge("default", info["default"])]
    failing = []
    names = []
    for entry in info["table"]:
        name = entry.get("name") or entry["value"]
        names.append(entry.get("name", ""))
        if entry.get("disabled"):
            failing.append(Edge("disabled entry %r" % (name,), name))
        else:
            passing.append(Edge("entry %r" % (name,), name))
    failing.append(Edge("no entry", _absent_text(names)))
    return Edges(passing, failing + [Edge("a list for an entry", [])])


def _string(info: Dict[str, Any]) -> Edges:
    passing = [Edge("default", info["default"])]
    failing = []
    longest = info.get("maxLength", 0)
    if 0 < longest <= 1 << 20:
        passing.append(Edge("maxLength characters", "x" * longest))
        failing.append(Edge("maxLength + 1 characters", "x" * (longest + 1)))
    return Edges(passing, failing + _wrong_type(""))


def _bool(info: Dict[str, Any]) -> Edges:
    default = info["default"]
    passing = [Edge("default", default)]
    failing = []
    if info.get("fixed"):
        failing.append(Edge("not the fixed default", not default))
    else:
        passing.append(Edge("not the default", not default))
    return Edges(passing, failing + _wrong_type(True))


def _colour(info: Dict[str, Any]) -> Edges:
    passing = [Edge("min", info["min"]), Edge("max", info["max"]), Edge("default", info["default"])]
    failing = []
    for part in "argb":
        below = _next(info["min"][part], "Float", False)
        above = _next(info["max"][part], "Float", True)
        if below is not None:
            failing.append(Edge("%s below min" % part, dict(info["min"], **{part: below})))
        if above is not None:
            failing.append(Edge("%s above max" % part, dict(info["max"], **{part: above})))
    failing.append(Edge("a member missing", {k: v for k, v in info["default"].items() if k != "b"}))
    failing.append(Edge("text as a member", dict(info["default"], a="1")))
    return Edges(passing, failing + _wrong_type({}))


def _axes(info: Dict[str, Any], element: str, names: Dict[str, Tuple[str, str]]) -> Edges:
    """Coordinates and rectangles: one member per axis, each with its own bounds.

    names maps each member of the value to the place of its bounds in info:
    {"left": ("topLeft", "x"), ...}, or {"x": ("", "x"), ...} for a coordinate.
    """

    def bounds(member: str) -> Dict[str, Any]:
        outer, axis = names[member]
        return (info[outer] if outer else info)[axis]

    value = {member: bounds(member)["default"] for member in names}
    low = {member: bounds(member)["min"] for member in names}
    high = {member: bounds(member)["max"] for member in names}
    passing = [Edge("default", value), Edge("min", low), Edge("max", high)]
    failing = []
    for member in names:
        below = _next(low[member], element, False)
        above = _next(high[member], element, True)
        if below is not None:
            failing.append(Edge("%s below min" % member, dict(value, **{member: below})))
        if above is not None:
            failing.append(Edge("%s above max" % member, dict(value, **{member: above})))
    return Edges(passing, failing + _wrong_type({}))


_COORDINATE = {"x": ("", "x"), "y": ("", "y")}
_RECTANGLE = {
    "left": ("topLeft", "x"),
    "top": ("topLeft", "y"),
    "right": ("bottomRight", "x"),
    "bottom": ("bottomRight", "y"),
}


def _coordinate(info: Dict[str, Any]) -> Edges:
    return _axes(info, _element(info["family"]), _COORDINATE)


def _rectangle(info: Dict[str, Any]) -> Edges:
    return _axes(info, _element(info["family"]), _RECTANGLE)


def _rect_array(info: Dict[str, Any]) -> Edges:
    one = _axes(info, _element(info["family"]), _RECTANGLE)
    inside = one.passing[0].value
    low, high = info.get("minSize", 0), info.get("maxSize", 0)
    passing, failing = [], []
    if low <= _LONGEST:
        passing.append(Edge("minSize rectangles", [inside] * low))
        if low > 0:
            failing.append(Edge("minSize - 1 rectangles", [inside] * (low - 1)))
    if high <= _LONGEST:
        passing.append(Edge("maxSize rectangles", [inside] * high))
        failing.append(Edge("maxSize + 1 rectangles", [inside] * (high + 1)))
    if high > 0:
        passing += [Edge("a rectangle at its " + e.label, [e.value]) for e in one.passing]
        failing += [Edge("a rectangle with " + e.label, [e.value]) for e in one.failing]
    return Edges(passing, failing + _wrong_type([]))


def _text_only(info: Dict[str, Any]) -> Edges:
    return Edges([Edge("default", info["default"])], _wrong_type(""))


def _app_endpoint_array(info: Dict[str, Any]) -> Edges:
    default = info["default"]
    sample = default[0] if default else "http://192.0.2.1:80"
    edges = _sized(info, sample)
    edges.failing.append(Edge("a number as an element", [1]))
    return edges


def _composite(info: Dict[str, Any]) -> Edges:
    children = info["children"]
    parts = []
    for child in children:
        child = dict(child, family=child["type"])
        parts.append(edges(child))
    defaults = [part.passing[0].value for part in parts]
    passing = [Edge("each part at its default", list(defaults))]
    failing = []
    for i, (child, part) in enumerate(zip(children, parts)):
        name = child.get("name") or str(i)
        for edge in part.passing[1:]:
            value = list(defaults)
            value[i] = edge.value
            passing.append(Edge("%s at its %s" % (name, edge.label), value))
        for edge in part.failing:
            value = list(defaults)
            value[i] = edge.value
            failing.append(Edge("%s with %s" % (name, edge.label), value))
    if defaults:
        failing.append(Edge("a part missing", defaults[:-1]))
    failing.append(Edge("a part too many", defaults + [defaults[-1] if defaults else 0]))
    return Edges(passing, failing + _wrong_type([]))


_FAMILIES: Dict[str, Callable[[Dict[str, Any]], Edges]] = {
    "Bool": _bool,
    "Numeric": _numeric,
    "NumericArray": _numeric_array,
    "NumericSparse": _sparse,
    "Enum": _enum,
    "String": _string,
    "StringArray": lambda info: _sized(info, "x"),
    "BoolArray": lambda info: _sized(info, True),
    "StringSparse": _sparse,
    "Colour": _colour,
    "Coordinate": _coordinate,
    "Rectangle": _rectangle,
    "RectArray": _rect_array,
    "Addr": _text_only,
    "Endpoint": _text_only,
    "AppEndpoint": _text_only,
    "AppEndpointArray": _app_endpoint_array,
    "Composite": _composite,
}


def edges(info: Dict[str, Any]) -> Edges:
    """The values at the edges of the setting that info describes.

    info is what ``Directory.info(path)`` answers. For a family without
    edges of its own only the default passes and a value of the wrong type
    fails.
    """
    family = info.get("family") or info["type"]
    propose = _FAMILIES.get(family.partition(":")[0])
    if propose is None:
        failing = _wrong_type(info["default"]) if "default" in info else []
        passing = [Edge("default", info["default"])] if "default" in info else []
        return Edges(passing, failing)
    found = propose(dict(info, family=family))
    return Edges(_unique(found.passing), _unique(found.failing))


def _unique(proposed: List[Edge]) -> List[Edge]:
    """Each value once, the first label kept."""
    seen: List[Any] = []
    out = []
    for edge in proposed:
        key = (type(edge.value), repr(edge.value))
        if key not in seen:
            seen.append(key)
            out.append(edge)
    return out
