#!/usr/bin/env python3
"""Checks that sources include what they use: includes.py ROOT. Prints file:line of every violation; exits with 1 if there is one.

Builds compile many sources as one, so that a compiler does not miss what a source forgot and its neighbour included. Here each
file is looked at alone, as text: what it names of the standard library, and the types and functions of this project, must be declared in
a header that it includes, itself or through other headers of the project. The standard library's headers count only where they are
named. Being text, it cannot tell everything: a name that stands in any of the headers counts as declared.
"""

import collections
import pathlib
import posixpath
import re
import sys

FOLDERS = ["include", "src", "schema", "samples", "bench", "fuzz", "examples", "tests"]
# The folders that an include in quotes is relative to.
ROOTS = ["include", "src", "schema", "tests", "bench", "fuzz"]

# The headers of the standard library, and what they declare in namespace std. Other names are not looked at, nor are those that
# half of the headers declare: size_t, move, swap, begin, pair, initializer_list.
STANDARD = {
    "algorithm": "all_of any_of none_of find find_if find_if_not count count_if equal mismatch search copy copy_if copy_n transform "
                 "replace replace_if fill fill_n rotate unique sort stable_sort is_sorted lower_bound upper_bound binary_search "
                 "adjacent_find min max clamp min_element max_element minmax",
    "array": "array",
    "atomic": "atomic",
    "bit": "bit_cast bit_width countr_zero countl_zero popcount",
    "charconv": "from_chars to_chars chars_format",
    "chrono": "chrono",
    "cmath": "isfinite isinf isnan fabs floor ceil trunc round nearbyint pow sqrt log log10 exp sin cos tan atan fmod fma lround "
             "llround",
    "compare": "partial_ordering strong_ordering weak_ordering",
    "concepts": "same_as convertible_to integral floating_point derived_from",
    "condition_variable": "condition_variable",
    "cstdint": "int8_t int16_t int32_t int64_t uint8_t uint16_t uint32_t uint64_t uintptr_t intptr_t",
    "cstdio": "fprintf printf snprintf fflush fclose fputs fputc fopen fread fwrite fgetc ferror rewind tmpfile setvbuf setbuf FILE",
    "cstdlib": "getenv malloc free abort atexit strtol",
    "cstring": "memcpy memset memchr memcmp strchr strcmp strlen",
    "ctime": "tm time_t time",
    "deque": "deque",
    "exception": "exception exception_ptr current_exception rethrow_exception set_terminate uncaught_exceptions",
    "filesystem": "filesystem",
    "fstream": "ifstream ofstream fstream",
    "functional": "function ref hash",
    "future": "async future launch future_status promise",
    "iostream": "cout cerr cin",
    "iterator": "back_inserter make_move_iterator istreambuf_iterator default_sentinel_t input_iterator_tag",
    "limits": "numeric_limits",
    "list": "list",
    "map": "map multimap",
    "memory": "unique_ptr shared_ptr weak_ptr make_unique make_shared dynamic_pointer_cast static_pointer_cast",
    "mutex": "mutex lock_guard unique_lock scoped_lock once_flag call_once",
    "new": "bad_alloc nothrow set_new_handler",
    "numeric": "iota accumulate gcd",
    "optional": "optional nullopt",
    "random": "random_device mt19937 mt19937_64 uniform_int_distribution",
    "set": "set multiset",
    "span": "span",
    "sstream": "istringstream ostringstream stringstream",
    "stdexcept": "runtime_error invalid_argument logic_error out_of_range",
    "string": "string wstring u16string u32string u8string to_string stol stod getline",
    "string_view": "string_view wstring_view u16string_view u32string_view",
    "system_error": "error_code errc generic_category system_category error_condition system_error",
    "thread": "thread jthread this_thread",
    "tuple": "tuple tie make_tuple",
    "type_traits": "remove_cvref_t is_same_v is_void_v type_identity_t invoke_result_t is_arithmetic_v is_pointer_v make_unsigned_t",
    "unordered_map": "unordered_map unordered_multimap",
    "unordered_set": "unordered_set",
    "utility": "exchange in_range index_sequence index_sequence_for declval",
    "variant": "variant get_if monostate variant_size_v",
    "vector": "vector",
}
# Headers that by the standard declare what another one declares.
ALSO = {"string_view": ["string"], "compare": ["string_view", "string"], "concepts": ["iterator"], "type_traits": ["memory"],
        "exception": ["new", "stdexcept"], "iterator": ["string", "vector", "map", "set", "array", "span"],
        "system_error": ["filesystem"], "string": ["filesystem"], "cstdint": ["chrono"], "ctime": ["chrono"]}
