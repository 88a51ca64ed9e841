"""program_papers_test.py BINARIES PROGRAM...: man pages and shell completions say what the programs' --help says.

Completions are asked in the shells themselves. bash is always there; zsh and fish are asked where they are installed.
"""
import functools
import pathlib
import re
import shutil
import subprocess
import sys
import unittest

PACKAGING = pathlib.Path(__file__).resolve().parents[2] / "packaging"
BINARIES = pathlib.Path(sys.argv.pop(1))
PROGRAMS = sys.argv[1:]
del sys.argv[1:]


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True, timeout=30).stdout


# "  -h,--help  text", "  --tracks INT:INT in [1 - 1000]=24  text", "  --redraw all|changed=all  text". A value that
# ends where the texts begin has only one blank behind it.
KIND = r"[A-Z]+:[A-Z]+ in \[[^]]*\]|[a-z-]+(?:\|[a-z-]+)+|[A-Z]+(?:,\.\.\.:{[a-z,]+} \.\.\.|,\.\.\.)?|\[[A-Z]+\]"
OPTION = re.compile(rf"\s+(?:-\w, ?)?--(?P<name>[a-z-]+)"
                    rf"(?: (?P<kind>{KIND})(?:=(?P<default>\S+ \S+(?=  )|\S+))?)?(?:\s|$)")


class Option:
    """An option as --help lists it: its name without dashes, the words it takes, and what holds without it."""

    def __init__(self, match):
        kind = match["kind"] or ""
        self.name = match["name"]
        self.choices = sorted(kind.split("|")) if "|" in kind else []
        self.default = match["default"]


@functools.cache
def help_text(program):
    return output(BINARIES / program, "--help")


@functools.cache
def options(program):
    """Every option of --help by its name."""
    found = [Option(match) for line in help_text(program).splitlines() if (match := OPTION.match(line))]
    return {option.name: option for option in found}


@functools.cache
def commands(program):
    """The commands that a program lists, for standard input or --send."""
    lines = help_text(program).splitlines()
    starts = [i for i, line in enumerate(lines) if re.match(r"Commands .*:$", line)]
    names = []
    for line in lines[starts[0] + 1:] if starts else []:
        if not line.strip():
            break
        names.append(line.split()[0])
    return names


def man_entries(program):
    """What a page has under each of its tagged items, by the item's words."""
    text = (PACKAGING / "man" / f"{program}.1").read_text()
    entries = {}
    for item in re.split(r"^\.It ", text, flags=re.M)[1:]:
        tag, _, rest = item.partition("\n")
        entries[tag] = re.split(r"^\.El", rest, flags=re.M)[0]
    return entries


def bash_offers(program, *words):
    script = 'source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); '
    script += '$(complete -p "$1" | sed "s/.*-F \\([^ ]*\\) .*/\\1/"); printf "%s\\n" "${COMPREPLY[@]}"'
    file = PACKAGING / "completions" / "bash" / program
    return sorted(output("bash", "--norc", "-c", script, "bash", file, program, *words).split())


def fish_offers(program, line):
    file = PACKAGING / "completions" / "fish" / f"{program}.fish"
    lines = output("fish", "--no-config", "-c", f"source {file}; complete -C '{program} {line}'").splitlines()
    return sorted(offer.split("\t")[0] for offer in lines)


def long_options(program):
    return sorted("--" + name for name in options(program))


def for_each_program(test):
    @functools.wraps(test)
    def run(self):
        for program in PROGRAMS:
            with self.subTest(program=program):
                test(self, program)
    return run


