// One control per family, made from the setting's description entry. A control
// shows a value in the family's JSON form and gives back what the user made of
// it; whether that value is acceptable is the service's to say, so bounds are
// shown here but never enforced.
import {brief, isRaw, numberFromText, numberText, parse, same} from "./json.js";

// A DOM element: h("div", {class: "x", onclick: f}, child, "text", ...).
export function h(tag, attrs, ...children) {
    const svg = tag.startsWith("svg:");
    const el = svg ? document.createElementNS("http://www.w3.org/2000/svg", tag.slice(4))
                   : document.createElement(tag);
    for (const [key, value] of Object.entries(attrs || {})) {
        if (value === undefined || value === null || value === false) {
            continue;
        }
        if (key.startsWith("on")) {
            el.addEventListener(key.slice(2), value);
        } else if (key === "class") {
            el.setAttribute("class", value);
        } else if (key in el && !svg && typeof value !== "string") {
            el[key] = value;
        } else {
            el.setAttribute(key, value === true ? "" : value);
        }
    }
    for (const child of children.flat()) {
        if (child !== undefined && child !== null && child !== false) {
            el.append(child instanceof Node ? child : String(child));
        }
    }
    return el;
}

const family = (type) => String(type).split(":")[0];
const element = (type) => String(type).split(":")[1] || "";
const isFloatElement = (e) => e === "Float" || e === "Double";
const isSignedElement = (e) => e.startsWith("S") || isFloatElement(e);

function num(value) {
    if (isRaw(value)) {
        return Number(value.rawJSON);
    }
    return typeof value === "number" ? value : NaN;
}

// A value in the one form the page compares and shows: an enumeration's
// entry by the form a values file writes (its name, or its number where no
// name leads back to it), whichever of the two the value came in.
export function normalize(desc, value) {
    if (value === undefined || value === null || !desc) {
        return value;
    }
    const kind = family(desc.type);
    if (kind === "Enum" && Array.isArray(desc.table)) {
        const forms = enumForms(desc.table);
        for (let i = 0; i < desc.table.length; ++i) {
            if (typeof value === "string" ? forms[i] === value : same(desc.table[i].value, value)) {
                return forms[i];
            }
        }
        return value;
    }
    if (kind === "Composite" && Array.isArray(desc.children) && Array.isArray(value)) {
        return value.map((part, i) => normalize(desc.children[i], part));
    }
    return value;
}

// The default of a setting in its value form, or undefined when it has none.
export function defaultOf(desc) {
    switch (family(desc.type)) {
        case "Coordinate":
            return desc.x && desc.y ? {x: desc.x.default, y: desc.y.default} : undefined;
        case "Rectangle": {
            const tl = desc.topLeft, br = desc.bottomRight;
            if (!tl || !br || !tl.x || !tl.y || !br.x || !br.y) {
                return undefined;
            }
            return {left: tl.x.default, top: tl.y.default, right: br.x.default,
                    bottom: br.y.default};
        }
        case "Composite": {
            if (!Array.isArray(desc.children)) {
                return undefined;
            }
            const parts = desc.children.map(defaultOf);
            return parts.some((p) => p === undefined) ? undefined : parts;
        }
        default:
            return normalize(desc, desc.default);
    }
}

function range(low, high) {
    return `${numberText(low)} … ${numberText(high)}`;
}

function sizes(desc) {
    const low = num(desc.minSize), high = num(desc.maxSize);
    if (Number.isNaN(low) && Number.isNaN(high)) {
        return "";
    }
    if (Number.isNaN(high) || high >= 2147483647) {
        return `at least ${numberText(desc.minSize)} elements`;
    }
    if (low === high) {
        return `exactly ${numberText(desc.minSize)} elements`;
    }
    return `${numberText(desc.minSize)} to ${numberText(desc.maxSize)} elements`;
}

