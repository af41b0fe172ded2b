#!/usr/bin/python3
"""The checks of the macOS sources on small made-up inputs: what they let pass and what they catch.

usage: checks_can_fail_test.py BUILD [arguments of unittest]

BUILD is where the program for macOS was built.
"""

import functools
import json
import pathlib
import plistlib
import shlex
import shutil
import subprocess
import sys
import tempfile
import textwrap
import unittest

import apple_target
import check_bundle
from check_declarations import compare, unfounded
from sdk_declarations import UnreadableDeclarations, declared_facts

LINKED = ["-fuse-ld=lld", "-lobjc",
          *(f"-Wl,-framework,{name}" for name in sorted(check_bundle.FRAMEWORKS))]


@functools.cache
def compiler_command():
    """How the build compiles Objective-C++, without the names of files."""
    commands = json.loads((BUILD / "compile_commands.json").read_text(encoding="utf-8"))
    command = next(entry for entry in commands if entry["file"].endswith(".mm"))
    words = shlex.split(command["command"])
    return words[:words.index("-o")]

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
        self.assertEqual(self.disagreements(DECLARATIONS, facts),
                         [f"{name}: does not say that it is not before macOS 14.2"])

    def test_what_is_newer_passes_when_it_says_so(self):
        facts = {**FACTS, "method -[Lamp shineInRoom:color:]":
                 {"types": ["void", "Room*", "long"], "since": "14.2"}}
        right = "color:(LampColor)color;"
        marked = 'color:(LampColor)color __attribute__((availability(macos, introduced=%s)));'
        self.assertEqual(self.disagreements(DECLARATIONS.replace(right, marked % "14.2"), facts), [])
        self.assertEqual(
            self.disagreements(DECLARATIONS.replace(right, marked % "14.0"), facts),
            ["method -[Lamp shineInRoom:color:]: since is 14.0 here, 14.2 in the SDK"])

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


class CompilerTest(unittest.TestCase):
    """Sources compiled and linked by the commands of the real build, for both architectures."""

    def output(self, source, *, linked=False, also=()):
        """What compiler and linker print; empty when they are content."""
        with tempfile.TemporaryDirectory() as folder:
            file = pathlib.Path(folder, "Peer.mm")
            file.write_text(source, encoding="utf-8")
            made = pathlib.Path(folder, "made")
            command = [*compiler_command(), *also, "-o", made, file,
                       *(LINKED if linked else ["-c"])]
            ran = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                 text=True, check=False)
            self.assertEqual(ran.returncode == 0, not ran.stdout, ran.stdout)
            self.assertEqual(ran.returncode == 0, made.exists())
            return ran.stdout

    def assert_caught(self, source, complaint, **how):
        self.assertIn(complaint, self.output(source, **how))

    def test_a_source_that_keeps_to_the_declarations_passes(self):
        source = ('#import <AppKit/AppKit.h>\n#include "platform/Geometry.h"\n'
                  "void show(NSPanel* panel) { [panel orderFrontRegardless]; }\n")
        self.assertEqual(self.output(source), "")

    def test_an_undeclared_method_is_caught(self):
        self.assert_caught("#import <AppKit/AppKit.h>\n"
                           "void show(NSPanel* panel) { [panel orderFrontSomehow]; }\n",
                           "no visible @interface for 'NSPanel' declares the selector")

    def test_an_undeclared_selector_is_caught(self):
        self.assert_caught("#import <AppKit/AppKit.h>\n"
                           "void aim(NSButton* button) { button.action = @selector(openSomehow:); }\n",
                           "undeclared selector 'openSomehow:'")

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

    def test_something_newer_is_caught_where_nobody_asks_for_it(self):
        newer = ("#import <Foundation/Foundation.h>\n"
                 "@interface NSDate ()\n- (void)shift API_AVAILABLE(macos(14.0));\n@end\n")
        self.assert_caught(newer + "void move(NSDate* date) { [date shift]; }\n",
                           "'shift' is only available on macOS 14.0 or newer")
        self.assertEqual(self.output(
            newer + "void move(NSDate* date) { if (@available(macOS 14.0, *)) [date shift]; }\n"), "")

    def test_a_program_of_what_is_declared_links(self):
        self.assertEqual(self.output(
            "#import <AppKit/AppKit.h>\n#include <string>\n"
            "int main(int count, char**) {\n"
            "  return NSPanel.class && CGMainDisplayID() && !std::to_string(count).empty();\n}\n",
            linked=True), "")

    def test_an_invented_function_is_caught(self):
        self.assert_caught('extern "C" int CGMainDisplayMood(void);\n'
                           "int main() { return CGMainDisplayMood(); }\n",
                           "undefined symbol for arch arm64: CGMainDisplayMood", linked=True)

    def test_an_invented_function_of_the_cxx_library_is_caught(self):
        self.assert_caught("namespace std { inline namespace __1 { void to_mood(int); } }\n"
                           "int main() { std::to_mood(1); }\n",
                           "undefined symbol for arch arm64: std::__1::to_mood(int)", linked=True)

    def test_an_invented_class_is_caught(self):
        self.assert_caught("#import <AppKit/AppKit.h>\n@interface NSMood : NSObject\n@end\n"
                           "int main() { return NSMood.class != nil; }\n",
                           "undefined symbol for arch arm64: OBJC_CLASS_$_NSMood", linked=True)


