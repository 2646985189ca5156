"""Shows the values of brindle in GDB: texts, times, rates, identifiers, files, property lists, pointers, layouts.

GDB loads this file by itself with the shared library; in another program, "source brindle-gdb.py" does.
"""
import decimal
import json
import re
import struct

import gdb
import gdb.printing

BYTE_ORDER = "big" if "big endian" in gdb.execute("show endian", to_string=True) else "little"
TICKS_PER_SECOND = 254016000000

# The names of rates whose frames are not a whole number a second, by their ticks per frame.
NTSC = {TICKS_PER_SECOND * 1001 // (nominal * 1000): f"{nominal}000/1001" for nominal in (24, 30, 60)}


def text_of(value):
    """The characters of a text, with what is no Unicode shown as U+FFFD."""
    start = value["_M_dataplus"]["_M_p"]
    unit = start.type.strip_typedefs().target().sizeof
    return decoded(int(start), int(value["_M_string_length"]), unit)


def decoded(start, length, unit):
    if not 0 <= length < 1 << 30:
        return "<not a text>"
    shown = min(length, gdb.parameter("print elements") or length)
    data = gdb.selected_inferior().read_memory(start, shown * unit).tobytes() if shown else b""
    encoding = "utf-8" if unit == 1 else "utf-16-le" if BYTE_ORDER == "little" else "utf-16-be"
    return data.decode(encoding, "replace") + ("..." if shown < length else "")


def number_at(address, size, signed=False):
    return int.from_bytes(gdb.selected_inferior().read_memory(address, size).tobytes(), BYTE_ORDER, signed=signed)


def class_of(address):
    """The class of an object that has virtual functions, by the name of its table; nothing if it has no name."""
    symbol = gdb.execute(f"info symbol {number_at(address, 8):#x}", to_string=True)
    found = re.match(r"(?:vtable|VTT) for (.*?)(?: \+ \d+)?(?: in section .*)?$", symbol.strip())
    return found.group(1) if found else ""


def quoted(text):
    return json.dumps(text, ensure_ascii=False)


def rate_name(ticks_per_frame):
    if ticks_per_frame in NTSC:
        return NTSC[ticks_per_frame]
    if ticks_per_frame == 0:
        return "infinite"
    rate = decimal.Decimal(TICKS_PER_SECOND) / ticks_per_frame
    return f"{rate.normalize():f}"


def timecode(ticks, frames_per_second):
    """Non-drop timecode of the frame in which the time lies."""
    frame = ticks * frames_per_second // TICKS_PER_SECOND
    sign, frame = ("-", -frame) if frame < 0 else ("", frame)
    seconds, frames = divmod(frame, frames_per_second)
    return f"{sign}{seconds // 3600:02}:{seconds // 60 % 60:02}:{seconds % 60:02}:{frames:02}"


class Text:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        return ("u" if "unsigned short" in str(self.value.type.strip_typedefs()) else "") + quoted(text_of(self.value))


class TickTime:
    def __init__(self, value):
        self.ticks = int(value["mTicks"])

    def to_string(self):
        seconds = decimal.Decimal(self.ticks) / TICKS_PER_SECOND
        return f"{self.ticks} ticks, {seconds.normalize():f} s, {timecode(self.ticks, 25)} at 25"


class FrameRate:
    def __init__(self, value):
        self.period = int(value["mTicksPerFrame"])

    def to_string(self):
        return f"{rate_name(self.period)} frames/s, {self.period} ticks/frame"


class Guid:
    def __init__(self, value):
        self.fields = value[value.type.fields()[0].name]

    def to_string(self):
        fields = self.fields
        tail = "".join(f"{int(fields['Data4'][i]):02x}" for i in range(8))
        return f"{int(fields['Data1']):08x}-{int(fields['Data2']):04x}-{int(fields['Data3']):04x}-{tail[:4]}-{tail[4:]}"


class Path:
    """A File or a Dir: the path in normal form, which is all that it has. Not every compiler describes its class."""

    def __init__(self, value):
        self.address = int(value.address)

    def to_string(self):
        return quoted(decoded(number_at(self.address, 8), number_at(self.address + 8, 8), 2))


class Pointer:
    """An intrusive pointer: the class of what it points to, and that."""

    def __init__(self, value):
        self.pointer = value["px"]

    def to_string(self):
        address = int(self.pointer)
        return "null" if address == 0 else f"{class_of(address) or self.pointer.type} at {address:#x}"

    def children(self):
        if int(self.pointer) != 0:
            yield "*", self.pointer.dereference()


class PropList:
    """The entries of a list. Compilers describe the class only where its virtual functions are, which is in the
    library, and the library may have no debug information; so a list is read by its layout.

    A list is a pointer to virtual functions, and a vector of vectors of slots. A slot is the first 16 bytes of a key
    and a pointer to a node. A node is a pointer to virtual functions, the type, the key, and the value.
    """

    POINTER, SLOT, TEXT = 8, 24, 32
    NUMBERS = {3: "bool", 4: "unsigned short", 5: "unsigned int", 6: "int", 7: "long", 8: "unsigned long", 9: "float",
               10: "double"}

    DEEPEST = 4

    def __init__(self, value):
        self.address = int(value.address)

    def nodes(self, address):
        for block in self.elements(address + self.POINTER, 3 * self.POINTER):
            for slot in self.elements(block, self.SLOT):
                yield number_at(slot + self.SLOT - self.POINTER, self.POINTER)

    def elements(self, vector, size):
        """The addresses of the elements of a vector."""
        return range(number_at(vector, self.POINTER), number_at(vector + self.POINTER, self.POINTER), size)

    def text(self, address, unit):
        return decoded(number_at(address, self.POINTER), number_at(address + self.POINTER, self.POINTER), unit)

    def to_string(self):
        count = sum(1 for _ in self.nodes(self.address))
        return f"a list of {count} " + ("property" if count == 1 else "properties")

    def children(self):
        for number, node in enumerate(self.nodes(self.address)):
            yield f"key{number}", self.key(node)
            yield f"value{number}", self.scalar(node, 1)

    def key(self, node):
        return self.text(node + 2 * self.POINTER, 1)

    def scalar(self, node, depth):
        kind, place = number_at(node + self.POINTER, 4), node + 2 * self.POINTER + self.TEXT
        if kind in (1, 2):
            return ("u" if kind == 1 else "") + quoted(self.text(place, 2 if kind == 1 else 1))
        if kind in self.NUMBERS:
            return gdb.Value(place).cast(gdb.lookup_type(self.NUMBERS[kind]).pointer()).dereference()
        if kind != 11:
            return "an array"
        # As text, for GDB shows no part of a value that it takes for incomplete.
        if depth == self.DEEPEST:
            return "{...}"
        entries = (f"[{self.key(inner)}] = {self.scalar(inner, depth + 1)}" for inner in self.nodes(place))
        return "{" + ", ".join(entries) + "}"

    def display_hint(self):
        return "map"


class Rectangle:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        value = self.value
        return f"{value['width']} x {value['height']} at ({value['x']}, {value['y']})"


class Point:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        return f"({self.value['x']}, {self.value['y']})"


class LayoutNode:
    """A node of a tree: its class, whether it has to be measured again, and the rectangle of its last `Arrange`. It is
    read by its place in memory, as a `PropList` is."""

    IS_VALID, RECTANGLE = 8, 16

    def __init__(self, value):
        self.address = int(value.address)

    def to_string(self):
        state = "measured" if number_at(self.address + self.IS_VALID, 1) else "to be measured"
        memory = gdb.selected_inferior().read_memory(self.address + self.RECTANGLE, 16).tobytes()
        x, y, width, height = struct.unpack("<4f" if BYTE_ORDER == "little" else ">4f", memory)
        place = f", arranged in {width:g} x {height:g} at ({x:g}, {y:g})" if width or height else ""
        return (class_of(self.address) or "a node") + f", {state}" + place


def printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter("brindle")
    for name, pattern, printer in (
            ("texts", r"^std::(__cxx11::)?basic_string<unsigned (short|char),.*>$", Text),
            ("TickTime", r"^brindle::time::TickTime$", TickTime),
            ("FrameRate", r"^brindle::time::FrameRate$", FrameRate),
            ("Guid", r"^brindle::utility::Guid$", Guid),
            ("File", r"^brindle::filesupport::(File|Dir)$", Path),
            ("PropList", r"^brindle::proplist::PropList$", PropList),
            ("intrusive_ptr", r"^boost::intrusive_ptr<brindle::.*>$", Pointer),
            ("Rect", r"^brindle::geom::RectT<.*>$", Rectangle),
            ("Point", r"^brindle::geom::PointT<.*>$", Point),
            ("IArrangeable", r"^brindle::arrange::IArrangeable$", LayoutNode)):
        collection.add_printer(name, pattern, printer)
    return collection


def library():
    """The shared library, or else the program that it is linked into."""
    if gdb.current_objfile() is not None:
        return gdb.current_objfile()
    files = gdb.objfiles()
    return next((file for file in files if "libbrindle.so" in file.filename), files[0] if files else None)


# Printers of a file come before those of the files that were loaded after it. The standard library's own, which show
# texts in 16-bit units as numbers, are loaded after this library.
gdb.printing.register_pretty_printer(library(), printers(), replace=True)
