// The settings editor: reads the device from the service, stages what the user
// edits, asks the service's dry run for every verdict, applies one change set
// on purpose, and follows the device's events. It talks to its own origin only.
import {boundsText, defaultOf, h, makeControl, normalize} from "./controls.js";
import {brief, canonical, isRaw, parse, pointerTokens, same, stringify} from "./json.js";

const $ = (role) => document.querySelector(`[data-role="${role}"]`);

const CHECK_DELAY_MS = 250;
const LIVE_MARK_MS = 4000;

const state = {
    revision: 0n,     // the newest revision the page has seen
    base: 0n,         // the revision apply sends: the device as the user has seen it
    settings: new Map(),  // path → {desc, value, row, control, ...}
    order: [],
    staged: new Map(),    // path → value
    reasons: new Map(),   // path → [message]
    general: [],          // problems the dry run did not tie to a listed setting
    elsewhere: new Map(), // staged path → value someone else applied meanwhile
    conflict: null,       // {from, to} after a refused stale apply
    section: "",
    busy: false,          // an apply and the read after it are in flight
    queued: [],           // events that arrived while busy
    checkTimer: 0,
    checkSeq: 0,
    checkedKey: null,     // the staged set the shown reasons belong to
};

// ---- service ------------------------------------------------------------

async function api(method, path, body) {
    const init = {method, cache: "no-store", credentials: "same-origin", headers: {}};
    if (body !== undefined) {
        init.headers["Content-Type"] = "application/json";
        init.body = stringify(body);
    }
    let res;
    try {
        res = await fetch(path, init);
    } catch (e) {
        setStatus("the service does not answer", "bad");
        return {status: 0, data: null};
    }
    const text = await res.text();
    let data = null;
    try {
        data = text ? parse(text) : null;
    } catch (e) {
        data = null;
    }
    if (res.status === 401) {
        showBanner("This page has no valid token. Open the address that `oru serve` printed " +
                   "(the one with ?token=), or ask for a new one.");
    }
    return {status: res.status, data};
}

function problemsOf(data) {
    return data && Array.isArray(data.problems) ? data.problems : [];
}

// Revisions are 64-bit counters: kept as BigInt, sent as their digits.
function revisionOf(value) {
    try {
        if (isRaw(value)) {
            return BigInt(value.rawJSON);
        }
        if (typeof value === "number" && Number.isInteger(value) && value >= 0) {
            return BigInt(value);
        }
        if (typeof value === "string" && /^[0-9]{1,20}$/.test(value)) {
            return BigInt(value);
        }
    } catch (e) {
        // not a revision
    }
    return null;
}

// The setting a problem belongs to, and where inside its value it lies. The
// service points into the request body: "/changes/PATH/inside".
function placeOf(problem) {
    let tokens = pointerTokens(problem.pointer || "");
    if (tokens[0] === "changes") {
        tokens = tokens.slice(1);
    }
    const path = typeof problem.path === "string" && problem.path !== "" ? problem.path : tokens[0];
    return {path, inside: tokens.slice(1)};
}

function describePlace(entry, inside) {
    if (!inside.length) {
        return "";
    }
    const words = [];
    let desc = entry ? entry.desc : null;
    for (const token of inside) {
        if (/^[0-9]+$/.test(token)) {
            const child = desc && Array.isArray(desc.children) ? desc.children[Number(token)] : null;
            if (child) {
                words.push(child.name || `part ${Number(token) + 1}`);
                desc = child;
            } else {
                words.push(`element ${Number(token) + 1}`);
                desc = null;
            }
        } else {
            words.push(token);
            desc = null;
        }
    }
    return words.join(" › ") + ": ";
}

function messageOf(problem) {
    const {path, inside} = placeOf(problem);
    return describePlace(state.settings.get(path), inside) + (problem.message || "refused");
}

// ---- reading the device ---------------------------------------------------

const nameOf = (path) => path.slice(path.lastIndexOf("/") + 1);
const sectionOf = (path) => path.slice(0, Math.max(0, path.lastIndexOf("/")));
const writable = (desc) =>
    desc.writable !== undefined ? desc.writable === true : (Number(desc.permission) & 2) !== 0;

async function load() {
    const {status, data} = await api("GET", "/api/settings");
    if (status !== 200 || !data || !Array.isArray(data.settings)) {
        if (status !== 401) {
            showBanner(`The service did not list the settings (status ${status}).`);
        }
        return false;
    }
    build(data);
    return true;
}

