"""Shows the values of brindle in GDB: texts, times, rates, identifiers, files, property lists, pointers, layouts.

GDB loads this file by itself with the shared library; in another program, "source brindle-gdb.py" does. It needs
brindle_values.py beside it.
"""
import os
import sys

import gdb
import gdb.printing

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
sys.dont_write_bytecode, former = True, sys.dont_write_bytecode  # the folder belongs to the package
import brindle_values as values
sys.dont_write_bytecode = former
del sys.path[0]


class Memory(values.Memory):
    def __init__(self):
        self.little = "big endian" not in gdb.execute("show endian", to_string=True)
        self.longest = gdb.parameter("print elements") or 0

    def read(self, address, size):
        return gdb.selected_inferior().read_memory(address, size).tobytes()

    def symbol(self, address):
        return gdb.execute(f"info symbol {address:#x}", to_string=True)


class Printer:
    """Calls a function with the value, and shows the text that it returns."""

    def __init__(self, function):
        self.function = function

    def __call__(self, value):
        printer = Printer(self.function)
        printer.value = value
        return printer

    def to_string(self):
        return self.function(self.value)


def text(value):
    start = value["_M_dataplus"]["_M_p"]
    unit = start.type.strip_typedefs().target().sizeof
    return Memory().literal(int(start), int(value["_M_string_length"]), unit)


def guid(value):
    fields = value[value.type.fields()[0].name]
    return values.guid(*(int(fields[f"Data{number}"]) for number in (1, 2, 3)),
                       [int(fields["Data4"][index]) for index in range(8)])


class Pointer:
    """An intrusive pointer: the class of what it points to, and that."""

    def __init__(self, value):
        self.pointer = value["px"]

    def to_string(self):
        return Memory().pointer(int(self.pointer), self.pointer.type)

    def children(self):
        if int(self.pointer) != 0:
            yield "*", self.pointer.dereference()


class PropList:
    def __init__(self, value):
        self.list = values.PropList(Memory(), int(value.address))

    def to_string(self):
        return self.list.title()

    def children(self):
        for number, (key, value) in enumerate(self.list.entries()):
            yield f"key{number}", key
            yield f"value{number}", value

    def display_hint(self):
        return "map"


def printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter("brindle")
    for name, pattern, printer in (
            ("texts", values.TEXTS, Printer(text)),
            ("TickTime", r"^brindle::time::TickTime$", Printer(lambda value: values.tick_time(int(value["mTicks"])))),
            ("FrameRate", r"^brindle::time::FrameRate$",
             Printer(lambda value: values.frame_rate(int(value["mTicksPerFrame"])))),
            ("Guid", r"^brindle::utility::Guid$", Printer(guid)),
            ("File", r"^brindle::filesupport::(File|Dir)$", Printer(lambda value: Memory().path(int(value.address)))),
            ("PropList", r"^brindle::proplist::PropList$", PropList),
            ("intrusive_ptr", values.INTRUSIVE_POINTERS, Pointer),
            ("Rect", r"^brindle::geom::RectT<.*>$",
             Printer(lambda value: f"{value['width']} x {value['height']} at ({value['x']}, {value['y']})")),
            ("Point", r"^brindle::geom::PointT<.*>$", Printer(lambda value: f"({value['x']}, {value['y']})")),
            ("IArrangeable", r"^brindle::arrange::IArrangeable$",
             Printer(lambda value: Memory().layout_node(int(value.address))))):
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
