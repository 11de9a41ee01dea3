# Compares the type stubs with the live script modules, inside the plugin's interpreter: the same
# modules, functions and constants, the constants' values, the functions' doc strings and the number
# of arguments each binding takes. Reads the stubs from $CORVELLE_STUBS and prints one line per
# disagreement ("stubs: ..."), then a summary line.

import ast
import os
import re
import sys
import types

COUNT_MESSAGE = re.compile(r"takes exactly (\d+) arguments? \(\d+ given\)")
NOT_CALLED = {"XPLMReloadPlugins"}  # would restart every plugin


def LiveModules():
    return sorted(name for name, module in list(sys.modules.items())
                  if isinstance(module, types.ModuleType) and name not in ("__main__", "BrindleInternalModule")
                  and getattr(module, "__loader__", None) is None and not hasattr(module, "__file__"))


def StubMembers(path):
    functions, constants = {}, {}
    for node in ast.parse(open(path, encoding="utf-8").read()).body:
        if isinstance(node, ast.FunctionDef):
            functions[node.name] = (len(node.args.posonlyargs) + len(node.args.args), ast.get_docstring(node, False))
        elif isinstance(node, ast.AnnAssign) and node.value is not None:
            constants[node.target.id] = ast.literal_eval(node.value)
    return functions, constants


def TakenCount(function, most):
    try:
        function(*([object()] * (most + 2)))
    except TypeError as error:
        if str(error).endswith("takes no arguments"):
            return 0
        found = COUNT_MESSAGE.search(str(error))
        return int(found.group(1)) if found else None
    except Exception:
        return None
    return 0


def Check(folder):
    problems = []
    stubs = sorted(name[:-4] for name in os.listdir(folder) if name.endswith(".pyi"))
    live = LiveModules()
    problems += ["stubs: no stub for module %s" % name for name in live if name not in stubs]
    problems += ["stubs: %s.pyi has no live module" % name for name in stubs if name not in live]
    functions_seen = constants_seen = 0
    for name in [name for name in stubs if name in live]:
        module = sys.modules[name]
        functions, constants = StubMembers(os.path.join(folder, name + ".pyi"))
        members = {key: value for key, value in vars(module).items() if not key.startswith("__")}
        for key, value in members.items():
            if isinstance(value, types.BuiltinFunctionType):
                if key not in functions:
                    problems.append("stubs: %s.%s is missing" % (name, key))
                    continue
                count, doc = functions[key]
                if doc != value.__doc__:
                    problems.append("stubs: %s.%s has the doc string %r, the module %r" % (name, key, doc, value.__doc__))
                taken = None if key in NOT_CALLED else TakenCount(value, count)
                if key not in NOT_CALLED and taken != count:
                    problems.append("stubs: %s.%s has %d parameters, the binding takes %s" % (name, key, count, taken))
                functions_seen += 1
            elif key not in constants:
                problems.append("stubs: %s.%s is missing" % (name, key))
            elif constants[key] != value or type(constants[key]) is not type(value):
                problems.append("stubs: %s.%s is %r, the module's %r" % (name, key, constants[key], value))
            else:
                constants_seen += 1
        for key in list(functions) + list(constants):
            if key not in members:
                problems.append("stubs: %s.%s is not in the module" % (name, key))
    return problems, "stubs: %d modules, %d functions and %d constants agree with the live modules" % (
        len(live), functions_seen, constants_seen)


class Corvelle:
    def XPluginStart(self):
        problems, summary = Check(os.environ["CORVELLE_STUBS"])
        for problem in problems:
            print(problem)
        print(summary if not problems else "stubs: %d disagreements" % len(problems))
        return "Stub Check", "corvelle.tests.stubcheck", "Compares the type stubs with the live modules."

    def XPluginStop(self):
        pass

    def XPluginEnable(self):
        return 1

    def XPluginDisable(self):
        pass

    def XPluginReceiveMessage(self, inFromWho, inMessage, inParam):
        pass