function build(data) {
    const previous = state.settings;
    state.settings = new Map();
    state.order = [];
    for (const s of data.settings) {
        const {value, ...desc} = s;
        state.settings.set(desc.path,
                           {desc, value: normalize(desc, value), def: defaultOf(desc), live: 0});
        state.order.push(desc.path);
    }
    for (const path of [...state.staged.keys()]) {
        if (!state.settings.has(path)) {
            state.staged.delete(path);
        }
    }
    state.revision = revisionOf(data.revision) ?? 0n;
    state.base = state.revision;
    renderTree();
    renderList(previous);
    refreshView();
}

// A fresh list of the device: what changed is shown as an event would show it,
// except for the paths the page itself just applied.
async function refresh(own) {
    const {status, data} = await api("GET", "/api/settings");
    if (status !== 200 || !data || !Array.isArray(data.settings)) {
        return;
    }
    const paths = data.settings.map((s) => s.path);
    if (paths.length !== state.order.length || paths.some((p, i) => p !== state.order[i])) {
        build(data);
        return;
    }
    const changes = {};
    for (const s of data.settings) {
        const entry = state.settings.get(s.path);
        if (!same(normalize(entry.desc, s.value), entry.value)) {
            changes[s.path] = s.value;
        }
    }
    takeChanges(revisionOf(data.revision) ?? state.revision, changes, own || new Set());
}

// Values the device now holds; own holds the paths whose change the page made.
function takeChanges(revision, changes, own) {
    let touchedStaged = false;
    for (const [path, given] of Object.entries(changes)) {
        const entry = state.settings.get(path);
        if (!entry) {
            continue;  // not readable, so not listed
        }
        const value = normalize(entry.desc, given);
        entry.value = value;
        if (state.staged.has(path)) {
            if (!own.has(path)) {
                state.elsewhere.set(path, value);
                touchedStaged = true;
            }
            if (same(state.staged.get(path), value) && !state.elsewhere.has(path)) {
                state.staged.delete(path);
            }
        }
        if (!state.staged.has(path)) {
            entry.control && entry.control.set(value);
        }
        if (!own.has(path)) {
            markLive(entry);
        }
        updateRow(path);
    }
    const advanced = revision > state.revision;
    if (advanced) {
        state.revision = revision;
    }
    // The revision apply sends moves on unless a staged setting was changed
    // meanwhile: then the user has to say that their value still stands.
    if (!touchedStaged && state.elsewhere.size === 0 && !state.conflict) {
        state.base = state.revision;
    }
    refreshView();
}

function markLive(entry) {
    const row = entry.row;
    if (!row) {
        return;
    }
    row.classList.remove("live");
    void row.offsetWidth;  // restart the highlight
    row.classList.add("live");
    clearTimeout(entry.live);
    entry.live = setTimeout(() => row.classList.remove("live"), LIVE_MARK_MS);
}

// ---- events ---------------------------------------------------------------

let events = null;

function follow() {
    events = new EventSource("/api/events");
    events.addEventListener("open", () => setStatus(null));
    events.addEventListener("error", () => {
        if (events.readyState === EventSource.CLOSED) {
            setStatus("not following the device: reload the page", "bad");
        } else {
            setStatus("reconnecting…", "warn");
        }
    });
    events.addEventListener("message", (e) => onEvent(e));
    // Sent first on each connection: the device's revision at that moment.
    events.addEventListener("revision", (e) => {
        const revision = revisionOf(e.lastEventId);
        if (revision !== null && revision > state.revision) {
            if (state.busy) {
                state.queued.push({resync: true});
            } else {
                refresh();
            }
        }
    });
    events.addEventListener("resync", () => {
        if (state.busy) {
            state.queued.push({resync: true});
        } else {
            refresh();
        }
    });
}

function eventChanges(data) {
    if (!data || typeof data !== "object") {
        return {};
    }
    const source = data.changes || data.values || data.settings || data;
    if (Array.isArray(source)) {
        return Object.fromEntries(source.filter((c) => c && typeof c.path === "string")
                                      .map((c) => [c.path, c.value]));
    }
    const out = {};
    for (const [key, value] of Object.entries(source)) {
        if (key !== "revision" && key !== "paths") {
            out[key] = value;
        }
    }
    return out;
}

function onEvent(e) {
    let data;
    try {
        data = parse(e.data);
    } catch (err) {
        return;
    }
    const revision = revisionOf(e.lastEventId) ?? revisionOf(data && data.revision) ?? 0n;
    const item = {revision, changes: eventChanges(data)};
    if (state.busy) {
        state.queued.push(item);
        return;
    }
    takeEvent(item);
}