class Reading(unittest.TestCase):
    """The other tests compare nothing with nothing when --help is not understood."""

    @for_each_program
    def test_help_is_understood(self, program):
        listed = re.findall(r"^ +(?:-\w, ?)?--([a-z-]+)", help_text(program), flags=re.M)
        self.assertEqual(set(options(program)), set(listed))
        self.assertLessEqual({"help", "version"}, set(listed))

    def test_help_is_read_with_its_values(self):
        read = OPTION.match("  --port-b TEXT=Lumbrine B                  MIDI ports of the second surface")
        self.assertEqual(Option(read).default, "Lumbrine B")
        read = OPTION.match("  --attributes names|numbers|prefixed=names how attributes are written")
        self.assertEqual(Option(read).choices, ["names", "numbers", "prefixed"])
        self.assertEqual(Option(read).default, "names")
        self.assertIsNone(Option(OPTION.match("  --tour                      Let two clients play")).default)


class ManPages(unittest.TestCase):
    @for_each_program
    def test_list_the_options_of_help_and_no_others(self, program):
        listed = [re.search(r"Fl Fl ([a-z-]+)", tag) for tag in man_entries(program)]
        self.assertEqual(sorted("--" + match[1] for match in listed if match), long_options(program))

    @for_each_program
    def test_tell_what_holds_without_an_option(self, program):
        entries = {match[1]: text for tag, text in man_entries(program).items()
                   if (match := re.search(r"Fl Fl ([a-z-]+)", tag))}
        for option in options(program).values():
            if option.default:
                self.assertRegex(entries[option.name], rf"[ ;]{re.escape(option.default)}\W", option.name)

    @for_each_program
    def test_tell_the_choices_of_an_option(self, program):
        tags = {match[1]: tag for tag in man_entries(program) if (match := re.search(r"Fl Fl ([a-z-]+)", tag))}
        for option in options(program).values():
            if option.choices:
                self.assertEqual(sorted(tags[option.name].split(" Cm ")[1].split(" | ")), option.choices)

    @for_each_program
    def test_list_the_commands_of_help(self, program):
        listed = {match[1] for tag in man_entries(program) if (match := re.match(r"Ic ([a-z-]+)", tag))}
        self.assertEqual(sorted(listed), sorted(commands(program)))


class BashCompletion(unittest.TestCase):
    @for_each_program
    def test_offers_the_options_of_help_and_no_others(self, program):
        self.assertEqual(bash_offers(program, "--"), long_options(program))

    @for_each_program
    def test_offers_what_goes_on_as_it_was_begun(self, program):
        self.assertEqual(bash_offers(program, "--ver"), ["--version"])

    @for_each_program
    def test_offers_the_choices_of_an_option(self, program):
        for option in options(program).values():
            if option.choices:
                self.assertEqual(bash_offers(program, "--" + option.name, ""), option.choices)


class ZshCompletion(unittest.TestCase):
    def text(self, program):
        return (PACKAGING / "completions" / "zsh" / f"_{program}").read_text()

    @for_each_program
    def test_has_the_options_of_help_and_no_others(self, program):
        self.assertTrue(self.text(program).startswith(f"#compdef {program}\n"))
        self.assertEqual(sorted(set(re.findall(r"--[a-z][a-z-]*", self.text(program)))), long_options(program))

    @for_each_program
    def test_has_the_choices_of_an_option(self, program):
        for option in options(program).values():
            if option.choices:
                words = re.search(rf"--{option.name}=.*:\(([^)]*)\)'", self.text(program))[1]
                self.assertEqual(sorted(words.split()), option.choices)

    @unittest.skipUnless(shutil.which("zsh"), "zsh is not installed")
    @for_each_program
    def test_is_understood_by_zsh(self, program):
        output("zsh", "-n", PACKAGING / "completions" / "zsh" / f"_{program}")


@unittest.skipUnless(shutil.which("fish"), "fish is not installed")
class FishCompletion(unittest.TestCase):
    @for_each_program
    def test_offers_the_options_of_help_and_no_others(self, program):
        self.assertEqual(fish_offers(program, "--"), long_options(program))

    @for_each_program
    def test_offers_the_choices_of_an_option(self, program):
        for option in options(program).values():
            if option.choices:
                self.assertEqual(fish_offers(program, f"--{option.name} "), option.choices)


if __name__ == "__main__":
    unittest.main()
