#!/usr/bin/env python3
"""Writes the decode tables of the single-byte charsets and the validity tables of the double-byte
ones, from Python's codecs (and the C library's converter for the few that Python lacks).

  scripts/gen_charset_tables.py lib/detect

The tables are committed: which charsets can decode a document must not depend on the converters
that a machine has installed. Run again only to add a charset.
"""
import ctypes
import sys

SINGLE = {  # IANA name: Python codec, or iconv:NAME
    **{f'windows-{n}': f'cp{n}' for n in range(1250, 1259)}, 'windows-874': 'cp874',
    **{f'ISO-8859-{n}': f'iso8859-{n}' for n in (1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 13, 14, 15, 16)},
    'KOI8-R': 'koi8-r', 'KOI8-U': 'koi8-u', 'KOI8-T': 'koi8-t',
    'IBM037': 'cp037', 'IBM273': 'cp273', 'IBM424': 'cp424', 'IBM500': 'cp500', 'IBM875': 'cp875',
    'IBM1026': 'cp1026', 'IBM1140': 'cp1140',
    **{f'IBM{n}': f'cp{n}' for n in (437, 720, 737, 775, 850, 852, 855, 856, 857, 860, 861, 862, 863,
                                     864, 865, 866, 869, 1125)},
    'IBM858': 'cp858',
    'macintosh': 'mac_roman', 'x-mac-cyrillic': 'mac_cyrillic', 'x-mac-ce': 'mac_latin2',
    'x-mac-greek': 'mac_greek', 'x-mac-turkish': 'mac_turkish', 'x-mac-iceland': 'mac_iceland',
    'VISCII': 'iconv:VISCII', 'TIS-620': 'iconv:TIS-620', 'PTCP154': 'ptcp154', 'KZ-1048': 'kz1048',
    'hp-roman8': 'hp_roman8', 'TCVN': 'iconv:TCVN', 'BALTIC': 'iconv:BALTIC', 'ISO-IR-111': 'iconv:ECMA-CYRILLIC',
    'ARMSCII-8': 'iconv:ARMSCII-8', 'GEORGIAN-ACADEMY': 'iconv:GEORGIAN-ACADEMY',
    'GEORGIAN-PS': 'iconv:GEORGIAN-PS', 'US-ASCII': 'ascii',
}
DOUBLE = {  # table name: codecs of which any may decode the pair, prefix byte
    'ShiftJis': (['cp932'], b''),
    'EucJp': (['euc_jp', 'row:cp932'], b''),
    'EucJpPlane2': (['euc_jp'], b'\x8f'),
    'Gbk': (['gb18030'], b''),
    'Big5': (['big5hkscs', 'cp950'], b''),
    'EucTw': (['iconv:EUC-TW'], b''),
    'Cp949': (['cp949'], b''),
    'Johab': (['johab'], b''),
}
LIBC = ctypes.CDLL(None, use_errno=True)
LIBC.iconv_open.restype = ctypes.c_void_p
LIBC.iconv_open.argtypes = [ctypes.c_char_p] * 2
LIBC.iconv.restype = ctypes.c_size_t
LIBC.iconv.argtypes = [ctypes.c_void_p] * 5
OPEN = {}


def iconv_text(name, data):
    if name not in OPEN:
        OPEN[name] = LIBC.iconv_open(b'UTF-32LE', name.encode())
    inp = ctypes.create_string_buffer(data, len(data))
    out = ctypes.create_string_buffer(256)
    ip, il = ctypes.c_void_p(ctypes.addressof(inp)), ctypes.c_size_t(len(data))
    op, ol = ctypes.c_void_p(ctypes.addressof(out)), ctypes.c_size_t(256)
    LIBC.iconv(OPEN[name], None, None, None, None)
    failed = LIBC.iconv(OPEN[name], ctypes.addressof(ip), ctypes.addressof(il),
                        ctypes.addressof(op), ctypes.addressof(ol))
    if failed == ctypes.c_size_t(-1).value:
        raise UnicodeError(name)
    LIBC.iconv(OPEN[name], None, None, ctypes.addressof(op), ctypes.addressof(ol))
    return out.raw[:256 - ol.value].decode('utf-32le')