function takeEvent(item) {
    if (item.resync) {
        refresh();
        return;
    }
    if (item.revision && item.revision <= state.revision) {
        return;  // seen already, through a read or an apply
    }
    if (item.revision > state.revision + 1n && state.revision !== 0n) {
        refresh();  // a change set went by unseen
        return;
    }
    takeChanges(item.revision, item.changes, new Set());
}

// ---- the list -------------------------------------------------------------

function renderTree() {
    const tree = document.querySelector(".tree");
    const root = {name: "", path: "", children: new Map(), count: 0};
    for (const path of state.order) {
        let node = root;
        root.count += 1;
        const parts = sectionOf(path).split("/").filter(Boolean);
        let prefix = "";
        for (const part of parts) {
            prefix = prefix ? `${prefix}/${part}` : part;
            if (!node.children.has(part)) {
                node.children.set(part, {name: part, path: prefix, children: new Map(), count: 0});
            }
            node = node.children.get(part);
            node.count += 1;
        }
    }
    const item = (node, label) => {
        const button = h("button", {
            type: "button", class: "tree-item", "data-section": node.path,
            onclick: () => chooseSection(node.path),
        }, h("span", {class: "tree-name"}, label), h("span", {class: "count"}, node.count));
        const kids = [...node.children.values()].sort((a, b) => a.name.localeCompare(b.name));
        return h("li", {}, button, kids.length ? h("ul", {role: "list"}, kids.map((k) => item(k, k.name)))
                                              : null);
    };
    tree.replaceChildren(item(root, "All settings"));
}

function chooseSection(path) {
    state.section = path;
    closeNavOnPhone();
    refreshView();
    document.getElementById("list").focus({preventScroll: true});
    window.scrollTo({top: 0});
}

function renderList(previous) {
    const list = document.getElementById("list");
    list.replaceChildren();
    const sections = new Map();
    for (const path of state.order) {
        const section = sectionOf(path);
        if (!sections.has(section)) {
            sections.set(section, []);
        }
        sections.get(section).push(path);
    }
    const names = [...sections.keys()].sort((a, b) => a.localeCompare(b));
    for (const section of names) {
        const group = h("section", {class: "group", "data-section": section},
                        h("h3", {}, section || "(no section)"));
        for (const path of sections.get(section)) {
            group.append(renderRow(path, previous && previous.get(path)));
        }
        list.append(group);
    }
}

let rowSerial = 0;

function renderRow(path, old) {
    const entry = state.settings.get(path);
    const desc = entry.desc;
    rowSerial += 1;
    const nameId = `name-${rowSerial}`;
    const canWrite = writable(desc);
    let control = null;
    let body;
    if (canWrite) {
        control = makeControl(desc, {label: nameOf(path), onInput: () => edited(path)});
        control.valueEl.setAttribute("data-role", "value");
        control.valueEl.setAttribute("aria-describedby", `reason-${rowSerial} meta-${rowSerial}`);
        body = control.el;
    } else {
        body = h("output", {class: "readonly-value", "data-role": "value", "aria-labelledby": nameId},
                 brief(entry.value, 200));
    }
    const label = control && control.labelFor
                      ? h("label", {for: control.labelFor, id: nameId, class: "name"}, nameOf(path))
                      : h("span", {id: nameId, class: "name"}, nameOf(path));
    if (control && !control.labelFor) {
        control.valueEl.setAttribute("aria-labelledby", nameId);
        control.valueEl.removeAttribute("aria-label");
    }
    const bounds = boundsText(desc);
    const hasDefault = entry.def !== undefined;
    const row = h("article", {class: "setting", "data-path": path},
        h("div", {class: "head"}, label,
          h("span", {class: "path"}, path),
          h("span", {class: "type"}, desc.type),
          canWrite ? null : h("span", {class: "badge readonly"}, "read-only"),
          h("span", {class: "badge staged-badge"}, "changed, not applied"),
          h("span", {class: "badge live-badge"}, "updated")),
        h("div", {class: "body"}, body),
        h("div", {class: "meta", id: `meta-${rowSerial}`},
          bounds ? h("span", {class: "bounds"}, bounds) : null,
          hasDefault ? h("span", {class: "default"}, "default ",
                         h("code", {}, brief(entry.def, 60))) : null,
          canWrite && hasDefault
              ? h("button", {type: "button", class: "small link", "data-role": "reset",
                             onclick: () => resetToDefault(path)}, "Reset to default")
              : null,
          canWrite ? h("button", {type: "button", class: "small link", "data-role": "undo",
                                  onclick: () => unstage(path)}, "Undo change")
                   : null),
        h("div", {class: "reason", "data-role": "reason", id: `reason-${rowSerial}`,
                  "aria-live": "polite"}),
        h("div", {class: "elsewhere", "data-role": "elsewhere", role: "status"}));
    entry.row = row;
    entry.control = control;
    if (control) {
        control.set(state.staged.has(path) ? state.staged.get(path) : entry.value);
    }
    if (old && old.live) {
        clearTimeout(old.live);
    }
    updateRow(path);
    return row;
}

