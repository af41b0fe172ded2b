#!/usr/bin/python3
"""Writes recording fakes of the classes that our SDK declarations hold.

usage: generate_fakes.py DECLARATIONS HAND_WRITTEN_SOURCE... > FAKES

A fake knows the messages that are declared and no others. It keeps properties as they are declared to
be kept (strong, copy, weak), tells the recorder of every message but getters, and ends the test when
it is asked for a result that nobody has given it a behaviour for; a class asked for an instance of its
own makes one. Functions end the test likewise. A string constant says its own name.

Classes that one of the hand-written sources implements are left out; behaviours are categories there,
whose methods replace these, and functions, before which these stand back. What behaviours keep in an
object beside its properties is declared in State.h, and keepX: sets a property without being told of.
"""

import ctypes
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1]))

from clang.cindex import Cursor, CursorKind, conf  # noqa: E402
from sdk_declarations import METHOD_SIGNS, kind_of, parse, top_level  # noqa: E402

# libclang's CXObjCPropertyAttrKind.
READONLY, COPY, CLASS = 0x01, 0x20, 0x1000
# libclang's CXTypeKind; the Python bindings do not know all of them.
OBJECT = 109  # a pointer to one
COPIED = (27, OBJECT)  # id besides; ARC copies blocks by itself


class Class:
    """What is declared of one class, in all its categories and the protocols that it adopts."""

    def __init__(self, name):
        self.name = name
        self.methods = {}  # by sign and selector
        self.properties = {}  # by name
        self.protocols = set()

    def read(self, cursor, protocols):
        for child in cursor.get_children():
            kind = kind_of(child)
            if kind == CursorKind.OBJC_PROPERTY_DECL:
                self.properties[child.spelling] = child
            elif sign := METHOD_SIGNS.get(kind):
                self.methods[sign + child.spelling] = child
            elif kind == CursorKind.OBJC_PROTOCOL_REF and child.spelling not in self.protocols:
                self.protocols.add(child.spelling)
                self.read(protocols[child.spelling], protocols)


def property_attributes(cursor):
    function = conf.lib.clang_Cursor_getObjCPropertyAttributes
    function.argtypes = [Cursor, ctypes.c_uint]
    function.restype = ctypes.c_uint
    return function(cursor, 0)


def is_copied(cursor):
    copied = cursor.type.get_canonical()._kind_id in COPIED
    return copied and property_attributes(cursor) & COPY


def setter_of(cursor):
    name = cursor.spelling
    return f"set{name[0].upper()}{name[1:]}:"


def getter_of(cursor):
    function = conf.lib.clang_Cursor_getObjCPropertyGetterName
    function.argtypes = [Cursor]
    function.restype = conf.lib.clang_getCursorSpelling.restype
    return conf.lib.clang_getCString(function(cursor))


def head(sign, method):
    parts = method.spelling.split(":")
    result = f"{sign} ({method.result_type.spelling})"
    arguments = list(method.get_arguments())
    if not arguments:
        return result + parts[0]
    return result + " ".join(
        f"{part}:({argument.type.spelling})a{i}"
        for i, (part, argument) in enumerate(zip(parts, arguments)))


def is_instance(type_, name):
    """Whether a class method's result is an instance of the class."""
    return re.match(rf"(instancetype|(__kindof )?{name} \*)( |_|$)", type_.spelling)


def body(sign, method, name):
    arguments = "".join(f", a{i}" for i, _ in enumerate(method.get_arguments()))
    record = f"vistrel::fake::record(self, _cmd{arguments});"
    if sign == "+" and is_instance(method.result_type, name):
        return f"{record} return [[self alloc] init];"
    if sign == "-" and re.match(r"init([A-Z]|$)", method.spelling):
        return f"self = [super init]; {record} return self;"
    if method.result_type.spelling == "void":
        return record
    return f"{record} vistrel::fake::failWithoutBehaviour(self, _cmd);"


def class_property_lines(cursor, class_name):
    body = "vistrel::fake::failWithoutBehaviour(self, _cmd);"
    if is_instance(cursor.type, class_name):
        body = "static id const shared = vistrel::fake::makeShared(self); return shared;"
    yield f"+ ({cursor.type.spelling}){getter_of(cursor)} {{ {body} }}"


