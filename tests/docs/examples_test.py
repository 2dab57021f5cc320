#!/usr/bin/env python3
"""Compiles and runs the examples of the pages; what they print is what the page shows.

    examples_test.py cpp|c LIBRARY COMPILER [OPTION...]
    examples_test.py python|sh PACKAGE_FOLDER
    examples_test.py vbs RUNNER SERVER

All examples in C++ are one program, and all in C another: each example is a function of it.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

from pages import ROOT, examples

PLAIN = {"PATH": os.environ["PATH"], "HOME": os.environ.get("HOME", "/"), "LC_ALL": "C.UTF-8"}


# ---- One program of all examples --------------------------------------------


def cpp_source(number, code):
    """An example as a function of the one program; its includes come first of all."""
    includes = re.findall(r"^#include .*$", code, re.M)
    body = re.sub(r"^#include .*$", "", code, flags=re.M)
    body = re.sub(r"^int main\(\)", "int run()", body, flags=re.M)
    return includes, f"namespace example_{number} {{\n{body}\n}}\n"


def cpp_sources(codes):
    includes, bodies = [], []
    for number, code in enumerate(codes):
        of_one, body = cpp_source(number, code)
        includes += of_one
        bodies.append(body)
    cases = "\n".join(f"    case {i}: return example_{i}::run();" for i in range(len(codes)))
    chosen = ("int main(int, char** words) {\n  std::setvbuf(stdout, nullptr, _IONBF, 0);\n"
              f"  switch (std::atoi(words[1])) {{\n{cases}\n  }}\n  return 99;\n}}\n")
    first = [*sorted(set(includes)), "#include <cstdio>", "#include <cstdlib>"]
    return {"examples.cpp": "\n".join([*first, *bodies, chosen])}


def c_sources(codes):
    names = [f"run_{number}" for number in range(len(codes))]
    sources = {f"{name}.c": f"#define main {name}\nint {name}(void);\n{code}"
               for name, code in zip(names, codes)}
    sources["chosen.c"] = "\n".join([
        "#include <stdio.h>", "#include <stdlib.h>", *(f"int {name}(void);" for name in names),
        "int main(int count, char** words) {", "  (void)count;",
        "  setvbuf(stdout, NULL, _IONBF, 0);", "  switch (atoi(words[1])) {",
        *(f"    case {i}: return {name}();" for i, name in enumerate(names)),
        "  }", "  return 99;", "}", ""])
    return sources


def built(folder, sources, options, library, compiler):
    for name, text in sources.items():
        (folder / name).write_text(text, encoding="utf-8")
    program = folder / "examples"
    subprocess.run([*compiler, *options, "-Wall", "-Wextra", "-Werror", "-I", ROOT,
                    *(folder / name for name in sources), library,
                    f"-Wl,-rpath,{pathlib.Path(library).parent}", "-o", program], check=True)
    return program


# ---- Runs -------------------------------------------------------------------


def compare(example, command, **more):
    environment = {**PLAIN, **more.pop("environment", {}), **example.environment}
    done = subprocess.run(command, env=environment, stdout=subprocess.PIPE, check=False,
                          stderr=subprocess.STDOUT, text=True, timeout=120, **more)
    printed = re.sub(r"\s+$", "", done.stdout.replace("\r", ""), flags=re.M)
    if done.returncode == 0 and printed == re.sub(r"\s+$", "", example.output, flags=re.M):
        return True
    print(f"FAILED {example.place}: status {done.returncode}, it prints\n{done.stdout}"
          f"and the page shows\n{example.output}")
    return False


def workplace(folder):
    """A folder in which the examples find what they read, and may write."""
    place = folder / "work"
    place.mkdir()
    (place / "examples").symlink_to(ROOT / "examples")
    (place / "docs").symlink_to(ROOT / "docs")
    (place / "tools").symlink_to(ROOT / "tools")
    return place


def run_compiled(language, chosen, folder, library, *compiler):
    codes = [one.code for one in chosen]
    if language == "cpp":
        program = built(folder, cpp_sources(codes), ["-std=c++20"], library, compiler)
    else:
        program = built(folder, c_sources(codes), ["-std=c11"], library, compiler)
    place = workplace(folder)
    return [compare(one, [program, str(i)], cwd=place) for i, one in enumerate(chosen)]


def run_python(chosen, folder, package):
    place = workplace(folder)
    return [compare(one, [sys.executable, "-u", "-c", one.code], cwd=place,
                    environment={"PYTHONPATH": package}) for one in chosen]


def run_shell(chosen, folder, package):
    place = workplace(folder)
    return [compare(one, ["bash", "-euo", "pipefail", "-c", one.code], cwd=place,
                    environment={"PYTHONPATH": package}) for one in chosen]


def run_scripts(chosen, folder, runner, server):
    prefix = {name: value for name, value in os.environ.items()
              if name == "WINEPREFIX" or name.startswith("ORV2_")}

    def register(*words):
        subprocess.run([runner, "regsvr32", "/s", *words, server], env={**PLAIN, **prefix},
                       check=True)

    register()
    try:
        answers = []
        for one in chosen:
            (folder / "example.vbs").write_bytes(
                one.code.replace("\n", "\r\n").encode("cp1252"))
            answers.append(compare(one, [runner, "cscript", "//nologo", "example.vbs"], cwd=folder,
                                   environment=prefix))
        return answers
    finally:
        register("/u")


def main():
    language, words = sys.argv[1], sys.argv[2:]
    every = examples(language)
    for one in every:
        if one.reason:
            print(f"not run: {one.place}: {one.reason}")
        elif one.output is None:
            print(f"FAILED {one.place}: neither an output nor a reason why it is not run")
    chosen = [one for one in every if one.output is not None]
    run = {"cpp": run_compiled, "c": run_compiled, "python": run_python, "sh": run_shell,
           "vbs": run_scripts}[language]
    # A runner of programs for Windows may see the server's folder and no other.
    near = pathlib.Path(words[1]).parent if run is run_scripts else None
    with tempfile.TemporaryDirectory(dir=near) as folder:
        before = (language,) if run is run_compiled else ()
        answers = run(*before, chosen, pathlib.Path(folder), *words)
    print(f"{sum(answers)} of {len(answers)} examples print what the pages show")
    unclear = any(one.output is None and not one.reason for one in every)
    return 0 if answers and all(answers) and not unclear else 1


if __name__ == "__main__":
    sys.exit(main())
