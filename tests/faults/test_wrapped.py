"""The faults cover every function by which module and host get memory or reach files."""

import os
import re
import subprocess

MODULE = os.environ["VELTRACE_MODULE"]
HOST = os.environ["ZEPHRA_HOST"]
WRAPPED = set(os.environ["WRAPPED_FUNCTIONS"].split(":"))

MEMORY = set("""aligned_alloc asprintf calloc getdelim getline malloc memalign mmap mmap64
    open_memstream posix_memalign pvalloc realloc reallocarray strdup strndup valloc vasprintf""".split())
FILES = set("""__fread_chk __fgets_chk __pread_chk __pread64_chk __read_chk access close fclose
    fdopen fgetc fgets fileno fopen fopen64 fread fread_unlocked freopen freopen64 fscanf fseek fseeko
    fseeko64 fsetpos fstat fstat64 fstatat fstatat64 ftell ftello ftello64 getc lseek lseek64 lstat
    lstat64 open open64 openat openat64 pread pread64 read readv rewind setvbuf stat
    stat64 statx""".split())
# Reads nothing; a stream whose buffer cannot be taken away reads the same.
HARMLESS = {"setvbuf"}
NEW = re.compile(r"_Zn[wa]\w+")  # operator new in any of its forms, each of which is replaced


def imports_of(path, *options):
    listing = subprocess.run(["nm", "--undefined-only", *options, path], check=True,
                             capture_output=True, text=True).stdout
    return {line.split()[-1].partition("@")[0] for line in listing.splitlines() if " U " in line}


def test_all_that_is_imported_is_wrapped():
    imported = imports_of(MODULE, "-D") | imports_of(HOST)
    assert (imported & (MEMORY | FILES)) - HARMLESS <= WRAPPED
    assert any(NEW.fullmatch(name) for name in imported)


def test_all_that_is_wrapped_is_imported():
    module, host = imports_of(MODULE, "-D"), imports_of(HOST)
    assert {"malloc", "calloc", "free"} <= host
    assert {"fopen64", "stat64", "fseek", "ftell", "fclose"} <= module
    assert {"fread", "__fread_chk"} & module
