#!/usr/bin/python3
"""Compares our hand-written SDK declarations with facts about the SDK.

usage: check_declarations.py FACTS DECLARATIONS

FACTS is a file that reduce_sdk_facts.py wrote. Every declaration must agree with a fact of the same
name, or be listed there as one that the public descriptions of the SDK do not cover. Exits with 1
and one line for each disagreement.
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
    if "since" in known and version(known["since"]) > DEPLOYMENT_TARGET:
        yield f"{name}: not before macOS {known['since']}"
    for field, ours in declared.items():
        theirs = known.get(field)
        if field == "types":
            yield from type_disagreements(name, ours, theirs)
        elif theirs is not None and ours != theirs:
            yield f"{name}: {field} is {ours} here, {theirs} in the SDK"


def compare(declared, known, uncovered):
    """All disagreements, and everything that only one side knows of."""
    for name, claims in declared.items():
        if name in known:
            yield from disagreements(name, claims, known[name])
        elif name not in uncovered:
            yield f"{name}: not in the SDK"
    for name in [*known, *uncovered]:
        if name not in declared:
            yield f"{name}: among the facts, but not declared"


def main(facts_file, folder):
    reduced = json.loads(pathlib.Path(facts_file).read_text(encoding="utf-8"))
    try:
        declared = declared_facts(folder)
    except UnreadableDeclarations as error:
        sys.exit(str(error))
    found = list(compare(declared, reduced["facts"], reduced["uncovered"]))
    print(f"{len(declared)} declarations, {len(reduced['uncovered'])} of them not covered by facts")
    if found:
        sys.exit("\n".join(found))


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
