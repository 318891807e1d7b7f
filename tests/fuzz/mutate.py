#!/usr/bin/env python3
"""Mutation fuzzing of the velor binary.

Takes the inputs of the end-to-end cases and the examples as seeds, mutates them (truncation,
spliced and repeated spans, inserted tokens of the language, NUL and high bytes, other line ends,
long runs of one character) and runs the compiler on each mutant in a scratch folder with a time
limit. A run counts as a finding when it ends other than with exit code 0 or 1, times out, prints
a sanitizer report or stops on an assertion. Each new kind of finding is saved with its standard
error as `<kind>-<hash>` and `<kind>-<hash>.err` in the findings folder.

Usage: mutate.py BINARY FINDINGS_FOLDER [SECONDS] [SEED]
Best run on the sanitizer build (build-asan/velor). Some assertion stops are the defined outcome
of certain inputs; read the finding's input before treating one as a fault.
"""
import glob
import hashlib
import os
import random
import shutil
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
TIME_LIMIT = 10
LARGEST_INPUT = 400000

TOKENS = [
    b'#define ', b'#if ', b'#ifdef ', b'#ifndef ', b'#else\n', b'#elif ', b'#endif\n', b'#include ',
    b'#undef ', b'#line ', b'#error ', b'#pragma velor writedescriptions on\n', b'defined(', b'#', b'##',
    b'(', b')', b'[', b']', b'{', b'}', b',', b';', b':', b'"', b"'", b'$"', b'L"', b"L'", b'\\', b'\\\n',
    b'/*', b'*/', b'//', b'\n', b'\r', b'\0', b'\xff', b'\x81', b'\xef\xbb\xbf', b'0x', b'0b', b'$',
    b'$$Byte(', b'$$Word(', b'$$Long(', b'$$BitField(', b'$$CountOf(', b'$$ArrayIndex(',
    b'type ', b'resource ', b'byte', b'integer', b'longint', b'bitstring[', b'boolean', b'double',
    b'float', b'unsigned ', b'hex ', b'decimal ', b'octal ', b'binary ', b'literal ', b'string',
    b'pstring', b'wstring', b'cstring', b'array', b'switch', b'case ', b'key ', b'fill ', b'align ',
    b'enum ', b'const ', b'typedef ', b'__LINE__', b'__FILE__', b'k_jaJP\n', b'kResourceUTF8Encoded',
    b'9223372036854775807', b'9223372036854775808', b'99999999999999999999', b'1e999', b'-1', b'0',
    b'+', b'-', b'*', b'/', b'%', b'<<', b'>>', b'==', b'&&', b'||', b'!', b'~', b'?', b'=',
    b"'ABCDE'", b'PURGEABLE', b'SYSHEAP', b'MULTISTRING', b'BITMAP', b'ICNS',
]


def seeds():
    found = glob.glob(os.path.join(ROOT, 'tests/e2e/cases/*/*/in/**/*.vd'), recursive=True)
    found += glob.glob(os.path.join(ROOT, 'examples/*.vd'))
    return [open(path, 'rb').read() for path in found]


def mutate_once(data, pool):
    n = len(data)
    at = random.randrange(n + 1)
    end = min(n, at + random.randrange(1, 20))
    choice = random.randrange(10)
    if choice == 0:
        return data[:at]
    if choice == 1:
        return data[:at] + data[end:]
    if choice == 2:
        return data[:at] + random.choice(TOKENS) + data[at:]
    if choice == 3:
        return data[:at] + random.choice(TOKENS) + data[end:]
    if choice == 4:
        return data[:at] + data[at:end] * random.choice([2, 10, 100, 1000]) + data[end:]
    if choice == 5:
        other = random.choice(pool)
        return data[:at] + other[random.randrange(len(other) + 1):]
    if choice == 6:
        return data.replace(b'\n', random.choice([b'\r', b'\r\n', b'\n\r']))
    if choice == 7:
        run = random.choice([b'a', b'9', b'(', b'[', b'{', b'"', b'- ', b'\\\n'])
        return data[:at] + run * random.choice([100, 1000, 70000]) + data[at:]
    if choice == 8 and n:
        return data[:at] + bytes([random.randrange(256)]) + data[at + 1:]
    return data[:at] + random.choice(TOKENS) + random.choice(TOKENS) + data[at:]


def mutate(data, pool):
    for _ in range(random.choice([1, 1, 2, 3, 5, 8])):
        data = mutate_once(data, pool)
    return data[:LARGEST_INPUT]


def run(binary, folder, data):
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(os.path.join(folder, 'out'))
    with open(os.path.join(folder, 'in.vd'), 'wb') as file:
        file.write(data)
    try:
        done = subprocess.run([binary, '-o', 'out/r.rsrc', 'in.vd'], cwd=folder, env={'PATH': '/usr/bin:/bin'},
                              stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, timeout=TIME_LIMIT)
    except subprocess.TimeoutExpired:
        return 'timeout', b''
    error = done.stderr
    for marker, kind in [(b'AddressSanitizer', 'asan'), (b'runtime error', 'ubsan'), (b'LeakSanitizer', 'leak'),
                         (b'Assertion failed', 'assert')]:
        if marker in error:
            return kind, error
    if done.returncode not in (0, 1):
        return 'exit%d' % done.returncode, error
    return None, error


def signature(kind, error):
    lines = error.split(b'\n')
    key = [line for line in lines if b'Assertion failed' in line or b'runtime error' in line]
    key = key or [line for line in lines if b'/src/' in line][:3]
    return kind + '-' + hashlib.md5(b''.join(key)).hexdigest()[:10]


def main():
    binary, findings = os.path.abspath(sys.argv[1]), sys.argv[2]
    seconds = float(sys.argv[3]) if len(sys.argv) > 3 else 600
    random.seed(int(sys.argv[4]) if len(sys.argv) > 4 else time.time())
    os.makedirs(findings, exist_ok=True)
    pool = seeds()
    seen = set(os.listdir(findings))
    scratch = tempfile.mkdtemp(prefix='velor-fuzz-')
    runs = 0
    deadline = time.time() + seconds
    while time.time() < deadline:
        data = mutate(random.choice(pool), pool)
        kind, error = run(binary, scratch, data)
        runs += 1
        if kind is None:
            continue
        name = signature(kind, error)
        if name in seen:
            continue
        seen.add(name)
        with open(os.path.join(findings, name), 'wb') as file:
            file.write(data)
        with open(os.path.join(findings, name + '.err'), 'wb') as file:
            file.write(error)
        print('finding', name, flush=True)
    shutil.rmtree(scratch, ignore_errors=True)
    print('%d runs' % runs)


if __name__ == '__main__':
    main()
