"""Reads our hand-written SDK declarations and says what they claim, as comparable facts.

A fact has a name ("class NSPanel", "method -[NSView layout]", "function CMTimeMake",
"constant NSBezelStyleRounded", "struct CGPoint") and some of these fields:

  superclass  name of the class above
  types       of a method or function: the result's type, then one for each argument
  type        of a constant that is a variable
  value       of an enumerator
  fields      of a struct, in order
  since       the system that brought it, where the declaration or that of its class names one

Types are spelled canonically, see `canonical_type`. In facts about the SDK a type may be None where
the public descriptions are silent.
"""

import ctypes
import pathlib
import re

import clang.cindex
from clang.cindex import CursorKind, TypeKind

import apple_target

METHOD_SIGNS = {
    CursorKind.OBJC_INSTANCE_METHOD_DECL: "-",
    CursorKind.OBJC_CLASS_METHOD_DECL: "+",
}
QUALIFIERS = re.compile(
    r"\b(_Nonnull|_Nullable|_Null_unspecified|__strong|__autoreleasing|__unsafe_unretained"
    r"|__kindof|const|struct|enum)\b")


class UnreadableDeclarations(Exception):
    """The declarations do not compile by themselves."""


def canonical_type(spelling, typedefs):
    """`spelling` with typedefs resolved and everything left out that does not change a call.

    Opaque references ("CGImageRef") stay names. Nullability, `const` and type arguments of generic
    classes go. `long long` is as wide as `long` on the systems in question.
    """
    for _ in range(10):
        resolved = re.sub(r"\b[A-Za-z_]\w*\b",
                          lambda word: typedefs.get(word.group(0), word.group(0)), spelling)
        if resolved == spelling:
            break
        spelling = resolved
    spelling = QUALIFIERS.sub("", spelling)
    spelling = re.sub(r"(?<!\bid)<[^<>]*(<[^<>]*>[^<>]*)*>", "", spelling)
    spelling = re.sub(r"\blong long\b", "long", spelling)
    spelling = re.sub(r"\[\s*\]", "*", spelling)
    return re.sub(r"\s+", " ", re.sub(r"\s*([*^(),])\s*", r"\1", spelling)).strip()


def parse(folder):
    """The translation unit of all headers below `folder`."""
    clang.cindex.Config.library_file = str(apple_target.LLVM / "lib/libclang-16.so.1")
    headers = sorted(header.relative_to(folder) for header in folder.glob("*/*.h"))
    source = "".join(f"#import <{header}>\n" for header in headers)
    unit = clang.cindex.Index.create().parse(
        "declarations.mm", args=[*apple_target.FLAGS, "-I", str(folder)],
        unsaved_files=[("declarations.mm", source)])
    errors = [str(message) for message in unit.diagnostics if message.severity >= 3]
    if errors:
        raise UnreadableDeclarations("\n".join(errors))
    return unit


def kind_of(cursor):
    """The kind of a cursor; None for attributes that the Python bindings have no name for."""
    try:
        return cursor.kind
    except ValueError:
        return None


def top_level(cursor):
    """The declarations of a unit, those in `extern "C"` blocks included."""
    for child in cursor.get_children():
        if kind_of(child) in (CursorKind.LINKAGE_SPEC, CursorKind.UNEXPOSED_DECL):
            yield from top_level(child)
        else:
            yield child


def is_opaque(typedef):
    """Whether a type's name says more than what it stands for: references and dispatch objects."""
    meaning = typedef.underlying_typedef_type.get_canonical()
    return meaning.kind == TypeKind.POINTER or "<OS_" in meaning.spelling


def typedefs_of(unit):
    """What each name of a type stands for, but for opaque ones."""
    names = {}
    for cursor in top_level(unit.cursor):
        if kind_of(cursor) == CursorKind.TYPEDEF_DECL and not is_opaque(cursor):
            names[cursor.spelling] = cursor.underlying_typedef_type.spelling
        elif kind_of(cursor) == CursorKind.ENUM_DECL and cursor.spelling.isidentifier():
            names[cursor.spelling] = cursor.enum_type.spelling
    return names


class _Version(ctypes.Structure):
    _fields_ = [(name, ctypes.c_int) for name in ("major", "minor", "subminor")]


class _Availability(ctypes.Structure):
    """CXPlatformAvailability, which the Python bindings leave out."""
    _fields_ = [("platform", clang.cindex._CXString), ("introduced", _Version),
                ("deprecated", _Version), ("obsoleted", _Version), ("unavailable", ctypes.c_int),
                ("message", clang.cindex._CXString)]


