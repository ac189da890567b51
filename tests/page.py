#!/usr/bin/env python3
"""page.py KALCOGCHECK: the report page in a real browser, held against what --json and --explain say
of the same entries."""
import collections
import json
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tools"))
from browser import Browser  # noqa: E402

PROGRAM = sys.argv.pop(1)
HOSTILE = "</script><img src=x onerror=alert(1)>"
KINDS = ["ErrString", "WarnString", "WarnProtocolloString", "WarnDuplicatoDocString",
         "WarnInfragruppoString"]

# Text that is seen and stands out too little from what is behind it, by the usual formula.
CONTRAST = """
const light = (c) => c.slice(0, 3).map((v) => v / 255)
  .map((v) => v <= .04045 ? v / 12.92 : ((v + .055) / 1.055) ** 2.4)
  .reduce((sum, v, i) => sum + v * [.2126, .7152, .0722][i], 0);
const parts = (text) => text.match(/[\\d.]+/g).map(Number);
const behind = (e) => {
  for (; e; e = e.parentElement) {
    const c = parts(getComputedStyle(e).backgroundColor);
    if (c.length === 3 || c[3] === 1) return c;
  }
  return [255, 255, 255];
};
const bad = new Set();
for (const e of document.querySelectorAll("body *")) {
  const said = [...e.childNodes].some((n) => n.nodeType === 3 && n.data.trim());
  if (!said || !e.checkVisibility() || ["SCRIPT", "OPTION"].includes(e.tagName)) continue;
  const style = getComputedStyle(e);
  const [a, b] = [light(parts(style.color)), light(behind(e))].sort((x, y) => y - x);
  const large = parseFloat(style.fontSize) >= 24;
  if ((a + .05) / (b + .05) < (large ? 3 : 4.5)) bad.add(e.tagName + "." + e.className);
}
return [...bad];
"""


def run(*arguments):
    ended = subprocess.run([PROGRAM, *map(str, arguments)], capture_output=True, check=False,
                           text=True, timeout=60)
    if ended.returncode == 2 and not ended.stdout:
        raise RuntimeError(ended.stderr)
    return ended.stdout


def is_problem(answer):
    return bool(answer["findings"]) or answer["error"] or (
        answer["result"] is False and answer["operation"].startswith("Ok"))


