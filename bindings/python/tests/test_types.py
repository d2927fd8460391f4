"""The declared types are those of the compiled module, and the examples keep to them."""
import os
import pathlib
import subprocess
import sys

import pytest

import zrconverters

EXAMPLES = pathlib.Path(__file__).parents[3] / "examples" / "python"
# What a compiled class has of its own, whatever is declared.
COMPILED = ("metaclass differs", 'stub does not have *args argument "args"')


def complaints(tmp_path, *arguments):
    pytest.importorskip("mypy")
    paths = os.pathsep.join([str(pathlib.Path(zrconverters.__file__).parents[1]), str(EXAMPLES)])
    told = subprocess.run([sys.executable, "-m", *map(str, arguments)], cwd=tmp_path,
                          env={**os.environ, "MYPYPATH": paths, "MYPY_CACHE_DIR": str(tmp_path.parent / "cache")},
                          capture_output=True, text=True)
    lines = (told.stdout + told.stderr).splitlines()
    return [line for line in lines if not line.startswith(("Success", "Found")) and not line.endswith(COMPILED)]


def test_every_declaration_is_complete(tmp_path):
    assert complaints(tmp_path, "mypy", "--strict", "-p", "zrconverters") == []


def test_the_module_has_what_is_declared(tmp_path):
    assert complaints(tmp_path, "mypy.stubtest", "--concise", "zrconverters") == []


# Of other packages the examples use some without types.
def test_the_examples(tmp_path):
    loose = ("--allow-untyped-defs", "--allow-untyped-calls", "--check-untyped-defs", "--ignore-missing-imports")
    assert complaints(tmp_path, "mypy", "--strict", *loose, EXAMPLES) == []
