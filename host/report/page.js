
"use strict";

// The list of entries: filtered, and shown some at a time. Every text of an entry becomes a text
// node, never markup.
(() => {
  const data = JSON.parse(document.getElementById("data").textContent);
  const words = data.words;
  const portion = 50;
  const lineKinds = ["operation", "failure", "question", "error", "warning", "note"];
  const place = (id) => document.getElementById(id);
  const filters = {
    text: place("filter-text"),
    message: place("filter-message"),
    month: place("filter-month"),
    book: place("filter-book"),
    kind: place("filter-kind"),
  };
  let matching = data.entries;
  let shown = 0;

  const element = (name, properties, ...content) => {
    const made = document.createElement(name);
    for (const [key, value] of Object.entries(properties)) {
      made.setAttribute(key, value);
    }
    made.append(...content);
    return made;
  };

  // Amounts pass through no number: they may have more digits than one holds.
  const amount = (text) => {
    const [whole, fraction = ""] = text.replace("-", "").split(".");
    const italian = data.language === "it";
    const grouped = whole.replace(/\B(?=(\d{3})+$)/g, italian ? "." : ",");
    return (text.startsWith("-") ? "\u2212" : "") + grouped + (italian ? "," : ".") +
      fraction.padEnd(2, "0");
  };
  const date = (iso) => iso.split("-").reverse().join("/");
  const count = (number) => amount(String(number)).slice(0, -3);
  const value = (given, kind) => {
    if (given === null) return "";
    if (kind === "amount") return amount(given);
    if (kind === "date") return date(given);
    if (kind === "flag") return given ? words.yes : words.no;
    return String(given);
  };
  const columnName = (name) => words[name] || name;

  const placeOf = (entry) => entry.place.replace(/ line (\d+)$/, `, ${words.line} $1`);

  const factList = (entry) => {
    const facts = entry.facts;
    const list = element("dl", { class: "facts" });
    const add = (name, text) => {
      if (text !== undefined && text !== "") {
        list.append(element("div", {}, element("dt", {}, name), element("dd", {}, text)));
      }
    };
    const text = (name) => facts[name] === undefined ? undefined : String(facts[name]);
    add(words.date, facts.DataRegistrazione && date(facts.DataRegistrazione));
    if (facts.DataRegistrazione !== undefined) {
      add(words.register, data.registers[entry.book]);
    }
    add(words.section, text("SezionaleIva"));
    add(words.protocol, facts.Protocollo ? text("Protocollo") : undefined);
    const dated = facts.DataDocumento && `${words.dated} ${date(facts.DataDocumento)}`;
    add(words.document, [facts.NumeroDocumento, dated].filter(Boolean).join(" "));
    add({ 1: words.customer, 2: words.supplier }[facts.TipoCliFor] || words.party,
      text("IdAnagrafica"));
    add(words.total, facts.TotDocumento &&
      [amount(facts.TotDocumento), facts.CodDivisa].filter(Boolean).join(" "));
    add(words.template, [facts.CodCausale, facts.Provvisoria && words.provisional]
      .filter(Boolean).join(", "));
    return list;
  };

  // By line: those of the whole entry first, then by record set and row.
  const byLine = (findings) => findings.slice().sort((one, other) =>
    (one[3] ? 1 : 0) - (other[3] ? 1 : 0) || one[3].localeCompare(other[3]) || one[4] - other[4]);

  const findingList = (entry) => {
    const list = element("ul", { class: "findings" });
    const remedied = new Set();
    for (const [message, kind, text, set, row] of byLine(entry.findings)) {
      const [code, , remedy] = data.messages[message];
      // Many messages name the row themselves.
      const named = new RegExp(`^\\D{1,20}\\b${row}\\b`).test(text);
      const where = !set ? "" : columnName(set) + (named ? ": " : `, ${words.line} ${row}: `);
      const item = element("li", { class: kind === 0 ? "finding error" : "finding warning" },
        element("span", { class: "kind" }, data.kinds[kind]),
        element("span", { class: "said" },
          element("span", { class: "where" }, where), text,
          code ? element("span", { class: "code" }, ` (${code})`) : ""));
      if (!remedied.has(message)) {
        remedied.add(message);
        item.append(element("span", { class: "remedy-line" }, "\u2192 " + remedy));
      }
      list.append(item);
    }
    if (entry.moreFindings) {
      list.append(element("li", { class: "finding warning" },
        element("span", { class: "said" }, `+ ${count(entry.moreFindings)} ${words.moreFindings}`)));
    }
    if (entry.error) {
      const title = entry.error.number === undefined
        ? words.notChecked : `${words.runTimeError} ${entry.error.number}`;
      const item = element("li", { class: "finding unchecked" },
        element("span", { class: "kind" }, title),
        element("span", { class: "said" }, entry.error.text));
      if (entry.error.trail) {
        item.append(element("span", { class: "remedy-line" },
          `${words.trail}: ${entry.error.trail.replace(/\?+/g, " \u2190 ")}`));
      }
      list.append(item);
    }
    return list;
  };

  // What stands beside it already: the number of the row, and an amount in the base currency that is
  // the one in the entry's own.
  const repeats = (columns, rows, at) => {
    const name = columns[at][0];
    const first = name.endsWith("VB") ? columns.findIndex((column) => column[0] === name.slice(0, -2))
      : -1;
    return (name === "NumeroRiga" && rows.every((row) => row[at + 1] === row[0])) ||
      (first >= 0 && rows.every((row) => row[at + 1] === row[first + 1]));
  };

  const table = (entry, [setPlace, all, columnPlaces, allRows]) => {
    const set = data.sets[setPlace];
    const allColumns = columnPlaces.map((at) => set.columns[at]);
    const told = allColumns.map((_, at) => !repeats(allColumns, allRows, at));
    const columns = allColumns.filter((_, at) => told[at]);
    const rows = allRows.map(([row, ...values]) => [row, ...values.filter((_, at) => told[at])]);
    const meant = new Map();
    for (const [, kind, , name, row] of entry.findings) {
      if (name === set.name) {
        meant.set(row, Math.min(kind, meant.has(row) ? meant.get(row) : kind));
      }
    }
    const title = columnName(set.name) +
      (all > rows.length ? ` (${count(all)} ${words.moreRows})` : "");
    const head = element("tr", {}, element("th", { scope: "col" }, words.row));
    for (const [name, kind] of columns) {
      head.append(element("th", { scope: "col", class: kind }, columnName(name)));
    }
    const body = element("tbody", {});
    for (const [row, ...values] of rows) {
      const isMeant = meant.has(row);
      const kind = isMeant && meant.get(row) === 0 ? "meant error" : "meant warning";
      const line = element("tr", isMeant ? { class: kind } : {});
      const header = element("th", { scope: "row" }, isMeant ? `\u25b6 ${row}` : String(row));
      if (isMeant) {
        header.setAttribute("aria-label", `${row}, ${words.meant}`);
      }
      line.append(header);
      values.forEach((given, at) => {
        const text = value(given, columns[at][1]);
        const cell = element("td", { class: columns[at][1] }, text);
        if (text.length > 30) {
          cell.title = text;
        }
        line.append(cell);
      });
      body.append(line);
    }
    return element("div", { class: "rows", role: "region", "aria-label": title },
      element("table", {}, element("caption", {}, title), element("thead", {}, head), body));
  };

  // The lines of a tree become lists inside each other. What holds findings stands open.
  const treeList = (entry) => {
    const root = { depth: -1, inside: [] };
    const open = [root];
    for (let at = 0; at < entry.tree.length; at += 2) {
      const line = data.lines[entry.tree[at + 1]];
      const node = { depth: entry.tree[at], kind: lineKinds[Number(line[0])], text: line.slice(1),
        inside: [] };
      while (open[open.length - 1].depth >= node.depth) {
        open.pop();
      }
      open[open.length - 1].inside.push(node);
      open.push(node);
    }
    const telling = (node) => ["error", "warning", "failure"].includes(node.kind) ||
      node.inside.some(telling);
    const list = (nodes) => element("ul", {}, ...nodes.map((node) => {
      const text = element("span", { class: node.kind }, node.text);
      if (node.inside.length === 0) {
        return element("li", {}, text);
      }
      const details = element("details", {}, element("summary", {}, text), list(node.inside));
      details.open = telling(node);
      return element("li", {}, details);
    }));
    return list(root.inside);
  };

  const treeOf = (entry) => {
    const details = element("details", { class: "tree" }, element("summary", {}, words.decision));
    details.addEventListener("toggle", () => {
      if (details.open && details.children.length === 1) {
        details.append(treeList(entry));
      }
    });
    return details;
  };

  const article = (entry, number) => {
    const [name, label] = data.verdicts[entry.verdict];
    const title = `entry-${number}`;
    const made = element("article", { class: `entry ${name}`, "aria-labelledby": title },
      element("div", { class: "entry-head" },
        element("h3", { id: title }, entry.id),
        element("span", { class: `badge ${name}` }, label)),
      element("p", { class: "place" },
        [entry.operation, entry.place === entry.id ? "" : placeOf(entry)]
          .filter(Boolean).join(" \u00b7 ")));
    if (Object.keys(entry.facts).length > 0) {
      made.append(factList(entry));
    }
    made.append(findingList(entry));
    for (const set of entry.sets) {
      made.append(table(entry, set));
    }
    if (entry.tree.length > 0) {
      made.append(treeOf(entry));
    }
    return made;
  };

  const haystack = (entry) => {
    if (entry.haystack === undefined) {
      const facts = Object.entries(entry.facts).map(([name, given]) =>
        name.startsWith("Data") ? date(String(given)) : String(given));
      const rows = entry.sets.map((set) => set[3].map((row) => row.slice(1).join(" ")).join(" "));
      const findings = entry.findings.map(([message, , text]) =>
        `${data.messages[message][0]} ${data.messages[message][1]} ${text}`);
      const error = entry.error ? [entry.error.text] : [];
      entry.haystack = [entry.id, entry.place, entry.operation, ...facts, ...rows, ...findings,
        ...error].join("\n").toLowerCase();
    }
    return entry.haystack;
  };

  const matches = (entry, wanted) =>
    (wanted.message === "" ||
      entry.findings.some(([message]) => String(message) === wanted.message)) &&
    (wanted.month === "" || String(entry.month) === wanted.month) &&
    (wanted.book === "" || String(entry.book) === wanted.book) &&
    (wanted.kind === "" || data.verdicts[entry.verdict][0] === wanted.kind ||
      entry.findings.some(([, kind]) => String(kind) === wanted.kind)) &&
    wanted.words.every((word) => haystack(entry).includes(word));

  const tell = () => {
    place("status").textContent = matching.length === 0
      ? (data.entries.length === 0 ? words.noFindings : words.none)
      : `${words.shown} ${count(shown)} ${words.of} ${count(matching.length)}`;
    place("more").hidden = shown >= matching.length;
  };

  // A table that is wider than its place is reached, and moved, with the keyboard.
  const reachRows = () => {
    for (const rows of place("entries").querySelectorAll(".rows:not([data-seen])")) {
      rows.dataset.seen = "";
      if (rows.scrollWidth > rows.clientWidth) {
        rows.setAttribute("tabindex", "0");
      }
    }
  };

  const showMore = (until) => {
    const next = document.createDocumentFragment();
    const first = shown;
    for (; shown < Math.min(until, matching.length); ++shown) {
      next.append(article(matching[shown], shown));
    }
    place("entries").append(next);
    reachRows();
    tell();
    return document.getElementById(`entry-${first}`);
  };

  const mark = (wanted) => {
    for (const button of document.querySelectorAll("button[aria-pressed]")) {
      const pressed = button.dataset.message !== undefined
        ? button.dataset.message === wanted.message
        : button.dataset.month === wanted.month && button.dataset.book === wanted.book;
      button.setAttribute("aria-pressed", String(pressed));
    }
  };

  // The filters stand in the address, so that a page is handed over with what was looked at.
  const remember = () => {
    const kept = new URLSearchParams();
    for (const [name, field] of Object.entries(filters)) {
      if (field.value !== "") {
        kept.set(name, field.value);
      }
    }
    try {
      history.replaceState(null, "", "#" + kept.toString());
    } catch (refused) {
      // A page that is shown inside another one may have no address of its own.
    }
  };

  const filter = () => {
    const wanted = {};
    for (const [name, field] of Object.entries(filters)) {
      wanted[name] = field.value;
    }
    wanted.words = wanted.text.toLowerCase().split(/\s+/).filter(Boolean);
    matching = data.entries.filter((entry) => matches(entry, wanted));
    shown = 0;
    place("entries").replaceChildren();
    showMore(portion);
    mark(wanted);
  };

  const changed = () => {
    filter();
    remember();
  };

  const choose = (values) => {
    const isChosen = Object.entries(values).every(([name, given]) => filters[name].value === given);
    for (const [name, given] of Object.entries(values)) {
      filters[name].value = isChosen ? "" : given;
    }
    changed();
    if (!isChosen) {
      place("list").scrollIntoView();
    }
  };

  const kept = new URLSearchParams(location.hash.slice(1));
  for (const [name, field] of Object.entries(filters)) {
    field.value = kept.get(name) || "";
    if (field.value === "" && field.options) {
      field.selectedIndex = 0;
    }
    field.addEventListener(field.options ? "change" : "input", changed);
  }
  place("filters").addEventListener("submit", (event) => event.preventDefault());
  place("filters").addEventListener("reset", () => setTimeout(changed));
  for (const button of document.querySelectorAll("button[aria-pressed]")) {
    button.addEventListener("click", () => choose(button.dataset.message !== undefined
      ? { message: button.dataset.message }
      : { month: button.dataset.month, book: button.dataset.book }));
  }
  place("more").addEventListener("click", () => {
    const first = showMore(shown + portion);
    if (first) {
      first.setAttribute("tabindex", "-1");
      first.focus();
    }
  });
  const messages = place("messages");
  if (messages.children.length > 8) {
    const all = place("all-messages");
    messages.classList.add("short");
    all.hidden = false;
    all.addEventListener("click", () => {
      messages.classList.remove("short");
      all.hidden = true;
      messages.children[8].querySelector("button").focus();
    });
  }
  window.addEventListener("beforeprint", () => showMore(matching.length));
  filter();
})();
