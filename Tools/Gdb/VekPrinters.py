"""Shows the library's values in gdb: "p node" gives what the node holds, not how.

gdb loads this file by itself together with the library where it is installed; "source" loads it by hand.

All but the outermost level is read from memory as GCC and Qt 6 lay it out on 64-bit systems. So it needs neither
debug information of the library and of Qt nor their help, works on core dumps as well as on a running program, and
calls nothing in it. What cannot be read is shown as such.
"""
import itertools
import re
import struct

import gdb
import gdb.xmethod

# By the numbers of the units; empty for a number that names none.
METRIC_AND_IMPERIAL = ('µm', 'mm', 'cm', 'm', 'km', 'µin', 'mil', 'in', 'ft', 'usft', 'yd', 'mi')
SYMBOLS = {
    'Length': ('', '') + METRIC_AND_IMPERIAL,
    'Area': ('', '') + tuple(symbol + '²' for symbol in METRIC_AND_IMPERIAL),
    'Volume': ('', '') + tuple(symbol + '³' for symbol in METRIC_AND_IMPERIAL) +
              ('l', 'US liquid gallon', 'US dry gallon', 'US liquid barrel', 'US dry barrel', 'US oil barrel'),
    'Angle': ('', '', 'rad', '°', 'gon', '%', "'", '"'),
    'Percent': ('', '%'),
}
# In characters and items: garbage may look like a text of gigabytes.
MOST = 1 << 20
DEEPEST = 20


class Unreadable(Exception):
    """What is there is no such value."""


ERRORS = (Unreadable, gdb.error, OverflowError, ValueError)


# Memory

def read(address, layout):
    """The values of a struct layout at that address; one alone as itself."""
    values = struct.unpack('<' + layout, read_bytes(address, struct.calcsize('<' + layout)))
    return values if len(values) > 1 else values[0]


def read_bytes(address, size):
    try:
        return bytes(gdb.selected_inferior().read_memory(address, size)) if size else b''
    except (gdb.error, OverflowError) as error:
        raise Unreadable(f'no memory at {address:#x}') from error


def read_c_string(address):
    text = b''
    while len(text) < 256 and b'\0' not in text:
        # Never beyond a page that may be the last one.
        text += read_bytes(address + len(text), 16 - (address + len(text)) % 16)
    return text.split(b'\0')[0].decode('utf-8', 'replace')


def check_count(count):
    if not 0 <= count <= 1 << 40:
        raise Unreadable('garbage')
    return count


def get_limit():
    limit = gdb.parameter('print elements')
    return min(limit or MOST, MOST)


def read_text(address, limit=None):
    """A QString."""
    _, begin, size = read(address, 'QQq')
    count = min(check_count(size), limit or MOST)
    text = read_bytes(begin, 2 * count).decode('utf-16-le', 'replace')
    return text + '…' if count < size else text


def read_byte_array(address):
    _, begin, size = read(address, 'QQq')
    return read_bytes(begin, min(check_count(size), MOST)).decode('utf-8', 'replace')


def can_show(character):
    if not character.isprintable():
        return False
    try:
        character.encode(gdb.target_charset())
        return True
    except (UnicodeError, LookupError):
        return character.isascii()


def escape(text):
    """As within a C++ literal, where the terminal cannot show it; as much as gdb is to print."""
    escapes = {'\n': '\\n', '\r': '\\r', '\t': '\\t', '"': '\\"', '\\': '\\\\'}

    def escape_one(character):
        if character in escapes:
            return escapes[character]
        if can_show(character):
            return character
        return f'\\u{ord(character):04x}' if ord(character) < 0x10000 else f'\\U{ord(character):08x}'

    limit = get_limit()
    return ''.join(map(escape_one, text[:limit])) + ('...' if len(text) > limit else '')


def quote(text):
    return f'"{escape(text)}"'


# Values. Each is a line of text, or a Tree.

class Tree:
    """Named children, or numbered ones; they are read when they are asked for."""

    def __init__(self, kind, count, children, is_map):
        self.title = f'{kind} of {count}'
        self.count = count
        self.children = children
        self.is_map = is_map

    def render(self, depth):
        if depth <= 0:
            return self.title
        items = []
        for key, describe, address in itertools.islice(self.children(), get_limit()):
            name = f'[{escape(key)}] = ' if self.is_map else ''
            items.append(name + render(describe, address, depth - 1))
        if self.count > len(items):
            items.append('...')
        return self.title + ' = {' + ', '.join(items) + '}' if self.count else self.title