class BundleTest(unittest.TestCase):
    """Faults in copies of the bundle that the build has made."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.bundle = pathlib.Path(folder.name, "Vistrel.app")
        shutil.copytree(BUILD / "Vistrel.app", self.bundle)
        information = plistlib.loads((self.bundle / "Contents/Info.plist").read_bytes())
        self.version = information["CFBundleVersion"]

    def complaints(self):
        return list(check_bundle.complaints(self.bundle, self.version))

    def change_information(self, change):
        file = self.bundle / "Contents/Info.plist"
        information = plistlib.loads(file.read_bytes())
        change(information)
        file.write_bytes(plistlib.dumps(information))

    def test_the_bundle_passes(self):
        self.assertEqual(self.complaints(), [])

    def test_a_missing_key_is_caught(self):
        self.change_information(lambda information: information.pop("LSMinimumSystemVersion"))
        self.assertEqual(self.complaints(),
                         ["Info.plist: LSMinimumSystemVersion is None, not '13.0'"])

    def test_a_key_that_nobody_knows_is_caught(self):
        self.change_information(lambda information: information.update(LSMood="good"))
        self.assertEqual(self.complaints(), ["Info.plist: LSMood is 'good', not None"])

    def test_another_version_is_caught(self):
        self.version = "0.9"
        self.assertEqual(len(self.complaints()), 2)

    def test_a_missing_icon_is_caught(self):
        (self.bundle / "Contents/Resources/vistrel.icns").unlink()
        self.assertEqual(self.complaints(),
                         ["holds [] too much and not ['Resources/vistrel.icns']"])

    def test_a_missing_architecture_is_caught(self):
        executable = self.bundle / "Contents/MacOS/Vistrel"
        check_bundle.output_of("llvm-lipo", executable, "-thin", "arm64", "-output", executable)
        self.assertEqual(self.complaints(), ["Vistrel is for ['arm64']"])

    def test_another_oldest_system_and_a_missing_framework_are_caught(self):
        with tempfile.TemporaryDirectory() as folder:
            source = pathlib.Path(folder, "main.mm")
            source.write_text("int main() {}\n", encoding="utf-8")
            subprocess.run([*compiler_command(), "-mmacosx-version-min=14.0", source, "-o",
                            self.bundle / "Contents/MacOS/Vistrel", *LINKED[:-1]], check=True)
        complaints = "\n".join(self.complaints())
        for architecture in apple_target.ARCHITECTURES:
            self.assertIn(f"{architecture}: oldest system is 14.0", complaints)
            self.assertIn(f"{architecture}: links [] beside what is expected, and not "
                          "['ScreenCaptureKit'", complaints)


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    BUILD = pathlib.Path(sys.argv.pop(1))
    unittest.main()