DECLARES = {name: header for header, names in STANDARD.items() for name in names.split()}

Violation = collections.namedtuple("Violation", "path line message")

# Where includes say the whole path, so that types can be looked for too.
ROOTED = ("include/", "src/", "schema/", "samples/")

INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)', re.MULTILINE)
NOT_CODE = re.compile(r'//[^\n]*|/\*.*?\*/|R"(\w*)\(.*?\)\1"|"(?:[^"\\\n]|\\.)*"|\'(?:[^\'\\\n]|\\.)+\'', re.DOTALL)
STD = re.compile(r"\bstd::(?:ranges::)?(\w+)")
# A type of several words, such as FieldInfo, which is hardly anything else's name; of the shorter ones, the values'.
TYPE = r"([A-Z][a-z0-9]+[A-Z]\w*|Variant|Currency|Date|Recordset|Connection|Book)\b"
# At the beginning of a line, since namespaces are not indented: what a header declares for others.
DECLARATION = re.compile(rf"^(?:class|struct|union|enum class|enum|concept|using) (?:\[\[\w+\]\] )?{TYPE}(?!;)", re.MULTILINE)
# What is called so in a file too: types inside others, announced ones, functions.
OWN = re.compile(rf"\b(?:class|struct|union|enum|concept|using|typename) {TYPE}|\w[*&>]* {TYPE}\(")
ENUMERATORS = re.compile(r"\benum\b[^;{]*\{[^}]*\}")
# At the beginning of a line too: a function that a header declares for others; and its call without a namespace.
FUNCTION = re.compile(r"^(?:\[\[\w+\]\] )?(?:inline |constexpr )*[\w:]+(?:<[^()]*>)?[*&]* [*&]?([A-Z]\w+)\(", re.MULTILINE)
DEFINED = re.compile(r"\w[>&*]* [*&]?(?<!return )(?<!throw )(?<!else )([A-Z]\w+)\(|\b(?:struct|class) (\w+)")
CALL = re.compile(r"(?<![.\w:~])(?<!->)([A-Z]\w+)\(")
# A name in a namespace of the project's; a namespace is a folder.
QUALIFIED = re.compile(r"\b(\w+)::(\w+)(?!\w|::)")
USE = re.compile(rf"(?<![.\w])(?<!->)(?:(\w+)::)?{TYPE}(?![(;])")


def without(pattern, text):
    """The rest of a text, with the same lines."""
    return pattern.sub(lambda found: "\n" * found.group().count("\n"), text)


class Source:
    def __init__(self, text):
        self.quoted = [found.group(1) for found in INCLUDE.finditer(text) if found.group(1)]
        self.standard = {found.group(2) for found in INCLUDE.finditer(text) if found.group(2)}
        self.code = without(NOT_CODE, text)
        self.declared = set(DECLARATION.findall(self.code))
        self.words = set(re.findall(r"\w+", self.code))
        self.own = {name for names in OWN.findall(self.code) for name in names}

    def line_of(self, at):
        return self.code.count("\n", 0, at) + 1


