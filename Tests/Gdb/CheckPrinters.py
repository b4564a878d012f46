"""Run by gdb on PrintersProgram; fails where gdb prints anything but what its source expects."""
import os
import re

import gdb

SOURCE = 'PrintersProgram.cpp'
failures = []


def expect(expression, expected):
    try:
        printed = gdb.execute(f'print {expression}', to_string=True).rstrip('\n')
    except gdb.error as error:
        printed = f'error: {error}'
    printed = re.sub(r'0x[0-9a-f]+', '0x', re.sub(r'^\$\d+ = ', '', printed))
    printed = re.sub(r'^\([^()]*[*&]\) (@0x: )?', '', printed)
    if printed != expected:
        failures.append(f'{expression}\n    is       {printed}\n    expected {expected}')


with open(os.path.join(os.path.dirname(__file__), SOURCE), encoding='utf-8') as file:
    source = file.read()
stop = source[:source.index('// stop here')].count('\n') + 1
# A row may go on in the next lines.
rows = re.findall(r'// gdb: (.*?) -> (.*(?:\n *//   .*)*)', source)
rows = [(expression, re.sub(r'\n *// +', ' ', expected)) for expression, expected in rows]

gdb.execute('set charset UTF-8')
gdb.execute('set width 0')
gdb.execute('set confirm off')
gdb.execute(f'break {SOURCE}:{stop}')
gdb.execute('run')
for row in rows:
    expect(*row)

expect('quantities', gdb.parse_and_eval('allUnits').string('utf-8'))

import VekPrinters # which gdb has loaded with the library

# What a plug-in without debug information falls back on.
expect(f"{VekPrinters.find_base(gdb.lookup_type('Viewer3D'), 'vek::SafeObject')} == sizeof(Base)", 'true')

gdb.execute('set print elements 3')
expect('text', '"µµµ..."')
expect('many', 'map of 20 = {[10] = 0, [11] = ...}')
expect('points', 'list of 2 = {<invalid>, -2.5e-07}')
gdb.execute('set print elements 200')

# A terminal that shows ASCII alone.
gdb.execute('set charset ASCII')
expect('name', r'"Pr\u00fcfung \"1\"\n\u0001 \u20ac \U0001f600"')
expect('length', r'1000 \u00b5m')

print('\n'.join(failures) or f'{len(rows)} expressions and all units are printed as expected')
gdb.execute('kill')
gdb.execute(f'quit {1 if failures or len(rows) < 50 else 0}')