function pairBounds(point) {
    if (!point || !point.x || !point.y) {
        return "";
    }
    return `x ${range(point.x.min, point.x.max)}, y ${range(point.y.min, point.y.max)}`;
}

// The bounds as a user reads them, beside the control.
export function boundsText(desc) {
    switch (family(desc.type)) {
        case "Numeric":
            return desc.min !== undefined ? range(desc.min, desc.max) : "";
        case "NumericArray": {
            const each = desc.min !== undefined ? `, each ${range(desc.min, desc.max)}` : "";
            return sizes(desc) + each;
        }
        case "String":
            return num(desc.maxLength) > 0 ? `at most ${numberText(desc.maxLength)} bytes` : "";
        case "StringArray":
        case "BoolArray":
        case "AppEndpointArray":
            return sizes(desc);
        case "RectArray":
            return [sizes(desc), rectBounds(desc)].filter(Boolean).join("; ");
        case "Colour": {
            if (!desc.min || !desc.max) {
                return "";
            }
            const keys = ["a", "r", "g", "b"];
            const uniform = keys.every((k) => same(desc.min[k], desc.min.a) &&
                                              same(desc.max[k], desc.max.a));
            return uniform ? `each of a, r, g, b ${range(desc.min.a, desc.max.a)}`
                           : keys.map((k) => `${k} ${range(desc.min[k], desc.max[k])}`).join(", ");
        }
        case "Coordinate":
            return pairBounds(desc);
        case "Rectangle":
            return rectBounds(desc);
        default:
            return "";
    }
}

function rectBounds(desc) {
    const tl = pairBounds(desc.topLeft), br = pairBounds(desc.bottomRight);
    if (!tl || !br) {
        return "";
    }
    return tl === br ? `corners ${tl}` : `top left ${tl}; bottom right ${br}`;
}

let serial = 0;
function uid(prefix) {
    serial += 1;
    return `${prefix}-${serial}`;
}

// A control: el is what is placed, valueEl the element that holds the value
// (the test contract's data-role="value"), labelFor the id a <label> names.
class Control {
    constructor(el, valueEl, get, set, labelFor) {
        this.el = el;
        this.valueEl = valueEl;
        this.get = get;
        this.set = set;
        this.labelFor = labelFor;
        this.problem = () => "";
    }
}

function numberInput(id, label, elementType, onInput) {
    let mode;
    if (!isSignedElement(elementType)) {
        mode = isFloatElement(elementType) ? "decimal" : "numeric";
    }
    return h("input", {
        type: "text", id, "aria-label": label, inputmode: mode, autocomplete: "off",
        spellcheck: "false", class: "number", oninput: onInput,
    });
}

function numericControl(desc, opts) {
    const elementType = element(desc.type);
    const id = uid("v");
    const input = numberInput(id, opts.label, elementType, () => {
        syncSlider();
        opts.onInput();
    });
    const low = num(desc.min), high = num(desc.max);
    let slider = null;
    const span = high - low;
    if (Number.isFinite(span) && span > 0 && span <= 1000) {
        let step = 1;
        if (isFloatElement(elementType) && span < 10) {
            step = Math.pow(10, Math.floor(Math.log10(span)) - 2);
        }
        slider = h("input", {
            type: "range", min: String(low), max: String(high), step: String(step),
            "aria-label": `${opts.label} (slider)`, class: "slider",
            oninput: () => {
                const decimals = step < 1 ? Math.max(0, -Math.floor(Math.log10(step))) : 0;
                input.value = Number(slider.value).toFixed(decimals).replace(/\.0+$/, "");
                opts.onInput();
            },
        });
    }
    const syncSlider = () => {
        if (slider) {
            const n = Number(input.value);
            if (input.value.trim() !== "" && Number.isFinite(n)) {
                slider.value = String(Math.min(high, Math.max(low, n)));
            }
        }
    };
    const el = h("div", {class: "numeric"}, input, slider);
    return new Control(
        el, input, () => numberFromText(input.value),
        (v) => {
            input.value = numberText(v);
            syncSlider();
        },
        id);
}