class Page(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="kal-page-")
        folder = Path(cls.folder.name)
        company, cls.file, cls.page = folder / "c.db", folder / "e.jsonl", folder / "page.html"
        run("init", company, "--sample")
        year = subprocess.run([ROOT / "tools/plausible-year", "7", "600", company,
                               ROOT / "host/samples"], capture_output=True, check=True, text=True)
        lines = year.stdout.splitlines()
        for sample in sorted((ROOT / "host/samples").glob("*.json")):
            lines.append(json.dumps(json.loads(sample.read_text(encoding="utf-8"))))
        hostile = json.loads(lines[0])
        hostile["id"] = HOSTILE
        hostile["RsTesta"]["rows"][0]["NumeroDocumento"] = "{{title}}<b onclick=alert(2)>&amp;\u202e"
        hostile["RsRCont"]["rows"][0]["CodConto"] = "<!--<script>"
        lines += [json.dumps(hostile), '{"id": "<i>", <script>alert(3)</script>']
        cls.file.write_text("\n".join(lines) + "\n", encoding="utf-8")
        cls.check = ("check", "--company", company)
        cls.entries = [json.loads(line) for line in lines[:-1]]
        cls.answers = [json.loads(line) for line in run(
            *cls.check, "--json", "--report", cls.page, cls.file).splitlines()]
        cls.problems = [answer for answer in cls.answers if is_problem(answer)]
        cls.browser = Browser().__enter__()
        cls.addClassCleanup(cls.browser.__exit__)
        cls.addClassCleanup(cls.folder.cleanup)

    def setUp(self):
        self.browser.leave()  # so that nothing is kept of the page before
        self.browser.open(self.page)

    def texts(self, selector):
        return self.browser.run("return [...document.querySelectorAll(arguments[0])]"
                                ".map((e) => e.textContent.trim())", selector)

    def found(self):
        """How many entries the filters leave."""
        return int(self.texts("#status")[0].split()[-1].replace(".", ""))

    def choose(self, field, value):
        self.browser.run("const f = document.getElementById('filter-' + arguments[0]);"
                         "f.value = arguments[1];"
                         "f.dispatchEvent(new Event(f.options ? 'change' : 'input'))", field, value)

    def test_counts_are_those_of_json(self):
        verdicts = collections.Counter(
            "unchecked" if answer["error"] else
            ("free" if answer["result"] is not False else "blocked" if answer["ErrString"] else
             "confirm" if answer["findings"] else "refused")
            if answer["operation"].startswith("Ok") else "yes" if answer["result"] else "no"
            for answer in self.answers)
        self.assertEqual(verdicts, dict(self.browser.run(
            "return [...document.querySelectorAll('[data-verdict]')]"
            ".map((e) => [e.dataset.verdict, Number(e.dataset.count)])")))
        found = collections.Counter(finding["code"] for answer in self.answers
                                    for finding in answer["findings"] if finding["code"])
        shown = self.browser.run("return [...document.querySelectorAll('[data-message]')].map((e) =>"
                                 "[e.querySelector('.code').textContent, Number(e.dataset.count)])")
        self.assertEqual(found, {int(code): count for code, count in shown if code})
        self.assertEqual(sum(len(answer["findings"]) for answer in self.answers),
                         sum(count for _, count in shown))
        self.assertEqual([count for _, count in shown],
                         sorted((count for _, count in shown), reverse=True))
        self.assertEqual(len(self.problems), self.found())
        months = collections.Counter()
        for entry, answer in zip(self.entries, self.answers):
            header = (entry.get("RsTesta") or {"rows": []})["rows"]
            if header and is_problem(answer) and header[0].get("DataRegistrazione"):
                year, month, _ = map(int, header[0]["DataRegistrazione"].split("-"))
                book = {1: 0, 2: 1, 3: 2}.get(header[0].get("TipoRegIva"), 3)
                months[f"{year * 12 + month - 1} {book}"] += 1
        self.assertEqual(months, dict(self.browser.run(
            "return [...document.querySelectorAll('[data-month]')].map((e) =>"
            "[e.dataset.month + ' ' + e.dataset.book, Number(e.dataset.count)])")))

    def test_filters_filter(self):
        code = 10492
        wanted = [answer["id"] for answer in self.problems
                  if any(finding["code"] == code for finding in answer["findings"])]
        self.browser.run("[...document.querySelectorAll('[data-message]')].find((e) =>"
                         "e.querySelector('.code').textContent === arguments[0]).click()", str(code))
        self.assertEqual(wanted, self.texts("h3"))
        self.assertIn("message=", self.browser.run("return location.hash"))
        self.browser.run("document.getElementById('clear').click()")
        self.browser.run("return new Promise((done) => setTimeout(done, 50))")
        self.assertEqual(len(self.problems), self.found())
        for kind, string in enumerate(KINDS):
            self.choose("kind", str(kind))
            count = sum(any(finding["string"] == string for finding in answer["findings"])
                        for answer in self.problems)
            self.assertEqual(count, self.found() if count else len(self.texts("h3")), string)
        self.choose("kind", "unchecked")
        self.assertEqual(sum(bool(answer["error"]) for answer in self.answers), self.found())
        self.choose("kind", "")
        self.choose("text", "CONTO riga")
        self.assertTrue(0 < self.found() < len(self.problems))
        self.choose("text", "no such words")
        self.assertEqual([], self.texts("h3"))
        self.choose("text", "")
        cell = self.browser.run("const e = [...document.querySelectorAll('[data-month]')]"
                                ".sort((a, b) => b.dataset.count - a.dataset.count)[0]; e.click();"
                                "return [Number(e.dataset.count), e.ariaPressed]")
        self.assertEqual([self.found(), "true"], cell)

    def test_a_tree_opens_by_keyboard_and_is_the_one_of_explain(self):
        self.browser.run("document.querySelector('.tree summary').focus()")
        self.assertEqual([], self.texts(".tree li"))
        self.browser.press("\ue007")
        self.browser.run("return new Promise((done) => { const look = () => document.querySelector("
                         "'.tree[open] li') ? done() : setTimeout(look, 20); look(); })")
        tree = " ".join(" ".join(self.texts(".tree[open] li span")).split())
        explained = run(*self.check, "--explain", self.file)
        name = self.texts("h3")[0]
        block = explained[explained.index(f"\n{name}  ") + 1:].split("\n")[1:]
        end = next(place for place, line in enumerate(block) if not line.startswith(" "))
        self.assertEqual(" ".join(" ".join(block[:end]).split()), tree)

    def test_hostile_texts_stay_texts(self):
        self.choose("text", "onerror")
        self.assertEqual([HOSTILE], self.texts("h3"))
        facts = self.texts(".facts dd")
        self.assertTrue(any(fact.startswith("{{title}}<b onclick=alert(2)>&amp;?") for fact in facts),
                        facts)
        self.assertIn("<!--<script>", self.texts("td.text"))
        self.assertEqual([0, 2, 0], self.browser.run(
            "return ['img', 'script', 'b[onclick]'].map((s) => document.querySelectorAll(s).length)"))

    def test_asks_nothing_of_the_network_and_complains_of_nothing(self):
        self.browser.leave()
        for kind in ("performance", "browser"):
            self.browser.log(kind)
        self.browser.open(self.page)
        self.choose("text", "onerror")
        asked = set()
        for line in self.browser.log("performance"):
            message = json.loads(line["message"])["message"]
            if message["method"] == "Network.requestWillBeSent":
                asked.add(message["params"]["request"]["url"].split("#")[0])
        self.assertEqual({self.page.as_uri()}, asked - {"data:,"})
        self.assertEqual([], self.browser.log("browser"))

    def test_is_seen_in_both_colours_and_told_by_name(self):
        self.browser.leave()
        blank = len(self.browser.picture())
        self.browser.open(self.page)
        for scheme in ("light", "dark"):
            self.browser.colours(scheme)
            self.assertGreater(len(self.browser.picture()), 4 * blank, scheme)
            self.assertEqual([], self.browser.run(CONTRAST), scheme)
        nodes = self.browser.devtools("Accessibility.getFullAXTree")["nodes"]
        nameless = [node["role"]["value"] for node in nodes
                    if not node["ignored"] and not node.get("name", {}).get("value")
                    and any(one["name"] == "focusable" for one in node.get("properties", []))
                    and node["role"]["value"] != "RootWebArea"]
        self.assertEqual([], nameless)
        self.browser.run("document.activeElement.blur()")
        self.browser.press("\ue004")
        self.assertEqual("skip", self.browser.run("return document.activeElement.className"))

    def test_prints_all_that_the_filters_leave(self):
        self.choose("kind", "0")
        found = self.found()
        self.assertTrue(self.browser.print().startswith(b"%PDF"))
        self.assertEqual(found, len(self.texts("h3")))

    def test_lists_the_first_entries_and_says_so(self):
        many = Path(self.folder.name) / "many.jsonl"
        many.write_text('{"RsTesta":null}\n' * 5003, encoding="utf-8")
        run(*self.check, "--lang", "en", "--report", self.page.with_name("many.html"), many)
        self.browser.open(self.page.with_name("many.html"))
        self.assertIn("first 5,000 of 5,003", self.texts("#cut")[0])
        self.assertEqual("Shown 50 of 5,000", self.texts("#status")[0])
        self.browser.run("document.getElementById('more').click()")
        self.assertEqual("Shown 100 of 5,000", self.texts("#status")[0])


unittest.main()
