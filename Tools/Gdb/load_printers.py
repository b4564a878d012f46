"""Run by gdb when it loads the library. All such scripts share one namespace, so the printers are a module."""
import inspect
import os
import sys

import gdb

# Within another script, __file__ would be that one's.
sys.path.insert(0, os.path.dirname(os.path.abspath(inspect.currentframe().f_code.co_filename)))
import VekPrinters
sys.path.pop(0)

VekPrinters.register(gdb.current_objfile())