function updateRow(path) {
    const entry = state.settings.get(path);
    if (!entry || !entry.row) {
        return;
    }
    const row = entry.row;
    const staged = state.staged.has(path);
    const reasons = state.reasons.get(path) || [];
    const local = entry.control ? entry.control.problem() : "";
    const shown = local ? [local] : staged || reasons.length ? reasons : [];
    row.classList.toggle("staged", staged);
    row.classList.toggle("invalid", shown.length > 0);
    row.classList.toggle("non-default", differsFromDefault(entry));
    const reason = row.querySelector('[data-role="reason"]');
    const text = shown.join("\n");
    if (reason.textContent !== text) {
        reason.textContent = text;
    }
    if (entry.control) {
        entry.control.valueEl.setAttribute("aria-invalid", shown.length ? "true" : "false");
    } else {
        row.querySelector('[data-role="value"]').textContent = brief(entry.value, 200);
    }
    const undo = row.querySelector('[data-role="undo"]');
    if (undo) {
        undo.hidden = !staged;
    }
    const reset = row.querySelector('[data-role="reset"]');
    if (reset) {
        const current = staged ? state.staged.get(path) : entry.value;
        reset.hidden = same(current, entry.def);
    }
    const note = row.querySelector('[data-role="elsewhere"]');
    if (state.elsewhere.has(path)) {
        note.textContent = `Changed elsewhere to ${brief(state.elsewhere.get(path))} while you ` +
                           `edited it. Your value is still staged: Apply asks you to confirm it ` +
                           `over that change, or Undo takes the device's.`;
        row.classList.add("conflicting");
    } else {
        note.textContent = "";
        row.classList.remove("conflicting");
    }
}

function differsFromDefault(entry) {
    return entry.def !== undefined && entry.value !== undefined && !same(entry.value, entry.def);
}

function matches(path, entry, query, nonDefault, stagedOnly) {
    if (query && !path.toLowerCase().includes(query)) {
        return false;
    }
    if (nonDefault && !differsFromDefault(entry)) {
        return false;
    }
    if (stagedOnly && !state.staged.has(path)) {
        return false;
    }
    if (state.section && path !== state.section && !path.startsWith(state.section + "/")) {
        return false;
    }
    return true;
}

function refreshView() {
    const query = $("search").value.trim().toLowerCase();
    const nonDefault = $("non-default").checked;
    const stagedOnly = $("staged-only").checked;
    let shown = 0;
    for (const group of document.querySelectorAll("#list > .group")) {
        let any = false;
        for (const row of group.querySelectorAll(":scope > .setting")) {
            const path = row.dataset.path;
            const ok = matches(path, state.settings.get(path), query, nonDefault, stagedOnly);
            row.hidden = !ok;
            any = any || ok;
            shown += ok ? 1 : 0;
        }
        group.hidden = !any;
    }
    $("empty").hidden = shown > 0 || state.order.length === 0;
    const words = [];
    if (query) {
        words.push(`matching “${query}”`);
    }
    if (nonDefault) {
        words.push("differing from default");
    }
    if (stagedOnly) {
        words.push("changed, not applied");
    }
    const place = state.section || "All settings";
    $("heading").textContent = words.length ? `${place}: ${shown} ${words.join(", ")}`
                                            : `${place} (${shown})`;
    for (const button of document.querySelectorAll(".tree-item")) {
        if (button.dataset.section === state.section) {
            button.setAttribute("aria-current", "true");
        } else {
            button.removeAttribute("aria-current");
        }
    }
    renderDiff();
    setStatus(undefined);
}

// ---- staging and the dry run ------------------------------------------------

function edited(path) {
    const entry = state.settings.get(path);
    const value = entry.control.get();
    if (entry.control.problem() === "" && same(value, entry.value)) {
        state.staged.delete(path);
        state.reasons.delete(path);
        if (state.elsewhere.delete(path) && state.elsewhere.size === 0 && !state.conflict) {
            state.base = state.revision;
        }
    } else {
        state.staged.set(path, value);
    }
    updateRow(path);
    renderDiff();
    scheduleCheck();
}

