#!/usr/bin/python3
"""The checks of the macOS sources on small made-up inputs: what they let pass and what they catch."""

import pathlib
import tempfile
import textwrap
import unittest

import apple_target
from check_declarations import compare, unfounded
from sdk_declarations import UnreadableDeclarations, declared_facts
from type_check import compiler_complaints

PROJECT = pathlib.Path(__file__).resolve().parents[2]

DECLARATIONS = """
    @class Lamp, Room;
    typedef double Brightness;
    typedef struct GlassRef_ *GlassRef;
    enum LampColor : long { LampColorRed = 0, LampColorGreen = 2 };
    struct Spot { double x; double y; };
    extern "C" Brightness LampBrightest(Lamp *lamp, GlassRef glass);
    extern "C" Brightness const LampDimmest;
    __attribute__((objc_root_class)) @interface Thing
    @end
    @interface Lamp : Thing
    - (void)shineInRoom:(Room *)room color:(LampColor)color;
    - (void)askWithHandler:(void (^)(Lamp *lamp))handler;
    @property(getter=isLit) bool lit;
    @end
"""

FACTS = {
    "struct Spot": {"fields": ["x", "y"]},
    "function LampBrightest": {"types": ["double", "Lamp*", "GlassRef"]},
    "constant LampDimmest": {"type": "double"},
    "constant LampColorRed": {"value": 0},
    "constant LampColorGreen": {"value": 2},
    "class Thing": {"superclass": None},
    "class Lamp": {"superclass": "Thing"},
    "method -[Lamp shineInRoom:color:]": {"types": ["void", "Room*", "long"], "since": "12.3"},
    "method -[Lamp askWithHandler:]": {"types": ["void", "void(^)(Lamp*)"]},
    "method -[Lamp isLit]": {"types": ["bool"]},
    "method -[Lamp setLit:]": {"types": [None, "bool"]},
}


class DeclarationsTest(unittest.TestCase):
    def disagreements(self, declarations, facts=None, exceptions=()):
        with tempfile.TemporaryDirectory() as folder:
            header = pathlib.Path(folder, "Lamps", "Lamps.h")
            header.parent.mkdir()
            header.write_text(textwrap.dedent(declarations), encoding="utf-8")
            declared = declared_facts(folder)
        return list(compare(declared, FACTS if facts is None else facts, exceptions))

    def assert_caught(self, right, wrong, *complaints):
        self.assertIn(right, DECLARATIONS)
        self.assertEqual(self.disagreements(DECLARATIONS.replace(right, wrong)), list(complaints))

    def test_declarations_that_agree_pass(self):
        self.assertEqual(self.disagreements(DECLARATIONS), [])

    def test_a_wrong_selector_is_caught(self):
        self.assert_caught("shineInRoom:(Room *)room color:", "shineIn:(Room *)room color:",
                           "method -[Lamp shineIn:color:]: not in the SDK",
                           "method -[Lamp shineInRoom:color:]: among the facts, but not declared")

    def test_a_wrong_argument_type_is_caught(self):
        self.assert_caught("(LampColor)color", "(int)color",
                           "method -[Lamp shineInRoom:color:]: argument 2 is int here, "
                           "long in the SDK")

    def test_a_wrong_result_type_is_caught(self):
        self.assert_caught("- (void)shineInRoom", "- (bool)shineInRoom",
                           "method -[Lamp shineInRoom:color:]: the result is bool here, "
                           "void in the SDK")

    def test_a_wrong_block_is_caught(self):
        self.assert_caught("(^)(Lamp *lamp)", "(^)(Room *room)",
                           "method -[Lamp askWithHandler:]: argument 1 is void(^)(Room*) here, "
                           "void(^)(Lamp*) in the SDK")

    def test_a_missing_argument_of_a_function_is_caught(self):
        self.assert_caught("(Lamp *lamp, GlassRef glass)", "(Lamp *lamp)",
                           "function LampBrightest: takes 1 arguments here, 2 in the SDK")

    def test_another_opaque_reference_is_caught(self):
        self.assert_caught("GlassRef glass", "struct Pane_ *glass",
                           "function LampBrightest: argument 2 is Pane_* here, "
                           "GlassRef in the SDK")

    def test_a_wrong_enumerator_value_is_caught(self):
        self.assert_caught("LampColorGreen = 2", "LampColorGreen = 1",
                           "constant LampColorGreen: value is 1 here, 2 in the SDK")

    def test_a_wrong_constant_type_is_caught(self):
        self.assert_caught("Brightness const LampDimmest", "int const LampDimmest",
                           "constant LampDimmest: type is int here, double in the SDK")

    def test_a_wrong_superclass_is_caught(self):
        self.assert_caught("@interface Lamp : Thing",
                           "@interface Room : Thing\n    @end\n    @interface Lamp : Room",
                           "class Room: not in the SDK",
                           "class Lamp: superclass is Room here, Thing in the SDK")

    def test_a_property_that_is_read_only_here_leaves_a_fact_over(self):
        self.assert_caught("@property(getter=isLit)", "@property(readonly, getter=isLit)",
                           "method -[Lamp setLit:]: among the facts, but not declared")

    def test_a_wrong_field_is_caught(self):
        self.assert_caught("double y;", "double z;",
                           "struct Spot: fields is ['x', 'z'] here, ['x', 'y'] in the SDK")

    def test_what_is_newer_than_the_deployment_target_is_caught(self):
        name = "method -[Lamp isLit]"
        facts = {**FACTS, name: {"types": ["bool"], "since": "14.2"}}
        self.assertEqual(self.disagreements(DECLARATIONS, facts), [f"{name}: not before macOS 14.2"])

    def test_an_unknown_name_passes_as_an_exception_alone(self):
        facts = {name: fact for name, fact in FACTS.items() if name != "class Thing"}
        self.assertEqual(self.disagreements(DECLARATIONS, facts), ["class Thing: not in the SDK"])
        self.assertEqual(self.disagreements(DECLARATIONS, facts, ["class Thing"]), [])

    def test_declarations_that_do_not_compile_are_caught(self):
        with self.assertRaises(UnreadableDeclarations):
            self.disagreements("@interface Lamp : Missing\n@end\n")