function textControl(desc, opts) {
    const id = uid("v");
    const limit = num(desc.maxLength);
    const counter = limit > 0 ? h("span", {class: "counter", "aria-live": "off"}) : null;
    const encoder = new TextEncoder();
    const count = () => {
        if (counter) {
            counter.textContent = `${encoder.encode(input.value).length}/${limit}`;
        }
    };
    const input = h("input", {
        type: "text", id, "aria-label": opts.label, autocomplete: "off", spellcheck: "false",
        oninput: () => {
            count();
            opts.onInput();
        },
    });
    const el = counter ? h("div", {class: "text-with-counter"}, input, counter) : input;
    return new Control(el, input, () => input.value, (v) => {
        input.value = typeof v === "string" ? v : v === undefined ? "" : JSON.stringify(v);
        count();
    }, id);
}

// Addresses and endpoints: their text, or the object form when the value has
// no text that reads back the same.
function textOrObjectControl(desc, opts, placeholder) {
    const id = uid("v");
    const input = h("input", {
        type: "text", id, "aria-label": opts.label, autocomplete: "off", spellcheck: "false",
        placeholder, class: "uri", oninput: opts.onInput,
    });
    const control = new Control(
        input, input,
        () => {
            const t = input.value.trim();
            if (t.startsWith("{") || t.startsWith("[")) {
                try {
                    return parse(t);
                } catch (e) {
                    return input.value;
                }
            }
            return input.value;
        },
        (v) => {
            input.value = typeof v === "string" ? v : v === undefined ? "" : JSON.stringify(v);
        },
        id);
    return control;
}

function switchControl(desc, opts) {
    const id = uid("v");
    const state = h("span", {class: "switch-state", "aria-hidden": "true"});
    const input = h("input", {
        type: "checkbox", role: "switch", id, "aria-label": opts.label, class: "switch",
        onchange: () => {
            show();
            opts.onInput();
        },
    });
    const show = () => {
        state.textContent = input.checked ? "on" : "off";
    };
    const el = h("span", {class: "switch-wrap"}, input, state);
    return new Control(el, input, () => input.checked, (v) => {
        input.checked = v === true;
        show();
    }, id);
}

// Enumeration entries written as the values file writes them: the name, or
// the number where no name leads back to the entry.
function enumForms(table) {
    const seen = new Set();
    return table.map((entry) => {
        const name = typeof entry.name === "string" ? entry.name : "";
        if (name !== "" && !seen.has(name)) {
            seen.add(name);
            return name;
        }
        return entry.value;
    });
}

function selectControl(desc, opts) {
    const id = uid("v");
    const select = h("select", {id, "aria-label": opts.label, onchange: opts.onInput});
    const isEnum = family(desc.type) === "Enum";
    const table = Array.isArray(desc.table) ? desc.table : [];
    const forms = isEnum ? enumForms(table) : table;
    table.forEach((entry, i) => {
        let text;
        let disabled = false;
        if (isEnum) {
            const name = typeof entry.name === "string" && entry.name !== "" ? entry.name : "";
            text = name ? `${name} (${numberText(entry.value)})` : numberText(entry.value);
            disabled = entry.disabled === true;
            if (disabled) {
                text += " — disabled";
            }
        } else {
            text = typeof entry === "string" ? entry : numberText(entry);
        }
        select.append(h("option", {value: String(i), disabled, class: disabled ? "disabled" : null},
                        text));
    });
    // A value outside the table still shows, as what the device holds.
    const other = h("option", {value: "other", hidden: true, disabled: true});
    select.append(other);
    let otherValue;
    const indexOf = (v) => {
        if (isEnum) {
            for (let i = 0; i < table.length; ++i) {
                if (typeof v === "string" ? forms[i] === v || table[i].name === v
                                          : same(table[i].value, v)) {
                    return i;
                }
            }
            return -1;
        }
        return forms.findIndex((f) => same(f, v));
    };
    return new Control(
        select, select,
        () => (select.value === "other" ? otherValue : forms[Number(select.value)]),
        (v) => {
            const i = indexOf(v);
            if (i >= 0) {
                select.value = String(i);
                other.hidden = true;
            } else {
                otherValue = v;
                other.textContent = `${brief(v)} (not in the list)`;
                other.hidden = false;
                select.value = "other";
            }
        },
        id);
}

