"""The pages of the manual and the completions, held to what the program says and does.

  manual.py PROGRAM FOLDER    the folder has the pages and completions that the build made
"""

import os
import re
import subprocess
import sys
import tempfile

PROGRAM = os.path.abspath(sys.argv[1])
FOLDER = os.path.abspath(sys.argv[2])
PAGES = {"en": "kalcogcheck.1", "it": "kalcogcheck.it.1"}
failures = []


def expect(holds, what):
    if not holds:
        failures.append(what)


def help_of(language, *command):
    return subprocess.run([PROGRAM, "--lang", language, *command, "--help"], check=True,
                          capture_output=True, text=True).stdout


def options_of(help_text):
    """Each option's names with what is said of it, by the program's own help."""
    said = {}
    for heading, names, rest in re.findall(r"^  ((-[^\s=]+)[^\n]*?)(?:  +| (?=\S)|\n +)(\S.*)$",
                                           help_text, re.M):
        said[names] = rest
        expect(rest.strip() and rest.strip() != heading.strip(), f"nothing is said of {names}")
    return said


def commands_of(help_text):
    return re.findall(r"^  ([a-z]+)  ", help_text, re.M)


def rendered(page):
    """The page as man shows it on a wide terminal. It must have nothing to complain of."""
    path = os.path.join(FOLDER, page)
    run = subprocess.run(["man", "--warnings", "-l", path], capture_output=True, text=True,
                         env=dict(os.environ, LC_ALL="C.UTF-8", MANWIDTH="200"))
    expect(run.returncode == 0 and not run.stderr, f"man of {page}: {run.stderr}")
    return run.stdout


def section(page, command):
    """What a rendered page says of a command."""
    match = re.search(rf"^   kalcogcheck {command}\n(.*?)^(?:   )?\S", page, re.M | re.S)
    return match.group(1) if match else ""


def completed(*words):
    """What a real bash offers in the place of the last word."""
    script = ('source "$0"; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _kalcogcheck; '
              'printf "%s\\n" "${COMPREPLY[@]}"')
    out = subprocess.run(["bash", "-c", script, os.path.join(FOLDER, "kalcogcheck.bash"),
                          "kalcogcheck", *words], check=True, capture_output=True, text=True,
                         cwd=FOLDER)
    expect(not out.stderr, f"bash: {out.stderr}")
    return set(out.stdout.split())


def zsh_options(locale, command):
    """What a real zsh would let complete: the file runs with a double of _arguments, which is asked
    for the program first and for the command then."""
    script = ('_arguments() { print -rl -- "$@"; state=rest; words=($command) }; compdef() { }; '
              'command=$1; source $0')
    out = subprocess.run(["zsh", "-f", "-c", script, os.path.join(FOLDER, "_kalcogcheck"),
                          command or "none"], capture_output=True, text=True,
                         env=dict(os.environ, LC_ALL=locale))
    expect(not out.stderr, f"zsh, {command}: {out.stderr}")
    program, _, rest = out.stdout.partition("*:: :->rest\n")
    return re.findall(r"^(?:\([^)]*\))(-[^\[\n]*)(\[[^]].*)", rest if command else program, re.M)


def check_options():
    shown = {language: rendered(page) for language, page in PAGES.items()}
    commands = commands_of(help_of("en"))
    expect(len(commands) > 4 and commands == commands_of(help_of("it")), f"commands: {commands}")
    expect(completed("") == set(commands), f"bash, commands: {completed('')}")
    for command in [None] + commands:
        helps = {language: options_of(help_of(language, *([command] if command else [])))
                 for language in PAGES}
        expect(list(helps["en"]) == list(helps["it"]), f"{command}: {helps}")
        names = set()
        for heading in helps["en"]:
            names.update(heading.split(","))
            expect(helps["en"][heading] != helps["it"][heading],
                   f"{command} {heading} is said in one language only")
        expect(names, f"{command} has no options")
        offered = completed(*([command] if command else []), "-")
        expect(offered == names, f"bash, {command}: {offered ^ names}")
        zsh = [zsh_options(locale, command) for locale in ("it_IT.UTF-8", "C.UTF-8")]
        expect(zsh[0] != zsh[1], f"zsh, {command}: one language only")
        for options in zsh:
            found = {name for name, _ in options}
            expect(found == names, f"zsh, {command}: {found ^ names}")
        for language, page in shown.items():
            part = section(page, command) if command else page
            for name in names:
                expect(re.search(rf"^       (?:-h, )?{name}\b(?!-)", part, re.M),
                       f"page {language}, {command}: {name}")


def check_values():
    """What stands in the place of a value."""
    files = set(os.listdir(FOLDER))
    for words, offered in [
            (["--lang", ""], {"it", "en"}),
            (["check", "--lang", "e"], {"en"}),
            (["check", "--lang", "="], {"it", "en"}),
            (["check", "--lang", "=", "i"], {"it"}),
            (["--lang", "en", "che"], {"check"}),
            (["check", "--fail-on", ""], {"error", "warning"}),
            (["check", "--jobs", ""], set()),
            (["check", "--company", ""], files),
            (["check", "--json", "_kal"], {"_kalcogcheck"}),
            (["verify", ""], files),
            (["explain", "1052"], {"10520", "10521", "10522", "10523", "10525"}),
            (["explain", "ContoM"], {"ContoMancante"})]:
        expect(completed(*words) == offered, f"bash, {words}: {completed(*words)}")


def check_examples():
    for language, page in PAGES.items():
        # Each stands behind its sentence, which ends with the status, up to the next one.
        part = re.search(r"^(?:EXAMPLES|ESEMPI)\n(.*?)^\S", rendered(page), re.M | re.S).group(1)
        examples = re.findall(r"\((?:exit status|stato d'uscita) (\d)\):\n\n(.*?)\n\n", part + "\n\n",
                              re.S)
        expect(len(examples) > 5, f"{page}: {len(examples)} examples")
        with tempfile.TemporaryDirectory() as folder:
            for status, command in examples:
                path = os.path.dirname(PROGRAM) + os.pathsep + os.environ["PATH"]
                run = subprocess.run(["bash", "-c", command], cwd=folder, capture_output=True,
                                     text=True, env=dict(os.environ, PATH=path))
                expect(run.returncode == int(status) and run.stdout,
                       f"{language}: {command}: {run.returncode} {run.stdout}{run.stderr}")


check_options()
check_values()
check_examples()
for failure in failures:
    print(failure)
print("the manual says what the program does" if not failures else f"{len(failures)} failures")
sys.exit(1 if failures else 0)