function stage(path, value) {
    const entry = state.settings.get(path);
    if (!entry || !entry.control) {
        return;
    }
    entry.control.set(value);
    edited(path);
}

function resetToDefault(path) {
    const entry = state.settings.get(path);
    stage(path, entry.def);
    entry.control.valueEl.focus();
}

function unstage(path) {
    const entry = state.settings.get(path);
    state.staged.delete(path);
    state.reasons.delete(path);
    state.elsewhere.delete(path);
    if (entry && entry.control) {
        entry.control.set(entry.value);
    }
    if (state.elsewhere.size === 0 && !state.conflict) {
        state.base = state.revision;
    }
    updateRow(path);
    refreshView();
    scheduleCheck();
}

function discardAll() {
    for (const path of [...state.staged.keys()]) {
        state.staged.delete(path);
        state.reasons.delete(path);
        state.elsewhere.delete(path);
        const entry = state.settings.get(path);
        if (entry && entry.control) {
            entry.control.set(entry.value);
        }
        updateRow(path);
    }
    state.general = [];
    state.conflict = null;
    state.base = state.revision;
    refreshView();
    toast("Discarded the changes.");
}

function stagedChanges() {
    const changes = {};
    for (const path of state.order) {
        if (state.staged.has(path)) {
            const entry = state.settings.get(path);
            if (!entry.control || entry.control.problem() === "") {
                changes[path] = state.staged.get(path);
            }
        }
    }
    return changes;
}

function scheduleCheck() {
    clearTimeout(state.checkTimer);
    state.checkTimer = setTimeout(runCheck, CHECK_DELAY_MS);
    renderDiff();
}

async function runCheck() {
    const seq = ++state.checkSeq;
    const changes = stagedChanges();
    const key = canonical(changes);
    if (Object.keys(changes).length === 0) {
        showProblems([]);
        state.checkedKey = key;
        renderDiff();
        return;
    }
    const {status, data} = await api("POST", "/api/check", {changes});
    if (seq !== state.checkSeq) {
        return;  // a newer check is on its way
    }
    if (status === 0 || status === 401) {
        return;
    }
    if (status >= 500) {
        toast(`The service could not check the changes (status ${status}).`);
        return;
    }
    state.checkedKey = key;
    showProblems(problemsOf(data));
}

function showProblems(problems) {
    const touched = new Set(state.reasons.keys());
    state.reasons = new Map();
    state.general = [];
    for (const problem of problems) {
        const {path} = placeOf(problem);
        if (path && state.settings.has(path)) {
            if (!state.reasons.has(path)) {
                state.reasons.set(path, []);
            }
            state.reasons.get(path).push(messageOf(problem));
            touched.add(path);
        } else {
            state.general.push(problem);
        }
    }
    for (const path of touched) {
        updateRow(path);
    }
    renderDiff();
}

function problemCount() {
    let n = state.general.length;
    for (const path of state.staged.keys()) {
        n += (state.reasons.get(path) || []).length;
    }
    return n;
}

function renderDiff() {
    const bar = $("diffbar");
    const count = state.staged.size;
    bar.hidden = count === 0 && !state.conflict && state.general.length === 0;
    document.body.classList.toggle("has-diffbar", !bar.hidden);
    const list = $("diff");
    list.replaceChildren();
    for (const path of state.order) {
        if (!state.staged.has(path)) {
            continue;
        }
        const entry = state.settings.get(path);
        const reasons = entry.control && entry.control.problem() ? [entry.control.problem()]
                                                                 : state.reasons.get(path) || [];
        list.append(h("li", {"data-diff-path": path, class: reasons.length ? "invalid" : null},
            h("button", {type: "button", class: "link goto", onclick: () => reveal(path)}, path),
            h("span", {class: "change"},
              h("del", {}, brief(entry.value, 48)), h("span", {"aria-hidden": "true"}, " → "),
              h("span", {class: "visually-hidden"}, " becomes "),
              h("ins", {}, brief(state.staged.get(path), 48))),
            h("button", {type: "button", class: "small remove", "aria-label": `Undo the change to ${path}`,
                         title: "Undo this change", onclick: () => unstage(path)}, "✕"),
            state.elsewhere.has(path) ? h("span", {class: "badge warn"}, "changed elsewhere") : null,
            reasons.length ? h("span", {class: "diff-reason"}, reasons.join("; ")) : null));
    }
    const problems = problemCount();
    const pending = state.checkedKey !== canonical(stagedChanges());
    $("diff-summary").textContent =
        `${count} ${count === 1 ? "change" : "changes"} not applied` +
        (problems ? ` · ${problems} ${problems === 1 ? "problem" : "problems"}` : "");
    const general = $("general-problems");
    general.hidden = state.general.length === 0;
    general.replaceChildren(...state.general.map((p) => h("p", {class: "reason"},
                                                           (p.path ? `${p.path}: ` : "") + p.message)));
    const apply = $("apply");
    const localProblems = state.order.some((p) => state.staged.has(p) &&
                                                  state.settings.get(p).control &&
                                                  state.settings.get(p).control.problem());
    apply.disabled = state.busy || count === 0 || localProblems || !!state.conflict ||
                     (!pending && problems > 0);
    $("discard").disabled = state.busy || (count === 0 && !state.conflict);
    let note = "";
    if (state.busy) {
        note = "applying…";
    } else if (state.conflict) {
        note = "re-base or discard first";
    } else if (count && pending) {
        note = "checking…";
    } else if (problems) {
        note = "fix the problems to apply";
    } else if (count) {
        note = "the device accepts these";
    }
    $("apply-note").textContent = note;
    renderConflict();
}

