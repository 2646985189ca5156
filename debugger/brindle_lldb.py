"""Shows the values of brindle in LLDB: texts, times, rates, identifiers, files, property lists, pointers, layouts.

LLDB loads nothing by itself with a shared library of ELF. Put this into ~/.lldbinit, with the folder of this file:

    command script import /usr/share/brindle/debugger/brindle_lldb.py

It needs brindle_values.py beside it.
"""
import sys

import lldb

sys.dont_write_bytecode, former = True, sys.dont_write_bytecode  # the folder belongs to the package
import brindle_values as values
sys.dont_write_bytecode = former


class Memory(values.Memory):
    def __init__(self, value):
        self.process, self.target = value.GetProcess(), value.GetTarget()
        self.little = self.process.GetByteOrder() == lldb.eByteOrderLittle
        self.longest = 1024

    def read(self, address, size):
        error = lldb.SBError()
        data = self.process.ReadMemory(address, size, error)
        if error.Fail():
            raise ValueError(error.GetCString())
        return data

    def symbol(self, address):
        found = self.target.ResolveLoadAddress(address)
        if not found.GetSection().IsValid():
            found = self.in_data(address)
        return found.GetSymbol().GetName() or ""

    def in_data(self, address):
        """LLDB finds no address in the data of a library that begins with thread-local data."""
        headers = [(module.GetObjectFileHeaderAddress(), module) for module in self.target.module_iter()]
        below = [(header.GetLoadAddress(self.target), header, module) for header, module in headers
                 if header.GetLoadAddress(self.target) <= address]
        load, header, module = max(below, key=lambda entry: entry[0], default=(0, None, None))
        return module.ResolveFileAddress(header.GetFileAddress() + address - load) if module else lldb.SBAddress()


def member(value, *names):
    for name in names:
        value = value.GetChildMemberWithName(name)
    return value


def number(value, *names):
    found = member(value, *names)
    if found.GetType().GetCanonicalType().GetBasicType() in (lldb.eBasicTypeLong, lldb.eBasicTypeInt):
        return found.GetValueAsSigned()
    return found.GetValueAsUnsigned()


def real(value, name):
    return float(member(value, name).GetValue())


def text(value, memory, _):
    start = member(value, "_M_dataplus", "_M_p")
    unit = start.GetType().GetPointeeType().GetByteSize()
    return memory.literal(start.GetValueAsUnsigned(), number(value, "_M_string_length"), unit)


def guid(value, *_):
    fields = value.GetChildAtIndex(0)
    tail = member(fields, "Data4")
    return values.guid(*(number(fields, f"Data{index}") for index in (1, 2, 3)),
                       [tail.GetChildAtIndex(index).GetValueAsUnsigned() for index in range(8)])


def prop_list(_, memory, address):
    shown = values.PropList(memory, address)
    return f"{shown.title()} = {values.braces(shown.entries())}"


def pointer(value, memory, _):
    pointer = member(value, "px")
    return memory.pointer(pointer.GetValueAsUnsigned(), pointer.GetType().GetName())


SUMMARIES = {
    "text": (values.TEXTS, text),
    "tick_time": (r"^brindle::time::TickTime$", lambda value, *_: values.tick_time(number(value, "mTicks"))),
    "frame_rate": (r"^brindle::time::FrameRate$", lambda value, *_: values.frame_rate(number(value, "mTicksPerFrame"))),
    "guid": (r"^brindle::utility::Guid$", guid),
    "path": (r"^brindle::filesupport::(File|Dir)$", lambda _, memory, address: memory.path(address)),
    "prop_list": (r"^brindle::proplist::PropList$", prop_list),
    "pointer": (values.INTRUSIVE_POINTERS, pointer),
    "rectangle": (r"^brindle::geom::RectT<.*>$",
                  lambda value, *_: "{2:g} x {3:g} at ({0:g}, {1:g})".format(
                      *(real(value, name) for name in ("x", "y", "width", "height")))),
    "point": (r"^brindle::geom::PointT<.*>$",
              lambda value, *_: "({:g}, {:g})".format(real(value, "x"), real(value, "y"))),
    "layout_node": (r"^brindle::arrange::IArrangeable$",
                    lambda _, memory, address: memory.layout_node(address)),
}


def summary_of(function):
    """A function as LLDB calls it, with the value itself, a reference or a pointer."""
    def summary(value, _):
        memory, kind, address = Memory(value), value.GetType(), value.GetLoadAddress()
        if kind.IsPointerType() or kind.IsReferenceType():
            value, address = value.Dereference(), value.GetValueAsUnsigned()
        try:
            return function(value, memory, address)
        except Exception as failure:  # such as memory of a value that was not initialised
            return f"<{failure}>"
    return summary


for name, (_, function) in SUMMARIES.items():
    globals()[f"summary_{name}"] = summary_of(function)


def __lldb_init_module(debugger, _):
    for name, (pattern, _) in SUMMARIES.items():
        debugger.HandleCommand(f'type summary add -w brindle -x "{pattern}" -F {__name__}.summary_{name}')
    debugger.HandleCommand("type category enable brindle")
