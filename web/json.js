// JSON as the service writes it, without losing 64-bit integers: a number a
// double cannot hold exactly is kept as its digits (JSON.rawJSON) and written
// back the same way.

export function parse(text) {
    return JSON.parse(text, (key, value, context) => {
        if (typeof value === "number" && context && typeof context.source === "string" &&
            Number.isInteger(value) && !Number.isSafeInteger(value)) {
            return JSON.rawJSON(context.source);
        }
        return value;
    });
}

export function isRaw(value) {
    return value !== null && typeof value === "object" && JSON.isRawJSON(value);
}

export function stringify(value, indent) {
    return JSON.stringify(value, null, indent);
}

// One text per value whatever the order of its object members, for comparing.
export function canonical(value) {
    if (isRaw(value)) {
        return value.rawJSON;
    }
    if (Array.isArray(value)) {
        return "[" + value.map(canonical).join(",") + "]";
    }
    if (value !== null && typeof value === "object") {
        return "{" +
               Object.keys(value)
                   .sort()
                   .map((k) => JSON.stringify(k) + ":" + canonical(value[k]))
                   .join(",") +
               "}";
    }
    return JSON.stringify(value === undefined ? null : value);
}

export function same(a, b) {
    return canonical(a) === canonical(b);
}

const numberToken = /^-?(0|[1-9][0-9]*)(\.[0-9]+)?([eE][+-]?[0-9]+)?$/;

// What a number field sends: a JSON number when the text is one (its digits
// kept where a double would round them), the text itself otherwise, so that
// "NaN" reaches the service as its family writes it and anything else comes
// back with the service's reason.
export function numberFromText(text) {
    const t = text.trim();
    if (!numberToken.test(t)) {
        return text;
    }
    const n = Number(t);
    if (Number.isInteger(n) && !Number.isSafeInteger(n) && !/[.eE]/.test(t)) {
        return JSON.rawJSON(t);
    }
    return n;
}

// The text a number shows in a field.
export function numberText(value) {
    if (isRaw(value)) {
        return value.rawJSON;
    }
    if (typeof value === "number") {
        return String(value);
    }
    return value === undefined || value === null ? "" : String(value);
}

// A value in one line, as the diff and the defaults show it.
export function brief(value, limit = 80) {
    const text = value === undefined ? "—" : spaced(value);
    return text.length > limit ? text.slice(0, limit - 1) + "…" : text;
}

function spaced(value) {
    if (isRaw(value)) {
        return value.rawJSON;
    }
    if (Array.isArray(value)) {
        return "[" + value.map(spaced).join(", ") + "]";
    }
    if (value !== null && typeof value === "object") {
        return "{" +
               Object.keys(value).map((k) => JSON.stringify(k) + ": " + spaced(value[k])).join(", ") +
               "}";
    }
    return JSON.stringify(value);
}

// JSON pointer tokens, as the service writes problem pointers.
export function pointerTokens(pointer) {
    if (!pointer) {
        return [];
    }
    return pointer.slice(1).split("/").map((t) => t.replace(/~1/g, "/").replace(/~0/g, "~"));
}