function reveal(path) {
    const entry = state.settings.get(path);
    if (!entry || !entry.row) {
        return;
    }
    if (entry.row.hidden) {
        state.section = "";
        $("search").value = "";
        $("non-default").checked = false;
        $("staged-only").checked = false;
        refreshView();
    }
    entry.row.scrollIntoView({block: "center"});
    const target = entry.row.querySelector("input, select, textarea, button");
    if (target) {
        target.focus({preventScroll: true});
    }
}

// ---- apply --------------------------------------------------------------

async function apply() {
    if (state.busy || state.staged.size === 0) {
        return;
    }
    clearTimeout(state.checkTimer);
    const changes = stagedChanges();
    const sent = new Map(Object.entries(changes));
    state.busy = true;
    renderDiff();
    const {status, data} = await api("POST", "/api/apply",
                                     {revision: JSON.rawJSON(String(state.base)), changes});
    try {
        if (status === 200) {
            for (const [path, value] of sent) {
                if (same(state.staged.get(path), value)) {
                    state.staged.delete(path);
                    state.reasons.delete(path);
                    state.elsewhere.delete(path);
                }
                const entry = state.settings.get(path);
                if (entry) {
                    entry.value = value;
                }
            }
            const revision = revisionOf(data && data.revision) ?? state.revision + 1n;
            if (revision > state.revision) {
                state.revision = revision;
            }
            state.base = state.revision;
            const applied = data && data.applied !== undefined ? data.applied : sent.size;
            toast(`Applied ${plural(applied, "change")}.`);
            await refresh(new Set(sent.keys()));
            for (const path of sent.keys()) {
                updateRow(path);
            }
        } else if (status === 409) {
            const from = state.base;
            await refresh();
            state.conflict = {from, to: state.revision};
            toast("The device changed since you read it: nothing was applied.");
        } else if (status === 422 || status === 403) {
            showProblems(problemsOf(data));
            toast(status === 403 ? "A setting may not be changed here: nothing was applied."
                                 : "The device refused the changes: nothing was applied.");
        } else if (status !== 0 && status !== 401) {
            toast(`The service answered ${status}: nothing was applied.`);
        }
    } finally {
        state.busy = false;
        const queued = state.queued;
        state.queued = [];
        for (const item of queued) {
            takeEvent(item);
        }
        refreshView();
    }
}

function renderConflict() {
    const box = $("conflict");
    if (!state.conflict) {
        box.hidden = true;
        box.replaceChildren();
        return;
    }
    box.hidden = false;
    const mine = [...state.elsewhere.keys()];
    const items = mine.map((path) => h("li", {"data-conflict-path": path},
        h("strong", {}, path), `: now ${brief(state.elsewhere.get(path))}, yours ${brief(state.staged.get(path))}`));
    box.replaceChildren(
        h("p", {}, `Not applied: the device changed since you read it ` +
                   `(${plural(state.conflict.to - state.conflict.from, "change set")} since).`),
        items.length ? h("ul", {}, items)
                     : h("p", {}, "None of the settings you changed were touched; the page shows the device as it is now."),
        h("div", {class: "actions"},
          h("button", {type: "button", "data-role": "rebase", onclick: rebase},
            "Re-base: keep my changes"),
          items.length ? h("button", {type: "button", "data-role": "take-theirs", onclick: takeTheirs},
                           "Take theirs")
                       : null));
}

