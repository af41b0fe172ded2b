#!/usr/bin/python3
"""Writes sdk-facts.json: what a full table of facts about the SDK says of our declarations.

usage: reduce_sdk_facts.py FULL_TABLE DECLARATIONS SDK_FACTS

FULL_TABLE is a JSON object with "classes" and "protocols" (superclass, adopted protocols and methods
with their types), "functions", "enums", "consts", "structs" and "typedefs", gathered from public
descriptions of the SDK. To be run again when the declarations change; the table itself is not kept
here. Names that the table lacks are left out and told: they are to be looked up elsewhere, see
check_declarations.py.
"""

import json
import pathlib
import sys

from sdk_declarations import canonical_type, declared_facts

# Names of C that the table's types use without saying what they are.
C_TYPES = {
    "BOOL": "bool", "Boolean": "unsigned char", "CGFloat": "double", "NSInteger": "long",
    "NSUInteger": "unsigned long", "NSTimeInterval": "double", "NSRect": "CGRect",
    "NSPoint": "CGPoint", "NSSize": "CGSize", "size_t": "unsigned long", "intptr_t": "long",
    "int32_t": "int", "uint32_t": "unsigned int", "int64_t": "long", "uint64_t": "unsigned long",
    "OSType": "unsigned int", "pid_t": "int", "qos_class_t": "unsigned int",
    "dispatch_time_t": "unsigned long", "dispatch_block_t": "void (^)()",
    "SCStreamFrameInfo": "NSString *", "CFTypeID": "unsigned long", "NSComparisonResult": "long",
    # An opaque reference, which the table misspells.
    "CGDisplayConfigRef": "CGDisplayConfigRef",
}


class Table:
    """Looks our declarations up in the full table, in the terms of `sdk_declarations`."""

    def __init__(self, table):
        self._table = table
        self._types = {**table["typedefs"], **C_TYPES}
        self._values = {name: value for enum in table["enums"].values()
                        for name, value in enum["v"].items()}

    def fact(self, name):
        """What the table says of a declaration; None when it has nothing of that name."""
        kind, _, rest = name.partition(" ")
        return getattr(self, "_" + kind)(rest)

    def _class(self, name):
        known = self._table["classes"].get(name)
        if known is None:
            return None
        return {"superclass": known["super"] if known["super"] != name else None}

    def _protocol(self, name):
        return {} if name in self._table["protocols"] else None

    def _method(self, name):
        owner, _, selector = name[2:-1].partition(" ")
        for methods in self._methods_seen_by(owner):
            if known := methods.get(name[0] + selector):
                return self._signature(known)
        return None

    def _function(self, name):
        known = self._table["functions"].get(name)
        return known and self._signature(known)

    def _constant(self, name):
        if name in self._values:
            return {"value": self._values[name]}
        known = self._table["consts"].get(name)
        if known is None:
            return None
        # Some values of enumerations stand among the constants alone.
        return {"type": self._type(known["type"])} if "type" in known else {"value": known["v"]}

    def _struct(self, name):
        known = self._table["structs"].get(name)
        if known is None:
            return None
        return {"fields": known.get("names") or [field for field, _ in known["f"]]}

    def _methods_seen_by(self, owner):
        """The methods of a class or protocol, then those of all that it inherits from."""
        if known := self._table["protocols"].get(owner):
            yield known["m"]
            inherited = known["super"]
        elif known := self._table["classes"].get(owner):
            yield known["m"]
            above = [known["super"]] if known["super"] != owner else []
            inherited = [*known["protocols"], *above]
        else:
            return
        for name in inherited:
            yield from self._methods_seen_by(name)

    def _signature(self, known):
        signature = {"types": [self._type(spelling) for spelling, _ in known["t"]]}
        return {**signature, "since": known["since"]} if known.get("since") else signature

    def _type(self, spelling):
        return canonical_type(spelling, self._types) or None


def main(full_table, folder, output):
    source = json.loads(pathlib.Path(full_table).read_text(encoding="utf-8"))
    table = Table(source)
    found = {name: table.fact(name) for name in sorted(declared_facts(folder))}
    lines = ",\n".join(f"    {json.dumps(name)}: {json.dumps(fact)}"
                       for name, fact in found.items() if fact is not None)
    pathlib.Path(output).write_text(
        f'{{\n  "source": {json.dumps(source["source"])},\n  "facts": {{\n{lines}\n  }}\n}}\n',
        encoding="utf-8")
    lacking = [name for name, fact in found.items() if fact is None]
    print(f"The table lacks {len(lacking)} names:", *lacking, sep="\n  ")


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    main(*sys.argv[1:])