// A group of labelled number fields over the members of an object value.
function numberGroup(desc, opts, fields, elementType, onInput) {
    const inputs = {};
    const cells = fields.map(([key, caption]) => {
        const id = uid("v");
        inputs[key] = numberInput(id, `${opts.label} ${caption}`, elementType, onInput);
        return h("span", {class: "field"}, h("label", {for: id}, caption), inputs[key]);
    });
    return {
        cells, inputs,
        get() {
            const value = {};
            for (const [key] of fields) {
                value[key] = numberFromText(inputs[key].value);
            }
            return value;
        },
        set(v) {
            for (const [key] of fields) {
                inputs[key].value = v && typeof v === "object" ? numberText(v[key]) : "";
            }
        },
    };
}

const rectFields = [["left", "left"], ["top", "top"], ["right", "right"], ["bottom", "bottom"]];

// The area the corners may lie in: the union of both corners' bounds.
function drawingArea(desc) {
    const pts = family(desc.type) === "Coordinate" ? [desc] : [desc.topLeft, desc.bottomRight];
    let x0 = Infinity, x1 = -Infinity, y0 = Infinity, y1 = -Infinity;
    for (const p of pts) {
        if (!p || !p.x || !p.y) {
            return null;
        }
        x0 = Math.min(x0, num(p.x.min));
        x1 = Math.max(x1, num(p.x.max));
        y0 = Math.min(y0, num(p.y.min));
        y1 = Math.max(y1, num(p.y.max));
    }
    if (![x0, x1, y0, y1].every(Number.isFinite) || x1 <= x0 || y1 <= y0) {
        return null;
    }
    return {x0, x1, y0, y1};
}

// A small drawing of rectangles or a point inside the setting's bounds.
function drawing(area, title) {
    // Within 120 x 80 pixels, in the bounds' own proportions (within reason).
    const ratio = Math.min(4, Math.max(0.25, (area.y1 - area.y0) / (area.x1 - area.x0)));
    const w = ratio > 80 / 120 ? Math.round(80 / ratio) : 120;
    const hgt = Math.round(w * ratio);
    const svg = h("svg:svg", {
        viewBox: `0 0 ${w} ${hgt}`, width: String(w), height: String(hgt), class: "drawing",
        role: "img", "aria-label": title,
    });
    const sx = (x) => ((Math.min(area.x1, Math.max(area.x0, x)) - area.x0) / (area.x1 - area.x0)) * w;
    const sy = (y) => ((Math.min(area.y1, Math.max(area.y0, y)) - area.y0) / (area.y1 - area.y0)) * hgt;
    svg.append(h("svg:rect", {x: "0.5", y: "0.5", width: String(w - 1), height: String(hgt - 1),
                              class: "bounds"}));
    const layer = h("svg:g", {});
    svg.append(layer);
    return {
        svg,
        rects(list) {
            layer.replaceChildren();
            for (const r of list) {
                const [l, t, rr, b] = [r.left, r.top, r.right, r.bottom].map(num);
                if (![l, t, rr, b].every(Number.isFinite)) {
                    continue;
                }
                // A rectangle small against its bounds still shows where it lies.
                const x = sx(Math.min(l, rr)), y = sy(Math.min(t, b));
                layer.append(h("svg:rect", {
                    x: String(Math.min(x, w - 3)), y: String(Math.min(y, hgt - 3)),
                    width: String(Math.max(3, sx(Math.max(l, rr)) - x)),
                    height: String(Math.max(3, sy(Math.max(t, b)) - y)), class: "shape",
                }));
            }
        },
        point(p) {
            layer.replaceChildren();
            const x = num(p && p.x), y = num(p && p.y);
            if (Number.isFinite(x) && Number.isFinite(y)) {
                layer.append(h("svg:line", {x1: String(sx(x)), x2: String(sx(x)), y1: "0",
                                            y2: String(hgt), class: "cross"}));
                layer.append(h("svg:line", {y1: String(sy(y)), y2: String(sy(y)), x1: "0",
                                            x2: String(w), class: "cross"}));
                layer.append(h("svg:circle", {cx: String(sx(x)), cy: String(sy(y)), r: "3",
                                              class: "shape"}));
            }
        },
    };
}