// The user has seen what changed; their staged values stand over it.
function rebase() {
    state.conflict = null;
    state.elsewhere.clear();
    state.base = state.revision;
    for (const path of state.staged.keys()) {
        updateRow(path);
    }
    refreshView();
    scheduleCheck();
    $("apply").focus();
}

function takeTheirs() {
    for (const path of [...state.elsewhere.keys()]) {
        unstage(path);
    }
    rebase();
}

// ---- values files -------------------------------------------------------

async function loadFile(file) {
    const text = await file.text();
    const dialog = $("file-diff");
    const rows = $("file-rows");
    const problemsList = $("file-problems");
    rows.replaceChildren();
    problemsList.replaceChildren();
    document.getElementById("file-dialog-title").textContent = file.name;
    let values;
    try {
        values = parse(text);
    } catch (e) {
        $("file-summary").textContent = `The file is no JSON: ${e.message}`;
        $("file-stage").disabled = true;
        dialog.showModal();
        return;
    }
    if (!values || typeof values !== "object" || Array.isArray(values)) {
        $("file-summary").textContent = "The file holds no object of setting paths and values.";
        $("file-stage").disabled = true;
        dialog.showModal();
        return;
    }
    const {status, data} = await api("POST", "/api/check", {changes: values});
    if (status === 0 || status === 401 || status >= 500) {
        toast(`The service could not check the file (status ${status}).`);
        return;
    }
    const byPath = new Map();
    const other = [];
    for (const problem of problemsOf(data)) {
        const {path} = placeOf(problem);
        if (path && Object.prototype.hasOwnProperty.call(values, path)) {
            if (!byPath.has(path)) {
                byPath.set(path, []);
            }
            byPath.get(path).push(problem);
        } else {
            other.push(problem);
        }
    }
    let differ = 0, equal = 0, nProblems = 0;
    const order = Object.keys(values).sort((a, b) => {
        const ia = state.order.indexOf(a), ib = state.order.indexOf(b);
        return (ia < 0 ? Infinity : ia) - (ib < 0 ? Infinity : ib);
    });
    for (const path of order) {
        const entry = state.settings.get(path);
        const value = entry ? normalize(entry.desc, values[path]) : values[path];
        const problems = byPath.get(path) || [];
        const differs = !entry || !same(entry.value, value);
        if (!differs && problems.length === 0) {
            equal += 1;
            continue;
        }
        differ += differs ? 1 : 0;
        nProblems += problems.length;
        const stageable = !!(entry && entry.control && differs);
        const id = `file-row-${rows.children.length}`;
        const box = h("input", {type: "checkbox", id, "data-file-value": path,
                                checked: stageable && problems.length === 0, disabled: !stageable,
                                "aria-label": `Stage ${path}`});
        box._value = value;
        rows.append(h("tr", {"data-file-path": path, class: problems.length ? "invalid" : null},
            h("td", {}, box),
            h("td", {}, h("label", {for: id}, path),
              problems.length ? h("ul", {class: "reason", "data-role": "file-reason"},
                                  problems.map((p) => h("li", {}, messageOf(p))))
                              : null,
              entry ? h("div", {class: "hint phone-only"}, "device: ", h("code", {}, brief(entry.value, 40)))
                    : h("div", {class: "hint"}, "not on this device"),
              entry && !entry.control ? h("div", {class: "hint"}, "read-only") : null),
            h("td", {}, h("code", {}, entry ? brief(entry.value, 60) : "—")),
            h("td", {}, h("code", {}, brief(value, 60)))));
    }
    for (const problem of other) {
        problemsList.append(h("li", {class: "reason"}, messageOf(problem)));
        nProblems += 1;
    }
    const n = Object.keys(values).length;
    $("file-summary").textContent =
        `${n} ${n === 1 ? "setting" : "settings"} in the file: ${differ} differ from the device, ` +
        `${equal} equal, ${nProblems} ${nProblems === 1 ? "problem" : "problems"}. ` +
        "Pick the values to stage; nothing is applied until you apply.";
    $("file-stage").disabled = rows.children.length === 0;
    dialog.showModal();
}

function stageFromFile() {
    let n = 0;
    for (const box of $("file-rows").querySelectorAll("input[type=checkbox]")) {
        if (box.checked && !box.disabled) {
            stage(box.dataset.fileValue, box._value);
            n += 1;
        }
    }
    refreshView();
    if (n) {
        toast(`Staged ${n} ${n === 1 ? "value" : "values"} from the file.`);
    }
}

