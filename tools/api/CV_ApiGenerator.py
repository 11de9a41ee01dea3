# Writes the type stubs and the API reference of the script-facing modules. It runs as a Corvelle
# script inside xpsim (tools/api/generate_api.py starts it), because the modules exist only inside
# the plugin's interpreter.
#
# The live modules give the function names, their doc strings and the constants with their values;
# tools/api/signatures.txt gives each function's parameters and result. Every name must be in both:
# a function the table lacks, a table line for a function that does not exist, a module without a
# section or a section whose module cannot be imported fails the run, and so does a parameter count
# the binding does not take. Nothing is written then.
#
# Environment: CORVELLE_API_TABLE (the table), CORVELLE_API_OUT (the output folder: stubs/<Module>.pyi,
# docs/<Module>.md, docs/README.md and status.txt, whose first line is "ok" or "failed" followed by
# one problem a line). Without them the script does nothing.

import ast
import importlib
import os
import re
import sys
import traceback
import types
import typing

# Modules of the plugin that scripts do not use.
INTERNAL_MODULES = {"BrindleInternalModule"}
# Functions the parameter count check must not call: XPLMReloadPlugins restarts every plugin.
NOT_PROBED = {"XPLMReloadPlugins"}
# The names the table's types may use besides the builtins.
TYPE_NAMES = {"Any": typing.Any, "Callable": typing.Callable, "Sequence": typing.Sequence}

COUNT_MESSAGE = re.compile(r"takes (exactly|at most|at least) (\d+) arguments? \(\d+ given\)")


class Parameter:
    def __init__(self, name, annotation, default):
        self.name = name
        self.annotation = annotation
        self.default = default  # source text, or None

    def text(self, stub):
        default = "" if self.default is None else (" = ..." if stub else " = " + self.default)
        return "%s: %s%s" % (self.name, self.annotation, default)


class Signature:
    def __init__(self, name, parameters, result, line):
        self.name = name
        self.parameters = parameters
        self.result = result
        self.line = line

    def text(self, stub):
        params = [p.text(stub) for p in self.parameters]
        if stub and params:
            params.append("/")
        return "%s(%s) -> %s" % (self.name, ", ".join(params), self.result)

    def counts(self):
        required = sum(1 for p in self.parameters if p.default is None)
        return required, len(self.parameters)


def CheckType(text):
    """Raises when a type of the table is not a valid type expression."""
    value = eval(compile(text, "<type>", "eval"), {"__builtins__": __builtins__}, dict(TYPE_NAMES))
    if not isinstance(value, (type, types.GenericAlias, types.UnionType)) and typing.get_origin(value) is None:
        if value is not typing.Any:
            raise ValueError("%s is not a type" % text)


def ReadTable(path, problems):
    """The table as {module: {function: Signature}} in file order."""
    table = {}
    module = None
    with open(path, encoding="utf-8") as table_file:
        lines = table_file.read().splitlines()
    for number, raw in enumerate(lines, 1):
        line = raw.strip()
        where = "%s line %d" % (os.path.basename(path), number)
        if not line or line.startswith("#"):
            continue
        if line.startswith("[") and line.endswith("]"):
            module = line[1:-1]
            if module in table:
                problems.append("%s: section [%s] appears twice" % (where, module))
            table[module] = {}
            continue
        if module is None:
            problems.append("%s: a function before the first [Module] section" % where)
            continue
        try:
            definition = ast.parse("def " + line + ": ...").body[0]
            if not isinstance(definition, ast.FunctionDef) or definition.returns is None:
                raise SyntaxError("needs Name(parameters) -> result")
            arguments = definition.args
            if arguments.posonlyargs or arguments.vararg or arguments.kwonlyargs or arguments.kwarg:
                raise SyntaxError("plain parameters only (the generator adds the /)")
            defaults = [None] * (len(arguments.args) - len(arguments.defaults)) + arguments.defaults
            parameters = []
            for argument, default in zip(arguments.args, defaults):
                if argument.annotation is None:
                    raise SyntaxError("parameter %s has no type" % argument.arg)
                annotation = ast.unparse(argument.annotation)
                CheckType(annotation)
                parameters.append(Parameter(argument.arg, annotation,
                                            None if default is None else ast.unparse(default)))
            result = ast.unparse(definition.returns)
            CheckType(result)
        except Exception as error:
            problems.append("%s: %s: %s" % (where, line, error))
            continue
        if definition.name in table[module]:
            problems.append("%s: %s.%s is listed twice" % (where, module, definition.name))
        table[module][definition.name] = Signature(definition.name, parameters, result, where)
    return table


