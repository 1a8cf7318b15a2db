"""The shipped type stubs name everything the package offers, so editors
complete every name, and nothing that is not there."""

import ast
import enum
import inspect
import pathlib

import sparlane
from sparlane import testing

PACKAGE = pathlib.Path(sparlane.__file__).parent


def stub(name):
    return ast.parse((PACKAGE / name).read_text())


def top_level_names(tree):
    names = set()
    for node in tree.body:
        if isinstance(node, (ast.ClassDef, ast.FunctionDef)):
            names.add(node.name)
        elif isinstance(node, ast.AnnAssign):
            names.add(node.target.id)
        elif isinstance(node, ast.ImportFrom):
            # "import x as x" is how a stub re-exports a name.
            names.update(a.name for a in node.names if a.asname == a.name)
    return names


def class_members(tree, name):
    for node in tree.body:
        if isinstance(node, ast.ClassDef) and node.name == name:
            members = set()
            for item in node.body:
                if isinstance(item, ast.FunctionDef):
                    members.add(item.name)
                elif isinstance(item, ast.AnnAssign):
                    members.add(item.target.id)
                elif isinstance(item, ast.Assign):
                    members.update(t.id for t in item.targets)
            return members
    raise AssertionError(f"{name} is not in the stubs")


def test_package_files_are_shipped():
    for name in ("__init__.pyi", "testing.pyi", "py.typed"):
        assert (PACKAGE / name).is_file()


def test_stubs_list_exactly_the_public_names():
    names = {n for n in top_level_names(stub("__init__.pyi")) if not n.startswith("_")}
    assert names - {"testing"} == set(sparlane.__all__) - {"testing"}
    assert top_level_names(stub("testing.pyi")) == set(testing.__all__)


def test_stubs_list_every_method_and_field_of_each_class():
    tree = stub("__init__.pyi")
    for name in sparlane.__all__:
        cls = getattr(sparlane, name)
        if not inspect.isclass(cls) or issubclass(cls, BaseException):
            continue
        if issubclass(cls, enum.Enum):
            public = set(cls.__members__)
        else:
            public = {m for m in dir(cls) if not m.startswith("_")}
        documented = {m for m in class_members(tree, name) if not m.startswith("_")}
        assert public == documented, name


def test_every_public_function_takes_the_arguments_its_stub_names():
    tree = stub("__init__.pyi")
    functions = {node.name: node for node in tree.body if isinstance(node, ast.FunctionDef)}
    for name, node in functions.items():
        expected = [a.arg for a in node.args.args]
        doc = getattr(sparlane, name).__doc__
        assert doc.startswith(f"{name}(" + ", ".join(expected[:1])), name
        for arg in expected:
            assert f"{arg}:" in doc.splitlines()[0], (name, arg)