async function saveFile() {
    const {status, data} = await api("GET", "/api/settings");
    if (status !== 200 || !data || !Array.isArray(data.settings)) {
        toast(`The service did not list the settings (status ${status}).`);
        return;
    }
    const lines = data.settings.filter((s) => s.value !== undefined && s.value !== null)
                      .map((s) => `  ${JSON.stringify(s.path)}: ${stringify(normalize(s, s.value))}`);
    const text = `{\n${lines.join(",\n")}\n}\n`;
    const url = URL.createObjectURL(new Blob([text], {type: "application/json"}));
    const link = h("a", {href: url, download: "values.json", hidden: true});
    document.body.append(link);
    link.click();
    link.remove();
    setTimeout(() => URL.revokeObjectURL(url), 1000);
    toast(`Saved ${plural(lines.length, "value")} as values.json.`);
}

// ---- chrome -------------------------------------------------------------

function plural(n, word) {
    return `${n} ${String(n) === "1" ? word : word + "s"}`;
}

let statusOverride = null;

function setStatus(text, kind) {
    if (text !== undefined) {
        statusOverride = text ? {text, kind} : null;
    }
    const el = $("status");
    if (statusOverride) {
        el.textContent = statusOverride.text;
        el.dataset.kind = statusOverride.kind;
    } else {
        el.textContent = "live";
        el.title = `Following the device's changes; revision ${state.revision}`;
        el.dataset.kind = "ok";
    }
}

function showBanner(text) {
    const banner = $("banner");
    banner.textContent = text;
    banner.hidden = false;
}

let toastTimer = 0;

function toast(text) {
    const el = $("toast");
    el.textContent = text;
    el.classList.add("shown");
    clearTimeout(toastTimer);
    toastTimer = setTimeout(() => el.classList.remove("shown"), 5000);
}

function closeNavOnPhone() {
    const toggle = document.querySelector(".nav-toggle");
    if (toggle.getAttribute("aria-expanded") === "true") {
        toggle.setAttribute("aria-expanded", "false");
        document.body.classList.remove("nav-open");
    }
}

function wire() {
    const toggle = document.querySelector(".nav-toggle");
    toggle.addEventListener("click", () => {
        const open = toggle.getAttribute("aria-expanded") !== "true";
        toggle.setAttribute("aria-expanded", String(open));
        document.body.classList.toggle("nav-open", open);
        if (open) {
            const current = document.querySelector('.tree-item[aria-current="true"]');
            (current || document.querySelector(".tree-item")).focus();
        }
    });
    $("nav-close").addEventListener("click", () => {
        closeNavOnPhone();
        toggle.focus();
    });
    // A tap beside the open sections closes them.
    document.addEventListener("click", (e) => {
        if (document.body.classList.contains("nav-open") && !e.target.closest("nav, .nav-toggle")) {
            closeNavOnPhone();
        }
    });
    const search = $("search");
    search.addEventListener("input", () => {
        if (search.value.trim() && state.section) {
            state.section = "";  // search runs across all sections
        }
        refreshView();
    });
    search.addEventListener("keydown", (e) => {
        if (e.key === "Escape") {
            search.value = "";
            refreshView();
        }
    });
    $("non-default").addEventListener("change", refreshView);
    $("staged-only").addEventListener("change", refreshView);
    $("apply").addEventListener("click", apply);
    $("discard").addEventListener("click", discardAll);
    $("save").addEventListener("click", saveFile);
    const input = $("load");
    input.addEventListener("change", () => {
        const file = input.files && input.files[0];
        if (file) {
            loadFile(file).finally(() => {
                input.value = "";
            });
        }
    });
    const dialog = $("file-diff");
    dialog.addEventListener("close", () => {
        if (dialog.returnValue === "stage") {
            stageFromFile();
        }
        dialog.returnValue = "";
    });
    document.addEventListener("keydown", (e) => {
        const typing = e.target.closest && e.target.closest("input, textarea, select");
        if (e.key === "Escape" && document.body.classList.contains("nav-open")) {
            closeNavOnPhone();
            toggle.focus();
        } else if (e.key === "/" && !typing && !dialog.open) {
            e.preventDefault();
            search.focus();
            search.select();
        } else if (e.key === "Enter" && (e.ctrlKey || e.metaKey) && !$("apply").disabled) {
            e.preventDefault();
            apply();
        }
    });
}

async function main() {
    wire();
    if (await load()) {
        follow();
    }
}

main();