class Tree:
    def __init__(self, root):
        root = pathlib.Path(root)
        self.sources = {}
        for folder in FOLDERS:
            for file in sorted((root / folder).rglob("*")):
                if file.suffix in (".h", ".cpp", ".in"):
                    self.sources[file.relative_to(root).as_posix()] = Source(file.read_text(encoding="utf-8"))
        self.reached = {}
        self.offering = collections.defaultdict(list)
        self.namespaces = collections.defaultdict(list)
        self.declaring = collections.defaultdict(set)
        for path, source in self.sources.items():
            if path.endswith(".h") and path.startswith(ROOTED):
                self.namespaces[posixpath.basename(posixpath.dirname(path))].append(path)
                for name in set(FUNCTION.findall(source.code)):
                    self.offering[name].append(path)
                for name in source.declared:
                    self.declaring[name].add(path)

    def resolved(self, path, header):
        beside = posixpath.normpath(posixpath.join(posixpath.dirname(path), header))
        return next((name for name in [*(f"{root}/{header}" for root in ROOTS), beside] if name in self.sources), None)

    def reach(self, path):
        """The project's files that a file includes, with itself and what these include."""
        if path not in self.reached:
            self.reached[path] = found = {path}
            pending = [path]
            while pending:
                current = pending.pop()
                for header in self.sources[current].quoted:
                    name = self.resolved(current, header)
                    if name and name not in found:
                        found.add(name)
                        pending.append(name)
        return self.reached[path]


def standard_violations(tree, path):
    source = tree.sources[path]
    included = set().union(*(tree.sources[name].standard for name in tree.reach(path)))
    told = set()
    for found in STD.finditer(source.code):
        header = DECLARES.get(found.group(1))
        if header and header not in told and included.isdisjoint([header, *ALSO.get(header, [])]):
            told.add(header)
            yield Violation(path, source.line_of(found.start()), f"std::{found.group(1)} needs <{header}>")


def type_violations(tree, path):
    if not path.startswith(ROOTED):
        return
    source = tree.sources[path]
    reached = tree.reach(path)
    known = set().union(*(tree.sources[name].own for name in reached))
    for found in USE.finditer(without(ENUMERATORS, source.code)):
        qualifier, name = found.groups()
        if qualifier and not qualifier[0].islower() or name in known or name not in tree.declaring:
            continue
        known.add(name)
        yield Violation(path, source.line_of(found.start()),
                        f"{name} is declared in {' or '.join(sorted(tree.declaring[name]))}, which is not included")


def function_violations(tree, path):
    if not path.startswith(ROOTED):
        return
    source = tree.sources[path]
    own = {name for names in DEFINED.findall(source.code) for name in names}
    known = own.union(*(tree.sources[name].words for name in tree.reach(path) - {path}))
    for found in CALL.finditer(source.code):
        name = found.group(1)
        if name in tree.offering and name not in known and path not in tree.offering[name]:
            known.add(name)
            yield Violation(path, source.line_of(found.start()),
                            f"{name} is declared in {' or '.join(tree.offering[name])}, which is not included")


def namespace_violations(tree, path):
    if not path.startswith(ROOTED):
        return
    source = tree.sources[path]
    reached = tree.reach(path)
    told = set()
    for found in QUALIFIED.finditer(source.code):
        namespace, name = found.groups()
        if name in tree.namespaces or name in tree.declaring or found.group() in told:
            continue
        declaring = [header for header in tree.namespaces.get(namespace, []) if name in tree.sources[header].words]
        if declaring and reached.isdisjoint(declaring):
            told.add(found.group())
            yield Violation(path, source.line_of(found.start()),
                            f"{found.group()} is declared in {' or '.join(declaring)}, which is not included")


CHECKS = (standard_violations, type_violations, function_violations, namespace_violations)


def violations(root):
    tree = Tree(root)
    if not tree.sources:
        return [Violation(str(root), 1, "no sources were found")]
    return [found for path in tree.sources for check in CHECKS for found in check(tree, path)]


def main():
    found = violations(sys.argv[1])
    for violation in found:
        print(f"{violation.path}:{violation.line}: {violation.message}")
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
