#!/usr/bin/env python3
"""What clang-tidy has to read: prints "PRESET TAB GROUP" for each group of the project's sources that have no mark of
having been clean, and on the last line how many sources there are in all and how many have no mark.

usage: tidy-work.py WORK MARKS PRESET...

WORK/groups/GROUP has the lines "SOURCE TAB KEY" of the group, WORK/groups/GROUP.cpp includes its sources: headers, which
are most of what there is to read, are then read once for all of them. What the build compiles alone is read alone, and what
it compiles with others is read with others. GROUP is a number below the folder with what configures the check. WORK/database-PRESET/compile_commands.json has a
command for each source by itself, although the build compiles several at a time, and for each group. A source that several
presets compile belongs to the first. WORK/options-PRESET is what clang-tidy is told besides. The key covers the text of
the source and of the project's headers that it includes, the command, clang-tidy and what configures it; MARKS holds a
file of that name for each source that was clean.
"""
import functools
import hashlib
import itertools
import json
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import typing

ROOT = pathlib.Path(__file__).resolve().parents[1]
BUILD = ROOT / "build"
AT_A_TIME = 24
FOLDERS = ("src", "hosts", "ledger", "bench", "tests")
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*[<"]([^>"]+)[>"]', re.MULTILINE)
# What only the compiler of Windows' builds knows, what many sources at a time are spared, and what makes no difference here.
UNKNOWN = re.compile(r"-O[0-3s]|-fno-(align-[a-z]+|reorder-blocks-and-partition)|-fwhole-program|--param=.*|-mstringop-strategy=.*"
                     r"|-Wno-(shadow|subobject-linkage)")


class Own(typing.NamedTuple):
    """How a source of the project is compiled: by this command alone, if it were not together with others."""
    command: dict
    united: bool


@functools.cache
def text_of(file):
    return file.read_text(encoding="utf-8", errors="replace")


def is_own(file):
    return file.suffix == ".cpp" and file.is_relative_to(ROOT) and file.relative_to(ROOT).parts[0] in FOLDERS


@functools.cache
def included(file, folders):
    """The files of the project that the file names, found as the compiler finds them."""
    found = []
    for name in INCLUDE.findall(text_of(file)):
        candidates = (folder / name for folder in (file.parent, *folders))
        match = next((candidate.resolve() for candidate in candidates if candidate.is_file()), None)
        if match and match.is_relative_to(ROOT):
            found.append(match)
    return found


def all_included(file, folders):
    seen, waiting = {file}, [file]
    while waiting:
        for header in included(waiting.pop(), folders):
            if header not in seen:
                seen.add(header)
                waiting.append(header)
    return sorted(seen)


def folders_of(arguments):
    """Where the command has the compiler look for headers."""
    folders = [arguments[at + 1] for at, argument in enumerate(arguments) if argument == "-isystem"]
    folders += [argument[2:] for argument in arguments if argument.startswith("-I")]
    return tuple(pathlib.Path(folder) for folder in folders)


def sources_of(file, folders):
    """The source itself, or those that a source made by the build includes."""
    if not file.is_relative_to(BUILD):
        return [file]
    return included(file, folders)


def commands(preset):
    """Of each of the project's sources how it is compiled."""
    found = {}
    for entry in json.loads((BUILD / preset / "compile_commands.json").read_text(encoding="utf-8")):
        if not entry["file"].endswith((".cpp", ".cxx")):
            continue
        arguments = [argument for argument in shlex.split(entry["command"]) if not UNKNOWN.fullmatch(argument)]
        output = arguments.index("-o")
        del arguments[output:output + 2]
        compiled = pathlib.Path(entry["file"])
        at = arguments.index("-c") + 1
        for source in sources_of(compiled, folders_of(arguments)):
            if is_own(source):
                alone = arguments[:at] + [str(source)] + arguments[at + 1:]
                command = {"directory": entry["directory"], "file": str(source), "arguments": alone}
                found.setdefault(source, Own(command, united=source != compiled))
    return found


def digest(*texts):
    return hashlib.sha256("\0".join(texts).encode("utf-8", "replace")).hexdigest()[:40]


def own_settings():
    return sorted(file for file in ROOT.rglob(".clang-tidy") if not file.is_relative_to(BUILD))


def configuration(work, preset):
    version = subprocess.run(["clang-tidy-14", "--version"], capture_output=True, text=True, check=True).stdout
    return digest(version, *map(text_of, own_settings()), text_of(work / f"options-{preset}"))


def unmarked(preset, own, work, marks):
    """The keys of the sources that have no mark, by source."""
    settings = configuration(work, preset)
    found = {}
    for source, compiled in own.items():
        arguments = compiled.command["arguments"]
        files = all_included(source, folders_of(arguments))
        # A command is the same in every clone but for where that lies.
        key = digest(settings, " ".join(arguments).replace(str(ROOT), ""), *map(text_of, files))
        if not (marks / key).exists():
            found[source] = key
    return found


def settings_folder(source):
    return next(folder for folder in source.parents if (folder / ".clang-tidy").is_file())


def groups_of(sources, own):
    """Sources that are compiled and checked alike, so many at a time; the largest groups, which take longest, first."""
    alike = {}
    for source in sorted(sources):
        arguments = tuple(argument for argument in own[source].command["arguments"] if argument != str(source))
        alone = None if own[source].united else source
        alike.setdefault((settings_folder(source), arguments, alone), []).append(source)
    groups = [members[begin:begin + AT_A_TIME] for members in alike.values() for begin in range(0, len(members), AT_A_TIME)]
    return sorted(groups, key=len, reverse=True)


def make_folder_for_groups(folder):
    """What lies further up than the folder serves the groups as it is."""
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir()
    for file in own_settings():
        if file.parent != ROOT:
            copy = folder / file.relative_to(ROOT)
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(file, copy)


def write_group(folder, name, members, keys, command):
    """The files of the group; the command that compiles it."""
    (folder / name).parent.mkdir(parents=True, exist_ok=True)
    (folder / name).write_text("".join(f"{source}\t{keys[source]}\n" for source in members))
    file = folder / f"{name}.cpp"
    # What the check warns of is all that the file is for.
    file.write_text("".join(f'#include "{source}" // NOLINT(bugprone-suspicious-include)\n' for source in members))
    arguments = [str(file) if argument == command["file"] else argument for argument in command["arguments"]]
    return {**command, "file": str(file), "arguments": arguments}


def main():
    work, marks, presets = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3:]
    make_folder_for_groups(work / "groups")
    done, left, names = set(), 0, itertools.count(1)
    for preset in presets:
        own = {source: compiled for source, compiled in commands(preset).items() if source not in done}
        done.update(own)
        database = [compiled.command for compiled in own.values()]
        keys = unmarked(preset, own, work, marks)
        left += len(keys)
        for members in groups_of(keys, own):
            name = str(settings_folder(members[0]).relative_to(ROOT) / str(next(names)))
            database.append(write_group(work / "groups", name, members, keys, own[members[0]].command))
            print(preset, name, sep="\t")
        (work / f"database-{preset}").mkdir(exist_ok=True)
        (work / f"database-{preset}" / "compile_commands.json").write_text(json.dumps(database, indent=1))
    print(len(done), left)


if __name__ == "__main__":
    main()
