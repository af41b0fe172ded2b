#!/usr/bin/python3
"""Compares our hand-written SDK declarations with facts about the SDK.

usage: check_declarations.py FACTS LOOKED_UP DECLARATIONS

FACTS is a file that reduce_sdk_facts.py wrote. LOOKED_UP is one that people write: "facts" of the
same form for names that the other file lacks, each with the two "sources" that it was read in, and
"exceptions", names that no source has, each with the reason. Every declaration must agree with a
fact of its name or be an exception. Exits with 1 and one line for each disagreement.
"""

import json
import pathlib
import sys

from sdk_declarations import UnreadableDeclarations, declared_facts

DEPLOYMENT_TARGET = (13, 0)


def version(text):
    return tuple(int(part) for part in text.split("."))


def type_disagreements(name, declared, known):
    """Compares signatures, result first; a known type of None is not known."""
    if len(declared) != len(known):
        yield f"{name}: takes {len(declared) - 1} arguments here, {len(known) - 1} in the SDK"
        return
    for index, (ours, theirs) in enumerate(zip(declared, known)):
        if theirs is not None and ours != theirs:
            place = "the result" if index == 0 else f"argument {index}"
            yield f"{name}: {place} is {ours} here, {theirs} in the SDK"


def disagreements(name, declared, known):
    """What one declaration says differently from the SDK."""
    is_newer = "since" in known and version(known["since"]) > DEPLOYMENT_TARGET
    if is_newer and "since" not in declared:
        yield f"{name}: does not say that it is not before macOS {known['since']}"
    for field, ours in declared.items():
        theirs = known.get(field)
        if field == "types":
            yield from type_disagreements(name, ours, theirs)
        elif theirs is not None and ours != theirs:
            yield f"{name}: {field} is {ours} here, {theirs} in the SDK"


def compare(declared, known, exceptions):
    """All disagreements, and everything that only one side knows of."""
    for name, claims in declared.items():
        if name in known:
            yield from disagreements(name, claims, known[name])
        elif name not in exceptions:
            yield f"{name}: not in the SDK"
    for name in [*known, *exceptions]:
        if name not in declared:
            yield f"{name}: among the facts, but not declared"


def unfounded(looked_up, reduced):
    """What was looked up without two sources, excepted without a reason, or is known anyway."""
    for name, fact in looked_up["facts"].items():
        if len(set(fact.get("sources", []))) < 2:
            yield f"{name}: looked up in fewer than two sources"
    for name, reason in looked_up["exceptions"].items():
        if not reason:
            yield f"{name}: an exception without a reason"
    for name in [*looked_up["facts"], *looked_up["exceptions"]]:
        if name in reduced:
            yield f"{name}: looked up, though the table has it"


def main(facts_file, looked_up_file, folder):
    reduced = json.loads(pathlib.Path(facts_file).read_text(encoding="utf-8"))["facts"]
    looked_up = json.loads(pathlib.Path(looked_up_file).read_text(encoding="utf-8"))
    try:
        declared = declared_facts(folder)
    except UnreadableDeclarations as error:
        sys.exit(str(error))
    found = [*unfounded(looked_up, reduced),
             *compare(declared, {**looked_up["facts"], **reduced}, looked_up["exceptions"])]
    print(f"{len(declared)} declarations: {len(reduced)} in the table, {len(looked_up['facts'])} "
          f"looked up, {len(looked_up['exceptions'])} exceptions")
    if found:
        sys.exit("\n".join(found))


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    main(*sys.argv[1:])