def IsScriptModule(name, module):
    return (isinstance(module, types.ModuleType) and name != "__main__" and name not in INTERNAL_MODULES
            and getattr(module, "__loader__", None) is None and not hasattr(module, "__file__"))


def Members(module):
    """The module's functions and constants, in the order the module holds them."""
    functions, constants, others = [], [], []
    for name, value in vars(module).items():
        if name.startswith("__"):
            continue
        if isinstance(value, types.BuiltinFunctionType):
            functions.append((name, value))
        elif isinstance(value, (int, float, str)) and not isinstance(value, bool):
            constants.append((name, value))
        else:
            others.append(name)
    return functions, constants, others


def ProbeCount(function, most):
    """How many arguments the binding takes, told by calling it with too many: (lowest, highest), or None
    when the answer does not say. A binding that ignores its arguments runs, and takes none."""
    try:
        function(*([object()] * (most + 2)))
    except TypeError as error:
        message = str(error)
        if message.endswith("takes no arguments"):
            return 0, 0
        found = COUNT_MESSAGE.search(message)
        if found is None:
            return None
        count = int(found.group(2))
        return (count, count) if found.group(1) == "exactly" else (0, count) if found.group(1) == "at most" else None
    except Exception:
        return None
    return 0, 0


def Counted(counts):
    count = "%d" % counts[1] if counts[0] == counts[1] else "up to %d" % counts[1]
    return count + (" argument" if counts[1] == 1 else " arguments")


def CheckModule(name, module, signatures, problems):
    functions, constants, others = Members(module)
    for other in others:
        problems.append("%s.%s is neither a function nor a constant" % (name, other))
    live = {function_name for function_name, _ in functions}
    for function_name, _ in functions:
        if function_name not in signatures:
            problems.append("%s.%s has no line in the table" % (name, function_name))
    for function_name, signature in signatures.items():
        if function_name not in live:
            problems.append("%s: %s.%s is in the table but not in the module" % (signature.line, name,
                                                                                    function_name))
    for function_name, function in functions:
        signature = signatures.get(function_name)
        if signature is None or function_name in NOT_PROBED:
            continue
        required, most = signature.counts()
        # Parameters with defaults are optional: the binding then answers "at most".
        expected = (most, most) if required == most else (0, most)
        taken = ProbeCount(function, most)
        if taken is None:
            problems.append("%s: cannot tell how many arguments %s.%s takes" % (signature.line, name,
                                                                                 function_name))
        elif taken != expected:
            problems.append("%s: %s.%s takes %s, the table gives %s" % (
                signature.line, name, function_name, Counted(taken), Counted(expected)))
    return functions, constants


def Docstring(text, indent):
    escaped = text.replace("\\", "\\\\").replace('"""', '\\"\\"\\"')
    return '%s"""%s"""\n' % (indent, escaped)


def StubText(name, functions, constants, signatures):
    text = ("# Type stubs of the Corvelle script module %s, generated inside xpsim from the live module and\n"
            "# tools/api/signatures.txt by tools/api/CV_ApiGenerator.py. Do not edit.\n"
            "from typing import Any, Callable, Final, Sequence\n" % name)
    if constants:
        text += "\n"
    for constant, value in constants:
        text += "%s: Final[%s] = %r\n" % (constant, type(value).__name__, value)
    for function_name, function in functions:
        text += "\n\ndef %s:\n" % signatures[function_name].text(stub=True)
        text += Docstring(function.__doc__, "    ") if function.__doc__ else "    ...\n"
    return text