function rectangleControl(desc, opts) {
    const area = drawingArea(desc);
    const picture = area ? drawing(area, `${opts.label} within its bounds`) : null;
    const group = numberGroup(desc, opts, rectFields, element(desc.type), () => {
        redraw();
        opts.onInput();
    });
    const redraw = () => picture && picture.rects([group.get()]);
    const box = h("div", {class: "group", role: "group", "aria-label": opts.label}, group.cells);
    const el = h("div", {class: "shape-control"}, box, picture && picture.svg);
    return new Control(el, box, () => group.get(), (v) => {
        group.set(v);
        redraw();
    });
}

function coordinateControl(desc, opts) {
    const area = drawingArea(desc);
    const picture = area ? drawing(area, `${opts.label} within its bounds`) : null;
    const group = numberGroup(desc, opts, [["x", "x"], ["y", "y"]], element(desc.type), () => {
        redraw();
        opts.onInput();
    });
    const redraw = () => picture && picture.point(group.get());
    const box = h("div", {class: "group", role: "group", "aria-label": opts.label}, group.cells);
    const el = h("div", {class: "shape-control"}, box, picture && picture.svg);
    return new Control(el, box, () => group.get(), (v) => {
        group.set(v);
        redraw();
    });
}

function colourControl(desc, opts) {
    const fill = h("span", {class: "swatch-fill"});
    const swatch = h("span", {class: "swatch", role: "img"}, fill);
    const group = numberGroup(desc, opts, [["a", "a"], ["r", "r"], ["g", "g"], ["b", "b"]], "Float",
                              () => {
                                  paint();
                                  opts.onInput();
                              });
    const scale = (value, key) => {
        const low = desc.min ? num(desc.min[key]) : 0;
        const high = desc.max ? num(desc.max[key]) : 1;
        const x = num(value);
        if (!Number.isFinite(x) || !(high > low)) {
            return 0;
        }
        return Math.min(1, Math.max(0, (x - low) / (high - low)));
    };
    const paint = () => {
        const v = group.get();
        const c = (k) => Math.round(scale(v[k], k) * 255);
        const colour = `rgba(${c("r")}, ${c("g")}, ${c("b")}, ${scale(v.a, "a").toFixed(3)})`;
        fill.style.background = colour;
        swatch.setAttribute("aria-label", `swatch ${colour}`);
    };
    const box = h("div", {class: "group", role: "group", "aria-label": opts.label}, group.cells);
    const el = h("div", {class: "shape-control"}, box, swatch);
    return new Control(el, box, () => group.get(), (v) => {
        if (Array.isArray(v) && v.length === 4) {
            v = {a: v[0], r: v[1], g: v[2], b: v[3]};
        }
        group.set(v);
        paint();
    });
}