def introduced_in(cursor):
    """The system that a declaration says has brought it, as in "14.0"; None when it says nothing."""
    found = _Availability()
    count = clang.cindex.conf.lib.clang_getCursorPlatformAvailability(
        cursor, None, None, None, None, ctypes.byref(found), 1)
    if count == 0 or found.introduced.major < 0:
        return None
    return f"{found.introduced.major}.{max(found.introduced.minor, 0)}"


class _Collector:
    """Turns the declarations of one unit into facts."""

    def __init__(self, unit, folder):
        self.facts = {}
        self._typedefs = typedefs_of(unit)
        for cursor in top_level(unit.cursor):
            if cursor.location.file and pathlib.Path(cursor.location.file.name).is_relative_to(folder):
                self._collect(cursor)

    def _collect(self, cursor):
        if kind_of(cursor) == CursorKind.OBJC_INTERFACE_DECL:
            self._add(f"class {cursor.spelling}", {"superclass": _superclass(cursor)}, cursor)
            self._collect_methods(cursor, cursor.spelling)
        elif kind_of(cursor) == CursorKind.OBJC_CATEGORY_DECL:
            self._collect_methods(cursor, _extended_class(cursor))
        elif kind_of(cursor) == CursorKind.OBJC_PROTOCOL_DECL:
            self._add(f"protocol {cursor.spelling}", {}, cursor)
            self._collect_methods(cursor, cursor.spelling)
        elif kind_of(cursor) == CursorKind.FUNCTION_DECL:
            self._add(f"function {cursor.spelling}", {"types": self._signature(cursor)}, cursor)
        elif kind_of(cursor) == CursorKind.VAR_DECL:
            self._add(f"constant {cursor.spelling}", {"type": self._type(cursor.type)}, cursor)
        elif kind_of(cursor) == CursorKind.ENUM_DECL:
            self._collect_enumerators(cursor)
        elif kind_of(cursor) == CursorKind.STRUCT_DECL and cursor.is_definition():
            fields = [field.spelling for field in cursor.type.get_fields()]
            self.facts[f"struct {cursor.type.spelling}"] = {"fields": fields}

    def _collect_methods(self, container, owner):
        # The accessors of a property are among the children, as methods.
        for method in container.get_children():
            if sign := METHOD_SIGNS.get(kind_of(method)):
                name = f"method {sign}[{owner} {method.spelling}]"
                self._add(name, {"types": self._signature(method)}, method, container)

    def _collect_enumerators(self, cursor):
        for enumerator in cursor.get_children():
            if kind_of(enumerator) == CursorKind.ENUM_CONSTANT_DECL:
                self._add(f"constant {enumerator.spelling}", {"value": enumerator.enum_value},
                          enumerator, cursor)

    def _add(self, name, fact, cursor, container=None):
        since = introduced_in(cursor) or (container and introduced_in(container))
        self.facts[name] = {**fact, "since": since} if since else fact

    def _signature(self, cursor):
        return [self._type(cursor.result_type),
                *(self._type(argument.type) for argument in cursor.get_arguments())]

    def _type(self, declared):
        return canonical_type(declared.spelling, self._typedefs)


def _superclass(cursor):
    names = [child.spelling for child in cursor.get_children()
             if kind_of(child) == CursorKind.OBJC_SUPER_CLASS_REF]
    return names[0] if names else None


def _extended_class(category):
    return next(child.spelling for child in category.get_children()
                if kind_of(child) == CursorKind.OBJC_CLASS_REF)


def declared_facts(folder):
    """What the headers below `folder` claim about the SDK, by name."""
    folder = pathlib.Path(folder).resolve()
    return _Collector(parse(folder), folder).facts


def declared_symbols(folder):
    """By folder below `folder`: the classes that its headers declare, and the linker's names of
    their functions and variables."""
    folder = pathlib.Path(folder).resolve()
    found = {}
    for cursor in top_level(parse(folder).cursor):
        file = cursor.location.file and pathlib.Path(cursor.location.file.name)
        if not file or not file.is_relative_to(folder):
            continue
        classes, symbols = found.setdefault(file.parent.name, (set(), set()))
        if kind_of(cursor) == CursorKind.OBJC_INTERFACE_DECL:
            classes.add(cursor.spelling)
        elif kind_of(cursor) in (CursorKind.FUNCTION_DECL, CursorKind.VAR_DECL):
            symbols.add(cursor.mangled_name)
    return found
