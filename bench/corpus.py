"""The corpus of the whole-program benchmark: a description of N resources over every statement
kind the compiler knows, and the growth cases that stress one dimension at a time.

Each kind is one entry of KINDS: the declarations it needs once at the top of the file, and the
text of its i-th resource statement. A new statement kind is a new entry; resources cycle through
the entries, so N and 10N hold the same mix and differ only in count."""

import random

PRELUDE = """\
/* Generated benchmark corpus. */
#define VERSION 3
#define PAIR(a, b) (a) * 256 + (b)
#define MASK(bits) ((1 << (bits)) - 1)
#if VERSION >= 3
#define FLAGS 0x5A
#else
#define FLAGS 0
#endif
enum Style { kPlain = 1, kBold, kItalic = 4, kUnderline = kItalic * 2 };
const unsigned short kLimit = 0x7FF;
"""


class Kind:
    """A statement kind: a type body under a name and a three-letter tag, and the values of its
    j-th resource. Ids run over all 65536 values of one type before the next type of the same body
    is used, so a corpus of any size has no duplicate resources."""

    limit = None

    def __init__(self, name, tag, body, values):
        self.name, self.tag, self.body, self.values = name, tag, body, values

    def declarations(self, resources):
        types = (resources + 65535) // 65536
        body = self.body.strip().replace("\n", " \\\n")
        lines = [f"#define {self.name.upper()}_BODY {body}\n"]
        lines += [f"type {self.name}{t}('{self.tag}{t}') {self.name.upper()}_BODY;\n" for t in range(types)]
        return "".join(lines)

    def resource(self, j):
        return f"resource {self.name}{j // 65536} ({j % 65536 - 32768}) {{\n{self.values(j)}\n}};\n"


class PredefinedKind(Kind):
    """A kind over a type the compiler predefines: nothing to declare, and one type's 65536 ids
    at most, after which the corpus goes on with the other kinds."""

    limit = 65536

    def __init__(self, name, values):
        super().__init__(name, None, None, values)

    def declarations(self, resources):
        return ""

    def resource(self, j):
        return f"resource {self.name} ({j - 32768}) {{ {self.values(j)} }};\n"


def _numbers(j):
    return (f"    {j % 32000}; PAIR({j % 200}, {j % 7}); {(j * 7919) & 0xFFFFFF};\n"
            f"    {'on' if j % 2 else 'off'}; {'small' if j % 3 else 'large'};\n"
            f"    {j % 31}; {(j * 31) & 0x7FF}, 0x{j & 0xFFFF:04X}")


def _deferred(j):
    return (f"#if {j} % 4 == 0\n    FLAGS | {j % 16}, {j % 100}\n"
            f"#else\n    {j % 16}, -{j % 100}\n#endif")


def _reals(j):
    return f"    {j}.5, {j % 1000} / 8.0, 1.0e{j % 20}"


def _strings(j):
    return (f'    "Item {j}"; "key{j % 10}"; "{chr(65 + j % 26)}"; "w{j}";\n'
            f'    "{j % 10000:04d}"; $"{j & 0xFFFF:04X}"; kBold | kUnderline; {j} & kLimit')


def _palette(j):
    entries = "; ".join(f"0x{(j + n) & 0xFF:02X}, 0x{(j * 3 + n) & 0xFF:02X}, 0x{n * 16 & 0xFF:02X}"
                        for n in range(j % 4 + 1))
    return f"    {{ {entries} }}"


def _controls(j):
    controls = ["button { kBold; \"Open\" }", "separator { }", f"slider {{ {j % 10}, 255 }}"]
    chosen = "; ".join(controls[(j + n) % 3] for n in range(j % 3 + 1))
    return f"    {{ {j % 16}, {j % 7}, 0x{j & 0xFF:02X} }};\n    {{ {chosen} }}"


def _table(j):
    return f'{j % 100}, "entry {j}"; {j % 7 + 100}, "second"'