def text(codec, data):
    if codec.startswith('iconv:'):
        return iconv_text(codec[6:], data)
    if codec.startswith('row:'):  # EUC pair of the vendor rows, through the Shift_JIS form
        if len(data) != 2:
            raise UnicodeError
        row, cell = data[0] - 0xA1, data[1] - 0xA1
        if not (row == 12 or 88 <= row <= 91) or not 0 <= cell < 94:
            raise UnicodeError
        lead = 0x81 + row // 2 + (0x40 if row >= 62 else 0)
        trail = cell + 0x40 + (cell >= 63) if row % 2 == 0 else cell + 0x9F
        data = bytes([lead, trail])
        codec = codec[4:]
    return data.decode(codec)


def single(codec):
    row = []
    for b in range(256):
        try:
            t = text(codec, bytes([b]))
        except UnicodeError:
            t = ''
        row.append(ord(t) if len(t) == 1 else 0xFFFF)
    if codec in ('iconv:TCVN',):  # bytes 00 to 1F double as letters there; text uses them as controls
        for b in range(128):
            row[b] = b
    return row


def is_text(t):
    return len(t) in (1, 2) and not any(0xE000 <= ord(c) < 0xF900 or ord(c) > 0xEFFFF or
                                        ord(c) < 0xA0 for c in t)


def double(codecs, prefix):
    words = []
    for lead in range(0x80, 0x100):
        row = [0] * 8
        for trail in range(0x20, 0x100):
            for codec in codecs:
                try:
                    if is_text(text(codec, prefix + bytes([lead, trail]))):
                        # Two single characters are no pair.
                        try:
                            one = text(codec, bytes([lead])) if not prefix else ''
                        except UnicodeError:
                            one = ''
                        if not one:
                            row[trail // 32] |= 1 << trail % 32
                        break
                except UnicodeError:
                    pass
        words += row
    return words


def ident(name):
    return 'k' + ''.join(p[:1].upper() + p[1:] for p in name.replace('_', '-').split('-'))


def rows(values, form, per_line):
    return '\n'.join('    ' + ' '.join(form % v + ',' for v in values[i:i + per_line])
                     for i in range(0, len(values), per_line))


HEAD = '// Generated by scripts/gen_charset_tables.py; do not edit.\n'


def main(folder):
    with open(f'{folder}/single_byte_tables.cc', 'w', encoding='ascii') as out:
        out.write(HEAD + '#include "lib/detect/single_byte_tables.h"\n\nnamespace orva {\n\nnamespace {\n\n// clang-format off\n')
        for name, codec in SINGLE.items():
            out.write(f'constexpr uint16_t {ident(name)}[256] = {{\n{rows(single(codec), "0x%04x", 12)}\n}};\n\n')
        out.write('}  // namespace\n\nconst SingleByteTable kSingleByteTables[] = {\n')
        for name in SINGLE:
            out.write(f'    {{"{name}", {ident(name)}}},\n')
        out.write(f'}};\n// clang-format on\n\nconst int kSingleByteTableCount = {len(SINGLE)};\n\n}}  // namespace orva\n')
    with open(f'{folder}/double_byte_tables.cc', 'w', encoding='ascii') as out:
        out.write(HEAD + '#include "lib/detect/double_byte_tables.h"\n\nnamespace orva {\n\n// clang-format off\n')
        for name, (codecs, prefix) in DOUBLE.items():
            out.write(f'const uint32_t {ident(name)}Pairs[kPairTableWords] = {{\n'
                      f'{rows(double(codecs, prefix), "0x%08xu", 8)}\n}};\n\n')
        out.write('// clang-format on\n\n}  // namespace orva\n')


if __name__ == '__main__':
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    main(sys.argv[1])
