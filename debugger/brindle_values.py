"""What a debugger shows of the values of brindle; brindle-gdb.py and brindle_lldb.py say how it gets at them.

Compilers describe a class with virtual functions only where those are, which is in the library, and the library may
have no debug information. So property lists, layout nodes and files are read by their layout in memory.
"""
import decimal
import json
import re
import struct

TICKS_PER_SECOND = 254016000000

# The names of rates whose frames are not a whole number a second, by their ticks per frame.
NTSC = {TICKS_PER_SECOND * 1001 // (nominal * 1000): f"{nominal}000/1001" for nominal in (24, 30, 60)}

TEXTS = r"^std::(__cxx11::)?basic_string<unsigned (short|char),.*>$"
INTRUSIVE_POINTERS = r"^boost::intrusive_ptr<brindle::.*>$"


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


def tick_time(ticks):
    seconds = decimal.Decimal(ticks) / TICKS_PER_SECOND
    return f"{ticks} ticks, {seconds.normalize():f} s, {timecode(ticks, 25)} at 25"


def frame_rate(ticks_per_frame):
    return f"{rate_name(ticks_per_frame)} frames/s, {ticks_per_frame} ticks/frame"


def guid(data1, data2, data3, data4):
    tail = "".join(f"{byte:02x}" for byte in data4)
    return f"{data1:08x}-{data2:04x}-{data3:04x}-{tail[:4]}-{tail[4:]}"


def class_name(symbol):
    """The class whose table of virtual functions has this name; nothing if it is no such name."""
    found = re.match(r"(?:vtable|VTT) for (.*?)(?: \+ \d+)?(?: in section .*)?$", symbol.strip())
    return found.group(1) if found else ""


class Memory:
    """The memory of the program. A debugger derives from it."""

    little = True
    longest = 200  # characters of a text, or 0

    def read(self, address, size):
        raise NotImplementedError

    def symbol(self, address):
        """The name of what lies at the address, or nothing."""
        raise NotImplementedError

    def number(self, address, size, signed=False):
        return int.from_bytes(self.read(address, size), "little" if self.little else "big", signed=signed)

    def unpacked(self, address, code):
        form = ("<" if self.little else ">") + code
        return struct.unpack(form, self.read(address, struct.calcsize(form)))

    def text(self, start, length, unit):
        """The characters of a text, with what is no Unicode shown as U+FFFD."""
        if not 0 <= length < 1 << 30:
            return "<not a text>"
        shown = min(length, self.longest or length)
        data = self.read(start, shown * unit) if shown else b""
        encoding = "utf-8" if unit == 1 else "utf-16-le" if self.little else "utf-16-be"
        return data.decode(encoding, "replace") + ("..." if shown < length else "")

    def text_at(self, address, unit):
        return self.text(self.number(address, 8), self.number(address + 8, 8), unit)

    def literal(self, start, length, unit):
        return ("u" if unit == 2 else "") + quoted(self.text(start, length, unit))

    def path(self, address):
        """A File or a Dir: the path in normal form, which is all that it has."""
        return quoted(self.text_at(address, 2))

    def class_of(self, address):
        """The class of an object that has virtual functions; nothing if it has no name."""
        return class_name(self.symbol(self.number(address, 8)))

    def pointer(self, address, static_type):
        """What an intrusive pointer to this address points to."""
        return "null" if address == 0 else f"{self.class_of(address) or static_type} at {address:#x}"

    def layout_node(self, address):
        """Its class, whether it has to be measured again, and the rectangle of its last `Arrange`."""
        state = "measured" if self.number(address + 8, 1) else "to be measured"
        x, y, width, height = self.unpacked(address + 16, "4f")
        place = f", arranged in {width:g} x {height:g} at ({x:g}, {y:g})" if width or height else ""
        return (self.class_of(address) or "a node") + f", {state}" + place


class PropList:
    """The entries of a list.

    A list is a pointer to virtual functions, and a vector of vectors of slots. A slot is the first 16 bytes of a key
    and a pointer to a node. A node is a pointer to virtual functions, the type, the key, and the value.
    """

    POINTER, SLOT, TEXT = 8, 24, 32
    NUMBERS = {3: "?", 4: "H", 5: "I", 6: "i", 7: "q", 8: "Q", 9: "f", 10: "d"}
    DEEPEST = 4

    def __init__(self, memory, address):
        self.memory, self.address = memory, address

    def title(self):
        count = sum(1 for _ in self.nodes(self.address))
        return f"a list of {count} " + ("property" if count == 1 else "properties")

    def entries(self):
        """Pairs of a key and the value as text."""
        return self.entries_of(self.address, 1)

    def entries_of(self, address, depth):
        for node in self.nodes(address):
            yield self.memory.text_at(node + 2 * self.POINTER, 1), self.value(node, depth)

    def nodes(self, address):
        for block in self.elements(address + self.POINTER, 3 * self.POINTER):
            for slot in self.elements(block, self.SLOT):
                yield self.memory.number(slot + self.SLOT - self.POINTER, self.POINTER)

    def elements(self, vector, size):
        """The addresses of the elements of a vector."""
        first, end = (self.memory.number(vector + offset, self.POINTER) for offset in (0, self.POINTER))
        return range(first, end, size)

    def value(self, node, depth):
        kind, place = self.memory.number(node + self.POINTER, 4), node + 2 * self.POINTER + self.TEXT
        if kind in (1, 2):
            return ("u" if kind == 1 else "") + quoted(self.memory.text_at(place, 2 if kind == 1 else 1))
        if kind in self.NUMBERS:
            number, = self.memory.unpacked(place, self.NUMBERS[kind])
            return str(number).lower() if kind == 3 else f"{number:.9g}" if kind == 9 else repr(number)
        if kind != 11:
            return "an array"
        return braces(self.entries_of(place, depth + 1)) if depth < self.DEEPEST else "{...}"


def braces(entries):
    return "{" + ", ".join(f"[{key}] = {value}" for key, value in entries) + "}"