CONVENTIONS = """\
Every parameter is positional. `script` is the calling script's instance: pass `self` from a method
of the script's `Corvelle` class. Handles (datarefs, windows, menus, commands, widgets ...) and refcons
are the integers the functions give. An output parameter (`out...`, a `list[...] | None`) is a list the
function puts the value into (appended to an empty list, else stored as its first item; the
functions that give several values append them), or None when the value is not wanted. A callback is
a bound method of the script (`self.MyCallback`); keep it on `self` and unregister with the same
object. A function the running simulator's SDK lacks answers 0 and reports it in the log.
"""


def ReferenceText(name, functions, constants, signatures):
    text = ("# %s\n\nThe script module `%s` (`from %s import *`): %d functions, %d constants. Generated\n"
            "inside xpsim from the live module and `tools/api/signatures.txt`; the conventions are in\n"
            "[the index](README.md).\n" % (name, name, name, len(functions), len(constants)))
    if functions:
        text += "\n## Functions\n"
    for function_name, function in functions:
        text += "\n### %s\n\n```python\n%s\n```\n" % (function_name, signatures[function_name].text(stub=False))
        if function.__doc__:
            text += "\n%s\n" % function.__doc__
    if constants:
        text += "\n## Constants\n\n| Name | Value | Type |\n|---|---|---|\n"
        for constant, value in constants:
            text += "| `%s` | %r | %s |\n" % (constant, value, type(value).__name__)
    return text


def IndexText(summary):
    text = ("# The script API\n\nOne page per module a script imports, generated inside xpsim from the live modules\n"
            "and `tools/api/signatures.txt` (`tools/api/CV_ApiGenerator.py`). The same source gives the type\n"
            "stubs (`<Module>.pyi`) that the release ships in `Corvelle/stubs`.\n\n" + CONVENTIONS +
            "\n| Module | Functions | Constants |\n|---|---|---|\n")
    for name, function_count, constant_count in summary:
        text += "| [%s](%s.md) | %d | %d |\n" % (name, name, function_count, constant_count)
    return text


def Generate(table_path, out):
    problems = []
    table = ReadTable(table_path, problems)
    live = sorted(name for name, module in list(sys.modules.items()) if IsScriptModule(name, module))
    for name in live:
        if name not in table:
            problems.append("module %s has no section in the table" % name)
    results = {}
    for name in sorted(table):
        try:
            module = importlib.import_module(name)
        except Exception as error:
            problems.append("cannot import module %s: %s: %s" % (name, type(error).__name__, error))
            continue
        results[name] = CheckModule(name, module, table[name], problems)
    if problems:
        return problems

    os.makedirs(os.path.join(out, "stubs"), exist_ok=True)
    os.makedirs(os.path.join(out, "docs"), exist_ok=True)
    summary = []
    for name, (functions, constants) in sorted(results.items()):
        with open(os.path.join(out, "stubs", name + ".pyi"), "w", encoding="utf-8") as stub:
            stub.write(StubText(name, functions, constants, table[name]))
        with open(os.path.join(out, "docs", name + ".md"), "w", encoding="utf-8") as page:
            page.write(ReferenceText(name, functions, constants, table[name]))
        summary.append((name, len(functions), len(constants)))
    with open(os.path.join(out, "docs", "README.md"), "w", encoding="utf-8") as index:
        index.write(IndexText(summary))
    return []


class Corvelle:
    def XPluginStart(self):
        table, out = os.environ.get("CORVELLE_API_TABLE"), os.environ.get("CORVELLE_API_OUT")
        if table and out:
            try:
                problems = Generate(table, out)
            except Exception:
                problems = ["the generator failed:"] + traceback.format_exc().splitlines()
            os.makedirs(out, exist_ok=True)
            with open(os.path.join(out, "status.txt"), "w", encoding="utf-8") as status:
                status.write("\n".join(["failed" if problems else "ok"] + problems) + "\n")
        return "API Generator", "corvelle.tools.apigenerator", "Writes the type stubs and the API reference."

    def XPluginStop(self):
        pass

    def XPluginEnable(self):
        return 1

    def XPluginDisable(self):
        pass

    def XPluginReceiveMessage(self, inFromWho, inMessage, inParam):
        pass