def property_lines(cursor, inherited, class_name):
    name = cursor.spelling
    attributes = property_attributes(cursor)
    if name in inherited:
        return
    if attributes & CLASS:
        yield from class_property_lines(cursor, class_name)
        return
    yield f"@synthesize {name} = _{name};"
    spelled = cursor.type.spelling
    yield (f"- ({spelled}){getter_of(cursor)} "
           f"{{ vistrel::fake::checkThread(self, _cmd); return _{name}; }}")
    keeper = "keep" + setter_of(cursor)[len("set"):]
    yield f"- (void){keeper}({spelled})value {{ _{name} = value; }}"
    if not attributes & READONLY:
        value = "[value copy]" if is_copied(cursor) else "value"
        yield (f"- (void){setter_of(cursor)}({spelled})value "
               f"{{ vistrel::fake::record(self, _cmd, value); _{name} = {value}; }}")


def implementation(described, inherited):
    yield f"@implementation {described.name}"
    accessors = set()
    for cursor in described.properties.values():
        sign = "+" if property_attributes(cursor) & CLASS else "-"
        accessors.update({sign + getter_of(cursor), sign + setter_of(cursor)})
        yield from property_lines(cursor, inherited, described.name)
    for key, method in described.methods.items():
        if key not in accessors and key not in inherited:
            yield f"{head(key[0], method)} {{ {body(key[0], method, described.name)} }}"
    yield "@end"


def function(cursor):
    arguments = ", ".join(argument.type.spelling for argument in cursor.get_arguments())
    return (f'extern "C" __attribute__((weak)) {cursor.result_type.spelling} '
            f"{cursor.spelling}({arguments}) "
            f'{{ vistrel::fake::fail("{cursor.spelling} has no behaviour here"); }}')


def superclass_of(cursor):
    return next((child.spelling for child in cursor.get_children()
                 if kind_of(child) == CursorKind.OBJC_SUPER_CLASS_REF), None)


def main(folder, hand_written):
    folder = pathlib.Path(folder).resolve()
    unit = parse(folder)
    own = [cursor for cursor in top_level(unit.cursor)
           if cursor.location.file and pathlib.Path(cursor.location.file.name).is_relative_to(folder)]
    by_kind = lambda kind: [cursor for cursor in own if kind_of(cursor) == kind]  # noqa: E731
    protocols = {cursor.spelling: cursor for cursor in by_kind(CursorKind.OBJC_PROTOCOL_DECL)}
    supers, classes = {}, {}
    for cursor in by_kind(CursorKind.OBJC_INTERFACE_DECL):
        supers[cursor.spelling] = superclass_of(cursor)
        classes[cursor.spelling] = Class(cursor.spelling)
        classes[cursor.spelling].read(cursor, protocols)
    for cursor in by_kind(CursorKind.OBJC_CATEGORY_DECL):
        extended = next(child.spelling for child in cursor.get_children()
                        if kind_of(child) == CursorKind.OBJC_CLASS_REF)
        classes[extended].read(cursor, protocols)
    written = set()
    for source in hand_written:
        text = pathlib.Path(source).read_text(encoding="utf-8")
        written.update(re.findall(r"^@implementation (\w+)(?: \{)?$", text, re.MULTILINE))

    frameworks = sorted({f"{path.parent.name}/{path.parent.name}.h"
                         for path in folder.glob("*/*.h") if path.stem == path.parent.name})
    for header in frameworks:
        print(f"#import <{header}>")
    print('#include "tests/macos/fakes/Recorder.h"')
    print('#include "tests/macos/fakes/State.h"')
    for cursor in by_kind(CursorKind.FUNCTION_DECL):
        print(function(cursor))
    for cursor in by_kind(CursorKind.VAR_DECL):
        if cursor.type.get_canonical()._kind_id == OBJECT and not cursor.is_definition():
            print(f'extern "C" {{ {cursor.type.spelling} {cursor.spelling} = @"{cursor.spelling}"; }}')
    for name, described in classes.items():
        if name in written:
            continue
        inherited, above = set(), supers[name]
        while above:
            inherited |= classes[above].properties.keys() | classes[above].methods.keys()
            above = supers[above]
        print("\n".join(implementation(described, inherited)))


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2:])