KINDS = [
    # Number fields of every width, symbolic values and a constant field.
    Kind("Numbers", "NUM", """{
    integer; integer; longint;
    boolean off, on;
    byte small = 1, large = 200;
    bitstring[5]; bitstring[11]; unsigned integer;
    bitstring[16] = FLAGS;
}""", _numbers),
    # Values reduced at once and $$ functions patched when the instance ends.
    Kind("Deferred", "DEF", """{
    byte; integer;
    integer = $$Word(0) ^ MASK(12);
    bitstring[4] = $$BitField(8, 4, 4);
    bitstring[4] = 3;
    longint = $$Byte(0) + $$Long(0);
}""", _deferred),
    # Floating-point fields.
    Kind("Reals", "REA", "{ double; single; double; }", _reals),
    # String fields of every form, named numbers from enum and const lines.
    Kind("Strings", "STR", """{
    pstring; cstring; char; wstring;
    string[4]; hex string[2]; byte; integer;
}""", _strings),
    # An array counted by $$CountOf, a fill, an alignment and a subscripted label.
    Kind("Palette", "PAL", """{
    integer = $$CountOf(Entries);
    fill byte[2];
    integer = entry[1];
    array Entries {
        entry: integer = $$ArrayIndex(Entries);
        byte; byte; byte;
        align word;
    };
}""", _palette),
    # A switch per array element over a packed fill word.
    Kind("Controls", "CTL", """{
    fill word { nibble; nibble; byte };
    array {
        switch {
            case button: byte = 1; integer; pstring;
            case slider: byte = 2; integer; integer;
            case separator: byte = 3;
        };;
    };
}""", _controls),
    # A predefined table type.
    PredefinedKind("MULTISTRING", _table),
]


def _resource_kinds(count):
    """The kind of each of `count` resources: every kind in turn, skipping those at their limit."""
    made = [0] * len(KINDS)
    for i in range(count):
        index = i % len(KINDS)
        while KINDS[index].limit is not None and made[index] >= KINDS[index].limit:
            index = (index + 1) % len(KINDS)
        made[index] += 1
        yield KINDS[index], made[index] - 1


def whole_program(count):
    """The description of `count` resources over every kind."""
    resources = list(_resource_kinds(count))
    made = {id(kind): j + 1 for kind, j in resources}
    parts = [PRELUDE] + [kind.declarations(made.get(id(kind), 0)) for kind in KINDS]
    parts += [kind.resource(j) for kind, j in resources]
    return "".join(parts)


def one_large_resource(field_bytes):
    """One resource of about `field_bytes` bytes of longint fields."""
    count = field_bytes // 4
    body = ",\n".join(f"    {n * 2654435761 & 0x7FFFFFFF}" for n in range(count))
    fields = "\n".join("    longint;" for _ in range(count))
    return f"type Large('LRGE') {{\n{fields}\n}};\nresource Large (1) {{\n{body}\n}};\n"


def one_long_array(count):
    """One resource whose array holds `count` elements, counted by $$CountOf."""
    elements = ",\n".join(f"    {n * 40503 & 0xFFFF}" for n in range(count))
    return (f"type Long('LARR') {{\n    longint = $$CountOf(Items);\n    array Items {{ integer; }};\n}};\n"
            f"resource Long (1) {{\n    {{\n{elements}\n    }}\n}};\n")


def many_macros(count):
    """`count` macro definitions, each used once, and one resource that sums a few of them."""
    lines = [f"#define M{n}(x) ((x) + {n})\n" for n in range(count)]
    lines.append("type Sum('MSUM') { longint; };\n")
    step = max(1, count // 1000)
    lines.extend(f"resource Sum ({n // step}) {{ M{n}(1) }};\n" for n in range(0, count, step))
    return "".join(lines)


def many_types(count):
    """`count` distinct types, each with one resource."""
    rng = random.Random(count)
    lines = []
    for n in range(count):
        fields = " ".join(rng.choice(["byte;", "integer;", "longint;", "bitstring[3]; bitstring[5];"]) for _ in range(4))
        lines.append(f"type T{n}('T{n % 1000:03d}') {{ {fields} }};\n")
        lines.append(f"resource T{n} ({n // 1000}) {{ {', '.join(str(k) for k in range(fields.count(';')))} }};\n")
    return "".join(lines)


GROWTH_CASES = [
    ("one resource of 100 KB fields / 1 MB", one_large_resource, 100_000),
    ("an array of 10,000 / 100,000 elements", one_long_array, 10_000),
    ("a file of 10,000 / 100,000 macros", many_macros, 10_000),
    ("a file of 1,000 / 10,000 types", many_types, 1_000),
]


if __name__ == "__main__":
    # The training input of the profile-guided build: python3 bench/corpus.py COUNT > file.vd
    import sys
    sys.stdout.write(whole_program(int(sys.argv[1])))
