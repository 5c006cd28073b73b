"""The typed stubs list what the module has: every name and member in them exists."""

import ast
import importlib
import pathlib

import oru

PACKAGE = pathlib.Path(oru.__file__).parent


def listed(stub):
    """(module, name, members) for each top-level name a stub declares."""
    tree = ast.parse((PACKAGE / stub).read_text())
    for node in tree.body:
        if isinstance(node, ast.ClassDef):
            members = [n.name for n in node.body if isinstance(n, ast.FunctionDef)]
            members += [n.target.id for n in node.body
                        if isinstance(n, ast.AnnAssign) and isinstance(n.target, ast.Name)]
            yield node.name, members
        elif isinstance(node, ast.FunctionDef):
            yield node.name, []
        elif isinstance(node, ast.AnnAssign) and isinstance(node.target, ast.Name):
            yield node.target.id, []
        elif isinstance(node, ast.ImportFrom) and node.level > 0:
            for alias in node.names:
                yield alias.asname or alias.name, []


def test_every_name_the_stubs_list_is_there():
    checked = 0
    for stub, module in (("__init__.pyi", "oru"), ("_oru.pyi", "oru._oru"),
                         ("testing.pyi", "oru.testing")):
        runtime = importlib.import_module(module)
        for name, members in listed(stub):
            assert hasattr(runtime, name), "%s.%s" % (module, name)
            for member in members:
                if member in ("problems",):  # set on each raised instance
                    continue
                assert hasattr(getattr(runtime, name), member), "%s.%s.%s" % (module, name, member)
                checked += 1
    assert checked > 40


def test_the_package_exports_what_its_stub_lists():
    names = {name for name, _ in listed("__init__.pyi")}
    assert names == set(oru.__all__)
    assert oru.__version__.count(".") == 2