class LookedUpFactsTest(unittest.TestCase):
    def complaints(self, facts=None, exceptions=None):
        return list(unfounded({"facts": facts or {}, "exceptions": exceptions or {}}, FACTS))

    def test_facts_with_two_sources_and_exceptions_with_a_reason_pass(self):
        self.assertEqual(self.complaints({"class Shade": {"sources": ["a manual", "a binding"]}},
                                         {"class Bulb": "made by the compiler alone"}), [])

    def test_one_source_is_too_few(self):
        name = "class Shade"
        for sources in ([], ["a manual"], ["a manual", "a manual"]):
            self.assertEqual(self.complaints({name: {"sources": sources}}),
                             [f"{name}: looked up in fewer than two sources"])

    def test_an_exception_needs_a_reason(self):
        self.assertEqual(self.complaints(exceptions={"class Bulb": ""}),
                         ["class Bulb: an exception without a reason"])

    def test_what_the_table_has_needs_no_looking_up(self):
        self.assertEqual(self.complaints({"class Lamp": {"sources": ["a manual", "a binding"]}}),
                         ["class Lamp: looked up, though the table has it"])


class TypeCheckTest(unittest.TestCase):
    def complaints(self, source):
        with tempfile.TemporaryDirectory() as folder:
            file = pathlib.Path(folder, "Peer.mm")
            file.write_text(source, encoding="utf-8")
            return [compiler_complaints(PROJECT, file, architecture)
                    for architecture in apple_target.ARCHITECTURES]

    def assert_caught(self, source, complaint):
        for text in self.complaints(source):
            self.assertIn(complaint, text)

    def test_a_source_that_keeps_to_the_declarations_passes(self):
        source = ('#import <AppKit/AppKit.h>\n#include "platform/Geometry.h"\n'
                  "void show(NSPanel* panel) { [panel orderFrontRegardless]; }\n")
        self.assertEqual(self.complaints(source), ["", ""])

    def test_an_undeclared_method_is_caught(self):
        self.assert_caught("#import <AppKit/AppKit.h>\n"
                           "void show(NSPanel* panel) { [panel orderFrontSomehow]; }\n",
                           "no visible @interface for 'NSPanel' declares the selector")

    def test_an_undeclared_class_is_caught(self):
        self.assert_caught("#import <AppKit/AppKit.h>\nNSDrawer* drawer;\n", "'NSDrawer'")

    def test_a_wrong_argument_is_caught(self):
        self.assert_caught("#import <AppKit/AppKit.h>\n"
                           "void name(NSPanel* panel) { panel.title = panel; }\n",
                           "incompatible pointer types")

    def test_a_warning_is_caught(self):
        self.assert_caught("int twice(int number, int unused) { return 2 * number; }\n",
                           "unused parameter")

    def test_a_transfer_of_ownership_that_is_not_spelled_out_is_caught(self):
        self.assert_caught("#import <QuartzCore/QuartzCore.h>\n"
                           "void show(CALayer* layer, CGImageRef image) { layer.contents = (id)image; }"
                           "\n", "requires a bridged cast")


if __name__ == "__main__":
    unittest.main()