def render(describe, address, depth):
    try:
        value = describe(address)
        return value.render(depth) if isinstance(value, Tree) else value
    except ERRORS as error:
        return f'<{error}>'


def to_short(value):
    return repr(value)[:-2] if repr(value).endswith('.0') else repr(value)


def to_symbol(kind, unit):
    symbols = SYMBOLS[kind]
    symbol = symbols[unit] if 0 <= unit < len(symbols) else ''
    if not symbol:
        return f' <unit {unit}>'
    return ('' if symbol in '°\'"' else ' ') + ''.join(c if can_show(c) else escape(c) for c in symbol)


def to_quantity(kind, value, unit):
    return to_short(value) + to_symbol(kind, unit)


def describe_triplet(address):
    *numbers, unit, has_unit = read(address, 'dddiB')
    return '; '.join(map(to_short, numbers)) + (to_symbol('Length', unit) if has_unit else '')


def walk(address, size):
    """The addresses of the entries of a std::map, in order."""
    parent_offset, left_offset, right_offset, value_offset, highest = 8, 16, 24, 32, 128
    header = address + 8
    node = read(header + left_offset, 'Q')
    for _ in range(size):
        if node == header:
            raise Unreadable('garbage')
        yield node + value_offset
        below = read(node + right_offset, 'Q')
        if below:
            for _ in range(highest): # garbage may go round in a circle
                node, below = below, read(below + left_offset, 'Q')
                if not below:
                    break
            continue
        for _ in range(highest):
            child, node = node, read(node + parent_offset, 'Q')
            if child != read(node + right_offset, 'Q'):
                break


def describe_entries(data, describe_value):
    """A std::map from QString in shared data, which may be null."""
    if not data:
        return Tree('map', 0, lambda: (), True)
    address = data + 8 # behind the count of references
    count = check_count(read(address + 40, 'Q'))

    def children():
        for entry in walk(address, count):
            yield read_text(entry), describe_value, entry + 24

    return Tree('map', count, children, True)


def describe_items(begin, count, stride, describe_value):
    check_count(count)

    def children():
        for index in range(count):
            yield str(index), describe_value, begin + index * stride

    return Tree('list', count, children, False)


def describe_map(address):
    entries, state = read(address + 8, 'QQ')
    tree = describe_entries(entries, describe_node)
    if state:
        tree.title += ' in group ' + quote('/'.join(read_texts(state + 8)))
    return tree


