"""Run by gdb when it loads the library. All such scripts share one namespace, so the printers are a module."""
import os
import sys

import gdb

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import VekPrinters
sys.path.pop(0)

VekPrinters.register(gdb.current_objfile())
