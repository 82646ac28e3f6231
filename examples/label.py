#!/usr/bin/env python3
"""A Data Matrix symbol as a PBM picture on standard output:  label.py "ITEM 4711" > label.pbm"""
import ctypes
import os
import sys
from ctypes import byref, c_char_p, c_int16, c_uint32, c_void_p


class DataParams(ctypes.Structure):
    _fields_ = [("reserved_0", c_int16 * 2), ("module_width", c_int16), ("module_height", c_int16),
                ("columns", c_int16), ("rows", c_int16), ("reserved_12", c_int16 * 2), ("fnc1_escape", c_int16),
                ("reserved_18", c_int16), ("data", c_char_p), ("length", c_int16)]


class SymbolSize(ctypes.Structure):
    _fields_ = [("width", c_int16), ("height", c_int16)]


korvex = ctypes.CDLL(os.environ.get("LIBKORVEX", "libkorvex.so.1"))
korvex.korvex_device_create.restype = c_void_p
korvex.korvex_device_pixel.restype = c_uint32
korvex.DATA_Encode.restype = c_int16

text = (sys.argv[1] if len(sys.argv) > 1 else "ITEM 4711").encode("latin-1")
picture = c_void_p(korvex.korvex_device_create(0, 0))
size = SymbolSize()
result = korvex.DATA_Encode(picture, byref(DataParams(module_width=4, module_height=4, data=text, length=len(text))),
                            byref(size))
if result != 0:
    sys.exit(f"no symbol: {result}")
quiet = 4  # pixels, one module
print("P1", size.width + 2 * quiet, size.height + 2 * quiet)
for y in range(-quiet, size.height + quiet):
    print("".join("1" if korvex.korvex_device_pixel(picture, x, y) == 0 else "0"
                  for x in range(-quiet, size.width + quiet)))
korvex.korvex_device_destroy(picture)