def describe_list(address):
    begin, end = read(address, 'QQ')
    if begin > end or (end - begin) % 40:
        raise Unreadable('garbage')
    return describe_items(begin, (end - begin) // 40, 40, describe_node)


def describe_node(address):
    """A VekQVariant."""
    alternative = read(address + 32, 'B')
    if alternative == 0:
        return describe_variant(address)
    if alternative == 0xff:
        raise Unreadable('no value')
    if alternative != 1:
        raise Unreadable('garbage')
    shared = read(address, 'Q')
    if not shared:
        raise Unreadable('moved from')
    value = describe_variant(shared)
    if isinstance(value, Tree):
        value.title = 'shared ' + value.title
        return value
    return 'shared ' + value


def describe_variant(address):
    """A QVariant."""
    word = read(address + 24, 'Q')
    is_shared, interface = word & 1, word & ~3
    if not interface:
        return '<invalid>'
    name = read_c_string(read(interface + 24, 'Q'))
    if is_shared:
        shared = read(address, 'Q')
        address = shared + read(shared + 4, 'i')
    if name in DESCRIPTIONS:
        return DESCRIPTIONS[name](address)
    try:
        return gdb.Value(address).cast(gdb.lookup_type(name).pointer()).dereference().format_string()
    except gdb.error:
        return f'<{escape(name)}>'


def read_texts(address):
    """A QList<QString>."""
    _, begin, count = read(address, 'QQq')
    return [read_text(begin + 24 * index, get_limit() + 1) for index in range(min(check_count(count), get_limit()))]


def describe_qlist(describe_value, stride):
    def describe(address):
        _, begin, count = read(address, 'QQq')
        return describe_items(begin, count, stride, describe_value)

    return describe


def describe_qmap(address):
    return describe_entries(read(address, 'Q'), describe_variant)


def describe_text(address):
    return quote(read_text(address, get_limit() + 1))


def fill(text, value):
    """QString::arg."""
    numbers = [int(number) for number in re.findall(r'%L?(\d\d?)', text)]
    if not numbers:
        return text
    return re.sub(fr'%L?0?{min(numbers)}(?!\d)' if min(numbers) < 10 else fr'%L?{min(numbers)}',
                  lambda _: value, text)


def render_tr_string(body, depth=DEEPEST):
    """The text of a recipe in the source language, as TrString::GetKey gives it."""
    if not body:
        raise Unreadable('moved from')
    if depth == 0:
        return '…'
    text = read_text(body + 80) or read_byte_array(body + 24)
    args, args_end, _, replacements, replacements_end, _, parts, parts_end = read(body + 104, '8Q')
    if not (args <= args_end and replacements <= replacements_end and parts <= parts_end):
        raise Unreadable('garbage')
    if max(args_end - args, replacements_end - replacements, parts_end - parts) > MOST:
        raise Unreadable('garbage')
    for part in range(parts, parts_end, 16):
        text += render_tr_string(read(part, 'Q'), depth - 1)
    for argument in range(args, args_end, 32):
        is_tr_string = read(argument + 24, 'B')
        text = fill(text, render_tr_string(read(argument, 'Q'), depth - 1) if is_tr_string else read_text(argument))
    for replacement in range(replacements, replacements_end, 48):
        text = text.replace(read_text(replacement), read_text(replacement + 24))
    return text


def describe_tr_string(address):
    return quote(render_tr_string(read(address, 'Q')))


def number(layout):
    return lambda address: repr(read(address, layout))


def quantity(kind):
    return lambda address: to_quantity(kind, *read(address, 'di'))


DESCRIPTIONS = {
    'bool': lambda address: 'true' if read(address, 'B') else 'false',
    'char': number('b'), 'signed char': number('b'), 'uchar': number('B'), 'short': number('h'),
    'ushort': number('H'), 'int': number('i'), 'uint': number('I'), 'long': number('q'), 'ulong': number('Q'),
    'qlonglong': number('q'), 'qulonglong': number('Q'), 'float': number('f'), 'double': number('d'),
    'QString': describe_text,
    'QByteArray': lambda address: quote(read_byte_array(address)),
    'QStringList': describe_qlist(describe_text, 24),
    'QVariantList': describe_qlist(describe_variant, 32),
    'QVariantMap': describe_qmap,
    'vek::App::VekQVariant': describe_node,
    'vek::App::VekQVariantMap': describe_map,
    'vek::App::VekQVariantList': describe_list,
    'vek::App::HPath': lambda address: quote('/'.join(read_texts(address))),
    'vek::TrString': describe_tr_string,
    'vek::Triplet': describe_triplet,
    **{f'vek::Unit::{kind}': quantity(kind) for kind in SYMBOLS},
}


# Printers

class Printer:
    """Shows a value by a description of what is at its address."""

    def __init__(self, value, describe):
        try:
            if value.address is None:
                raise Unreadable('not in memory')
            self.value = describe(int(value.address))
        except ERRORS as error:
            self.value = f'<{error}>'

    def to_string(self):
        return self.value.title if isinstance(self.value, Tree) else self.value

    def display_hint(self):
        if isinstance(self.value, Tree):
            return 'map' if self.value.is_map else 'array'
        return None

    def children(self):
        if not isinstance(self.value, Tree):
            return
        try:
            for key, describe, address in self.value.children():
                if self.value.is_map:
                    yield key, escape(key)
                yield key, self.make_child(describe, address)
        except ERRORS as error:
            if self.value.is_map:
                yield 'error', '...'
            yield 'error', f'<{error}>'

    @staticmethod
    def make_child(describe, address):
        """As a value, which tools open level by level, where its type is known; else as text."""
        if describe == describe_node:
            try:
                node = gdb.lookup_type('vek::App::VekQVariant')
                return gdb.Value(address).cast(node.pointer()).dereference()
            except gdb.error:
                pass
        return render(describe, address, DEEPEST)


class RawPtrPrinter:
    def __init__(self, value):
        self.object = None
        try:
            self.object, self.text = find_object(value)
        except ERRORS as error:
            self.text = f'<{error}>'

    def to_string(self):
        return self.text

    def children(self):
        if self.object is not None:
            yield 'object', self.object


def find_object(pointer):
    """What a RawPtr points to, as a pointer, and a text that says it or why there is nothing."""
    target = pointer.type.strip_typedefs().template_argument(0)
    if pointer.type.sizeof == 8: # a SafeObject, by its control block
        block = int(pointer['m_watch']['m_block'])
        address = read(block, 'Q') if block else 0
        if address:
            read(address, 'Q')
            address -= find_base(target, 'vek::SafeObject') or 0
    else: # a QObject, by a QPointer
        block, address = int(pointer['m_watch']['m_watched']['wp']['d']), int(pointer['m_watch']['m_object'])
        if block and read(block + 4, 'i') == 0:
            address = 0
    if not block:
        return None, 'null'
    if not address:
        return None, 'died'
    made = gdb.Value(address).cast(target.unqualified().pointer())
    try:
        made = made.cast(made.dynamic_type)
    except gdb.error: # no debug information of its class
        pass
    return made, f'RawPtr to {made.type.target()}'


def find_base(derived, name):
    """Where in an object of a class one of that base class begins; what is not described is taken for it."""
    derived = derived.strip_typedefs().unqualified()
    if derived.name == name:
        return 0
    for field in derived.fields():
        if field.is_base_class:
            offset = find_base(field.type, name)
            if offset is not None:
                return field.bitpos // 8 + offset
    return None if any(not field.is_base_class for field in derived.fields()) else 0


class TextPrinter:
    """Shows a value by its members."""

    def __init__(self, value, to_text):
        try:
            self.text = to_text(value)
        except ERRORS as error:
            self.text = f'<{error}>'

    def to_string(self):
        return self.text


def by_address(describe):
    return lambda value: Printer(value, describe)


def by_members(to_text):
    return lambda value: TextPrinter(value, to_text)


def show_quantity(kind):
    return by_members(lambda value: to_quantity(kind, float(value['m_value']), int(value['m_unit'])))


PRINTERS = {
    'vek::App::VekQVariant': by_address(describe_node),
    'vek::App::VekQVariantMap': by_address(describe_map),
    'vek::App::VekQVariantList': by_address(describe_list),
    'vek::App::HPath': by_address(DESCRIPTIONS['vek::App::HPath']),
    'vek::App::VersionNumber': by_members(
        lambda value: '.'.join(str(int(value['_M_elems'][index])) for index in range(4))),
    'vek::TrString': by_members(lambda value: quote(render_tr_string(int(value['m_body']['_M_ptr'])))),
    'vek::Bool': by_members(lambda value: 'true' if value['m_isTrue'] else 'false'),
    'vek::Triplet': by_address(describe_triplet),
    **{f'vek::Unit::{kind}': show_quantity(kind) for kind in SYMBOLS},
}


def is_raw_ptr(kind):
    return (kind.strip_typedefs().unqualified().name or '').startswith('vek::RawPtr<')


def find_printer(value):
    kind = value.type
    if kind.code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
        value, kind = value.referenced_value(), kind.target()
    if gdb.lookup_type('char').pointer().sizeof != 8:
        return None
    # An alias goes before what it stands for: a version is an array like others.
    printer = PRINTERS.get(kind.unqualified().name) or PRINTERS.get(kind.strip_typedefs().unqualified().name)
    if printer:
        return printer(value)
    if is_raw_ptr(kind):
        return RawPtrPrinter(value)
    return None


find_printer.name = 'VekAppCore'
find_printer.enabled = True


class RawPtrAccess(gdb.xmethod.XMethodWorker):
    """Reaches the object without the program: "p pointer->number" works on core dumps too."""

    def __init__(self, name):
        self.name = name

    def get_arg_types(self):
        return None

    def __call__(self, this):
        found, text = find_object(this.dereference())
        if found is None:
            raise gdb.GdbError(text)
        return found.dereference() if self.name == 'operator*' else found


class RawPtrMatcher(gdb.xmethod.XMethodMatcher):
    def __init__(self):
        super().__init__('VekAppCore')
        self.methods = [gdb.xmethod.XMethod(name) for name in ('operator*', 'operator->', 'Get')]

    def match(self, class_type, method_name):
        if not is_raw_ptr(class_type):
            return None
        return next((RawPtrAccess(method.name) for method in self.methods
                     if method.name == method_name and method.enabled), None)


def register(objfile):
    printers = (objfile or gdb).pretty_printers
    printers[:] = [printer for printer in printers if getattr(printer, 'name', '') != find_printer.name]
    printers.insert(0, find_printer)
    gdb.xmethod.register_xmethod_matcher(objfile, RawPtrMatcher(), replace=True)


if __name__ == '__main__': # by "source"
    register(gdb.current_objfile())