// An editable list; make(opts) builds the control of one element, blank() is
// the value a new element starts with.
function listControl(desc, opts, make, blank, onChange, inline) {
    const items = [];
    const list = h("ol", {class: "list-items"});
    const addButton = h("button", {
        type: "button", class: "small", onclick: () => {
            add(items.length ? items[items.length - 1].get() : blank());
            changed();
            items[items.length - 1].focus();
        },
    }, "Add element");
    const changed = () => {
        renumber();
        if (onChange) {
            onChange(values());
        }
        opts.onInput();
    };
    const renumber = () => {
        items.forEach((item, i) => {
            item.remove.setAttribute("aria-label", `Remove element ${i + 1} of ${opts.label}`);
            item.remove.title = `Remove element ${i + 1}`;
        });
    };
    const values = () => items.map((item) => item.get());
    const add = (value) => {
        const index = items.length;
        const control = make({label: `${opts.label} element ${index + 1}`, onInput: changed});
        control.set(value);
        const remove = h("button", {type: "button", class: "small remove", onclick: () => {
            const at = items.indexOf(item);
            items.splice(at, 1);
            row.remove();
            changed();
            (items[at] || items[at - 1] || {focus: () => addButton.focus()}).focus();
        }}, "✕");
        const row = h("li", {}, control.el, remove);
        const item = {
            get: () => control.get(), remove, row,
            focus: () => (row.querySelector("input,select") || remove).focus(),
        };
        items.push(item);
        list.append(row);
    };
    const box = h("div", {class: inline ? "list inline" : "list", role: "group", "aria-label": opts.label},
                  list, addButton);
    return new Control(box, box, values, (v) => {
        items.length = 0;
        list.replaceChildren();
        for (const element of Array.isArray(v) ? v : []) {
            add(element);
        }
        renumber();
        if (onChange) {
            onChange(values());
        }
    });
}

function rectArrayControl(desc, opts) {
    const area = drawingArea({type: "Rectangle", topLeft: desc.topLeft, bottomRight: desc.bottomRight});
    const picture = area ? drawing(area, `${opts.label} within their bounds`) : null;
    const rectDesc = {type: `Rectangle:${element(desc.type)}`, topLeft: desc.topLeft,
                      bottomRight: desc.bottomRight};
    const list = listControl(
        desc, opts,
        (o) => {
            const g = numberGroup(rectDesc, o, rectFields, element(desc.type), o.onInput);
            const box = h("div", {class: "group", role: "group", "aria-label": o.label}, g.cells);
            return new Control(box, box, () => g.get(), (v) => g.set(v));
        },
        () => ({left: 0, top: 0, right: 0, bottom: 0}),
        (v) => picture && picture.rects(v));
    if (!picture) {
        return list;
    }
    const el = h("div", {class: "shape-control"}, list.el, picture.svg);
    return new Control(el, list.valueEl, list.get, list.set);
}

function compositeControl(desc, opts) {
    const children = Array.isArray(desc.children) ? desc.children : [];
    const parts = children.map((child, i) => {
        const name = child.name || `part ${i + 1}`;
        const control = makeControl(child, {label: `${opts.label} ${name}`, onInput: opts.onInput});
        const caption = control.labelFor ? h("label", {for: control.labelFor}, name)
                                         : h("span", {class: "part-name"}, name);
        return {control, el: h("div", {class: "part"}, caption,
                                h("span", {class: "type"}, child.type), control.el)};
    });
    const box = h("div", {class: "composite", role: "group", "aria-label": opts.label},
                  parts.map((p) => p.el));
    return new Control(box, box, () => parts.map((p) => p.control.get()), (v) => {
        parts.forEach((p, i) => p.control.set(Array.isArray(v) ? v[i] : undefined));
    });
}

function pairOfTexts(opts, keys) {
    const inputs = keys.map((key) => {
        const id = uid("v");
        const input = h("input", {type: "text", id, "aria-label": `${opts.label} ${key}`,
                                  autocomplete: "off", spellcheck: "false", oninput: opts.onInput});
        return {key, id, input};
    });
    const box = h("div", {class: "group", role: "group", "aria-label": opts.label},
                  inputs.map((i) => h("span", {class: "field"}, h("label", {for: i.id}, i.key),
                                      i.input)));
    return new Control(box, box, () => Object.fromEntries(inputs.map((i) => [i.key, i.input.value])),
                       (v) => {
                           const arr = Array.isArray(v);
                           inputs.forEach((i, n) => {
                               const x = v ? (arr ? v[n] : v[i.key]) : "";
                               i.input.value = typeof x === "string" ? x : "";
                           });
                       });
}

function localizedControl(desc, opts) {
    const id = uid("v");
    const key = h("input", {type: "text", id, "aria-label": `${opts.label} key`, autocomplete: "off",
                            oninput: opts.onInput});
    const args = listControl(desc, {label: `${opts.label} arguments`, onInput: opts.onInput},
                             (o) => textControl({}, o), () => "");
    const box = h("div", {class: "group", role: "group", "aria-label": opts.label},
                  h("span", {class: "field"}, h("label", {for: id}, "key"), key), args.el);
    return new Control(box, box, () => ({key: key.value, arguments: args.get()}), (v) => {
        key.value = v && typeof v.key === "string" ? v.key : "";
        args.set(v && Array.isArray(v.arguments) ? v.arguments : []);
    });
}

// Any other value: its JSON text, read back when it parses.
function jsonControl(desc, opts) {
    const id = uid("v");
    const area = h("textarea", {id, "aria-label": opts.label, rows: "2", spellcheck: "false",
                                oninput: opts.onInput});
    const control = new Control(area, area, () => {
        try {
            return parse(area.value);
        } catch (e) {
            return undefined;
        }
    }, (v) => {
        area.value = v === undefined ? "" : JSON.stringify(v);
    }, id);
    control.problem = () => {
        try {
            parse(area.value);
            return "";
        } catch (e) {
            return `not JSON: ${e.message}`;
        }
    };
    return control;
}

function noValueControl() {
    const el = h("span", {class: "no-value"}, "no value form");
    return new Control(el, el, () => null, () => {});
}

// The control of a description entry (a setting, or a composite's part).
export function makeControl(desc, opts) {
    const type = String(desc.type);
    switch (family(type)) {
        case "Bool":
            return switchControl(desc, opts);
        case "Numeric":
            return numericControl(desc, opts);
        case "NumericArray":
            return listControl(desc, opts,
                               (o) => numericControl({type: `Numeric:${element(type)}`}, o),
                               () => 0, null, true);
        case "NumericSparse":
        case "StringSparse":
        case "Enum":
            return selectControl(desc, opts);
        case "String":
            return textControl(desc, opts);
        case "StringArray":
            return listControl(desc, opts, (o) => textControl({}, o), () => "");
        case "BoolArray":
            return listControl(desc, opts, (o) => switchControl({}, o), () => false, null, true);
        case "Colour":
            return colourControl(desc, opts);
        case "Coordinate":
            return coordinateControl(desc, opts);
        case "Rectangle":
            return rectangleControl(desc, opts);
        case "RectArray":
            return rectArrayControl(desc, opts);
        case "Addr":
            return textOrObjectControl(desc, opts, "address");
        case "Endpoint":
            return textOrObjectControl(desc, opts, "address:port");
        case "AppEndpoint":
            return textOrObjectControl(desc, opts, "scheme://host:port");
        case "AppEndpointArray":
            return listControl(desc, opts,
                               (o) => textOrObjectControl({}, o, "scheme://host:port"), () => "");
        case "Composite":
            return compositeControl(desc, opts);
        case "Extended":
            return pairOfTexts(opts, ["first", "second"]);
        case "LocalizedString":
            return localizedControl(desc, opts);
        case "Collection":
            return noValueControl();
        default:
            return jsonControl(desc, opts);
    }
}

export {family};
